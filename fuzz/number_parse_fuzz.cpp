// Integer and float text parsing: the Try functions never raise, the raising functions agree
// with them, and formatting a parsed value parses back to the same value.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

#include "fuzz_support.h"

namespace {

using vex_fuzz::Check;


template <class T, class TryFn, class RaiseFn>
void CheckInteger(const vex::String& s, TryFn try_parse, RaiseFn parse) {
  T v = 0;
  const bool ok = try_parse(s, v);
  try {
    const T w = parse(s);
    Check(ok && w == v);
  } catch (const vex::EConvertError&) {
    Check(!ok);
  }
  if (!ok) return;
  T back = 0;
  Check(try_parse(vex::IntToStr(v), back) && back == v);
  // Hexadecimal text is the bit pattern of the value.
  const int digits = static_cast<int>(sizeof(T) * 2);
  const int64_t pattern = sizeof(T) == 4 ? static_cast<int64_t>(static_cast<uint32_t>(v)) : v;
  Check(try_parse(u"$" + vex::IntToHex(pattern, digits), back) && back == v);
}

void CheckFloat(const vex::String& s) {
  double v = 0;
  const bool ok = vex::TryStrToFloat(s, v);
  try {
    const double w = vex::StrToFloat(s);
    Check(ok && (w == v || (std::isnan(w) && std::isnan(v))));
  } catch (const vex::EConvertError&) {
    Check(!ok);
  }
  if (!ok || !std::isfinite(v)) return;
  double back = 0;
  if (!vex::TryStrToFloat(vex::FloatToStr(v), back)) {
    // Only values whose 15-digit text rounds past the largest double cannot be read back.
    Check(std::fabs(v) > 1.79769313486231e308);
    return;
  }
  // Fifteen significant digits: the round trip is exact to about one part in 10^14.
  Check(back == v || std::fabs(back - v) <= std::fabs(v) * 1e-14);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const vex::String s = vex::FromUtf8(std::string_view(reinterpret_cast<const char*>(data), size),
                                      vex::TInvalidText::Replace);
  CheckInteger<int32_t>(
      s, [](const vex::String& t, int32_t& v) { return vex::TryStrToInt(t, v); },
      [](const vex::String& t) { return vex::StrToInt(t); });
  CheckInteger<int64_t>(
      s, [](const vex::String& t, int64_t& v) { return vex::TryStrToInt64(t, v); },
      [](const vex::String& t) { return vex::StrToInt64(t); });
  CheckFloat(s);
  return 0;
}
