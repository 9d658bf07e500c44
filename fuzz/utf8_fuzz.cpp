// UTF-8 <-> UTF-16 conversion: valid text round-trips both ways, invalid text raises
// EConvertError in strict mode, and the replacing mode never raises and never produces text
// that the strict encoder would refuse.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

#include "fuzz_support.h"

namespace {

using vex_fuzz::Check;


void Utf8Side(std::string_view bytes) {
  const bool valid = vex::IsValidUtf8(bytes);
  try {
    const vex::String text = vex::FromUtf8(bytes);
    Check(valid);
    Check(vex::ToUtf8(text) == bytes);
  } catch (const vex::EConvertError&) {
    Check(!valid);
  }
  const vex::String replaced = vex::FromUtf8(bytes, vex::TInvalidText::Replace);
  const std::string again = vex::ToUtf8(replaced);  // strict: must be well-formed
  if (valid) Check(again == bytes);
  Check(vex::IsValidUtf8(again));
}

void Utf16Side(const uint8_t* data, size_t size) {
  vex::String units;
  for (size_t i = 0; i + 1 < size; i += 2) {
    units.push_back(static_cast<char16_t>(data[i] | (data[i + 1] << 8)));
  }
  try {
    const std::string utf8 = vex::ToUtf8(units);
    Check(vex::FromUtf8(utf8) == units);
  } catch (const vex::EConvertError&) {
    // a lone surrogate; the replacing mode must still give valid UTF-8
  }
  Check(vex::IsValidUtf8(vex::ToUtf8(units, vex::TInvalidText::Replace)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Utf8Side(std::string_view(reinterpret_cast<const char*>(data), size));
  Utf16Side(data, size);
  return 0;
}
