// TStringUtils, quoting, packing and formatting: quote removal and re-quoting, the last-character
// test, number templates filled with a text and a value, and packing a list into one line.
#include <algorithm>
#include <cstddef>

#include "vex/platform/format.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/text/string_utils.h"

namespace vex {

namespace {

// Opening and closing characters of the quote pairs RemoveQuotes recognises.
struct QuotePair {
  Char open;
  Char close;
};
constexpr QuotePair kQuotePairs[] = {
    {u'"', u'"'},           {u'\'', u'\''}, {u'`', u'`'}, {u'\u00AB', u'\u00BB'},  // « »
    {u'\u201C', u'\u201D'},                                                        // “ ”
    {u'\u201E', u'\u201C'},                                                        // „ “
    {u'\u201E', u'\u201D'},                                                        // „ ”
    {u'\u2018', u'\u2019'},                                                        // ‘ ’
    {u'\u2039', u'\u203A'},                                                        // ‹ ›
};

// Keeps a list inside one update bracket, closed also when filling it fails.
class UpdateScope {
 public:
  explicit UpdateScope(TStrings& list) : list_(list) { list_.BeginUpdate(); }
  ~UpdateScope() { list_.EndUpdate(); }
  UpdateScope(const UpdateScope&) = delete;
  UpdateScope& operator=(const UpdateScope&) = delete;

 private:
  TStrings& list_;
};

}  // namespace

String TStringUtils::RemoveQuotes(const String& S, String* Quotes) {
  if (Quotes) Quotes->clear();
  if (S.size() < 2) return S;
  const Char first = S.front();
  const Char last = S.back();
  for (const QuotePair& pair : kQuotePairs) {
    if (first == pair.open && last == pair.close) {
      if (Quotes) *Quotes = String{first, last};
      return S.substr(1, S.size() - 2);
    }
  }
  return S;
}

String TStringUtils::QuotedStr(const String& S, const String& Quotes) {
  if (Quotes.empty()) return S;
  const Char open = Quotes[0];
  const Char close = Quotes.size() > 1 ? Quotes[1] : Quotes[0];
  String result;
  result.reserve(S.size() + 2);
  result += open;
  result += S;
  result += close;
  return result;
}

String TStringUtils::QuotedStr(const String& S, Char Quote) {
  return QuotedStr(S, String(1, Quote));
}

int32_t TStringUtils::CheckForLastChar(String& S, Char C, bool DoDelete) {
  if (S.empty() || S.back() != C) return 0;
  const int32_t position = Length(S);
  if (DoDelete) S.pop_back();
  return position;
}

String TStringUtils::ApplyFormat(const String& Fmt, const String& S, int32_t Value, bool Inverse) {
  // A template without a text place ("%d", "%.3d") takes the value alone, whatever the order.
  if (Pos(u"%s", Fmt) == 0) return Format(Fmt, {Value});
  if (Inverse) return Format(Fmt, {S, Value});
  return Format(Fmt, {Value, S});
}

int32_t TStringUtils::CommonCharCount(const TStrings& List, int32_t MinCount, int32_t MaxCount) {
  const int32_t count = List.Count();
  if (count == 0 || MinCount < 1) return 0;
  const String& first = List[0];
  if (count == 1) return std::min(std::max(Length(first), MinCount), std::max(MaxCount, 0));
  size_t common = std::min(first.size(), static_cast<size_t>(std::max(MaxCount, 0)));
  for (int32_t i = 1; i < count && common > 0; ++i) {
    const String& item = List[i];
    const size_t limit = std::min(common, item.size());
    size_t k = 0;
    while (k < limit && item[k] == first[k]) ++k;
    common = k;
  }
  const int32_t result = static_cast<int32_t>(common);
  return result >= MinCount ? result : 0;
}

void TStringUtils::PackList(const TStrings& Source, TStrings& Dest) {
  const int32_t count = Source.Count();
  if (count < 2) {
    if (&Source == &Dest) return;
    UpdateScope update(Dest);
    Dest.Clear();
    Dest.AddStrings(Source);
    return;
  }
  const int32_t prefix_length = CommonCharCount(Source, 1);
  String line = Copy(Source[0], 1, prefix_length);
  line += u'{';
  for (int32_t i = 0; i < count; ++i) {
    if (i > 0) line += u'|';
    line += Copy(Source[i], prefix_length + 1);
  }
  line += u'}';
  UpdateScope update(Dest);
  Dest.Clear();
  Dest.Add(line);
}

}  // namespace vex
