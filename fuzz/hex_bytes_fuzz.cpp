// Hexadecimal and binary digit strings: HexStrToBytes, HexStrToDest with any maximum count,
// MixedStrToBytes and BinStrToBytes on arbitrary 8-bit text never overrun and keep their sizes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "vex/text/convert_utils.h"

#include "fuzz_support.h"

using vex_fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using vex::TConvertUtils;
  if (size < 5) return 0;
  int32_t max_count = 0;
  std::memcpy(&max_count, data, 4);
  const char delim = static_cast<char>(data[4]);
  const std::string text(reinterpret_cast<const char*>(data) + 5, size - 5);
  const std::string ignore(1, delim);

  vex::TBytes bytes;
  int32_t bad = -1;
  TConvertUtils::HexStrToBytes(text, ignore, &bad, bytes);
  Check(bad >= 0 && static_cast<size_t>(bad) <= bytes.size() && bytes.size() <= text.size() / 2);
  // Whatever converted, written back as digits, reads back the same.
  const size_t good = bytes.size() - static_cast<size_t>(bad);
  vex::TBytes again;
  TConvertUtils::HexStrToBytes(
      TConvertUtils::BytesToHexStr(bytes.data(), static_cast<int32_t>(good)), "", &bad, again);
  Check(bad == 0 && again == vex::TBytes(bytes.begin(), bytes.begin() + static_cast<long>(good)));

  // A heap buffer of exactly the fixed size, so that AddressSanitizer sees any overrun.
  auto dest = std::make_unique<vex::THexDestBuffer>();
  const int32_t n = TConvertUtils::HexStrToDest(text, ignore, *dest, max_count);
  Check(n >= 0 && n <= 32768 && n <= (max_count < 0 ? 0 : max_count));

  const vex::TBytes bits = TConvertUtils::BinStrToBytes(text);
  Check(bits.size() == (text.size() + 7) / 8);
  Check(TConvertUtils::BinStrToBytes(
            TConvertUtils::DataToBinStr(bits.data(), static_cast<int32_t>(text.size()))) == bits);

  vex::String wide;
  for (char c : text) wide.push_back(static_cast<unsigned char>(c));
  TConvertUtils::MixedStrToBytes(wide, static_cast<char16_t>(static_cast<unsigned char>(delim)));
  return 0;
}
