// 012v row kernels. The portable versions are the definition; the AVX2 versions
// (v210_avx2.cpp) convert whole blocks and hand the rest to the portable kernel.
//
// A 012v group is the sample stream Cb0 Y0 Cr0 Y1 Cb1 Y2 Cr1 Y3 Cb2 Y4 Cr2 Y5 (the
// UYVY order) cut into four triples, one per little-endian word: bits 0-9, 10-19,
// 20-29. So an 8-bit UYVY row and a 012v row hold the same stream, and the group
// kernels below move twelve samples at a time between the two.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelt::ycbcr {

inline constexpr uint32_t kV012GroupBytes = 16;
inline constexpr uint32_t kV012GroupPixels = 6;

// `groups` groups of twelve 8-bit UYVY bytes -> 012v groups (each sample * 4).
// Reads 12*groups bytes.
void UyvyToV012Groups(uint8_t* dst, const uint8_t* src, size_t groups);
void UyvyToV012GroupsAvx2(uint8_t* dst, const uint8_t* src, size_t groups);

// `groups` 012v groups -> twelve 8-bit UYVY bytes each, rounded to 8 bits.
// Writes 12*groups bytes.
void V012ToUyvyGroups(uint8_t* dst, const uint8_t* src, size_t groups);
void V012ToUyvyGroupsAvx2(uint8_t* dst, const uint8_t* src, size_t groups);

using GroupFn = void (*)(uint8_t*, const uint8_t*, size_t);

// 16-bit planar sources of the threaded converters.
enum class HbdSource : uint8_t {
  k422p10,  // 10-bit 4:2:2, samples masked to 10 bits
  k422p12,  // 12-bit 4:2:2, samples >> 2
  k444p12,  // 12-bit 4:4:4, samples >> 2, chroma from the even pixels
};

struct HbdFrame {
  uint8_t* dst;
  const uint16_t* y;
  const uint16_t* cb;
  const uint16_t* cr;
  uint32_t width;
  uint32_t height;
  uint32_t dst_stride;
  uint32_t src_stride;
};

// Byte offset of chroma row r (4:2:2: half the luma offset; 4:4:4: the luma offset).
inline size_t HbdChromaOffset(HbdSource s, uint32_t row, uint32_t src_stride) {
  const size_t luma = size_t{row} * src_stride;
  return s == HbdSource::k444p12 ? luma : luma / 2;
}

// One 012v row from planar rows, from group `first` on, with the two-word overrun
// when width is not a multiple of 6 and the words fit in the row pitch `pitch`.
void HbdTo012vRow(HbdSource s, uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr,
                  uint32_t width, uint32_t first, size_t pitch);
// Whole-frame single-threaded kernels; return height * max(minimum pitch, dst_stride).
uint32_t HbdTo012vFrame(HbdSource s, const HbdFrame& f);
uint32_t HbdTo012vFrameAvx2(HbdSource s, const HbdFrame& f);

// One UYVY row from 10-bit 4:2:2 rows, ceil(width/2) groups, from pixel pair `first` on.
void P10ToUyvyRow(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width,
                  uint32_t first);
// Return height * dst_stride.
uint32_t P10ToUyvyFrame(const HbdFrame& f);
uint32_t P10ToUyvyFrameAvx2(const HbdFrame& f);

}  // namespace zelt::ycbcr
