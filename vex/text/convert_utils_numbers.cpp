// TConvertUtils: numbers, Booleans, number text, rectangles, visibility and pointers.
#include <cmath>
#include <cstdint>

#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/platform/sysutils.h"
#include "vex/text/convert_utils.h"

namespace vex {

namespace {

bool Fail(bool raise, const char16_t* prefix, const String& text) {
  if (raise) throw EConvertError(String(prefix) + text);
  return false;
}

}  // namespace

bool TConvertUtils::TryStrToFloat(const String& S, double* Value, bool RaiseError) {
  String copy = S;
  // Only the first comma becomes a point, so "1,5,5" stays invalid.
  const size_t comma = copy.find(u',');
  if (comma != String::npos) copy[comma] = u'.';
  const TFormatSettings point_settings;  // "." as the decimal separator, whatever the locale
  double v = 0;
  if (!vex::TryStrToFloat(copy, v, point_settings)) {
    return Fail(RaiseError, u"Conversion to float error in: ", S);
  }
  if (Value != nullptr) *Value = v;
  return true;
}

bool TConvertUtils::TryStrToFloatEx(const String& S, double& Value, double Default) {
  if (TryStrToFloat(S, &Value, false)) return true;
  Value = Default;
  return false;
}

bool TConvertUtils::TryStrToInt(const String& S, int32_t* Value, bool RaiseError) {
  int32_t v = 0;
  if (!vex::TryStrToInt(S, v)) return Fail(RaiseError, u"Conversion to integer error in: ", S);
  if (Value != nullptr) *Value = v;
  return true;
}

bool TConvertUtils::TryStrToInt64(const String& S, int64_t* Value, bool RaiseError) {
  int64_t v = 0;
  if (!vex::TryStrToInt64(S, v)) return Fail(RaiseError, u"Conversion to Int64 error in: ", S);
  if (Value != nullptr) *Value = v;
  return true;
}

int32_t TConvertUtils::IndexInBoolStrs(const String& S, bool UseDigits) {
  for (int32_t i = 0; i <= 1; ++i) {
    const String word = UseDigits ? IntToStr(i) : BoolToStr(i == 1, true);
    if (S == word) return i;
  }
  return -1;
}

bool TConvertUtils::TryStrToBool(const String& S, bool* Value, bool RaiseError, int8_t Mode) {
  int32_t index = -1;
  if (Mode <= 0) index = IndexInBoolStrs(S, false);
  if (index < 0 && Mode != 0) index = IndexInBoolStrs(S, true);
  if (index < 0) return Fail(RaiseError, u"Conversion to Boolean error in: ", S);
  if (Value != nullptr) *Value = index > 0;
  return true;
}

String TConvertUtils::DeleteFloatZeros(const String& S) {
  // Only a comma marks a fraction: numbers are written with the comma locales' separator.
  const int32_t c = Pos(u",", S);
  if (c == 0) return S;
  int32_t e = Pos(u"e", S);
  if (e == 0) e = Pos(u"E", S);
  if (e == 0) e = Length(S) + 1;
  int32_t i = e - 1;
  while (i >= 1 && S[static_cast<size_t>(i) - 1] == u'0') --i;
  const int32_t start = i > c ? i + 1 : c;
  String result = S;
  // An "e" before the comma gives a negative count, which deletes nothing.
  Delete(result, start, e - start);
  return result;
}

String TConvertUtils::SmartFormatFloat(double Value, const String& Fmt) {
  String text;
  if (Fmt.empty()) {
    text = Format(u"%g", {Value});
  } else if (Fmt.find(u'%') != String::npos) {
    text = Format(Fmt, {Value});
  } else {
    text = FormatFloat(Fmt, Value);
  }
  return DeleteFloatZeros(text);
}

double TConvertUtils::EnsureFloatRange(double Value, double Min, double Max) {
  if (std::isnan(Value) || Value < Min) return Min;
  if (Value > Max) return Max;
  return Value;
}

String TConvertUtils::BoundsToStr(const TRect& R, bool AsSize) {
  if (AsSize) {
    return Format(u"L: %d; T: %d; W: %d; H: %d",
                  {R.Left, R.Top, int64_t{R.Right} - R.Left, int64_t{R.Bottom} - R.Top});
  }
  return Format(u"L: %d; T: %d; R: %d; B: %d", {R.Left, R.Top, R.Right, R.Bottom});
}

String TConvertUtils::VisibleToStr(bool Visible, bool AsNumber) {
  if (AsNumber) return u"V: " + IntToStr(Visible ? 1 : 0);
  return u"V: " + BoolToStr(Visible, true);
}

String TConvertUtils::PtrToHex(const void* P) {
  static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  uintptr_t v = reinterpret_cast<uintptr_t>(P);
  String text(sizeof(void*) * 2, u'0');
  for (size_t i = text.size(); i-- > 0; v >>= 4) text[i] = kDigits[v & 0xF];
  return text;
}

String TConvertUtils::PtrToStr(const void* P) {
  String text = PtrToHex(P);
  text.insert(text.begin(), u'$');
  return text;
}

void* TConvertUtils::StrToPtr(const String& S) {
  int64_t v = 0;
  if (!vex::TryStrToInt64(S, v)) return nullptr;
  return reinterpret_cast<void*>(static_cast<uintptr_t>(v));
}

}  // namespace vex
