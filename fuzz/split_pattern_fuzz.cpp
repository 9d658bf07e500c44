// Cuts arbitrary text at the matches of an arbitrary pattern and joins it again.
//
// Input: byte 0 picks how the text is decoded (even: UTF-8, odd: raw UTF-16 code units, so
// lone surrogates occur); the pattern is UTF-8 up to the first NUL byte, the text follows it.
// Checks: the join gives the text back; tokens are one more than delimiters and agree with
// TRegEx::Split; ProcessWithPattern with a callback that keeps tokens is the identity. The only
// error allowed is ERegExError, and only for a pattern that does not compile, a text that is
// not valid UTF-16, or a match that fails at run time (the engine's limits, a recursion loop).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "vex/patterns/reg_exp_utils.h"
#include "vex/patterns/regex.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

#include "fuzz_support.h"

namespace {

using vex_fuzz::Check;
using vex_fuzz::RawUtf16;

using vex::String;


bool ValidUtf16(const String& s) {
  for (size_t i = 0; i < s.size(); ++i) {
    const char16_t c = s[i];
    if (c >= 0xD800 && c <= 0xDBFF) {
      if (i + 1 >= s.size() || s[i + 1] < 0xDC00 || s[i + 1] > 0xDFFF) return false;
      ++i;
    } else if (c >= 0xDC00 && c <= 0xDFFF) {
      return false;
    }
  }
  return true;
}


bool Compiles(const String& pattern) {
  try {
    vex::TRegEx re(pattern);
    return true;
  } catch (const vex::ERegExError&) {
    return false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const bool raw = (data[0] & 1) != 0;
  std::string_view rest(reinterpret_cast<const char*>(data + 1), size - 1);
  const size_t nul = rest.find('\0');
  const std::string_view pattern_bytes = rest.substr(0, nul);
  const std::string_view text_bytes =
      nul == std::string_view::npos ? std::string_view() : rest.substr(nul + 1);
  const String pattern = vex::FromUtf8(pattern_bytes, vex::TInvalidText::Replace);
  const String text = raw ? RawUtf16(text_bytes)
                          : vex::FromUtf8(text_bytes, vex::TInvalidText::Replace);

  vex::TSplitInfo split;
  try {
    vex::SplitWithPattern(text, pattern, split);
  } catch (const vex::ERegExError& e) {
    // A match can also fail at run time: a limit, or a recursion that would loop forever.
    const bool match_error = std::string(e.what()).rfind("Error matching", 0) == 0;
    Check(!Compiles(pattern) || !ValidUtf16(text) || match_error);
    return 0;
  }
  Check(Compiles(pattern) && ValidUtf16(text));
  Check(split.Tokens.size() == split.Delims.size() + 1);
  Check(vex::JoinTokensWithDelims(split) == text);
  Check(vex::TRegEx(pattern).Split(text) == split.Tokens);
  const String kept = vex::ProcessWithPattern(text, pattern, [](String*) {});
  Check(kept == text);
  return 0;
}
