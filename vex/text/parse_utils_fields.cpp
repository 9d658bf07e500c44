// TParseUtils: walking delimited fields, name=value lookups, name/value records and integers.
#include <algorithm>
#include <cstdint>
#include <utility>

#include "vex/platform/sysutils.h"
#include "vex/text/integer_utils.h"
#include "vex/text/mem_utils.h"
#include "vex/text/parse_utils.h"

namespace vex {

namespace {

bool IsBlank(Char c) { return c <= 32; }

// The field walk step; see TParseUtils::ExtractParamField. Works on 0-based indexes internally
// and keeps Position 1-based.
String TakeField(const String& s, int32_t& position, Char delim) {
  const size_t len = s.size();
  const size_t start = position < 1 ? 0 : static_cast<size_t>(position) - 1;
  size_t p = len;  // 0-based index of the delimiter, or len when there is none
  if (start < len) p = std::min(s.find(delim, start), len);
  size_t b = std::min(start, p);
  size_t e = p;
  while (b < e && IsBlank(s[b])) ++b;
  while (e > b && IsBlank(s[e - 1])) --e;
  String field(s, b, e - b);
  size_t next = p + 1;  // 1-based position of the delimiter (len + 1 when there is none)
  if (field.empty()) {
    ++next;
  } else if (len > next && s[next - 1] == delim) {
    // A final delimiter is not stepped over: the next call meets it and yields an empty field.
    ++next;
  }
  position = static_cast<int32_t>(next);
  return field;
}

// Calls f(field, index) for every field of s; f returns false to stop. Returns the number of
// fields handed to f.
template <class F>
int32_t WalkFields(const String& s, Char delim, F&& f) {
  const int64_t len = static_cast<int64_t>(s.size());
  int32_t position = 1;
  int32_t index = 0;
  while (position <= len) {
    String field = TakeField(s, position, delim);
    ++index;
    if (!f(std::move(field), index - 1)) break;
  }
  return index;
}

// Filling tens of megabytes of string headers otherwise spends about half its time in page
// faults.
void AdviseLargeArray(TStringDynArray& tokens) {
  TMemUtils::AdviseHugePages(tokens.data(), tokens.capacity() * sizeof(String));
}

int32_t LastOrIndex(int32_t index, size_t size) {
  return index < 0 ? static_cast<int32_t>(size) - 1 : index;
}

}  // namespace

// --- walking delimited fields ------------------------------------------------------------------

String TParseUtils::ExtractParamField(const String& S, int32_t& Position, Char Delim) {
  return TakeField(S, Position, Delim);
}

String TParseUtils::ExtractParamFieldByIndex(const String& S, int32_t Index, Char Delim) {
  String result;
  if (Index < 0) return result;
  WalkFields(S, Delim, [&](String&& field, int32_t i) {
    if (i != Index) return true;
    result = std::move(field);
    return false;
  });
  return result;
}

int32_t TParseUtils::ExtractParamFields(const String& S, const TFieldProc& Proc, Char Delim) {
  return WalkFields(S, Delim, [&](String&& field, int32_t i) {
    if (Proc) Proc(field, i);
    return true;
  });
}

int32_t TParseUtils::ExtractParamFieldsEx(const String& S, const TRefKeyValStrProc& Proc,
                                          Char Delim, Char ValueDelim) {
  return WalkFields(S, Delim, [&](String&& field, int32_t) {
    if (Proc) {
      const TSplitResult parts = SplitStr(field, ValueDelim, true);
      Proc(parts.s1, parts.s2, field);
    }
    return true;
  });
}

int32_t TParseUtils::ExtractParamFieldsWithFunc(const String& S, const TFieldFunc& Func,
                                                Char Delim) {
  int32_t accepted = 0;
  WalkFields(S, Delim, [&](String&& field, int32_t i) {
    if (Func && !Func(field, i)) return false;
    ++accepted;
    return true;
  });
  return accepted;
}

TStringDynArray TParseUtils::ExtractTokens(const String& S, Char Delim) {
  TStringDynArray tokens;
  if (S.empty()) return tokens;
  tokens.reserve(static_cast<size_t>(std::count(S.begin(), S.end(), Delim)) + 1);
  AdviseLargeArray(tokens);
  WalkFields(S, Delim, [&](String&& field, int32_t) {
    tokens.push_back(std::move(field));
    return true;
  });
  return tokens;
}

TStringDynArray TParseUtils::ExtractTrimmedTokens(const String& S, Char Delim) {
  // The walk trims every field already, so the second trim has nothing left to remove.
  return ExtractTokens(S, Delim);
}

int32_t TParseUtils::ExtractParamFieldsToArray(const String& S, TStringDynArray& Tokens,
                                               Char Delim) {
  Tokens = ExtractTokens(S, Delim);
  return static_cast<int32_t>(Tokens.size());
}

int32_t TParseUtils::ExtractParamFieldsToList(const String& S, TStrings& List, Char Delim) {
  TStringsUpdate guard(List);
  List.Clear();
  return WalkFields(S, Delim, [&](String&& field, int32_t) {
    List.Add(field);
    return true;
  });
}

int32_t TParseUtils::CopyTokens(const String& S, TTokenArray& Tokens, Char Delim) {
  int32_t count = 0;
  WalkFields(S, Delim, [&](String&& field, int32_t i) {
    Tokens[static_cast<size_t>(i)] = std::move(field);
    count = i + 1;
    return count < kMaxCopyTokens;
  });
  for (size_t i = static_cast<size_t>(count); i < Tokens.size(); ++i) Tokens[i].clear();
  return count;
}

TIntegerDynArray TParseUtils::SplitIntoIntegers(const String& S, Char Delim) {
  TIntegerDynArray values;
  WalkFields(S, Delim, [&](String&& field, int32_t) {
    values.push_back(StrToInt(field));
    return true;
  });
  return values;
}

TIntegerDynArray TParseUtils::ExtractIntegers(const String& S, Char Delim) {
  TIntegerDynArray values;
  WalkFields(S, Delim, [&](String&& field, int32_t) {
    values.push_back(StrToIntDef(field, 0));
    return true;
  });
  return values;
}

TBytes TParseUtils::ExtractBytes(const String& S, Char Delim) {
  TBytes bytes;
  WalkFields(S, Delim, [&](String&& field, int32_t) {
    bytes.push_back(static_cast<uint8_t>(StrToIntDef(field, 0) & 0xFF));
    return true;
  });
  return bytes;
}

void TParseUtils::EnumStringItems(const TStringDynArray& Items, const TFieldProc& Proc) {
  if (!Proc) return;
  for (size_t i = 0; i < Items.size(); ++i) Proc(Items[i], static_cast<int32_t>(i));
}

TSplitRec TParseUtils::ExtractTokensRec(const String& S, Char Delim) {
  TSplitRec rec;
  String* slots[] = {&rec.s1, &rec.s2, &rec.s3};
  WalkFields(S, Delim, [&](String&& field, int32_t i) {
    *slots[i] = std::move(field);
    return i < 2;
  });
  return rec;
}

// --- name=value lookups ------------------------------------------------------------------------

int32_t TParseUtils::IndexOfName(const TStringDynArray& Items, const String& Name, String* Value,
                                 Char Delim, bool RequireValue) {
  for (size_t i = 0; i < Items.size(); ++i) {
    TSplitResult parts = SplitStr(Items[i], Delim, true);
    if (parts.s1 != Name || (RequireValue && parts.s2.empty())) continue;
    if (Value) *Value = std::move(parts.s2);
    return static_cast<int32_t>(i);
  }
  return -1;
}

int32_t TParseUtils::IndexOfNameInStr(const String& S, const String& Name, Char Delim,
                                      String* Value, bool RequireValue) {
  return IndexOfName(ExtractTokens(S, Delim), Name, Value, u'=', RequireValue);
}

String TParseUtils::GetParamValue(const TStringDynArray& Items, const String& Name) {
  String value;
  return IndexOfName(Items, Name, &value, u'=', true) >= 0 ? value : String();
}

TStringDynArray TParseUtils::ExtractValuesByKeys(const String& S, const TStringDynArray& Keys,
                                                 Char Delim, Char ValueDelim) {
  const TStringDynArray tokens = ExtractTokens(S, Delim);
  TStringDynArray values;
  values.reserve(Keys.size());
  for (const String& key : Keys) {
    String value;
    IndexOfName(tokens, key, &value, ValueDelim, false);
    values.push_back(std::move(value));
  }
  return values;
}

int32_t TParseUtils::SplitIntoNamesAndValues(const String& S, TStringDynArray& Names,
                                             TStringDynArray& Values, Char Delim, Char ValueDelim) {
  TStringDynArray names, values;
  WalkFields(S, Delim, [&](String&& field, int32_t) {
    if (!field.empty()) {
      TNameValue pair = TNameValue::Create(field, false, ValueDelim);
      names.push_back(std::move(pair.Name));
      values.push_back(std::move(pair.Value));
    }
    return true;
  });
  Names = std::move(names);
  Values = std::move(values);
  return static_cast<int32_t>(Names.size());
}

String TParseUtils::JoinNamesAndValues(const TStringDynArray& Names, const TStringDynArray& Values,
                                       Char Delim, Char ValueDelim) {
  String result;
  const size_t n = std::min(Names.size(), Values.size());
  for (size_t i = 0; i < n; ++i) {
    if (i > 0) result += Delim;
    result += Names[i];
    result += ValueDelim;
    result += Values[i];
  }
  return result;
}

String TParseUtils::ReplaceTokens(const String& S, const TGetSubTextFunc& Func, Char Delim) {
  String result;
  WalkFields(S, Delim, [&](String&& field, int32_t i) {
    if (i > 0) result += Delim;
    result += Func ? Func(field) : field;
    return true;
  });
  return result;
}

String TParseUtils::JoinValueRecs(const TNameValueIntArray& Recs, Char Delim, bool ValuesOnly) {
  String result;
  for (size_t i = 0; i < Recs.size(); ++i) {
    if (i > 0) result += Delim;
    result += ValuesOnly ? IntToStr(Recs[i].Value) : Recs[i].JoinFields();
  }
  return result;
}

void TParseUtils::ExportPropValuesFromArray(const TStringDynArray& Items, TQueryList& List,
                                            Char Delim1, Char Delim2) {
  List.Clear();
  for (const String& item : Items) {
    String group, key, value;
    SplitStrWithTwoChars(item, Delim1, Delim2, group, key, value, true);
    List.FindOrCreate(group)->SubList()->SetValue(key, value);
  }
}

void TParseUtils::ImportPropValuesToArray(TStringDynArray& Items, const TQueryList& List,
                                          Char Delim1, Char Delim2) {
  Items.clear();
  for (int32_t g = 0; g < List.Count(); ++g) {
    const TQueryList* keys = List.SubList(g);
    if (!keys) continue;
    for (int32_t k = 0; k < keys->Count(); ++k) {
      String item = List.Keys(g);
      item += Delim1;
      item += keys->Names(k);
      item += Delim2;
      item += keys->ValueFromIndex(k);
      Items.push_back(std::move(item));
    }
  }
}

// --- name/value records -------------------------------------------------------------------------

TNameValueArray TParseUtils::SplitIntoNameValueArray(const String& S, Char RecDelim, bool DoSwap,
                                                     Char ValueDelim) {
  TNameValueArray recs;
  WalkFields(S, RecDelim, [&](String&& field, int32_t) {
    recs.push_back(TNameValue::Create(field, DoSwap, ValueDelim));
    return true;
  });
  return recs;
}

TNameValueArrayRec TParseUtils::SplitIntoNameValueRecs(const String& S, Char RecDelim,
                                                       Char ValueDelim) {
  return SplitIntoNameValueRecsSep(S, RecDelim, ValueDelim, false);
}

TNameValueArrayRec TParseUtils::SplitIntoNameValueRecsInv(const String& S, Char RecDelim,
                                                          Char ValueDelim) {
  return SplitIntoNameValueRecsSep(S, RecDelim, ValueDelim, true);
}

TNameValueArrayRec TParseUtils::SplitIntoNameValueRecsSep(const String& S, Char RecDelim,
                                                          Char ValueDelim, bool DoSwap) {
  TNameValueArrayRec rec = TNameValueArrayRec::Create(RecDelim, ValueDelim);
  rec.Recs = SplitIntoNameValueArray(S, RecDelim, DoSwap, ValueDelim);
  return rec;
}

TNameValueIntArray TParseUtils::SplitIntoValueRecs(const String& S, Char RecDelim) {
  TNameValueIntArray recs;
  WalkFields(S, RecDelim, [&](String&& field, int32_t) {
    const TSplitResult parts = SplitStr(field, u'=', true);
    int32_t value = -1;
    if (!parts.s2.empty()) {
      recs.push_back(TNameValueInt::Create(parts.s1, StrToInt(parts.s2)));
    } else if (TryStrToInt(parts.s1, value)) {
      recs.push_back(TNameValueInt::Create(String(), value));
    } else {
      recs.push_back(TNameValueInt::Create(parts.s1, -1));
    }
    return true;
  });
  return recs;
}

TNameValueIntArrayRec TParseUtils::SplitIntoValueRecsInt(const String& S, Char RecDelim,
                                                         Char ValueDelim) {
  TNameValueIntArrayRec rec = TNameValueIntArrayRec::Create(RecDelim, ValueDelim);
  rec.Recs = SplitIntoValueRecs(S, RecDelim);
  return rec;
}

// --- integers ------------------------------------------------------------------------------------

int32_t TParseUtils::GetIntValue(const String& S, Char Delim, int32_t Index, bool* Found) {
  const TIntegerDynArray values = SplitIntoIntegers(S, Delim);
  const int32_t i = LastOrIndex(Index, values.size());
  const bool in_range = i >= 0 && static_cast<size_t>(i) < values.size();
  if (Found) *Found = in_range;
  return in_range ? values[static_cast<size_t>(i)] : -1;
}

String TParseUtils::SetIntValue(const String& S, Char Delim, int32_t Index, int32_t Value,
                                bool* Done) {
  TIntegerDynArray values = SplitIntoIntegers(S, Delim);
  const int32_t i = LastOrIndex(Index, values.size());
  const bool in_range = i >= 0 && static_cast<size_t>(i) < values.size();
  if (Done) *Done = in_range;
  if (!in_range) return S;
  values[static_cast<size_t>(i)] = Value;
  // Deliberate: the result is always joined with "|", whatever delimiter S used.
  return TIntegerUtils::IntArrayToString(values, u"|");
}

String TParseUtils::SetEquIntValue(const String& S, int32_t Value, bool* Done) {
  TNameValueInt rec = TNameValueInt::Create(S, false);
  rec.Value = Value;
  if (Done) *Done = true;
  return rec.JoinFields();
}

}  // namespace vex
