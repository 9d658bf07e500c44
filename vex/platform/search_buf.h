// The platform's buffer search, as a find dialog drives it: look for a string in a block of
// UTF-16 text forward or backward from a selection, with or without case, optionally as a whole
// word. Also the find dialog's option set, which the text layer maps onto the search options.
//
//   String t = u"one two one";
//   const Char* p = SearchBuf(t.data(), Length(t), 0, 3, u"ONE", {soDown});
//   // p == t.data() + 8
#pragma once

#include <cstdint>

#include "vex/platform/types.h"

namespace vex {

/// Options of SearchBuf: forward search, case-sensitive comparison, whole-word matches.
enum TStringSearchOption : uint8_t { soDown, soMatchCase, soWholeWord };
using TStringSearchOptions = Set<TStringSearchOption>;

/// Options of the platform's find and replace dialogs.
enum TFindOption : uint8_t {
  frDown,
  frFindNext,
  frHideMatchCase,
  frHideWholeWord,
  frHideUpDown,
  frMatchCase,
  frDisableMatchCase,
  frDisableUpDown,
  frDisableWholeWord,
  frReplace,
  frReplaceAll,
  frWholeWord,
  frShowHelp,
  frEntireScope,
  frHideEntireScope,
  frPromptOnReplace,
  frHidePromptOnReplace
};
using TFindOptions = Set<TFindOption>;

/// Searches Buf[0 .. BufLen) for SearchString and returns a pointer to the first character of
/// the match, or nullptr.
///
/// With soDown the search runs forward from offset SelStart + SelLength (just past the
/// selection) and finds the first match that lies completely inside the buffer. Without it the
/// search runs backward and finds the last match that ends at or before offset SelStart, so a
/// backward search from offset 0 finds nothing. A start outside the buffer, an empty search
/// string or an empty buffer give nullptr.
///
/// Without soMatchCase characters are compared after simple upper-case mapping of each code
/// point (surrogate pairs are mapped as one code point). With soWholeWord a match counts only
/// when the character just before it and the character just after it, where the buffer has
/// them, are not letters or digits (Unicode general categories L* and Nd); the ends of the
/// buffer count as word boundaries.
const Char* SearchBuf(const Char* Buf, int32_t BufLen, int32_t SelStart, int32_t SelLength,
                      const String& SearchString, TStringSearchOptions Options);

}  // namespace vex
