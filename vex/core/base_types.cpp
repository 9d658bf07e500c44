#include "vex/core/base_types.h"

#include <utility>

#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"

namespace vex {

namespace {

// Integers in name/value text are read by the platform's conversion (optional blanks and sign,
// decimal digits or "$"/"0x" hexadecimal, nothing after), the one every other unit uses.
int32_t IntOrZero(const String& s) { return StrToIntDef(s, 0); }

// Splits Init at the first delimiter into its trimmed left and right parts.
bool SplitTrimmed(const String& init, Char delimiter, String& left, String& right) {
  const auto at = init.find(delimiter);
  if (at == String::npos) return false;
  left = Trim(init.substr(0, at));
  right = Trim(init.substr(at + 1));
  return true;
}


// The record at index, -1 meaning the last one; nullptr when out of range.
template <class Recs>
auto RecAt(Recs& recs, int32_t index) -> decltype(&recs.front()) {
  if (recs.empty()) return nullptr;
  if (index == -1) return &recs.back();
  if (index < 0 || static_cast<size_t>(index) >= recs.size()) return nullptr;
  return &recs[static_cast<size_t>(index)];
}

template <class Rec>
int32_t IndexOfName(const std::vector<Rec>& recs, const String& name) {
  for (size_t i = 0; i < recs.size(); ++i) {
    if (recs[i].Name == name) return static_cast<int32_t>(i);
  }
  return -1;
}

template <class Rec, class ValueText>
String JoinAll(const std::vector<Rec>& recs, Char rec_delim, Char value_delim,
               ValueText value_text) {
  String text;
  for (const Rec& rec : recs) {
    text += rec.Name;
    text += value_delim;
    text += value_text(rec);
    text += rec_delim;
  }
  if (!text.empty()) text.pop_back();
  return text;
}

// The line that SaveToListEx writes for one record.
String OptionLine(const String& name, const String& value, Char value_delim, uint8_t option) {
  switch (option) {
    case 1:
      return name;
    case 2:
      return value;
    case 3:
      return name + value_delim + value;
    case 4:
      return value + value_delim + name;
    default:
      return String();
  }
}

}  // namespace

// --- TNameValue -------------------------------------------------------------------------------

TNameValue TNameValue::Create(const String& AName, const String& AValue) {
  return TNameValue{AName, AValue};
}

TNameValue TNameValue::Create(const String& Init, bool DoSwap, Char Delimiter) {
  String left;
  String right;
  if (!SplitTrimmed(Init, Delimiter, left, right)) return TNameValue{Init, String()};
  if (DoSwap) std::swap(left, right);
  return TNameValue{std::move(left), std::move(right)};
}

String TNameValue::JoinFields(Char Delimiter) const {
  return Name.empty() ? Value : Name + Delimiter + Value;
}

// --- TNameValueInt ------------------------------------------------------------------------------

TNameValueInt TNameValueInt::Create(const String& AName, int32_t AValue) {
  return TNameValueInt{AName, AValue};
}

TNameValueInt TNameValueInt::Create(const String& Init, bool DoSwap) {
  String left;
  String right;
  if (!SplitTrimmed(Init, u'=', left, right)) {
    int32_t value = 0;
    if (TryStrToInt(Init, value)) return TNameValueInt{String(), value};
    return TNameValueInt{Init, 0};
  }
  if (DoSwap) return TNameValueInt{std::move(right), IntOrZero(left)};
  return TNameValueInt{std::move(left), IntOrZero(right)};
}

bool TNameValueInt::Accept(const String& S) {
  Value = 0;
  String left;
  String right;
  if (!SplitTrimmed(S, u'=', left, right)) return false;
  Name = std::move(left);
  int32_t value = 0;
  const bool ok = TryStrToInt(right, value);
  Value = ok ? value : 0;
  return ok;
}

String TNameValueInt::JoinFields() const {
  return Name.empty() ? IntToStr(Value) : Name + u'=' + IntToStr(Value);
}

// --- TNameValueArrayRec ---------------------------------------------------------------------

TNameValueArrayRec TNameValueArrayRec::Create(Char RecDelim, Char ValueDelim) {
  TNameValueArrayRec rec;
  rec.fRecDelim = RecDelim;
  rec.fValueDelim = ValueDelim;
  return rec;
}

void TNameValueArrayRec::Clear() { Recs.clear(); }

int32_t TNameValueArrayRec::IndexOf(const String& AName) const {
  return IndexOfName(Recs, AName);
}

int32_t TNameValueArrayRec::AddNameValue(const String& AName, const String& AValue) {
  const int32_t index = IndexOf(AName);
  if (index >= 0) {
    Recs[static_cast<size_t>(index)].Value = AValue;
    return index;
  }
  Recs.push_back(TNameValue{AName, AValue});
  return static_cast<int32_t>(Recs.size()) - 1;
}

int32_t TNameValueArrayRec::FindValue(const String& AName, String& AValue) const {
  AValue.clear();
  const int32_t index = IndexOf(AName);
  if (index >= 0) AValue = Recs[static_cast<size_t>(index)].Value;
  return index;
}

bool TNameValueArrayRec::GetRecBy(int32_t Index, TNameValue& Rec) const {
  Rec.Name.clear();
  Rec.Value.clear();
  if (Index < 0 || static_cast<size_t>(Index) >= Recs.size()) return false;
  Rec = Recs[static_cast<size_t>(Index)];
  return true;
}

TNameValue* TNameValueArrayRec::RecPtr(int32_t Index) { return RecAt(Recs, Index); }

const TNameValue* TNameValueArrayRec::RecPtr(int32_t Index) const {
  return RecAt(Recs, Index);
}

int32_t TNameValueArrayRec::ValueCount() const { return static_cast<int32_t>(Recs.size()); }

String TNameValueArrayRec::JoinRecs() const {
  return JoinAll(Recs, fRecDelim, fValueDelim, [](const TNameValue& rec) { return rec.Value; });
}

void TNameValueArrayRec::SaveToList(TStrings& List) const {
  TStringsUpdate update(List);
  for (const TNameValue& rec : Recs) List.Add(rec.Name + fValueDelim + rec.Value);
}

void TNameValueArrayRec::SaveToListEx(TStrings& List, uint8_t Option) const {
  TStringsUpdate update(List);
  List.Clear();
  for (const TNameValue& rec : Recs) {
    List.Add(OptionLine(rec.Name, rec.Value, fValueDelim, Option));
  }
}

// --- TNameValueIntArrayRec ------------------------------------------------------------------

TNameValueIntArrayRec TNameValueIntArrayRec::Create(Char RecDelim, Char ValueDelim) {
  TNameValueIntArrayRec rec;
  rec.fRecDelim = RecDelim;
  rec.fValueDelim = ValueDelim;
  return rec;
}

void TNameValueIntArrayRec::Clear() { Recs.clear(); }

int32_t TNameValueIntArrayRec::IndexOf(const String& AName) const {
  return IndexOfName(Recs, AName);
}

int32_t TNameValueIntArrayRec::AddNameValue(const String& AName, int32_t AValue) {
  const int32_t index = IndexOf(AName);
  if (index >= 0) {
    Recs[static_cast<size_t>(index)].Value = AValue;
    return index;
  }
  Recs.push_back(TNameValueInt{AName, AValue});
  return static_cast<int32_t>(Recs.size()) - 1;
}

int32_t TNameValueIntArrayRec::FindValue(const String& AName, int32_t& AValue) const {
  const int32_t index = IndexOf(AName);
  if (index >= 0) AValue = Recs[static_cast<size_t>(index)].Value;
  return index;
}

bool TNameValueIntArrayRec::GetRecBy(int32_t Index, TNameValueInt& Rec) const {
  Rec.Name.clear();
  Rec.Value = -1;
  if (Index < 0 || static_cast<size_t>(Index) >= Recs.size()) return false;
  Rec = Recs[static_cast<size_t>(Index)];
  return true;
}

TNameValueInt* TNameValueIntArrayRec::RecPtr(int32_t Index) { return RecAt(Recs, Index); }

const TNameValueInt* TNameValueIntArrayRec::RecPtr(int32_t Index) const {
  return RecAt(Recs, Index);
}

int32_t TNameValueIntArrayRec::ValueCount() const { return static_cast<int32_t>(Recs.size()); }

String TNameValueIntArrayRec::JoinRecs() const {
  return JoinAll(Recs, fRecDelim, fValueDelim,
                 [](const TNameValueInt& rec) { return IntToStr(rec.Value); });
}

void TNameValueIntArrayRec::SaveToList(TStrings& List, bool UseObjects) const {
  TStringsUpdate update(List);
  for (const TNameValueInt& rec : Recs) {
    if (UseObjects) {
      List.AddObject(rec.Name, TStrings::TagToObject(rec.Value));
    } else {
      List.Add(rec.Name + fValueDelim + IntToStr(rec.Value));
    }
  }
}

void TNameValueIntArrayRec::SaveToListEx(TStrings& List, uint8_t Option) const {
  TStringsUpdate update(List);
  for (const TNameValueInt& rec : Recs) {
    List.Add(OptionLine(rec.Name, IntToStr(rec.Value), fValueDelim, Option));
  }
}

// --- TFileDialogParams ----------------------------------------------------------------------

TFileDialogParams TFileDialogParams::Create(const String& ADlgTitle, const String& AFileHint,
                                            const String& AFileExt) {
  return TFileDialogParams{ADlgTitle, AFileHint, AFileExt};
}

// --- free functions ---------------------------------------------------------------------------

TStrRec GetStrRec(const String& S) { return TStrRec{S}; }

TListRec GetListRec(const std::vector<void*>& Items) {
  TListRec rec{std::make_unique<TList>()};
  for (void* item : Items) rec.List->Add(item);
  return rec;
}

TStrListRec GetStrListRec(const String& S) {
  TStrListRec rec{std::make_unique<TStringList>()};
  rec.List->SetText(S);
  return rec;
}

}  // namespace vex
