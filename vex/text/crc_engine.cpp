#include "vex/text/crc_engine.h"

#include <bit>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define VEX_CRC_CLMUL 1
#endif

namespace vex {

static_assert(std::endian::native == std::endian::little,
              "the CRC slicing and folding read little-endian words");

uint32_t TReflectedCrc::UpdateByTable(uint32_t reg, const uint8_t* p, size_t n) const {
  const auto& t = tables_;
  for (; n >= 8; n -= 8, p += 8) {
    uint64_t v;
    std::memcpy(&v, p, 8);
    v ^= reg;  // the register only ever meets the first four bytes
    reg = t[7][v & 0xFF] ^ t[6][(v >> 8) & 0xFF] ^ t[5][(v >> 16) & 0xFF] ^ t[4][(v >> 24) & 0xFF] ^
          t[3][(v >> 32) & 0xFF] ^ t[2][(v >> 40) & 0xFF] ^ t[1][(v >> 48) & 0xFF] ^ t[0][v >> 56];
  }
  for (; n > 0; --n, ++p) reg = (reg >> 8) ^ t[0][(reg ^ *p) & 0xFF];
  return reg;
}

#ifdef VEX_CRC_CLMUL

namespace {

// In the reflected bit order a 16-byte block is a polynomial of degree < 128 whose highest
// coefficient is bit 0 of byte 0; the low 64-bit lane holds degrees 127..64 and the high lane
// degrees 63..0. For a lane u and a constant c, clmul(u, c) read as 128 reflected bits is
// x * u(x) * c(x), so with c = x^(n-1) mod P the product is congruent to u * x^n and (degree
// < 97) fits in a block. Folding never changes the remainder mod P, and the register of a
// message fed into a zero register is (message * x^width) mod P; so the last folded block is
// simply fed through the tables as sixteen ordinary bytes.

__attribute__((target("pclmul,sse2"))) inline __m128i Fold(__m128i acc, __m128i k) {
  return _mm_xor_si128(_mm_clmulepi64_si128(acc, k, 0x00), _mm_clmulepi64_si128(acc, k, 0x11));
}

__attribute__((target("pclmul,sse2"))) inline __m128i Load(const uint8_t* p) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

__attribute__((target("pclmul,sse2"))) inline __m128i Constant(const std::array<uint64_t, 2>& k) {
  return _mm_set_epi64x(static_cast<long long>(k[1]), static_cast<long long>(k[0]));
}

bool CpuHasClmul() {
  static const bool has = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse2");
  return has;
}

bool CpuHasWideClmul() {
  static const bool has =
      CpuHasClmul() && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("vpclmulqdq");
  return has;
}

// Below these lengths the narrower path is as fast as setting up the wider one.
constexpr size_t kFoldThreshold = 128;
constexpr size_t kWideFoldThreshold = 1024;

// Folds the remaining whole blocks at p into acc and returns the register of acc's bytes fed
// into a zero register; n is lowered by the bytes consumed.
__attribute__((target("pclmul,sse2"))) uint32_t FinishFolded(const TReflectedCrc& crc, __m128i acc,
                                                             __m128i k128, const uint8_t* p,
                                                             size_t& n) {
  for (; n >= 16; n -= 16, p += 16) acc = _mm_xor_si128(Fold(acc, k128), Load(p));
  alignas(16) uint8_t block[16];
  _mm_store_si128(reinterpret_cast<__m128i*>(block), acc);
  return crc.UpdateByTable(0, block, sizeof block);
}

#define VEX_WIDE_TARGET __attribute__((target("avx512f,vpclmulqdq,pclmul,sse2")))

VEX_WIDE_TARGET inline __m512i WideFold(__m512i acc, __m512i k, __m512i next) {
  // 0x96: the XOR of all three operands.
  return _mm512_ternarylogic_epi64(_mm512_clmulepi64_epi128(acc, k, 0x00),
                                   _mm512_clmulepi64_epi128(acc, k, 0x11), next, 0x96);
}

// The zero-masked forms of broadcast and extract below avoid an undefined source operand.
VEX_WIDE_TARGET inline __m512i WideLoad(const uint8_t* p) { return _mm512_loadu_si512(p); }

}  // namespace

// Needs count >= 64. Folds the largest multiple of 16 bytes, lowers count by it and returns the
// register after those bytes.
__attribute__((target("pclmul,sse2"))) uint32_t TReflectedCrc::UpdateFolded(uint32_t reg,
                                                                            const uint8_t* p,
                                                                            size_t& count) const {
  const __m128i k512 = Constant(fold512_);
  const __m128i k128 = Constant(fold128_);
  size_t n = count;
  // The incoming register is the same as XORing it into the first message bytes.
  __m128i a0 = _mm_xor_si128(Load(p), _mm_cvtsi32_si128(static_cast<int>(reg)));
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
  const uint32_t folded = FinishFolded(*this, acc, k128, p, n);
  count = n;
  return folded;
}

// The same with 512-bit vectors, four blocks per multiplication: needs count >= 256.
VEX_WIDE_TARGET uint32_t TReflectedCrc::UpdateFoldedWide(uint32_t reg, const uint8_t* p,
                                                         size_t& count) const {
  const __m512i k2048 = _mm512_maskz_broadcast_i32x4(0xFFFF, Constant(fold2048_));
  const __m512i k512 = _mm512_maskz_broadcast_i32x4(0xFFFF, Constant(fold512_));
  const __m128i k128 = Constant(fold128_);
  size_t n = count;
  __m512i a0 = _mm512_xor_si512(WideLoad(p),
                                _mm512_zextsi128_si512(_mm_cvtsi32_si128(static_cast<int>(reg))));
  __m512i a1 = WideLoad(p + 64), a2 = WideLoad(p + 128), a3 = WideLoad(p + 192);
  p += 256;
  n -= 256;
  for (; n >= 256; n -= 256, p += 256) {
    a0 = WideFold(a0, k2048, WideLoad(p));
    a1 = WideFold(a1, k2048, WideLoad(p + 64));
    a2 = WideFold(a2, k2048, WideLoad(p + 128));
    a3 = WideFold(a3, k2048, WideLoad(p + 192));
  }
  __m512i wide = WideFold(a0, k512, a1);
  wide = WideFold(wide, k512, a2);
  wide = WideFold(wide, k512, a3);
  for (; n >= 64; n -= 64, p += 64) wide = WideFold(wide, k512, WideLoad(p));
  // The four blocks of the vector, first to last.
  __m128i acc = _mm512_maskz_extracti32x4_epi32(0xF, wide, 0);
  acc = _mm_xor_si128(Fold(acc, k128), _mm512_maskz_extracti32x4_epi32(0xF, wide, 1));
  acc = _mm_xor_si128(Fold(acc, k128), _mm512_maskz_extracti32x4_epi32(0xF, wide, 2));
  acc = _mm_xor_si128(Fold(acc, k128), _mm512_maskz_extracti32x4_epi32(0xF, wide, 3));
  const uint32_t folded = FinishFolded(*this, acc, k128, p, n);
  count = n;
  return folded;
}

uint32_t TReflectedCrc::Update(uint32_t reg, const uint8_t* data, size_t count) const {
  if (count >= kFoldThreshold && CpuHasClmul()) {
    const size_t total = count;
    reg = count >= kWideFoldThreshold && CpuHasWideClmul() ? UpdateFoldedWide(reg, data, count)
                                                           : UpdateFolded(reg, data, count);
    data += total - count;
  }
  return UpdateByTable(reg, data, count);
}

#else

uint32_t TReflectedCrc::Update(uint32_t reg, const uint8_t* data, size_t count) const {
  return UpdateByTable(reg, data, count);
}

#endif  // VEX_CRC_CLMUL

namespace {

constexpr TReflectedCrc kCrc32(0xEDB88320, 32);

}  // namespace

// The register runs inverted, so the running value is inverted on the way in and out.
uint32_t UpdateCrc32(uint32_t crc, const uint8_t* data, size_t count) {
  return ~kCrc32.Update(~crc, data, count);
}

}  // namespace vex
