// Feeds arbitrary bytes, decoded as UTF-8 with replacement, to TBitMatrix::LoadFromStr. A load
// must answer 0 or 1 and never fail otherwise; whatever it leaves behind must answer every
// lookup from inside the table, and the default from outside it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "vex/numeric/bit_matrix.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"

#include "fuzz_support.h"

namespace {

using vex_fuzz::Check;


void Probe(vex::TBitMatrix& m) {
  using namespace vex;
  const int32_t rows = m.Titles() != nullptr ? m.Titles()->Count() : 0;
  const int32_t cols = m.Headers() != nullptr ? m.Headers()->Count() : 0;
  for (int32_t r = -1; r <= rows && r < 64; ++r) {
    for (int32_t c = -1; c <= cols && c < 40; ++c) m.BitValue(r, c);
  }
  m.SetDefValue(true);
  Check(m.BitValue(-1, 0) && m.BitValue(0, -1) && m.BitValue(1 << 20, 0) && m.BitValue(0, 99));
  m.SetDefValue(false);
  if (rows > 0 && cols > 0) {
    m.BitValue(m.Titles()->Strings(0), m.Headers()->Strings(cols - 1));
  }
  m.GetListItems(u"Options");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vex;
  const String text = FromUtf8(
      std::string_view(reinterpret_cast<const char*>(data), size), TInvalidText::Replace);
  TBitMatrix m;
  const int32_t first = m.LoadFromStr(text);
  Check(first == 0 || first == 1);
  if (first == 1) {
    Check(m.Headers()->Count() <= TBitMatrix::MaxColumns);
    for (int32_t r = 0; r < m.Titles()->Count() && r < 64; ++r) {
      for (int32_t c = 0; c < m.Headers()->Count(); ++c) {
        // Inside a loaded table the default never shows through.
        m.SetDefValue(false);
        const bool clear_default = m.BitValue(r, c);
        m.SetDefValue(true);
        Check(m.BitValue(r, c) == clear_default);
      }
    }
    m.SetDefValue(false);
  }
  Probe(m);
  // A second load into the same document, of the text cut in half.
  const int32_t second = m.LoadFromStr(text.substr(0, text.size() / 2));
  Check(second == 0 || second == 1);
  Probe(m);
  return 0;
}
