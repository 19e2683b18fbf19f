// Kernels shared by the packed 10-bit transport converters and their AVX2 twins.
//
// The packed stream: 10-bit samples, most significant bit first, four in five
// bytes. Sample k of block i sits in bytes 5i+k and 5i+k+1 (see kReadMask...).
// A v210 group: four little-endian words of three samples at bits 0, 10 and 20,
// in the same sample order as the stream, so 15 stream bytes make one group.
#pragma once

#include "core/paths.h"
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zelt::transport {

// Reading sample k: ((b[5i+k] & kReadMaskHi[k]) << kReadShiftHi[k]) + ((b[5i+k+1] & kReadMaskLo[k]) >> kReadShiftLo[k]).
inline constexpr uint8_t kReadMaskHi[4] = {0xFF, 0x3F, 0x0F, 0x03};
inline constexpr uint8_t kReadShiftHi[4] = {2, 4, 6, 8};
inline constexpr uint8_t kReadMaskLo[4] = {0xC0, 0xF0, 0xFC, 0xFF};
inline constexpr uint8_t kReadShiftLo[4] = {6, 4, 2, 0};
// Writing sample k: byte 5i+k keeps kKeepHi[k] and takes (v >> kWriteShiftHi[k]) & kPutHi[k];
// byte 5i+k+1 keeps kKeepLo[k] and takes (v << kWriteShiftLo[k]) & kPutLo[k].
inline constexpr uint8_t kKeepHi[4] = {0x00, 0xC0, 0xF0, 0xFC};
inline constexpr uint8_t kWriteShiftHi[4] = {2, 4, 6, 8};
inline constexpr uint8_t kPutHi[4] = {0xFF, 0x3F, 0x0F, 0x03};
inline constexpr uint8_t kKeepLo[4] = {0x3F, 0x0F, 0x03, 0x00};
inline constexpr uint8_t kWriteShiftLo[4] = {6, 4, 2, 0};
inline constexpr uint8_t kPutLo[4] = {0xC0, 0xF0, 0xFC, 0xFF};

inline uint32_t ReadSample(const uint8_t* stream, size_t index) {
  const uint8_t* p = stream + (index / 4) * 5 + index % 4;
  const size_t k = index % 4;
  return ((uint32_t{p[0]} & kReadMaskHi[k]) << kReadShiftHi[k]) + ((uint32_t{p[1]} & kReadMaskLo[k]) >> kReadShiftLo[k]);
}

inline void WriteSample(uint8_t* stream, size_t index, uint32_t v) {
  uint8_t* p = stream + (index / 4) * 5 + index % 4;
  const size_t k = index % 4;
  p[0] = static_cast<uint8_t>((p[0] & kKeepHi[k]) | ((v >> kWriteShiftHi[k]) & kPutHi[k]));
  p[1] = static_cast<uint8_t>((p[1] & kKeepLo[k]) | ((v << kWriteShiftLo[k]) & kPutLo[k]));
}

inline uint32_t Load32(const uint8_t* p) {
  uint32_t v;
  std::memcpy(&v, p, 4);
  return v;
}
inline void Store32(uint8_t* p, uint32_t v) { std::memcpy(p, &v, 4); }

#if ZELT_X86
// Unpacks whole v210 groups from a packed stream (15 bytes -> 16), two at a time,
// and returns how many it did (even, at most `groups`). The caller guarantees
// 15 * groups + 1 readable bytes. Bits of each destination word under `keepMask`
// keep what they held; the sample bits are replaced.
size_t UnpackGroupsAvx2(uint8_t* dst, const uint8_t* src, size_t groups, uint32_t keepMask);

// Packs whole v210 groups into the stream (16 bytes -> 15), four at a time, and
// returns how many it did. Each chunk's stores run 6 bytes past its 60, so the
// kernel always leaves at least one whole group for its caller to write after it.
size_t PackGroupsAvx2(uint8_t* dst, const uint8_t* src, size_t groups);

// Y210 (12 16-bit samples per 6 pixels) to whole v210 groups, two at a time;
// returns the groups done.
size_t Y210GroupsAvx2(uint8_t* dst, const uint8_t* src, size_t groups);

// Y210 to 8-bit high bytes, eight pixel pairs (64 bytes in, 32 out) at a time;
// returns the pairs done.
size_t Y210HighBytesAvx2(uint8_t* dst, const uint8_t* src, size_t pairs);
#else
// Other architectures have no 256-bit kernels (the path selector never picks them there).
inline size_t UnpackGroupsAvx2(uint8_t*, const uint8_t*, size_t, uint32_t) { return 0; }
inline size_t PackGroupsAvx2(uint8_t*, const uint8_t*, size_t) { return 0; }
inline size_t Y210GroupsAvx2(uint8_t*, const uint8_t*, size_t) { return 0; }
inline size_t Y210HighBytesAvx2(uint8_t*, const uint8_t*, size_t) { return 0; }
#endif

}  // namespace zelt::transport
