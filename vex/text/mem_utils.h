// TMemUtils: byte-array and memory-block helpers and the CRC-16 of a block.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vex/core/base_types.h"
#include "vex/platform/types.h"

namespace vex {

class TMemUtils {
 public:
  // --- record wrappers ----------------------------------------------------------------------
  /// GetListRec(Items): a new pointer list holding Items in order; the record owns it.
  static TListRec ListRec(const std::vector<void*>& Items);

  // --- byte arrays --------------------------------------------------------------------------
  /// Appends the bytes of Source to the end of Dest; an empty Source leaves Dest unchanged.
  ///   Dest {1, 2} + Source {3} -> Dest {1, 2, 3}
  static void AppendBytes(TBytes& Dest, const TBytes& Source);

  // --- memory blocks ------------------------------------------------------------------------
  /// vex::AdviseHugePages (vex/platform/memory.h): a speed hint for a large fresh block.
  static void AdviseHugePages(const void* Data, size_t Bytes);

  // --- checksums ----------------------------------------------------------------------------
  /// CRC-16/MODBUS (reflected polynomial 0xA001, initial 0xFFFF, no final XOR) of the first
  /// Count bytes at Data. A null Data or a Count below 1 gives 0xFFFF and reads nothing.
  ///   CRC16_Of_Data(reinterpret_cast<const uint8_t*>("123456789"), 9) == 0x4B37
  static uint16_t CRC16_Of_Data(const uint8_t* Data, int32_t Count);
  /// Continues a CRC-16/MODBUS register over Count more bytes; CRC16_Of_Data(d, n) equals
  /// CRC16_Update(0xFFFF, d, n). Count 0 returns Crc without reading Data.
  static uint16_t CRC16_Update(uint16_t Crc, const uint8_t* Data, size_t Count);
};

}  // namespace vex
