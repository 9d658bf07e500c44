// String lists: ordered UTF-16 lines, each with an attached TObject* slot that holds either an
// object or an integer tag. TStrings is the abstract interface every list-shaped class offers
// (text, delimited text, name=value access, streaming, update notifications); TStringList is
// the concrete list, optionally sorted, with duplicate control and owned objects.
//
//   TStringList list;
//   list.SetCommaText(u"a=1,\"b c=2\"");   // two lines: a=1 and b c=2
//   list.Values(u"B C");                     // -> u"2" (names compare case-insensitively)
//   list.Text();                             // -> u"a=1\r\nb c=2\r\n"
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "vex/platform/object.h"
#include "vex/platform/types.h"

namespace vex {

class TStream;
class TStringList;

/// What a sorted TStringList does when a line equal to an existing one is added.
enum TDuplicates : uint8_t { dupIgnore, dupAccept, dupError };

/// The notification type of OnChange and OnChanging.
using TNotifyEvent = std::function<void(TObject* sender)>;

/// The abstract list of lines with attached objects. Indexes are 0-based; a bad index raises
/// EStringListError "List index out of bounds (%d)". Every change fires OnChanging before and
/// OnChange after it, except inside BeginUpdate/EndUpdate, where the pair fires once for the
/// outermost update (OnChanging at the first BeginUpdate, OnChange at the last EndUpdate).
class TStringsUpdate;

class TStrings : public TObject {
 public:
  TStrings() = default;
  TStrings(const TStrings&) = delete;
  TStrings& operator=(const TStrings&) = delete;
  ~TStrings() override = default;

  // --- Core access (implemented by descendants) ---------------------------------------------

  virtual int32_t Count() const = 0;
  /// The line at `index`.
  virtual const String& Strings(int32_t index) const = 0;
  const String& operator[](int32_t index) const { return Strings(index); }
  /// Replaces the line at `index`, keeping its object.
  virtual void SetStrings(int32_t index, const String& s) = 0;
  /// The object (or tag) attached to the line at `index`; nullptr when none.
  virtual TObject* Objects(int32_t index) const = 0;
  virtual void SetObjects(int32_t index, TObject* obj) = 0;
  /// Inserts a line with an object before `index` (0..Count()).
  virtual void InsertObject(int32_t index, const String& s, TObject* obj) = 0;
  virtual void Delete(int32_t index) = 0;
  virtual void Clear() = 0;

  /// Integer tags travel in the object slot; these convert between the two forms.
  static TObject* TagToObject(intptr_t tag) { return reinterpret_cast<TObject*>(tag); }
  static intptr_t ObjectToTag(const TObject* obj) { return reinterpret_cast<intptr_t>(obj); }

  // --- Adding and moving lines --------------------------------------------------------------

  /// Adds a line at the end (a sorted list puts it in order) and returns its index.
  virtual int32_t Add(const String& s);
  virtual int32_t AddObject(const String& s, TObject* obj);
  /// Adds the line name + NameValueSeparator + value; returns *this for chaining.
  TStrings& AddPair(const String& name, const String& value, TObject* obj = nullptr);
  /// Add without a result.
  void Append(const String& s);
  void Insert(int32_t index, const String& s);
  /// Adds every line (with its object) of `source`, inside one update.
  void AddStrings(const TStrings& source);
  void AddStrings(const TStringDynArray& source);
  /// Swaps two lines with their objects.
  virtual void Exchange(int32_t index1, int32_t index2);
  /// Moves the line at `cur_index` so that it ends at `new_index`.
  virtual void Move(int32_t cur_index, int32_t new_index);

  /// Replaces this list's lines and objects by those of `source`, and copies the text settings
  /// (LineBreak, Delimiter, QuoteChar, NameValueSeparator, StrictDelimiter, TrailingLineBreak,
  /// WriteBOM). A TStringList copies its own settings too (see TStringList::Assign).
  virtual void Assign(const TStrings& source);
  /// True when both hold the same lines in the same order (compared exactly; objects ignored).
  bool Equals(const TStrings& other) const;

  // --- Searching ----------------------------------------------------------------------------

  /// Index of the first line equal to `s` by CompareStrings, or -1.
  virtual int32_t IndexOf(const String& s) const;
  /// Index of the first line whose text before its first NameValueSeparator equals `name`
  /// by CompareStrings (no trimming), or -1. Lines without a separator never match.
  virtual int32_t IndexOfName(const String& name) const;
  /// Index of the first line whose object is `obj`, or -1.
  int32_t IndexOfObject(const TObject* obj) const;

  // --- Name=value access --------------------------------------------------------------------

  /// The text before the first NameValueSeparator of the line; empty when it has none.
  String Names(int32_t index) const;
  /// The text after the name of the first line named `name`; empty when there is none.
  String Values(const String& name) const;
  /// Sets the value of the first line named `name`, adding name=value when there is none.
  /// An empty value deletes the line instead (deliberately, as the platform's lists do).
  void SetValues(const String& name, const String& value);
  /// The text after the first NameValueSeparator of the line; empty when it has none.
  String ValueFromIndex(int32_t index) const;
  /// Rewrites the line as Names(index) + separator + value; an empty value deletes the line.
  /// A negative index adds a new line.
  void SetValueFromIndex(int32_t index, const String& value);

  // --- Whole-list text ----------------------------------------------------------------------

  /// Every line followed by LineBreak (the last one only when TrailingLineBreak is on).
  String Text() const;
  /// Replaces the lines by those of `text`. With the default LineBreak (CR LF) the text splits
  /// at CR LF, LF or CR; with another LineBreak it splits at that string only. A final line
  /// break does not start an extra empty line.
  void SetText(const String& text);
  /// DelimitedText with ',' as Delimiter, '"' as QuoteChar and StrictDelimiter off.
  String CommaText() const;
  void SetCommaText(const String& text);
  /// Lines joined by Delimiter. A line is quoted (QuoteChar doubled inside) when it contains
  /// the Delimiter, QuoteChar or NUL, or, unless StrictDelimiter, any character up to ' '.
  /// A list of one empty line gives two QuoteChars; other empty lines stay unquoted.
  String DelimitedText() const;
  /// Splits at Delimiter; a field starting with QuoteChar runs to the matching quote (doubled
  /// quotes stand for one; an unclosed quote runs to the end). Unless StrictDelimiter,
  /// characters up to ' ' also separate fields and blanks around fields are dropped. A trailing
  /// Delimiter gives a final empty line.
  void SetDelimitedText(const String& text);
  /// The lines as a string array.
  TStringDynArray ToStringArray() const;

  // --- Settings -----------------------------------------------------------------------------

  const String& LineBreak() const { return line_break_; }
  void SetLineBreak(const String& value) { line_break_ = value; }
  bool TrailingLineBreak() const { return trailing_line_break_; }
  void SetTrailingLineBreak(bool value) { trailing_line_break_ = value; }
  Char Delimiter() const { return delimiter_; }
  void SetDelimiter(Char value) { delimiter_ = value; }
  Char QuoteChar() const { return quote_char_; }
  void SetQuoteChar(Char value) { quote_char_ = value; }
  bool StrictDelimiter() const { return strict_delimiter_; }
  void SetStrictDelimiter(bool value) { strict_delimiter_ = value; }
  Char NameValueSeparator() const { return name_value_separator_; }
  void SetNameValueSeparator(Char value) { name_value_separator_ = value; }
  /// Whether SaveToStream/SaveToFile start with the UTF-8 byte-order mark (off by default).
  bool WriteBOM() const { return write_bom_; }
  void SetWriteBOM(bool value) { write_bom_ = value; }

  // --- Streams and files --------------------------------------------------------------------

  /// Replaces the lines by the text from the stream's position to its end. The text is UTF-8
  /// (a byte-order mark is skipped; a UTF-16 byte-order mark selects UTF-16); malformed bytes
  /// become U+FFFD.
  void LoadFromStream(TStream& stream);
  /// Writes Text() as UTF-8 at the stream's position (after a byte-order mark when WriteBOM).
  void SaveToStream(TStream& stream) const;
  /// As LoadFromStream/SaveToStream on a file; failures raise EFOpenError/EFCreateError.
  void LoadFromFile(const String& file_name);
  void LoadFromFile(const std::string& file_name);
  void SaveToFile(const String& file_name) const;
  void SaveToFile(const std::string& file_name) const;

  // --- Updates and notifications ------------------------------------------------------------

  void BeginUpdate();
  void EndUpdate();
  int32_t UpdateCount() const { return update_count_; }
  TNotifyEvent OnChange;
  TNotifyEvent OnChanging;

 protected:
  /// The comparison of IndexOf and IndexOfName: AnsiCompareText here, overridden by lists
  /// with a case-sensitivity switch.
  virtual int32_t CompareStrings(const String& a, const String& b) const;
  /// CompareStrings(a, b) == 0, possibly by a faster route.
  virtual bool EqualStrings(const String& a, const String& b) const;
  /// Fire OnChanging/OnChange unless an update is running.
  void Changing();
  void Changed();
  /// Called with true when the outermost update begins and false when it ends.
  virtual void SetUpdateState(bool updating);
  /// Copies the text settings only (used by Assign).
  void AssignSettings(const TStrings& source);
  /// Raises EStringListError "List index out of bounds (%d)".
  [[noreturn]] static void IndexError(int32_t index);

  using UpdateGuard = TStringsUpdate;

 private:
  String JoinDelimited(Char delimiter, Char quote, bool strict) const;
  void SplitDelimited(const String& text, Char delimiter, Char quote, bool strict);
  static size_t ReadQuotedField(const String& text, size_t pos, size_t end, Char quote,
                                String& field);

  String line_break_ = u"\r\n";
  bool trailing_line_break_ = true;
  Char delimiter_ = u',';
  Char quote_char_ = u'"';
  bool strict_delimiter_ = false;
  Char name_value_separator_ = u'=';
  bool write_bom_ = false;
  int32_t update_count_ = 0;
};

/// Holds a list's BeginUpdate for a scope, so that observers see one change and the update
/// ends also when an error escapes.
///
///   { TStringsUpdate update(list); list.Clear(); list.AddStrings(lines); }
class TStringsUpdate {
 public:
  explicit TStringsUpdate(TStrings& list) : list_(list) { list_.BeginUpdate(); }
  ~TStringsUpdate() { list_.EndUpdate(); }
  TStringsUpdate(const TStringsUpdate&) = delete;
  TStringsUpdate& operator=(const TStringsUpdate&) = delete;

 private:
  TStrings& list_;
};

/// The comparison callback of TStringList::CustomSort: < 0, 0 or > 0 for the lines at the two
/// indexes.
using TStringListSortCompare =
    std::function<int32_t(TStringList& list, int32_t index1, int32_t index2)>;

/// The concrete string list. Unsorted: Add is amortised O(1), IndexOf is linear. Sorted: lines
/// are kept in CompareStrings order, Add inserts in place and IndexOf is a binary search.
/// Comparisons use AnsiCompareText, or AnsiCompareStr when CaseSensitive.
class TStringList : public TStrings {
 public:
  TStringList() = default;
  /// A list that frees the attached objects on Delete, Clear and destruction.
  explicit TStringList(bool owns_objects) : owns_objects_(owns_objects) {}
  ~TStringList() override;

  int32_t Count() const override { return static_cast<int32_t>(items_.size()); }
  const String& Strings(int32_t index) const override;
  /// Raises EStringListError "Operation not allowed on sorted list" when Sorted.
  void SetStrings(int32_t index, const String& s) override;
  TObject* Objects(int32_t index) const override;
  /// Replaces the object only; an owned previous object is not freed.
  void SetObjects(int32_t index, TObject* obj) override;
  /// Raises EStringListError "Operation not allowed on sorted list" when Sorted.
  void InsertObject(int32_t index, const String& s, TObject* obj) override;
  void Delete(int32_t index) override;
  void Clear() override;

  /// On a sorted list: the line goes to its place; an equal line already present is handled by
  /// Duplicates (dupIgnore returns the existing index and does not take `obj`; dupError raises
  /// EStringListError "String list does not allow duplicates"). Unsorted lists accept any line.
  int32_t AddObject(const String& s, TObject* obj) override;
  /// Swaps two lines. Deliberately allowed on a sorted list, which may then be out of order.
  void Exchange(int32_t index1, int32_t index2) override;
  /// Raises EStringListError "Operation not allowed on sorted list" when Sorted.
  void Move(int32_t cur_index, int32_t new_index) override;
  /// As TStrings::Assign; from another TStringList it also copies Sorted, Duplicates and
  /// CaseSensitive (not OwnsObjects). The objects are shared, not copied, so at most one of the
  /// two lists may own them.
  void Assign(const TStrings& source) override;

  int32_t IndexOf(const String& s) const override;
  int32_t IndexOfName(const String& name) const override;

  /// Binary search for `s` in a sorted list: true when found, `index` then holds the first
  /// equal line; otherwise `index` is where `s` would be inserted.
  bool Find(const String& s, int32_t& index) const;
  /// Sorts by CompareStrings (stable). Does nothing on a list that is already Sorted.
  virtual void Sort();
  /// Sorts with the caller's comparison (stable). Does nothing on a Sorted list.
  virtual void CustomSort(const TStringListSortCompare& compare);

  bool Sorted() const { return sorted_; }
  /// Turning Sorted on sorts the list.
  void SetSorted(bool value);
  TDuplicates Duplicates() const { return duplicates_; }
  void SetDuplicates(TDuplicates value) { duplicates_ = value; }
  bool CaseSensitive() const { return case_sensitive_; }
  /// Changing the case sensitivity of a sorted list re-sorts it.
  void SetCaseSensitive(bool value);
  bool OwnsObjects() const { return owns_objects_; }
  void SetOwnsObjects(bool value) { owns_objects_ = value; }

 protected:
  int32_t CompareStrings(const String& a, const String& b) const override;
  bool EqualStrings(const String& a, const String& b) const override;

 private:
  struct Item {
    Item(const String& t, TObject* o);
    String text;
    TObject* object;
    bool plain;  // text is printable ASCII, which has a fast exact collation order
  };

  // True unless a derived class may have replaced CompareStrings: then sorting and searching
  // compare items directly, using what is known about them.
  bool ComparesByCollation() const;
  int32_t CompareItem(const Item& a, const String& b, bool b_plain) const;

  void CheckIndex(int32_t index) const;
  void CheckNotSorted() const;
  void InsertItem(int32_t index, const String& s, TObject* obj);

  std::vector<Item> items_;
  bool sorted_ = false;
  TDuplicates duplicates_ = dupIgnore;
  bool case_sensitive_ = false;
  bool owns_objects_ = false;
};

}  // namespace vex
