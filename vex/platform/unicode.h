// UTF-8 <-> UTF-16 conversion, the bridge between the library's UTF-16 text and the UTF-8 of
// files, pipes and std::string callers.
//
//   vex::String s = vex::FromUtf8("Привет");   // 6 code units
//   std::string b = vex::ToUtf8(s);            // back to the same 12 bytes
#pragma once

#include <string>
#include <string_view>

#include "vex/platform/types.h"

namespace vex {

/// What to do with bytes or code units that do not form valid text.
enum class TInvalidText {
  Raise,    ///< raise EConvertError naming the offset of the first bad unit
  Replace,  ///< put U+FFFD in place of each bad sequence
};

/// Decodes UTF-8. Overlong forms, surrogate code points, values above U+10FFFF and truncated
/// sequences are invalid. A leading byte-order mark is kept as U+FEFF (callers strip it).
String FromUtf8(std::string_view utf8, TInvalidText mode = TInvalidText::Raise);

/// Encodes UTF-16. A lone surrogate is invalid.
std::string ToUtf8(std::u16string_view text, TInvalidText mode = TInvalidText::Raise);
/// ToUtf8, appended to `out`.
void AppendUtf8(std::string& out, std::u16string_view text,
                TInvalidText mode = TInvalidText::Raise);

/// True when the bytes are valid UTF-8.
bool IsValidUtf8(std::string_view utf8);

}  // namespace vex
