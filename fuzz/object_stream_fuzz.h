// The two object-stream conversions on byte strings, shared by the text and binary fuzz targets.
#pragma once

#include <cstddef>
#include <string>

#include "vex/platform/object_text.h"
#include "vex/platform/streams.h"

namespace vex_fuzz {

inline std::string StreamBytes(const vex::TMemoryStream& m) {
  return std::string(reinterpret_cast<const char*>(m.Memory()), static_cast<size_t>(m.Size()));
}

/// Object text to a binary component stream.
inline std::string ToBinary(const std::string& text) {
  vex::TStringStream in(text), out;
  vex::ObjectTextToBinary(in, out);
  return StreamBytes(out);
}

/// A binary component stream to object text.
inline std::string ToText(const std::string& binary) {
  vex::TStringStream in(binary), out;
  vex::ObjectBinaryToText(in, out);
  return StreamBytes(out);
}

}  // namespace vex_fuzz
