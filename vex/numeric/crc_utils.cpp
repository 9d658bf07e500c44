#include "vex/numeric/crc_utils.h"

#include <bit>
#include <cstring>

#include "vex/platform/datetime.h"
#include "vex/platform/random.h"
#include "vex/platform/sysutils.h"
#include "vex/text/crc_engine.h"
#include "vex/text/mem_utils.h"

namespace vex {

uint32_t TCRCUtils::CalcCRC32(const void* Data, uint32_t Count) {
  if (Data == nullptr || Count == 0) return 0;
  return UpdateCrc32(0, static_cast<const uint8_t*>(Data), Count);
}

uint16_t TCRCUtils::CalcCRC16(const void* Data, uint32_t Count) {
  if (Data == nullptr || Count == 0) return 0xFFFF;
  return TMemUtils::CRC16_Update(0xFFFF, static_cast<const uint8_t*>(Data), Count);
}

int32_t TCRCUtils::CreateLinkID() {
  const double stamp = Now() + static_cast<double>(Random(2147483647));
  static_assert(sizeof stamp == 8 && std::endian::native == std::endian::little);
  return static_cast<int32_t>(CalcCRC32(&stamp, sizeof stamp));
}

String TCRCUtils::NewLinkIDStr(bool WithDollar) {
  const uint32_t id = static_cast<uint32_t>(CreateLinkID());
  String hex = IntToHex(static_cast<int64_t>(id), 8);
  return WithDollar ? u"$" + hex : hex;
}

}  // namespace vex
