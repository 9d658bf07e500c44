// CRC-16/MODBUS of TMemUtils: reflected polynomial 0xA001, initial 0xFFFF, no final XOR, by the
// shared engine (tables for short buffers, carry-less folding for long ones where available).
#include "vex/text/crc_engine.h"
#include "vex/text/mem_utils.h"

namespace vex {

namespace {

constexpr TReflectedCrc kModbus(0xA001, 16);

}  // namespace

uint16_t TMemUtils::CRC16_Update(uint16_t Crc, const uint8_t* Data, size_t Count) {
  if (Count == 0) return Crc;
  return static_cast<uint16_t>(kModbus.Update(Crc, Data, Count));
}

uint16_t TMemUtils::CRC16_Of_Data(const uint8_t* Data, int32_t Count) {
  if (Data == nullptr || Count < 1) return 0xFFFF;
  return CRC16_Update(0xFFFF, Data, static_cast<size_t>(Count));
}

}  // namespace vex
