// Feeds arbitrary bytes to ObjectBinaryToText as a component stream. When they convert, the
// text must convert back to a stream, and that stream must be a fixed point: binary -> text ->
// binary gives it back, and its text is the text of the first conversion.
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
  std::string text;
  try {
    text = ToText(std::string(reinterpret_cast<const char*>(data), size));
  } catch (const vex::EStreamError&) {
    return 0;
  }
  std::string binary = ToBinary(text);  // any exception here is a finding
  Check(ToText(binary) == text);
  Check(ToBinary(ToText(binary)) == binary);
  return 0;
}
