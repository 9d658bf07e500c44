#include "vex/numeric/crc_utils.h"

#include <zlib.h>

#include <bit>
#include <chrono>
#include <cstring>
#include <ctime>

#include "vex/platform/random.h"
#include "vex/platform/sysutils.h"
#include "vex/text/mem_utils.h"

namespace vex {

namespace {

// The current local time as a day count since 1899-12-30 with the time of day as fraction.
double LocalNow() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&seconds, &local);
  const double offset = static_cast<double>(local.tm_gmtoff);
  const double unix_seconds = duration<double>(now.time_since_epoch()).count();
  constexpr double kUnixEpochDay = 25569.0;  // 1970-01-01 as a day count
  return kUnixEpochDay + (unix_seconds + offset) / 86400.0;
}

}  // namespace

uint32_t TCRCUtils::CalcCRC32(const void* Data, uint32_t Count) {
  if (Data == nullptr) return 0;
  const uLong initial = crc32(0L, Z_NULL, 0);
  return static_cast<uint32_t>(crc32(initial, static_cast<const Bytef*>(Data), Count));
}

uint16_t TCRCUtils::CalcCRC16(const void* Data, uint32_t Count) {
  if (Data == nullptr || Count == 0) return 0xFFFF;
  return TMemUtils::CRC16_Update(0xFFFF, static_cast<const uint8_t*>(Data), Count);
}

int32_t TCRCUtils::CreateLinkID() {
  const double stamp = LocalNow() + static_cast<double>(Random(2147483647));
  static_assert(sizeof stamp == 8 && std::endian::native == std::endian::little);
  return static_cast<int32_t>(CalcCRC32(&stamp, sizeof stamp));
}

String TCRCUtils::NewLinkIDStr(bool WithDollar) {
  const uint32_t id = static_cast<uint32_t>(CreateLinkID());
  String hex = IntToHex(static_cast<int64_t>(id), 8);
  return WithDollar ? u"$" + hex : hex;
}

}  // namespace vex
