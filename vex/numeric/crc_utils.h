// TCRCUtils: the two checksums of byte buffers and short random "link" identifiers.
//
// CalcCRC32 is the CRC-32 of zlib (ISO-HDLC: reflected 0x04C11DB7, initial and final XOR
// 0xFFFFFFFF); CalcCRC16 is CRC-16/MODBUS (reflected 0x8005, initial 0xFFFF, no final XOR), the
// same checksum as TMemUtils::CRC16_Of_Data. All operations are stateless and thread-safe.
//
//   TCRCUtils::CalcCRC32("123456789", 9);   // 0xCBF43926
//   TCRCUtils::CalcCRC16("123456789", 9);   // 0x4B37
//   TCRCUtils::NewLinkIDStr(true);          // e.g. u"$0A1B2C3D"
#pragma once

#include <cstdint>

#include "vex/platform/object.h"
#include "vex/platform/types.h"

namespace vex {

class TCRCUtils : public TObject {
 public:
  /// CRC-32 of Count bytes at Data (the value of zlib's crc32 from 0). 0 bytes give 0; a null
  /// Data gives 0 whatever the count, without reading.
  static uint32_t CalcCRC32(const void* Data, uint32_t Count);
  /// CRC-16/MODBUS of Count bytes at Data. A null Data or a Count of 0 gives 0xFFFF.
  static uint16_t CalcCRC16(const void* Data, uint32_t Count);

  /// A new identifier: the CRC-32 of the 8 bytes (IEEE 754, little-endian) of the current
  /// local date and time (days since 1899-12-30) plus a draw Random(2147483647) from the
  /// process-wide generator (vex/platform/random.h), which the host seeds. Not unique by
  /// construction: two calls in one clock tick with equal draws give equal identifiers.
  static int32_t CreateLinkID();
  /// CreateLinkID as exactly eight upper-case hexadecimal digits (read as unsigned, leading
  /// zeros kept), preceded by "$" when WithDollar is true.
  static String NewLinkIDStr(bool WithDollar);
};

}  // namespace vex
