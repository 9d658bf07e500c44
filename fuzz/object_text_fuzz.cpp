// Feeds arbitrary bytes to ObjectTextToBinary as object text. When the text converts, its
// binary must convert to text, and that text must be a fixed point: text -> binary -> text
// gives it back, and its binary converts back to the same bytes.
#include <cstddef>
#include <cstdint>
#include <string>

#include "vex/platform/exceptions.h"

#include "fuzz_support.h"
#include "object_stream_fuzz.h"

using vex_fuzz::Check;
using vex_fuzz::ToBinary;
using vex_fuzz::ToText;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string binary;
  try {
    binary = ToBinary(std::string(reinterpret_cast<const char*>(data), size));
  } catch (const vex::EParserError&) {
    return 0;
  }
  std::string text = ToText(binary);  // any exception here is a finding
  std::string again = ToBinary(text);
  Check(ToText(again) == text);
  Check(ToBinary(ToText(again)) == again);
  return 0;
}
