#include "vex/platform/string_list.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <string>
#include <typeinfo>
#include <utility>

#include "vex/platform/exceptions.h"
#include "vex/platform/streams.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

constexpr char kUtf8Bom[] = "\xEF\xBB\xBF";

bool IsPrintable(Char c) { return c >= 0x20 && c < 0x7F; }

bool IsPrintableAscii(const String& s) { return std::all_of(s.begin(), s.end(), IsPrintable); }

Char AsciiUpper(Char c) { return (c >= u'a' && c <= u'z') ? static_cast<Char>(c - 32) : c; }

int32_t Sign(int64_t v) { return v < 0 ? -1 : (v > 0 ? 1 : 0); }

// The collation comparisons are the expensive part of sorting and searching, so strings of
// printable ASCII take a shortcut. In that range the root collation has no contractions,
// expansions or ignorable characters and every secondary weight is the same; comparing two such
// strings is therefore comparing the characters' primary ranks position by position (a shorter
// prefix first) and, in the case-sensitive order, breaking a tie at the first position whose
// full ranks differ. The ranks are taken from the collator itself, and a test checks the
// shortcut against it on random strings.
struct AsciiRanks {
  std::array<uint8_t, 128> primary{};
  std::array<uint8_t, 128> full{};
};

std::array<uint8_t, 128> RankBy(int32_t (*compare)(const String&, const String&)) {
  std::vector<String> chars;
  for (Char c = 0x20; c < 0x7F; ++c) chars.emplace_back(1, c);
  std::stable_sort(chars.begin(), chars.end(),
                   [&](const String& a, const String& b) { return compare(a, b) < 0; });
  std::array<uint8_t, 128> ranks{};
  uint8_t rank = 0;
  for (size_t i = 0; i < chars.size(); ++i) {
    if (i > 0 && compare(chars[i - 1], chars[i]) != 0) ++rank;
    ranks[chars[i][0]] = rank;
  }
  return ranks;
}

const AsciiRanks& Ranks() {
  static const AsciiRanks ranks{RankBy(AnsiCompareText), RankBy(AnsiCompareStr)};
  return ranks;
}

// The collation comparison of two strings that are both printable ASCII. Equal characters
// are skipped without looking at their ranks, which makes this about as fast as comparing
// code units.
int32_t ComparePlain(const String& a, const String& b, bool case_sensitive) {
  const AsciiRanks& r = Ranks();
  const size_t common = std::min(a.size(), b.size());
  int32_t tie = 0;
  for (size_t i = 0; i < common; ++i) {
    const Char x = a[i];
    const Char y = b[i];
    if (x == y) continue;
    if (r.primary[x] != r.primary[y]) return r.primary[x] < r.primary[y] ? -1 : 1;
    if (tie == 0) tie = r.full[x] - r.full[y];
  }
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return case_sensitive ? Sign(tie) : 0;
}

int32_t CollationCompare(const String& a, const String& b, bool case_sensitive) {
  if (IsPrintableAscii(a) && IsPrintableAscii(b)) return ComparePlain(a, b, case_sensitive);
  return case_sensitive ? AnsiCompareStr(a, b) : AnsiCompareText(a, b);
}

// As CollationCompare, for strings whose printable-ASCII test is already known.
int32_t CollationCompare(const String& a, bool a_plain, const String& b, bool b_plain,
                         bool case_sensitive) {
  if (a_plain && b_plain) return ComparePlain(a, b, case_sensitive);
  return case_sensitive ? AnsiCompareStr(a, b) : AnsiCompareText(a, b);
}

// Whether the first n characters of a and b are equal, ignoring ASCII case unless
// `case_sensitive`. Characters are compared as they are first; case only matters where they
// differ. With a `stop` other than 0, a character `stop` in `a` ends the match as different.
bool PlainPrefixEqual(const Char* a, const Char* b, size_t n, bool case_sensitive, Char stop) {
  for (size_t i = 0; i < n; ++i) {
    const Char c = a[i];
    const Char k = b[i];
    if (c == k) continue;
    if (case_sensitive || c == stop || AsciiUpper(c) != AsciiUpper(k)) return false;
  }
  return true;
}

bool PlainEqual(const String& a, const String& b, bool case_sensitive) {
  return a.size() == b.size() && PlainPrefixEqual(a.data(), b.data(), a.size(), case_sensitive, 0);
}

// Whether the name of `line` (the text before its first `stop`) equals `key`, both printable
// ASCII and `key` without `stop`: only a line whose first `stop` is at key.size() can match.
bool PlainNameEqual(const String& line, Char stop, const String& key, bool case_sensitive) {
  const size_t n = key.size();
  if (line.size() <= n || line[n] != stop) return false;
  // Where line and key agree the line has no stop, as the key has none.
  return PlainPrefixEqual(line.data(), key.data(), n, case_sensitive, stop);
}

// Equality under the collation comparisons. For printable ASCII, equality at secondary
// strength is ASCII case-insensitive equality and at tertiary strength identity.
bool CollationEqual(const String& a, const String& b, bool case_sensitive) {
  if (IsPrintableAscii(a) && IsPrintableAscii(b)) return PlainEqual(a, b, case_sensitive);
  return CollationCompare(a, b, case_sensitive) == 0;
}

enum AsciiMatch { amEqual, amDifferent, amUnknown, amNoSeparator };

// Compares `line` up to its first `stop` character (the whole line unless `need_stop`) with
// `key`, which the caller knows to be printable ASCII, in one pass.
// amUnknown when that part of the line leaves printable ASCII; amNoSeparator when `need_stop`
// and the line has no `stop`.
AsciiMatch MatchAsciiKey(const String& line, Char stop, bool need_stop, const String& key,
                         bool case_sensitive) {
  const size_t key_size = key.size();
  bool equal = true;
  bool printable = true;
  size_t i = 0;
  for (; i < line.size(); ++i) {
    Char c = line[i];
    if (need_stop && c == stop) break;
    if (!IsPrintable(c)) {
      printable = false;
    } else if (equal && (i >= key_size ||
                         (case_sensitive ? c != key[i] : AsciiUpper(c) != AsciiUpper(key[i])))) {
      equal = false;
    }
  }
  if (need_stop && i == line.size()) return amNoSeparator;
  if (!printable) return amUnknown;
  return equal && i == key_size ? amEqual : amDifferent;
}

// Characters that separate and surround fields of delimited text unless StrictDelimiter.
bool IsBlank(Char c) { return c <= u' '; }

String QuotedField(const String& s, Char quote) {
  String out;
  out.reserve(s.size() + 2);
  out += quote;
  for (Char c : s) {
    out += c;
    if (c == quote) out += quote;
  }
  out += quote;
  return out;
}

// Decodes a text file's bytes: UTF-8 unless a UTF-16 byte-order mark says otherwise; a UTF-8
// mark is dropped and malformed input is replaced rather than rejected.
String DecodeText(const std::string& bytes) {
  if (bytes.size() >= 2) {
    auto b0 = static_cast<uint8_t>(bytes[0]);
    auto b1 = static_cast<uint8_t>(bytes[1]);
    bool le = b0 == 0xFF && b1 == 0xFE;
    bool be = b0 == 0xFE && b1 == 0xFF;
    if (le || be) {
      String out;
      out.reserve(bytes.size() / 2);
      for (size_t i = 2; i + 1 < bytes.size(); i += 2) {
        auto lo = static_cast<uint8_t>(bytes[le ? i : i + 1]);
        auto hi = static_cast<uint8_t>(bytes[le ? i + 1 : i]);
        out += static_cast<Char>(lo | (hi << 8));
      }
      if (bytes.size() % 2 != 0) out += u'\uFFFD';
      return out;
    }
  }
  std::string_view view(bytes);
  if (view.substr(0, 3) == kUtf8Bom) view.remove_prefix(3);
  return FromUtf8(view, TInvalidText::Replace);
}

}  // namespace

// --- TStrings ---------------------------------------------------------------------------------

void TStrings::IndexError(int32_t index) { throw EStringListError(ListIndexMessage(index)); }

int32_t TStrings::CompareStrings(const String& a, const String& b) const {
  return AnsiCompareText(a, b);
}

bool TStrings::EqualStrings(const String& a, const String& b) const {
  return CompareStrings(a, b) == 0;
}

void TStrings::Changing() {
  if (update_count_ == 0 && OnChanging) OnChanging(this);
}

void TStrings::Changed() {
  if (update_count_ == 0 && OnChange) OnChange(this);
}

void TStrings::SetUpdateState(bool updating) {
  if (updating) {
    Changing();
  } else {
    Changed();
  }
}

void TStrings::BeginUpdate() {
  if (update_count_ == 0) SetUpdateState(true);
  ++update_count_;
}

void TStrings::EndUpdate() {
  if (update_count_ == 0) return;
  --update_count_;
  if (update_count_ == 0) SetUpdateState(false);
}

int32_t TStrings::Add(const String& s) { return AddObject(s, nullptr); }

int32_t TStrings::AddObject(const String& s, TObject* obj) {
  int32_t index = Count();
  InsertObject(index, s, obj);
  return index;
}

TStrings& TStrings::AddPair(const String& name, const String& value, TObject* obj) {
  AddObject(name + name_value_separator_ + value, obj);
  return *this;
}

void TStrings::Append(const String& s) { Add(s); }

void TStrings::Insert(int32_t index, const String& s) { InsertObject(index, s, nullptr); }

void TStrings::AddStrings(const TStrings& source) {
  if (&source == this) {
    // Adding a list to itself copies the lines first, so the loop sees a fixed source.
    TStringDynArray lines = ToStringArray();
    std::vector<TObject*> objects;
    for (int32_t i = 0; i < Count(); ++i) objects.push_back(Objects(i));
    UpdateGuard guard(*this);
    for (size_t i = 0; i < lines.size(); ++i) AddObject(lines[i], objects[i]);
    return;
  }
  UpdateGuard guard(*this);
  for (int32_t i = 0; i < source.Count(); ++i) AddObject(source.Strings(i), source.Objects(i));
}

void TStrings::AddStrings(const TStringDynArray& source) {
  UpdateGuard guard(*this);
  for (const String& s : source) Add(s);
}

void TStrings::Exchange(int32_t index1, int32_t index2) {
  UpdateGuard guard(*this);
  String s1 = Strings(index1);
  TObject* o1 = Objects(index1);
  SetStrings(index1, Strings(index2));
  SetObjects(index1, Objects(index2));
  SetStrings(index2, s1);
  SetObjects(index2, o1);
}

void TStrings::Move(int32_t cur_index, int32_t new_index) {
  if (cur_index == new_index) return;
  UpdateGuard guard(*this);
  String s = Strings(cur_index);
  TObject* obj = Objects(cur_index);
  // Detach the object first so that a list owning its objects does not free it on Delete.
  SetObjects(cur_index, nullptr);
  Delete(cur_index);
  InsertObject(new_index, s, obj);
}

void TStrings::AssignSettings(const TStrings& source) {
  line_break_ = source.line_break_;
  trailing_line_break_ = source.trailing_line_break_;
  delimiter_ = source.delimiter_;
  quote_char_ = source.quote_char_;
  strict_delimiter_ = source.strict_delimiter_;
  name_value_separator_ = source.name_value_separator_;
  write_bom_ = source.write_bom_;
}

void TStrings::Assign(const TStrings& source) {
  if (&source == this) return;
  UpdateGuard guard(*this);
  Clear();
  AssignSettings(source);
  AddStrings(source);
}

bool TStrings::Equals(const TStrings& other) const {
  if (Count() != other.Count()) return false;
  for (int32_t i = 0; i < Count(); ++i) {
    if (Strings(i) != other.Strings(i)) return false;
  }
  return true;
}

int32_t TStrings::IndexOf(const String& s) const {
  for (int32_t i = 0; i < Count(); ++i) {
    if (EqualStrings(Strings(i), s)) return i;
  }
  return -1;
}

int32_t TStrings::IndexOfName(const String& name) const {
  String line_name;
  for (int32_t i = 0; i < Count(); ++i) {
    const String& line = Strings(i);
    size_t sep = line.find(name_value_separator_);
    if (sep == String::npos) continue;
    line_name.assign(line, 0, sep);
    if (EqualStrings(line_name, name)) return i;
  }
  return -1;
}

int32_t TStrings::IndexOfObject(const TObject* obj) const {
  for (int32_t i = 0; i < Count(); ++i) {
    if (Objects(i) == obj) return i;
  }
  return -1;
}

String TStrings::Names(int32_t index) const {
  const String& line = Strings(index);
  size_t sep = line.find(name_value_separator_);
  return sep == String::npos ? String() : line.substr(0, sep);
}

String TStrings::Values(const String& name) const {
  int32_t index = IndexOfName(name);
  return index < 0 ? String() : ValueFromIndex(index);
}

void TStrings::SetValues(const String& name, const String& value) {
  int32_t index = IndexOfName(name);
  if (value.empty()) {
    if (index >= 0) Delete(index);
    return;
  }
  String line = name + name_value_separator_ + value;
  if (index < 0) {
    Add(line);
  } else {
    SetStrings(index, line);
  }
}

String TStrings::ValueFromIndex(int32_t index) const {
  if (index < 0) return String();
  const String& line = Strings(index);
  size_t sep = line.find(name_value_separator_);
  return sep == String::npos ? String() : line.substr(sep + 1);
}

void TStrings::SetValueFromIndex(int32_t index, const String& value) {
  if (value.empty()) {
    if (index >= 0) Delete(index);
    return;
  }
  if (index < 0) {
    Add(name_value_separator_ + value);
    return;
  }
  SetStrings(index, Names(index) + name_value_separator_ + value);
}

String TStrings::Text() const {
  int32_t count = Count();
  size_t total = 0;
  for (int32_t i = 0; i < count; ++i) total += Strings(i).size() + line_break_.size();
  String out;
  out.reserve(total);
  for (int32_t i = 0; i < count; ++i) {
    out += Strings(i);
    if (trailing_line_break_ || i + 1 < count) out += line_break_;
  }
  return out;
}

void TStrings::SetText(const String& text) {
  UpdateGuard guard(*this);
  Clear();
  size_t n = text.size();
  size_t start = 0;
  if (line_break_ == u"\r\n") {
    while (start < n) {
      size_t end = start;
      while (end < n && text[end] != u'\r' && text[end] != u'\n') ++end;
      Add(text.substr(start, end - start));
      if (end < n && text[end] == u'\r') ++end;
      if (end < n && text[end] == u'\n') ++end;
      start = end;
    }
    return;
  }
  while (start < n) {
    size_t end = line_break_.empty() ? String::npos : text.find(line_break_, start);
    if (end == String::npos) {
      Add(text.substr(start));
      return;
    }
    Add(text.substr(start, end - start));
    start = end + line_break_.size();
  }
}

String TStrings::CommaText() const { return JoinDelimited(u',', u'"', false); }

void TStrings::SetCommaText(const String& text) { SplitDelimited(text, u',', u'"', false); }

String TStrings::DelimitedText() const {
  return JoinDelimited(delimiter_, quote_char_, strict_delimiter_);
}

void TStrings::SetDelimitedText(const String& text) {
  SplitDelimited(text, delimiter_, quote_char_, strict_delimiter_);
}

String TStrings::JoinDelimited(Char delimiter, Char quote, bool strict) const {
  int32_t count = Count();
  if (count == 1 && Strings(0).empty()) return String(2, quote);
  String out;
  for (int32_t i = 0; i < count; ++i) {
    const String& s = Strings(i);
    bool needs_quotes = std::any_of(s.begin(), s.end(), [&](Char c) {
      return c == quote || c == delimiter || c == 0 || (!strict && IsBlank(c));
    });
    if (i > 0) out += delimiter;
    out += needs_quotes ? QuotedField(s, quote) : s;
  }
  return out;
}

// Parses one field that starts with the quote character at `pos`. Doubled quotes stand for one;
// without a closing quote the field runs to the end of the text. Returns the position after it.
size_t TStrings::ReadQuotedField(const String& text, size_t pos, size_t end, Char quote,
                                 String& field) {
  field.clear();
  ++pos;
  while (pos < end) {
    if (text[pos] == quote) {
      if (pos + 1 < end && text[pos + 1] == quote) {
        field += quote;
        pos += 2;
        continue;
      }
      return pos + 1;
    }
    field += text[pos++];
  }
  return end;
}

void TStrings::SplitDelimited(const String& text, Char delimiter, Char quote, bool strict) {
  UpdateGuard guard(*this);
  Clear();
  size_t end = text.size();
  size_t pos = 0;
  auto skip_blanks = [&] {
    if (!strict) {
      while (pos < end && IsBlank(text[pos])) ++pos;
    }
  };
  skip_blanks();
  String field;
  while (pos < end) {
    if (text[pos] == quote) {
      pos = ReadQuotedField(text, pos, end, quote, field);
    } else {
      size_t start = pos;
      while (pos < end && text[pos] != delimiter && (strict || text[pos] > u' ')) ++pos;
      field.assign(text, start, pos - start);
    }
    Add(field);
    skip_blanks();
    if (pos < end && text[pos] == delimiter) {
      if (pos + 1 == end) Add(String());
      ++pos;
      skip_blanks();
    }
  }
}

TStringDynArray TStrings::ToStringArray() const {
  TStringDynArray out;
  out.reserve(static_cast<size_t>(Count()));
  for (int32_t i = 0; i < Count(); ++i) out.push_back(Strings(i));
  return out;
}

void TStrings::LoadFromStream(TStream& stream) {
  int64_t available = stream.Size() - stream.Position();
  std::string bytes;
  if (available > 0) {
    bytes.resize(static_cast<size_t>(available));
    bytes.resize(static_cast<size_t>(stream.Read(bytes.data(), available)));
  }
  SetText(DecodeText(bytes));
}

void TStrings::SaveToStream(TStream& stream) const {
  std::string bytes = write_bom_ ? kUtf8Bom : "";
  bytes += ToUtf8(Text(), TInvalidText::Replace);
  stream.WriteBuffer(bytes.data(), static_cast<int64_t>(bytes.size()));
}

void TStrings::LoadFromFile(const String& file_name) {
  TFileStream file(file_name, fmOpenRead | fmShareDenyWrite);
  LoadFromStream(file);
}

void TStrings::LoadFromFile(const std::string& file_name) {
  TFileStream file(file_name, fmOpenRead | fmShareDenyWrite);
  LoadFromStream(file);
}

void TStrings::SaveToFile(const String& file_name) const {
  TFileStream file(file_name, fmCreate);
  SaveToStream(file);
}

void TStrings::SaveToFile(const std::string& file_name) const {
  TFileStream file(file_name, fmCreate);
  SaveToStream(file);
}

// --- TStringList ------------------------------------------------------------------------------

TStringList::Item::Item(const String& t, TObject* o)
    : text(t), object(o), plain(IsPrintableAscii(t)) {}

TStringList::~TStringList() {
  if (owns_objects_) {
    for (Item& item : items_) delete item.object;
  }
}

void TStringList::CheckIndex(int32_t index) const {
  if (index < 0 || index >= Count()) IndexError(index);
}

void TStringList::CheckNotSorted() const {
  if (sorted_) throw EStringListError(u"Operation not allowed on sorted list");
}

const String& TStringList::Strings(int32_t index) const {
  CheckIndex(index);
  return items_[static_cast<size_t>(index)].text;
}

void TStringList::SetStrings(int32_t index, const String& s) {
  CheckNotSorted();
  CheckIndex(index);
  Changing();
  Item& item = items_[static_cast<size_t>(index)];
  item.text = s;
  item.plain = IsPrintableAscii(s);
  Changed();
}

TObject* TStringList::Objects(int32_t index) const {
  CheckIndex(index);
  return items_[static_cast<size_t>(index)].object;
}

void TStringList::SetObjects(int32_t index, TObject* obj) {
  CheckIndex(index);
  Changing();
  items_[static_cast<size_t>(index)].object = obj;
  Changed();
}

void TStringList::InsertObject(int32_t index, const String& s, TObject* obj) {
  CheckNotSorted();
  if (index < 0 || index > Count()) IndexError(index);
  InsertItem(index, s, obj);
}

void TStringList::InsertItem(int32_t index, const String& s, TObject* obj) {
  Changing();
  items_.emplace(items_.begin() + index, s, obj);
  Changed();
}

int32_t TStringList::AddObject(const String& s, TObject* obj) {
  int32_t index = Count();
  if (sorted_ && Find(s, index)) {
    if (duplicates_ == dupIgnore) return index;
    if (duplicates_ == dupError) {
      throw EStringListError(u"String list does not allow duplicates");
    }
  }
  InsertItem(index, s, obj);
  return index;
}

void TStringList::Delete(int32_t index) {
  CheckIndex(index);
  Changing();
  TObject* obj = items_[static_cast<size_t>(index)].object;
  items_.erase(items_.begin() + index);
  if (owns_objects_) delete obj;
  Changed();
}

void TStringList::Clear() {
  if (items_.empty()) return;
  Changing();
  std::vector<Item> old;
  old.swap(items_);
  if (owns_objects_) {
    for (Item& item : old) delete item.object;
  }
  Changed();
}

void TStringList::Exchange(int32_t index1, int32_t index2) {
  CheckIndex(index1);
  CheckIndex(index2);
  Changing();
  std::swap(items_[static_cast<size_t>(index1)], items_[static_cast<size_t>(index2)]);
  Changed();
}

void TStringList::Move(int32_t cur_index, int32_t new_index) {
  CheckNotSorted();
  CheckIndex(cur_index);
  CheckIndex(new_index);
  if (cur_index == new_index) return;
  Changing();
  auto first = items_.begin();
  if (cur_index < new_index) {
    std::rotate(first + cur_index, first + cur_index + 1, first + new_index + 1);
  } else {
    std::rotate(first + new_index, first + cur_index, first + cur_index + 1);
  }
  Changed();
}

void TStringList::Assign(const TStrings& source) {
  if (&source == this) return;
  const auto* list = dynamic_cast<const TStringList*>(&source);
  if (list == nullptr) {
    TStrings::Assign(source);
    return;
  }
  UpdateGuard guard(*this);
  Clear();
  AssignSettings(source);
  // The source's order is already right for the copied settings, so lines go over as they are.
  sorted_ = list->sorted_;
  duplicates_ = list->duplicates_;
  case_sensitive_ = list->case_sensitive_;
  Changing();
  items_ = list->items_;
  Changed();
}

int32_t TStringList::CompareStrings(const String& a, const String& b) const {
  return CollationCompare(a, b, case_sensitive_);
}

bool TStringList::EqualStrings(const String& a, const String& b) const {
  return CollationEqual(a, b, case_sensitive_);
}

int32_t TStringList::IndexOf(const String& s) const {
  if (sorted_) {
    int32_t index = 0;
    return Find(s, index) ? index : -1;
  }
  if (!IsPrintableAscii(s)) return TStrings::IndexOf(s);
  for (size_t i = 0; i < items_.size(); ++i) {
    const Item& item = items_[i];
    if (item.plain ? PlainEqual(item.text, s, case_sensitive_)
                   : CollationCompare(item.text, s, case_sensitive_) == 0) {
      return static_cast<int32_t>(i);
    }
  }
  return -1;
}

int32_t TStringList::IndexOfName(const String& name) const {
  if (!IsPrintableAscii(name)) return TStrings::IndexOfName(name);
  const Char separator = NameValueSeparator();
  // A name never holds the separator, so a key with one matches no plain line.
  const bool key_has_separator = name.find(separator) != String::npos;
  for (size_t i = 0; i < items_.size(); ++i) {
    const String& line = items_[i].text;
    if (items_[i].plain) {
      if (!key_has_separator && PlainNameEqual(line, separator, name, case_sensitive_)) {
        return static_cast<int32_t>(i);
      }
      continue;
    }
    AsciiMatch m = MatchAsciiKey(line, separator, true, name, case_sensitive_);
    if (m == amEqual || (m == amUnknown && CollationCompare(line.substr(0, line.find(separator)),
                                                            name, case_sensitive_) == 0)) {
      return static_cast<int32_t>(i);
    }
  }
  return -1;
}

bool TStringList::ComparesByCollation() const { return typeid(*this) == typeid(TStringList); }

int32_t TStringList::CompareItem(const Item& a, const String& b, bool b_plain) const {
  return CollationCompare(a.text, a.plain, b, b_plain, case_sensitive_);
}

bool TStringList::Find(const String& s, int32_t& index) const {
  const bool own = ComparesByCollation();
  const bool plain = IsPrintableAscii(s);
  auto compare = [&](const Item& item) {
    return own ? CompareItem(item, s, plain) : CompareStrings(item.text, s);
  };
  auto it = std::lower_bound(items_.begin(), items_.end(), s,
                             [&](const Item& item, const String&) { return compare(item) < 0; });
  index = static_cast<int32_t>(it - items_.begin());
  return it != items_.end() && compare(*it) == 0;
}

void TStringList::Sort() {
  if (sorted_ || items_.size() < 2) return;
  Changing();
  const bool own = ComparesByCollation();
  std::stable_sort(items_.begin(), items_.end(), [&](const Item& a, const Item& b) {
    return (own ? CompareItem(a, b.text, b.plain) : CompareStrings(a.text, b.text)) < 0;
  });
  Changed();
}

void TStringList::CustomSort(const TStringListSortCompare& compare) {
  if (sorted_ || items_.size() < 2) return;
  Changing();
  // The comparison takes indexes into the list, so sort a permutation against the unchanged
  // items and apply it afterwards.
  std::vector<int32_t> order(items_.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](int32_t a, int32_t b) { return compare(*this, a, b) < 0; });
  std::vector<Item> sorted;
  sorted.reserve(items_.size());
  for (int32_t i : order) sorted.push_back(std::move(items_[static_cast<size_t>(i)]));
  items_ = std::move(sorted);
  Changed();
}

void TStringList::SetSorted(bool value) {
  if (sorted_ == value) return;
  if (value) Sort();
  sorted_ = value;
}

void TStringList::SetCaseSensitive(bool value) {
  if (case_sensitive_ == value) return;
  case_sensitive_ = value;
  if (sorted_) {
    // Sort() leaves a list that is already Sorted alone, so drop the flag to re-sort.
    sorted_ = false;
    SetSorted(true);
  }
}

}  // namespace vex
