// Loads a rule list from comma-separated lines and applies it to arbitrary text.
//
// Input: byte 0 picks the rule column (0..2) and how the text is decoded (bit 2 set: raw UTF-16
// code units, so lone surrogates occur; otherwise UTF-8); the rule lines are UTF-8 up to the
// first NUL byte, the text follows. Loading may raise ERegExError only (a rule with a
// backslash that does not compile); applying may raise ERegExError only (text that is not
// valid UTF-16, or a match over the engine's limits). Nothing may crash or hang. Rule chains
// whose output could grow past a million units are cut short (see BoundGrowth).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "vex/patterns/reg_exp_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"

#include "fuzz_support.h"

namespace {

using vex_fuzz::Check;
using vex_fuzz::RawUtf16;

using vex::String;



void Apply(const String& text, const vex::TRegExTaskArray& tasks) {
  int32_t count = -1;
  const String result = vex::ReplaceStrWithTaskArray(text, tasks, &count);
  Check(count >= 0 && static_cast<size_t>(count) <= tasks.size());
  if (count == 0) Check(result == text);
  const int32_t first = vex::GetMatchIndexByTaskArray(text, tasks);
  Check(first >= -1 && first < static_cast<int32_t>(tasks.size()));
  // The first rule that matches the text is the first one the chain sees matching.
  if (!text.empty()) Check((first == -1) == (count == 0));
}

// A rule whose pattern matches empty text inserts its replacement between every two characters,
// so a chain of such rules multiplies the text's length rule after rule: defined behaviour, but
// output that no input this small should need. Keeps the rules while the worst-case length
// stays under kMaxUnits; a group reference can expand to the whole text, hence the factor.
void BoundGrowth(vex::TRegExTaskArray& tasks, size_t text_size) {
  constexpr double kMaxUnits = 1 << 20;
  double units = static_cast<double>(text_size);
  for (size_t i = 0; i < tasks.size(); ++i) {
    const double replace = static_cast<double>(tasks[i].Replace.size());
    units += (units + 1) * replace * (units + 1);
    if (units > kMaxUnits) {
      tasks.resize(i);
      return;
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const int32_t col = data[0] % 3;
  const bool raw = (data[0] & 4) != 0;
  std::string_view rest(reinterpret_cast<const char*>(data + 1), size - 1);
  const size_t nul = rest.find('\0');
  const String rules = vex::FromUtf8(rest.substr(0, nul), vex::TInvalidText::Replace);
  const std::string_view text_bytes =
      nul == std::string_view::npos ? std::string_view() : rest.substr(nul + 1);
  const String text = raw ? RawUtf16(text_bytes)
                          : vex::FromUtf8(text_bytes, vex::TInvalidText::Replace);

  vex::TStringList lines;
  lines.SetText(rules);
  vex::TRegExTaskArray tasks;
  try {
    vex::FillRegExpArray(lines, tasks, col);
  } catch (const vex::ERegExError&) {
    // The rules loaded before the bad one are kept and still usable.
  }
  BoundGrowth(tasks, text.size());
  try {
    Apply(text, tasks);
    vex::TStringList subjects;
    subjects.SetText(text);
    vex::ReplaceStringsWithTaskArray(subjects, tasks);
  } catch (const vex::ERegExError&) {
  }
  return 0;
}
