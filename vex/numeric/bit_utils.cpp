#include "vex/numeric/bit_utils.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "vex/platform/exceptions.h"

namespace vex {

// The byte-wise reading of the bit order below is the word-wise one only on little-endian
// memory.
static_assert(std::endian::native == std::endian::little, "TBitUtils assumes little-endian memory");

namespace {

constexpr uint64_t kChunk = 64;

uint64_t LowMask(unsigned n) { return n >= 64 ? ~uint64_t{0} : (uint64_t{1} << n) - 1; }

// Bytes spanned by n bits that start shift bits into a byte (shift < 8, n <= 64): 1 to 9.
unsigned SpannedBytes(unsigned shift, unsigned n) { return (shift + n + 7) >> 3; }

// Reads n (1..64) bits that start at bit pos of base, touching only the bytes that hold them.
uint64_t LoadBits(const uint8_t* base, uint64_t pos, unsigned n) {
  const uint8_t* p = base + (pos >> 3);
  const unsigned shift = pos & 7;
  const unsigned bytes = SpannedBytes(shift, n);
  uint64_t v = 0;
  if (bytes >= 8) {
    std::memcpy(&v, p, 8);
    v >>= shift;
    if (bytes == 9) v |= uint64_t{p[8]} << (64 - shift);  // here shift > 0
  } else {
    for (unsigned k = 0; k < bytes; ++k) v |= uint64_t{p[k]} << (8 * k);
    v >>= shift;
  }
  return v & LowMask(n);
}

// Writes the n (1..64) low bits of v at bit pos of base; the other bits of the touched bytes
// keep their values, and bytes without any of the n bits are not touched.
void StoreBits(uint8_t* base, uint64_t pos, unsigned n, uint64_t v) {
  uint8_t* p = base + (pos >> 3);
  const unsigned shift = pos & 7;
  v &= LowMask(n);
  if (shift == 0 && n == 64) {
    std::memcpy(p, &v, 8);
    return;
  }
  const unsigned bytes = SpannedBytes(shift, n);
  const uint64_t mask = LowMask(n) << shift;  // the bits that go into the first 8 bytes
  if (bytes >= 8) {
    uint64_t w;
    std::memcpy(&w, p, 8);
    w = (w & ~mask) | (v << shift);
    std::memcpy(p, &w, 8);
    if (bytes == 9) {
      const uint8_t high_mask = static_cast<uint8_t>(LowMask(shift + n - 64));
      const uint8_t high_bits = static_cast<uint8_t>(v >> (64 - shift));
      p[8] = static_cast<uint8_t>((p[8] & ~high_mask) | (high_bits & high_mask));
    }
    return;
  }
  uint64_t w = 0;
  for (unsigned k = 0; k < bytes; ++k) w |= uint64_t{p[k]} << (8 * k);
  w = (w & ~mask) | (v << shift);
  for (unsigned k = 0; k < bytes; ++k) p[k] = static_cast<uint8_t>(w >> (8 * k));
}

// The largest chunk for which a chunked run equals the bit-by-bit walk. When the destination
// starts distance bits after a source run's start, inside the run, the walk reads back bits it
// wrote distance steps earlier; chunks of at most distance bits read each chunk only after the
// previous ones were stored, which gives the same result. A destination at or before the
// source, or beyond the run, never reads back its own writes.
uint64_t ChunkLimit(const void* src, uint64_t src_pos, const void* dest, uint64_t dest_pos,
                    uint64_t count) {
  const int64_t byte_distance = static_cast<int64_t>(reinterpret_cast<uintptr_t>(dest)) -
                                static_cast<int64_t>(reinterpret_cast<uintptr_t>(src));
  const int64_t distance =
      byte_distance * 8 + (static_cast<int64_t>(dest_pos) - static_cast<int64_t>(src_pos));
  if (distance > 0 && static_cast<uint64_t>(distance) < count) {
    return std::min<uint64_t>(kChunk, static_cast<uint64_t>(distance));
  }
  return kChunk;
}

// Writes count bits of dest from bit dest_pos on, in chunks of at most limit (<= 64) bits; the
// value of each chunk is made by produce(offset, n) just before the chunk is stored. When the
// chunks may be full size, the first one brings the destination to a byte boundary so that the
// rest are stored as whole bytes.
template <class Produce>
void WriteRun(uint8_t* dest, uint64_t dest_pos, uint64_t count, uint64_t limit, Produce produce) {
  uint64_t done = 0;
  if (limit == kChunk && (dest_pos & 7) != 0) {
    const unsigned n = static_cast<unsigned>(std::min<uint64_t>(count, kChunk - (dest_pos & 7)));
    StoreBits(dest, dest_pos, n, produce(0, n));
    done = n;
  }
  while (done < count) {
    const unsigned n = static_cast<unsigned>(std::min(count - done, limit));
    StoreBits(dest, dest_pos + done, n, produce(done, n));
    done += n;
  }
}

void FillBits(uint8_t* dest, uint64_t dest_pos, uint64_t count, bool value) {
  const uint64_t pattern = value ? ~uint64_t{0} : 0;
  WriteRun(dest, dest_pos, count, kChunk, [pattern](uint64_t, unsigned) { return pattern; });
}

const uint8_t* Bytes(const void* p) { return static_cast<const uint8_t*>(p); }
uint8_t* Bytes(void* p) { return static_cast<uint8_t*>(p); }

}  // namespace

// --- single bits ------------------------------------------------------------------------------

bool TBitUtils::GetBit(const void* Data, int32_t Index) {
  return (Bytes(Data)[Index >> 3] >> (Index & 7)) & 1;
}

void TBitUtils::SetBit(void* Data, int32_t Index, bool Value) {
  if (Value) {
    SetBitTrue(Data, Index);
  } else {
    SetBitFalse(Data, Index);
  }
}

void TBitUtils::SetBitTrue(void* Data, int32_t Index) {
  Bytes(Data)[Index >> 3] |= static_cast<uint8_t>(1u << (Index & 7));
}

void TBitUtils::SetBitFalse(void* Data, int32_t Index) {
  Bytes(Data)[Index >> 3] &= static_cast<uint8_t>(~(1u << (Index & 7)));
}

// --- sizing -----------------------------------------------------------------------------------

int32_t TBitUtils::MaxBit(uint32_t V) { return static_cast<int32_t>(std::bit_width(V)) - 1; }

int32_t TBitUtils::MaxBitSafe(uint32_t V) {
  if (V == 0) return -1;
  if (V == 1) return 1;  // deliberate: the rule would give 0
  return static_cast<int32_t>(std::bit_width(V - 1));
}

int32_t TBitUtils::GetMaxSize(uint32_t Total, uint32_t Step) {
  if (Step == 0) throw EDivByZero("Division by zero");
  return static_cast<int32_t>(Total / Step + (Total % Step != 0 ? 1 : 0));
}

int32_t TBitUtils::GetLastStep(uint32_t Total, uint32_t Step) {
  if (Step == 0) throw EDivByZero("Division by zero");
  const uint32_t rest = Total % Step;
  return static_cast<int32_t>(rest != 0 ? rest : Step);
}

int32_t TBitUtils::ByteSize(int32_t BitCount) { return BitCount / 8 + (BitCount % 8 != 0 ? 1 : 0); }

int32_t TBitUtils::MaxByteSize(uint32_t V) {
  const int32_t b = MaxBit(V);
  return b < 1 ? b : ByteSize(b);
}

int32_t TBitUtils::MaxSizeByItemBits(uint32_t V, uint32_t ItemBits) {
  const int32_t b = MaxBit(V);
  return b < 1 ? b : GetMaxSize(static_cast<uint32_t>(b), ItemBits);
}

// --- runs of bits -----------------------------------------------------------------------------

void TBitUtils::SetBits(void* Data, int32_t StartBit, uint32_t Value, int32_t BitCount) {
  if (Value <= 1) {
    SetBit(Data, StartBit, Value == 1);
    return;
  }
  if (BitCount == 0) BitCount = MaxBit(Value);
  if (BitCount < 1) return;
  const uint64_t start = static_cast<uint64_t>(StartBit);
  const unsigned from_value = static_cast<unsigned>(std::min(BitCount, 32));
  StoreBits(Bytes(Data), start, from_value, Value);
  if (BitCount > 32) FillBits(Bytes(Data), start + 32, static_cast<uint64_t>(BitCount - 32), false);
}

void TBitUtils::CopyBits(const void* Src, void* Dest, int32_t SrcStart, int32_t DestStart,
                         int32_t Count, bool PerBit) {
  if (Count < 1) return;
  const uint64_t count = static_cast<uint64_t>(Count);
  const uint64_t src_pos = static_cast<uint64_t>(SrcStart);
  const uint64_t dest_pos = static_cast<uint64_t>(DestStart);
  if (!PerBit) {
    FillBits(Bytes(Dest), dest_pos, count, GetBit(Src, SrcStart));
    return;
  }
  const uint8_t* src = Bytes(Src);
  WriteRun(
      Bytes(Dest), dest_pos, count, ChunkLimit(Src, src_pos, Dest, dest_pos, count),
      [src, src_pos](uint64_t offset, unsigned n) { return LoadBits(src, src_pos + offset, n); });
}

int32_t TBitUtils::MaxActiveBit(const void* Data, int32_t Count) {
  const uint8_t* data = Bytes(Data);
  for (int32_t done = 0; done < Count;) {
    const unsigned n = static_cast<unsigned>(std::min<int32_t>(Count - done, kChunk));
    const uint64_t bits = LoadBits(data, static_cast<uint64_t>(done), n);
    if (bits != 0) return done + std::countr_zero(bits);
    done += static_cast<int32_t>(n);
  }
  return -1;
}

int32_t TBitUtils::SelectBits(const void* Data, int32_t StartBit, int32_t Count) {
  if (Count < 1) return 0;
  const unsigned n = static_cast<unsigned>(std::min(Count, 32));
  return static_cast<int32_t>(
      static_cast<uint32_t>(LoadBits(Bytes(Data), static_cast<uint64_t>(StartBit), n)));
}

void TBitUtils::CompareBits(const void* A, const void* B, int32_t Count,
                            const TCompareBitsProc& Proc) {
  if (!Proc) return;
  // Bit by bit on purpose: the procedure may change the memory it is shown.
  for (int32_t i = 0; i < Count; ++i) Proc(i, GetBit(A, i), GetBit(B, i));
}

namespace {

uint64_t Combine(uint64_t x, uint64_t y, TBitProcType operation) {
  switch (operation) {
    case bpAnd:
      return x & y;
    case bpOr:
      return x | y;
    default:
      return x ^ y;
  }
}

// Whole 64-bit words in order, one operation per loop so that the compiler can vectorise it
// (it checks for overlap at run time and keeps the in-order result when the buffers overlap).
template <TBitProcType Operation>
void CombineWords(const uint8_t* a, const uint8_t* b, uint8_t* dest, uint64_t words) {
  for (uint64_t i = 0; i < words; ++i) {
    uint64_t x, y;
    std::memcpy(&x, a + 8 * i, 8);
    std::memcpy(&y, b + 8 * i, 8);
    const uint64_t r = Combine(x, y, Operation);
    std::memcpy(dest + 8 * i, &r, 8);
  }
}

}  // namespace

void TBitUtils::ProcessBits(const void* A, const void* B, void* Dest, int32_t Count,
                            TBitProcType Operation) {
  if (Count < 1) return;
  if (Operation != bpAnd && Operation != bpOr && Operation != bpXor) return;
  const uint64_t count = static_cast<uint64_t>(Count);
  const uint64_t limit =
      std::min(ChunkLimit(A, 0, Dest, 0, count), ChunkLimit(B, 0, Dest, 0, count));
  const uint8_t* a = Bytes(A);
  const uint8_t* b = Bytes(B);
  uint8_t* dest = Bytes(Dest);
  uint64_t done = 0;
  if (limit == kChunk) {
    // Full chunks never read back what they wrote, so whole words can go at once.
    const uint64_t words = count / 64;
    if (Operation == bpAnd) CombineWords<bpAnd>(a, b, dest, words);
    if (Operation == bpOr) CombineWords<bpOr>(a, b, dest, words);
    if (Operation == bpXor) CombineWords<bpXor>(a, b, dest, words);
    done = words * 64;
  }
  WriteRun(dest, done, count - done, limit, [a, b, done, Operation](uint64_t offset, unsigned n) {
    return Combine(LoadBits(a, done + offset, n), LoadBits(b, done + offset, n), Operation);
  });
}

}  // namespace vex
