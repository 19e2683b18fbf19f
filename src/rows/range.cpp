// Full-range ("CG") to video-range ("VS") RGB in place.
//
// Two rules, both exact and both required. The three-channel mapping runs whole
// blocks of eight samples through a fixed-point rule (a 16 x 16-bit high product,
// which can land one code below the exact quotient) and the remaining zero to seven
// samples through the exact rule q = v * 219 / 255. So a sample's result depends on
// where it sits in the run. The four-channel mapping uses the exact rule throughout.
#include <algorithm>

#include "core/paths.h"
#include "core/simd_level.h"
#include "zelt/rows.h"
#include "rows/row_kernels.h"

namespace zelt::rows {
namespace {

// (1 << bits) >> 4 in 32 bits, shift count modulo 32, kept as a 16-bit value.
inline uint16_t BlackOffset(int32_t bits) { return static_cast<uint16_t>((1u << (uint32_t(bits) & 31)) >> 4); }

// Block rule for 16-bit samples: high half of v x 56283, plus the offset, saturating.
void BlockRule16(uint16_t* s, size_t n, uint16_t offset) {
  for (size_t i = 0; i < n; ++i) {
    const uint32_t t = (uint32_t(s[i]) * 56283u) >> 16;
    s[i] = static_cast<uint16_t>(std::min<uint32_t>(t + offset, 65535u));
  }
}

// Block rule for other depths: signed high half of v x 28141, doubled within 16 bits,
// plus the offset with signed 16-bit saturation.
void BlockRuleOther(uint16_t* s, size_t n, uint16_t offset) {
  const int32_t off = static_cast<int16_t>(offset);
  for (size_t i = 0; i < n; ++i) {
    const int32_t t = (int32_t(static_cast<int16_t>(s[i])) * 28141) >> 16;
    const int32_t doubled = static_cast<int16_t>(static_cast<uint16_t>(t << 1));
    s[i] = static_cast<uint16_t>(std::clamp(doubled + off, -32768, 32767));
  }
}

// Exact rule; `signedRead` reads the container as int16.
void ScalarRule(uint16_t* s, size_t n, uint16_t offset, bool signedRead) {
  for (size_t i = 0; i < n; ++i) {
    const int32_t v = signedRead ? int32_t(static_cast<int16_t>(s[i])) : int32_t(s[i]);
    s[i] = static_cast<uint16_t>(v * 219 / 255 + offset);
  }
}

}  // namespace
}  // namespace zelt::rows

using namespace zelt;
using namespace zelt::rows;

extern "C" ZELT_API uint64_t zeltCGRGBtoVSRGB(uint16_t* samples, uint32_t pixels, int32_t bits) {
  SimdGuard();
  const size_t n = 3 * size_t(pixels);
  const size_t blocked = n / 8 * 8;
  const uint16_t offset = BlackOffset(bits);
  const bool is16 = bits == 16;
  size_t done = 0;
#if ZELT_X86
  if (CurrentPaths().avx2) done = is16 ? RangeBlocks16Avx2(samples, blocked, offset) : RangeBlocksOtherAvx2(samples, blocked, offset);
#endif
  if (is16) {
    BlockRule16(samples + done, blocked - done, offset);
  } else {
    BlockRuleOther(samples + done, blocked - done, offset);
  }
  ScalarRule(samples + blocked, n - blocked, offset, !is16);
  return n;
}

extern "C" ZELT_API void zeltCGRGBAtoVSRGBA(uint16_t* samples, uint32_t pixels, int32_t bits) {
  SimdGuard();
  const uint16_t offset = BlackOffset(bits);
  for (size_t p = 0; p < size_t(pixels); ++p) ScalarRule(samples + 4 * p, 3, offset, false);
}
