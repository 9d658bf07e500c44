// Feeds arbitrary bytes to ObjectBinaryToText as a component stream. When they convert, the
// text must convert back to a stream, and that stream must be a fixed point: binary -> text ->
// binary gives it back, and its text is the text of the first conversion.
#include <cstddef>
#include <cstdint>
#include <string>

#include "vex/platform/exceptions.h"
#include "vex/platform/object_text.h"
#include "vex/platform/streams.h"

#include "fuzz_support.h"

using vex_fuzz::Check;

namespace {

std::string Bytes(const vex::TMemoryStream& m) {
  return std::string(reinterpret_cast<const char*>(m.Memory()), static_cast<size_t>(m.Size()));
}

std::string ToBinary(const std::string& text) {
  vex::TStringStream in(text), out;
  vex::ObjectTextToBinary(in, out);
  return Bytes(out);
}

std::string ToText(const std::string& binary) {
  vex::TStringStream in(binary), out;
  vex::ObjectBinaryToText(in, out);
  return Bytes(out);
}

}  // namespace

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
