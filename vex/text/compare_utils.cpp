#include "vex/text/compare_utils.h"

#include <string_view>

#include "vex/platform/sysutils.h"

namespace vex {

namespace {

Char AsciiUpper(Char c) { return (c >= u'a' && c <= u'z') ? static_cast<Char>(c - 32) : c; }

bool SameAsciiText(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (AsciiUpper(a[i]) != AsciiUpper(b[i])) return false;
  }
  return true;
}

}  // namespace

int32_t TCompareUtils::SameStrInt(const String& SubStr, const String& AText) {
  return SubStr == AText ? 1 : 0;
}

int32_t TCompareUtils::SameTextInt(const String& SubStr, const String& AText) {
  return SameAsciiText(SubStr, AText) ? 1 : 0;
}

int32_t TCompareUtils::StartsWithStrInt(const String& SubStr, const String& AText) {
  return std::u16string_view(AText).starts_with(SubStr) ? 1 : 0;
}

int32_t TCompareUtils::StartsWithTextInt(const String& SubStr, const String& AText) {
  if (SubStr.size() > AText.size()) return 0;
  return SameAsciiText(std::u16string_view(AText).substr(0, SubStr.size()), SubStr) ? 1 : 0;
}

int32_t TCompareUtils::EndsWithStrInt(const String& SubStr, const String& AText) {
  return std::u16string_view(AText).ends_with(SubStr) ? 1 : 0;
}

int32_t TCompareUtils::EndsWithTextInt(const String& SubStr, const String& AText) {
  if (SubStr.size() > AText.size()) return 0;
  return SameAsciiText(std::u16string_view(AText).substr(AText.size() - SubStr.size()), SubStr) ? 1
                                                                                                : 0;
}

int32_t TCompareUtils::AnsiPosNoCase(const String& SubStr, const String& AText) {
  return Pos(UpperCase(SubStr), UpperCase(AText));
}

void TCompareUtils::AssignPosFunc(TGetPosFunc& Func, TLineCompareType CompareType,
                                  bool IgnoreCase) {
  switch (CompareType) {
    case lctSameStr:
      Func = IgnoreCase ? &SameTextInt : &SameStrInt;
      break;
    case lctStartsWith:
      Func = IgnoreCase ? &StartsWithTextInt : &StartsWithStrInt;
      break;
    case lctEndsWith:
      Func = IgnoreCase ? &EndsWithTextInt : &EndsWithStrInt;
      break;
    case lctContains:
      if (IgnoreCase) {
        Func = &AnsiPosNoCase;
      } else {
        Func = [](const String& SubStr, const String& AText) { return Pos(SubStr, AText); };
      }
      break;
    case lctRegExp:
    default:
      Func = nullptr;
      break;
  }
}

TGetPosFunc TCompareUtils::IntCompareFunc(TLineCompareType CompareType,
                                          TLineCompareOptions Options) {
  TGetPosFunc f;
  AssignPosFunc(f, CompareType, Options.Contains(cmpIgnoreCase));
  return f;
}

}  // namespace vex
