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

namespace zelt::transcode {

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

// 16-bit planar sources: the sample depth (the low bits of each 16-bit sample)
// and the chroma arrangement.
enum class HbdSource : uint8_t {
  k422p10, k422p12, k422p16,
  k444p10, k444p12,  // chroma taken from the even pixels, no filtering
  k420p10, k420p16,  // picture row r reads chroma row r/2
};

// Helpers defined in this header have internal linkage: it is also compiled into
// the AVX2 objects, and one shared inline copy could be handed to a baseline caller.
// Right shift that brings a sample to 10 bits (it is then masked to 10 bits).
static constexpr unsigned HbdShift(HbdSource s) {
  switch (s) {
    case HbdSource::k422p12:
    case HbdSource::k444p12: return 2;
    case HbdSource::k422p16:
    case HbdSource::k420p16: return 6;
    default: return 0;
  }
}
static constexpr bool HbdFullChroma(HbdSource s) { return s == HbdSource::k444p10 || s == HbdSource::k444p12; }
static constexpr bool Hbd420(HbdSource s) { return s == HbdSource::k420p10 || s == HbdSource::k420p16; }

struct HbdFrame {
  uint8_t* dst;
  const uint16_t* y;
  const uint16_t* cb;
  const uint16_t* cr;
  uint32_t width;
  uint32_t height;
  uint32_t dst_stride;
  uint32_t src_stride;
  uint32_t first_row = 0;  // picture row of the first row here (bands of a 4:2:0 frame)
};

// Byte offset of the chroma row of picture row r: 4:2:2 half the luma offset,
// 4:4:4 the luma offset, 4:2:0 half the offset of luma row r/2.
static inline size_t HbdChromaOffset(HbdSource s, uint32_t row, uint32_t src_stride) {
  if (HbdFullChroma(s)) return size_t{row} * src_stride;
  if (Hbd420(s)) return size_t{row / 2} * src_stride / 2;
  return size_t{row} * src_stride / 2;
}

// Chroma offset of row r of a frame or band, from the band's chroma pointers.
static inline size_t HbdBandChroma(HbdSource s, const HbdFrame& f, uint32_t r) {
  return HbdChromaOffset(s, f.first_row + r, f.src_stride) - HbdChromaOffset(s, f.first_row, f.src_stride);
}

// One 012v row from planar rows, from group `first` on, with the two-word overrun
// when width is not a multiple of 6 and the words fit in the row pitch `pitch`.
void HbdTo012vRow(HbdSource s, uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr,
                  uint32_t width, uint32_t first, size_t pitch);
// The same for any right shift 0..6 and either chroma width.
void HbdTo012vRowShift(unsigned shift, bool full, uint8_t* dst, const uint16_t* y, const uint16_t* cb,
                       const uint16_t* cr, uint32_t width, uint32_t first, size_t pitch);
// Whole-frame single-threaded kernels; return height * max(minimum pitch, dst_stride).
uint32_t HbdTo012vFrame(HbdSource s, const HbdFrame& f);
uint32_t HbdTo012vFrameAvx2(HbdSource s, const HbdFrame& f);

// One UYVY row from 4:2:2 rows (10-bit: shift 2, 16-bit: shift 8; the low 8 bits
// kept), ceil(width/2) groups, from pixel pair `first` on.
void HbdToUyvyRow(unsigned shift, uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr,
                  uint32_t width, uint32_t first);
// 4:2:2 or 4:2:0 sources of 10 or 16 bits (k422p10, k420p10, k420p16). Return
// height * dst_stride.
uint32_t HbdToUyvyFrame(HbdSource s, const HbdFrame& f);
uint32_t HbdToUyvyFrameAvx2(HbdSource s, const HbdFrame& f);

}  // namespace zelt::transcode
