// TReflectedCrc: the engine behind the library's checksums, for any reflected CRC of 8 to 32
// bits. Bytes go through eight tables (slicing by 8); on x86 CPUs with carry-less multiplication
// (checked once at run time) long buffers are folded 64 bytes per step instead, or 256 bytes
// per step where the CPU multiplies 512-bit vectors.
//
//   constexpr TReflectedCrc kCrc32(0xEDB88320, 32);
//   uint32_t crc = ~kCrc32.Update(0xFFFFFFFF, data, size);   // zlib's crc32 of the buffer
//   crc = UpdateCrc32(crc, more, more_size);                // continued by more bytes
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vex {

class TReflectedCrc {
 public:
  /// `reflected_poly` is the generator without its top term, bit-reversed (0xEDB88320 for
  /// CRC-32, 0xA001 for CRC-16/MODBUS); `width` its degree, 8 to 32.
  constexpr TReflectedCrc(uint32_t reflected_poly, unsigned width) {
    for (unsigned b = 0; b < 256; ++b) {
      uint32_t crc = b;
      for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) ? (crc >> 1) ^ reflected_poly : crc >> 1;
      tables_[0][b] = crc;
    }
    for (unsigned k = 1; k < 8; ++k) {
      for (unsigned b = 0; b < 256; ++b) {
        const uint32_t prev = tables_[k - 1][b];
        tables_[k][b] = (prev >> 8) ^ tables_[0][prev & 0xFF];
      }
    }
    uint64_t normal = 0;  // the generator in normal bit order, top term included
    for (unsigned d = 0; d < width; ++d) {
      if (reflected_poly & (uint32_t{1} << d)) normal |= uint64_t{1} << (width - 1 - d);
    }
    normal |= uint64_t{1} << width;
    // A 16-byte block's low lane holds its high-degree half, so it travels 64 bits further.
    fold128_ = {FoldConstant(normal, 128 + 64), FoldConstant(normal, 128)};
    fold512_ = {FoldConstant(normal, 512 + 64), FoldConstant(normal, 512)};
    fold2048_ = {FoldConstant(normal, 2048 + 64), FoldConstant(normal, 2048)};
  }

  /// The register after feeding `count` bytes at `data` into `reg` (no initial or final XOR:
  /// those belong to the caller's checksum). A count of 0 returns `reg` without reading.
  uint32_t Update(uint32_t reg, const uint8_t* data, size_t count) const;
  /// As Update, always by the tables: the path taken on CPUs without carry-less multiplication.
  uint32_t UpdateByTable(uint32_t reg, const uint8_t* data, size_t count) const;

 private:
  // x^(n-1) mod P as a reflected 64-bit lane (degree d at bit 63 - d): multiplying a lane by it
  // carry-lessly moves the lane n bits further along the message without changing the remainder.
  static constexpr uint64_t FoldConstant(uint64_t normal, unsigned n) {
    unsigned width = 0;
    while ((normal >> (width + 1)) != 0) ++width;
    uint64_t r = 1;
    for (unsigned i = 0; i + 1 < n; ++i) {
      r <<= 1;
      if (r & (uint64_t{1} << width)) r ^= normal;
    }
    uint64_t lane = 0;
    for (unsigned d = 0; d < width; ++d) {
      if (r & (uint64_t{1} << d)) lane |= uint64_t{1} << (63 - d);
    }
    return lane;
  }

  uint32_t UpdateFolded(uint32_t reg, const uint8_t* data, size_t& count) const;
  uint32_t UpdateFoldedWide(uint32_t reg, const uint8_t* data, size_t& count) const;

  std::array<std::array<uint32_t, 256>, 8> tables_{};
  std::array<uint64_t, 2> fold128_{};   // {low lane, high lane} constants for one block
  std::array<uint64_t, 2> fold512_{};   // the same for four blocks
  std::array<uint64_t, 2> fold2048_{};  // and for sixteen
};

/// The CRC-32 of zlib (ISO-HDLC) as a running value, like zlib's crc32: start from 0 and feed
/// the data in pieces of any size; UpdateCrc32(UpdateCrc32(0, a, n), b, m) is the CRC-32 of a
/// followed by b. A count of 0 returns crc without reading.
uint32_t UpdateCrc32(uint32_t crc, const uint8_t* data, size_t count);

}  // namespace vex
