// TBitUtils: single bits and runs of bits in caller-owned memory, and the small sizing answers
// that bit tables need (highest bit, bytes for a bit count, number of steps).
//
// Bit order: memory is read as consecutive little-endian 32-bit words, bit i being bit i mod 32
// of word i div 32, which is bit i mod 8 of byte i div 8. No operation knows a buffer's length:
// the caller provides memory for every bit index it names, and bit indexes are non-negative.
// Only the bytes that hold named bits are read or written.
//
//   uint32_t w = 0;
//   TBitUtils::SetBits(&w, 4, 0b110u, 3);   // w == 0x60
//   TBitUtils::SelectBits(&w, 4, 3);        // 6
#pragma once

#include <cstdint>
#include <functional>

#include "vex/core/base_types.h"
#include "vex/platform/object.h"

namespace vex {

/// Receives one step of TBitUtils::CompareBits: the index and the two bits found there.
using TCompareBitsProc = std::function<void(int32_t Index, bool BitA, bool BitB)>;

class TBitUtils : public TObject {
 public:
  // --- single bits --------------------------------------------------------------------------

  /// The bit at Index.
  static bool GetBit(const void* Data, int32_t Index);
  /// Sets or clears the bit at Index; every other bit keeps its value.
  static void SetBit(void* Data, int32_t Index, bool Value);
  static void SetBitTrue(void* Data, int32_t Index);
  static void SetBitFalse(void* Data, int32_t Index);

  // --- sizing -------------------------------------------------------------------------------

  /// Index of the highest set bit: 0 for 1, 3 for 8 and 15, 31 for 0x80000000; -1 for 0.
  static int32_t MaxBit(uint32_t V);
  /// -1 for 0; otherwise the smallest n with 2^n >= V (1 for 2, 2 for 3 and 4, 10 for 1024),
  /// except that V = 1 deliberately gives 1, not 0.
  static int32_t MaxBitSafe(uint32_t V);
  /// The number of steps of size Step that cover Total: Total div Step, plus 1 for a remainder.
  /// (10, 3) gives 4. Step 0 raises EDivByZero. Totals beyond 2^31 - 1 wrap to negative.
  static int32_t GetMaxSize(uint32_t Total, uint32_t Step);
  /// The size of the last of those steps: Total mod Step, or Step when that is 0. (10, 3)
  /// gives 1, (9, 3) gives 3. Step 0 raises EDivByZero.
  static int32_t GetLastStep(uint32_t Total, uint32_t Step);
  /// The bytes that hold BitCount bits: 0 for 0, 1 for 1..8, 2 for 9.
  static int32_t ByteSize(int32_t BitCount);
  /// ByteSize(MaxBit(V)), or MaxBit(V) itself when that is below 1. Deliberately sized by the
  /// highest bit's index rather than by the bit count: 256 (index 8) gives 1.
  static int32_t MaxByteSize(uint32_t V);
  /// GetMaxSize(MaxBit(V), ItemBits), or MaxBit(V) itself when that is below 1.
  static int32_t MaxSizeByItemBits(uint32_t V, uint32_t ItemBits);

  // --- runs of bits -------------------------------------------------------------------------
  // Every run operation gives exactly the result of its bit-by-bit definition, walking the
  // indexes upwards, also when source and destination overlap (a destination that starts
  // inside the source run then repeats the bits already copied, as the definition does).

  /// Writes the low bits of Value from StartBit on. Value 0 or 1 writes that single bit and
  /// ignores BitCount. Otherwise BitCount 0 means MaxBit(Value), which deliberately leaves out
  /// the highest set bit (Value 5 writes only its bits 0 and 1). Bits of Value beyond bit 31
  /// read as 0; a negative BitCount writes nothing.
  static void SetBits(void* Data, int32_t StartBit, uint32_t Value, int32_t BitCount);
  /// With PerBit, bit DestStart + i of Dest receives bit SrcStart + i of Src for i in
  /// 0 .. Count - 1. Without it, only bit SrcStart is read and all Count destination bits
  /// receive it (a fill). Count below 1 does nothing.
  static void CopyBits(const void* Src, void* Dest, int32_t SrcStart, int32_t DestStart,
                       int32_t Count, bool PerBit);
  /// Index of the lowest set bit among bits 0 .. Count - 1 (despite the name: the scan runs
  /// upwards and stops at the first hit); -1 when none is set or Count is below 1.
  static int32_t MaxActiveBit(const void* Data, int32_t Count);
  /// Bits StartBit .. StartBit + Count - 1 of Data as bits 0 .. Count - 1 of an integer. Count
  /// is at most 32 (larger counts take 32); Count below 1 gives 0.
  static int32_t SelectBits(const void* Data, int32_t StartBit, int32_t Count);
  /// Calls Proc for every index 0 .. Count - 1, in order, with the bits of A and B there.
  /// Nothing happens when Proc is empty.
  static void CompareBits(const void* A, const void* B, int32_t Count,
                          const TCompareBitsProc& Proc);
  /// Bit i of Dest := bit i of A and / or / xor bit i of B (bpAnd, bpOr, bpXor) for i in
  /// 0 .. Count - 1. Dest may be A or B. bpNone (or any other value) writes nothing.
  static void ProcessBits(const void* A, const void* B, void* Dest, int32_t Count,
                          TBitProcType Operation);
};

}  // namespace vex
