// ST 2084 (PQ) transfer by table look-up: the six tables, their getters and the
// converters that apply the 8-bit tables to byte, 2vuy and v210 pictures.
#include <algorithm>
#include <cstring>

#include "core/simd_level.h"
#include "zelt/pq.h"

namespace zelt::pq {
namespace {

// One array, tables in getter order. The v210 converters index the 8-bit tables
// with 10-bit codes and read on into what follows, so the order and the tail
// after the last table are part of the behaviour (see scripts/pqgen.py).
constexpr uint32_t kTables[] = {
#include "pq_tables.inc"
};

constexpr size_t kLinToPq12 = 0;
constexpr size_t kLinToPq10 = kLinToPq12 + 4096;
constexpr size_t kLinToPq8 = kLinToPq10 + 1024;
constexpr size_t kPqToLin12 = kLinToPq8 + 256;
constexpr size_t kPqToLin10 = kPqToLin12 + 4096;
constexpr size_t kPqToLin8 = kPqToLin10 + 1024;
constexpr size_t kTail = kPqToLin8 + 256;
static_assert(sizeof(kTables) / sizeof(kTables[0]) == kTail + 768, "pq_tables.inc does not match the layout");

const uint32_t* const kLinToPq8Table = kTables + kLinToPq8;
const uint32_t* const kPqToLin8Table = kTables + kPqToLin8;

inline uint32_t Load32(const uint8_t* p) {
  uint32_t v;
  std::memcpy(&v, p, 4);
  return v;
}
inline void Store32(uint8_t* p, uint32_t v) { std::memcpy(p, &v, 4); }

uint32_t Bytes(uint8_t* dst, const uint8_t* src, uint32_t ds, uint32_t ss, uint32_t height, const uint32_t* t) {
  SimdGuard();
  const uint32_t n = std::min(ds, ss);
  for (uint32_t y = 0; y < height; ++y) {
    uint8_t* d = dst + size_t{y} * ds;
    const uint8_t* s = src + size_t{y} * ss;
    for (uint32_t i = 0; i < n; ++i) d[i] = static_cast<uint8_t>(t[s[i]]);
  }
  return 0;
}

// Two words of a v210 step. The table index of out0 is bits 12-21 and its entry
// lands at bits 12 and up; out1 takes bits 2-11 and 22-31, both scaled by 4.
inline uint32_t Even(uint32_t w, const uint32_t* t) { return (t[(w >> 12) & 0x3FF] << 12) | (w & 0x3FF003FFu); }
inline uint32_t Odd(uint32_t w, const uint32_t* t) {
  return (((t[w >> 22] << 20) | t[(w >> 2) & 0x3FF]) * 4u) | (w & 0x000FFC00u);
}

// Words at byte offset 1 of each line, ((min stride - 1) >> 4) + 1 steps of 16
// bytes, so the last step reaches up to 16 bytes past the shorter stride.
uint32_t V210(uint8_t* dst, const uint8_t* src, uint32_t ds, uint32_t ss, uint32_t height, const uint32_t* t) {
  SimdGuard();
  const uint32_t steps = ((std::min(ds, ss) - 1) >> 4) + 1;
  for (uint32_t y = 0; y < height; ++y) {
    uint8_t* d = dst + size_t{y} * ds + 1;
    const uint8_t* s = src + size_t{y} * ss + 1;
    for (uint32_t i = 0; i < steps; ++i, d += 16, s += 16) {
      const uint32_t w0 = Load32(s), w1 = Load32(s + 4), w2 = Load32(s + 8), w3 = Load32(s + 12);
      Store32(d, Even(w0, t));
      Store32(d + 4, Odd(w1, t));
      Store32(d + 8, Even(w2, t));
      Store32(d + 12, Odd(w3, t));
    }
  }
  return 0;
}

}  // namespace
}  // namespace zelt::pq

using namespace zelt;
using namespace zelt::pq;

extern "C" {

ZELT_API const uint32_t* get_ardwRGB_to_SMPTE2048_12Bit(void) { return kTables + kLinToPq12; }
ZELT_API const uint32_t* get_ardwRGB_to_SMPTE2048_10Bit(void) { return kTables + kLinToPq10; }
ZELT_API const uint32_t* get_ardwRGB_to_SMPTE2048_8Bit(void) { return kTables + kLinToPq8; }
ZELT_API const uint32_t* get_ardwSMPTE2048_to_RGB_12Bit(void) { return kTables + kPqToLin12; }
ZELT_API const uint32_t* get_ardwSMPTE2048_to_RGB_10Bit(void) { return kTables + kPqToLin10; }
ZELT_API const uint32_t* get_ardwSMPTE2048_to_RGB_8Bit(void) { return kTables + kPqToLin8; }

ZELT_API uint32_t zlt_rgb_to_st2084(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride,
                                    uint32_t height) {
  return Bytes(dst, src, dstStride, srcStride, height, kLinToPq8Table);
}

ZELT_API uint32_t zlt_st2084_to_rgb(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride,
                                    uint32_t height) {
  return Bytes(dst, src, dstStride, srcStride, height, kPqToLin8Table);
}

// Only the luma bytes (1 and 3 of each group) of the destination are written.
ZELT_API uint32_t zlt_yuv2_to_st2084(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride,
                                     uint32_t height) {
  SimdGuard();
  const uint32_t groups = std::min(dstStride, srcStride) / 4;
  for (uint32_t y = 0; y < height; ++y) {
    uint8_t* d = dst + size_t{y} * dstStride;
    const uint8_t* s = src + size_t{y} * srcStride;
    for (uint32_t k = 0; k < groups; ++k) {
      d[4 * k + 1] = static_cast<uint8_t>(kLinToPq8Table[s[4 * k + 1]]);
      d[4 * k + 3] = static_cast<uint8_t>(kLinToPq8Table[s[4 * k + 3]]);
    }
  }
  return 0;
}

// Copies bytes 4k+1 .. 4k+4 of each group before replacing the luma: byte 0 of a
// line is never written and the last group's copy reaches one byte past it.
ZELT_API uint32_t zlt_st2084_to_yuv2(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride,
                                     uint32_t height) {
  SimdGuard();
  const uint32_t groups = std::min(dstStride, srcStride) / 4;
  for (uint32_t y = 0; y < height; ++y) {
    uint8_t* d = dst + size_t{y} * dstStride;
    const uint8_t* s = src + size_t{y} * srcStride;
    for (uint32_t k = 0; k < groups; ++k) {
      std::memcpy(d + 4 * k + 1, s + 4 * k + 1, 4);
      d[4 * k + 1] = static_cast<uint8_t>(kPqToLin8Table[s[4 * k + 1]]);
      d[4 * k + 3] = static_cast<uint8_t>(kPqToLin8Table[s[4 * k + 3]]);
    }
  }
  return 0;
}

ZELT_API uint32_t zlt_v210_to_st2084(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride,
                                     uint32_t height) {
  return V210(dst, src, dstStride, srcStride, height, kLinToPq8Table);
}

ZELT_API uint32_t zlt_st2084_to_v210(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride,
                                     uint32_t height) {
  return V210(dst, src, dstStride, srcStride, height, kPqToLin8Table);
}

}  // extern "C"
