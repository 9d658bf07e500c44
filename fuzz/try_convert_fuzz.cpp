// TryStrToFloat, TryStrToInt, TryStrToInt64 and TryStrToBool of TConvertUtils on arbitrary text:
// without RaiseError they answer, with it they succeed alike or raise the named error.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "vex/platform/exceptions.h"
#include "vex/text/convert_utils.h"

#include "fuzz_support.h"

namespace {

using vex_fuzz::Check;


// Runs try_it without and with raising and checks that both agree and that a raised error
// carries prefix + text.
template <class F>
void Agree(const vex::String& text, const char16_t* prefix, F try_it) {
  const bool quiet = try_it(false);
  try {
    Check(try_it(true) == quiet && quiet);
  } catch (const vex::EConvertError& e) {
    Check(!quiet && e.Message() == vex::String(prefix) + text);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using vex::TConvertUtils;
  if (size == 0) return 0;
  const int8_t mode = static_cast<int8_t>(data[0]);
  vex::String text;
  for (size_t i = 1; i < size; ++i) {
    // Bytes above 0x7F stand for units across the whole UTF-16 range.
    text.push_back(data[i] < 0x80 ? data[i] : static_cast<char16_t>(data[i] * 257));
  }

  double d = 0;
  Agree(text, u"Conversion to float error in: ",
        [&](bool raise) { return TConvertUtils::TryStrToFloat(text, &d, raise); });
  int32_t i = 0;
  Agree(text, u"Conversion to integer error in: ",
        [&](bool raise) { return TConvertUtils::TryStrToInt(text, &i, raise); });
  int64_t l = 0;
  Agree(text, u"Conversion to Int64 error in: ",
        [&](bool raise) { return TConvertUtils::TryStrToInt64(text, &l, raise); });
  bool b = false;
  Agree(text, u"Conversion to Boolean error in: ",
        [&](bool raise) { return TConvertUtils::TryStrToBool(text, &b, raise, mode); });

  double ex = 0;
  if (!TConvertUtils::TryStrToFloatEx(text, ex, 12.5)) Check(ex == 12.5);
  // Every 32-bit integer text is also a 64-bit one; decimal text keeps its value (hexadecimal
  // text is a bit pattern of the type's width, so "$F1111111" is negative only in 32 bits).
  if (TConvertUtils::TryStrToInt(text, &i)) {
    Check(TConvertUtils::TryStrToInt64(text, &l));
    const bool hex = text.find_first_of(u"$xX") != vex::String::npos;
    Check(hex || l == i);
  }
  return 0;
}
