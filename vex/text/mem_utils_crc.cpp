// CRC-16/MODBUS of TMemUtils: reflected polynomial 0xA001, initial 0xFFFF, no final XOR.
//
// Three ways to the same register, chosen by length and CPU:
//   - a byte-wise table for short tails;
//   - slicing by 8 (eight tables, eight bytes per step) for the bulk on any CPU;
//   - carry-less multiplication (PCLMULQDQ) folding 64 bytes per step, when the CPU has it.
#include <array>
#include <bit>
#include <cstring>

#include "vex/text/mem_utils.h"

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define VEX_CRC16_CLMUL 1
#endif

namespace vex {

static_assert(std::endian::native == std::endian::little,
              "the CRC-16 slicing and folding read little-endian words");

namespace {

constexpr uint16_t kReflectedPoly = 0xA001;

using CrcTables = std::array<std::array<uint16_t, 256>, 8>;

// kTables[0][b] is the register after shifting byte b through a zero register; kTables[k][b]
// is the same byte followed by k zero bytes, which lets eight bytes be folded in one step.
constexpr CrcTables MakeTables() {
  CrcTables t{};
  for (unsigned b = 0; b < 256; ++b) {
    uint16_t crc = static_cast<uint16_t>(b);
    for (int bit = 0; bit < 8; ++bit) {
      crc = static_cast<uint16_t>((crc & 1) ? (crc >> 1) ^ kReflectedPoly : crc >> 1);
    }
    t[0][b] = crc;
  }
  for (unsigned k = 1; k < 8; ++k) {
    for (unsigned b = 0; b < 256; ++b) {
      const uint16_t prev = t[k - 1][b];
      t[k][b] = static_cast<uint16_t>((prev >> 8) ^ t[0][prev & 0xFF]);
    }
  }
  return t;
}

constexpr CrcTables kTables = MakeTables();

uint16_t UpdateBytewise(uint16_t crc, const uint8_t* p, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    crc = static_cast<uint16_t>((crc >> 8) ^ kTables[0][(crc ^ p[i]) & 0xFF]);
  }
  return crc;
}

uint16_t UpdateSliced(uint16_t crc, const uint8_t* p, size_t n) {
  for (; n >= 8; n -= 8, p += 8) {
    uint64_t v;
    std::memcpy(&v, p, 8);
    v ^= crc;  // the register only ever meets the first two bytes
    crc = static_cast<uint16_t>(
        kTables[7][v & 0xFF] ^ kTables[6][(v >> 8) & 0xFF] ^ kTables[5][(v >> 16) & 0xFF] ^
        kTables[4][(v >> 24) & 0xFF] ^ kTables[3][(v >> 32) & 0xFF] ^
        kTables[2][(v >> 40) & 0xFF] ^ kTables[1][(v >> 48) & 0xFF] ^ kTables[0][v >> 56]);
  }
  return UpdateBytewise(crc, p, n);
}

#ifdef VEX_CRC16_CLMUL

// Folding. In the reflected bit order a 16-byte block is a polynomial of degree < 128 whose
// highest coefficient is bit 0 of byte 0; the low 64-bit lane holds degrees 127..64 and the
// high lane degrees 63..0. For a lane u and a constant c, clmul(u, c) read as 128 reflected
// bits is x * u(x) * c(x). So with c = x^(n-1) mod P, clmul(u, c) is congruent to u * x^n:
// shifting a block n bits further along the message costs one multiplication, and the product
// (degree < 80) fits in a block. Folding never changes the remainder mod P, and the register
// of a message with initial value 0 is (message * x^16) mod P; so the last folded block is
// simply fed through the table as sixteen ordinary bytes.

// x^n mod P in normal bit order (bit d = coefficient of x^d), P = x^16 + x^15 + x^2 + 1.
constexpr uint32_t XPowModP(unsigned n) {
  uint32_t r = 1;
  for (unsigned i = 0; i < n; ++i) {
    r <<= 1;
    if (r & 0x10000) r ^= 0x18005;
  }
  return r;
}

// The constant for a shift by n bits, as a reflected 64-bit lane (degree d at bit 63 - d).
constexpr uint64_t FoldConstant(unsigned n) {
  const uint32_t r = XPowModP(n - 1);
  uint64_t lane = 0;
  for (unsigned d = 0; d < 16; ++d) {
    if (r & (1u << d)) lane |= uint64_t{1} << (63 - d);
  }
  return lane;
}

// The low lane of a block is its high-degree half, so it travels 64 bits further.
constexpr uint64_t kFold128Low = FoldConstant(128 + 64), kFold128High = FoldConstant(128);
constexpr uint64_t kFold512Low = FoldConstant(512 + 64), kFold512High = FoldConstant(512);

__attribute__((target("pclmul,sse2"))) inline __m128i Fold(__m128i acc, __m128i k) {
  return _mm_xor_si128(_mm_clmulepi64_si128(acc, k, 0x00), _mm_clmulepi64_si128(acc, k, 0x11));
}

__attribute__((target("pclmul,sse2"))) inline __m128i Load(const uint8_t* p) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// Needs n >= 64. Folds the largest multiple of 16 bytes and returns the register after it; the
// caller continues with the rest.
__attribute__((target("pclmul,sse2"))) uint16_t UpdateFolded(uint16_t crc, const uint8_t* p,
                                                              size_t& n) {
  const __m128i k512 = _mm_set_epi64x(static_cast<long long>(kFold512High),
                                      static_cast<long long>(kFold512Low));
  const __m128i k128 = _mm_set_epi64x(static_cast<long long>(kFold128High),
                                      static_cast<long long>(kFold128Low));
  // The incoming register is the same as XORing it into the first two message bytes.
  __m128i a0 = _mm_xor_si128(Load(p), _mm_cvtsi32_si128(crc));
  __m128i a1 = Load(p + 16), a2 = Load(p + 32), a3 = Load(p + 48);
  p += 64;
  n -= 64;
  for (; n >= 64; n -= 64, p += 64) {
    a0 = _mm_xor_si128(Fold(a0, k512), Load(p));
    a1 = _mm_xor_si128(Fold(a1, k512), Load(p + 16));
    a2 = _mm_xor_si128(Fold(a2, k512), Load(p + 32));
    a3 = _mm_xor_si128(Fold(a3, k512), Load(p + 48));
  }
  __m128i acc = _mm_xor_si128(Fold(a0, k128), a1);
  acc = _mm_xor_si128(Fold(acc, k128), a2);
  acc = _mm_xor_si128(Fold(acc, k128), a3);
  for (; n >= 16; n -= 16, p += 16) acc = _mm_xor_si128(Fold(acc, k128), Load(p));

  alignas(16) uint8_t block[16];
  _mm_store_si128(reinterpret_cast<__m128i*>(block), acc);
  const uint16_t folded = UpdateSliced(0, block, sizeof block);
  // The tail is left for the caller at the end of the consumed bytes.
  return folded;
}

bool CpuHasClmul() {
  static const bool has = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse2");
  return has;
}

#endif  // VEX_CRC16_CLMUL

// Below this length the table is as fast as setting up the folding.
constexpr size_t kFoldThreshold = 128;

}  // namespace

uint16_t TMemUtils::CRC16_Update(uint16_t Crc, const uint8_t* Data, size_t Count) {
  if (Count == 0) return Crc;
#ifdef VEX_CRC16_CLMUL
  if (Count >= kFoldThreshold && CpuHasClmul()) {
    size_t rest = Count;
    Crc = UpdateFolded(Crc, Data, rest);
    return UpdateSliced(Crc, Data + (Count - rest), rest);
  }
#endif
  return UpdateSliced(Crc, Data, Count);
}

uint16_t TMemUtils::CRC16_Of_Data(const uint8_t* Data, int32_t Count) {
  if (Data == nullptr || Count < 1) return 0xFFFF;
  return CRC16_Update(0xFFFF, Data, static_cast<size_t>(Count));
}

}  // namespace vex
