// 8-bit layouts to 012v and back.
#include <algorithm>
#include <cstring>

#include "core/paths.h"
#include "transcode/v210_kernels.h"
#include "core/formats.h"
#include "core/platform.h"
#include "core/simd_level.h"
#include "zelt/ycbcr_v210.h"

namespace zelt::transcode {

namespace {

inline uint32_t Word(uint32_t a, uint32_t b, uint32_t c) { return a | (b << 10) | (c << 20); }

inline void Store32(uint8_t* p, uint32_t v) { std::memcpy(p, &v, 4); }
inline uint32_t Load32(const uint8_t* p) {
  uint32_t v;
  std::memcpy(&v, p, 4);
  return v;
}

// The 10-to-8-bit rule without a branch: (v + 2) >> 2 is 256 only for 1022 and
// 1023, and 1021..1023 all give 255 either way.
inline uint8_t Round8(uint32_t v) { return static_cast<uint8_t>(std::min<uint32_t>((v + 2) >> 2, 255)); }

// Sample i (0..11) of a 012v group.
inline uint32_t GroupSample(const uint8_t* g, uint32_t i) { return (Load32(g + 4 * (i / 3)) >> (10 * (i % 3))) & 0x3FF; }

}  // namespace

void UyvyToV012Groups(uint8_t* dst, const uint8_t* src, size_t groups) {
  for (size_t g = 0; g < groups; ++g, src += 12, dst += 16) {
    for (int w = 0; w < 4; ++w) {
      Store32(dst + 4 * w, Word(src[3 * w] * 4u, src[3 * w + 1] * 4u, src[3 * w + 2] * 4u));
    }
  }
}

void V012ToUyvyGroups(uint8_t* dst, const uint8_t* src, size_t groups) {
  for (size_t g = 0; g < groups; ++g, src += 16, dst += 12) {
    for (int w = 0; w < 4; ++w) {
      const uint32_t v = Load32(src + 4 * w);
      dst[3 * w] = Round8(v & 0x3FF);
      dst[3 * w + 1] = Round8((v >> 10) & 0x3FF);
      dst[3 * w + 2] = Round8((v >> 20) & 0x3FF);
    }
  }
}

namespace {

GroupFn PickEncoder() {
#if ZELT_X86
  if (CurrentPaths().avx2) return UyvyToV012GroupsAvx2;
#endif
  return UyvyToV012Groups;
}

GroupFn PickDecoder() {
#if ZELT_X86
  if (CurrentPaths().avx2) return V012ToUyvyGroupsAvx2;
#endif
  return V012ToUyvyGroups;
}

// ---- 8-bit to 012v ----

// Where the packer finds its samples: packed sources step 4 bytes per pixel pair
// (the two luma bytes 2 apart), planar sources 1 byte per chroma sample.
template <bool kPlanar>
void Pack8Row(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t groups) {
  for (uint32_t g = 0; g < groups; ++g, dst += 16) {
    uint32_t s[12];
    for (uint32_t p = 0; p < 3; ++p) {
      const size_t k = size_t{g} * 3 + p;
      if constexpr (kPlanar) {
        s[4 * p] = cb[k];
        s[4 * p + 1] = y[2 * k];
        s[4 * p + 2] = cr[k];
        s[4 * p + 3] = y[2 * k + 1];
      } else {
        s[4 * p] = cb[4 * k];
        s[4 * p + 1] = y[4 * k];
        s[4 * p + 2] = cr[4 * k];
        s[4 * p + 3] = y[4 * k + 2];
      }
    }
    for (int w = 0; w < 4; ++w) Store32(dst + 4 * w, Word(s[3 * w] * 4, s[3 * w + 1] * 4, s[3 * w + 2] * 4));
  }
}

struct PackSource {
  const uint8_t* luma;
  const uint8_t* cb;
  const uint8_t* cr;
  bool is422;    // planar: one chroma row per luma row (else one per two)
  bool planar;
  bool bottomUp; // cyuv: the first row in memory is the bottom row
};

// The 8-bit packer behind every 8-bit source but UYVY. Planar rows are read at
// width (luma) and width/2 (chroma) bytes; packed rows at src_stride.
uint32_t Pack8To012v(uint8_t* dst, const PackSource& s, uint32_t width, uint32_t height, uint32_t dst_stride,
                     uint32_t src_stride) {
  const uint32_t minPitch = V012MinPitch(width);
  const size_t pitch = std::max(dst_stride, minPitch);
  const uint32_t groups = (width + 5) / 6;
  for (uint32_t r = 0; r < height; ++r) {
    const uint32_t row = s.bottomUp ? height - 1 - r : r;
    uint8_t* d = dst + r * pitch;
    if (s.planar) {
      const size_t c = size_t{width / 2} * (s.is422 ? row : row / 2);
      Pack8Row<true>(d, s.luma + size_t{row} * width, s.cb + c, s.cr + c, groups);
    } else {
      const size_t o = size_t{row} * src_stride;
      Pack8Row<false>(d, s.luma + o, s.cb + o, s.cr + o, groups);
    }
  }
  return minPitch * height;
}

uint32_t PackPacked(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, int lumaAt,
                    int cbAt, int crAt, bool bottomUp) {
  SimdGuard();
  return Pack8To012v(dst, {src + lumaAt, src + cbAt, src + crAt, true, false, bottomUp}, w, h, ds, ss);
}

uint32_t PackPlanar(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss,
                    bool is422, bool crFirst) {
  SimdGuard();
  const size_t lumaBytes = size_t{w} * h;
  const uint8_t* second = src + lumaBytes;
  const uint8_t* third = second + (is422 ? lumaBytes / 2 : lumaBytes / 4);
  const uint8_t* cb = crFirst ? third : second;
  const uint8_t* cr = crFirst ? second : third;
  return Pack8To012v(dst, {src, cb, cr, is422, true, false}, w, h, ds, ss);
}

// ---- 012v to 8-bit ----

// Position in a 012v source: a group and a pixel pair (0..2) inside it.
struct Reader {
  const uint8_t* group;
  uint32_t pair;
};

void DecodePair(const uint8_t* g, uint32_t pair, uint8_t* out) {
  for (uint32_t i = 0; i < 4; ++i) out[i] = TenToEight(GroupSample(g, 4 * pair + i));
}

void ReadPairs(Reader& rd, uint32_t pairs, uint8_t* out, GroupFn groupFn) {
  auto one = [&] {
    DecodePair(rd.group, rd.pair, out);
    out += 4;
    --pairs;
    if (++rd.pair == 3) {
      rd.pair = 0;
      rd.group += kV012GroupBytes;
    }
  };
  while (pairs != 0 && rd.pair != 0) one();
  const size_t groups = pairs / 3;
  groupFn(out, rd.group, groups);
  out += groups * 12;
  rd.group += groups * kV012GroupBytes;
  pairs -= static_cast<uint32_t>(groups * 3);
  while (pairs != 0) one();
}

// One row of `width` pixels as UYVY bytes. The last pair of an odd width is
// written whole when `wholeLastPair`, else cut to its first two bytes, so the row
// is exactly 2*width bytes.
void ReadRow(Reader& rd, uint32_t width, uint8_t* out, GroupFn groupFn, bool wholeLastPair) {
  ReadPairs(rd, width / 2, out, groupFn);
  if (width & 1) {
    uint8_t last[4];
    ReadPairs(rd, 1, last, groupFn);
    std::memcpy(out + size_t{width / 2} * 4, last, wholeLastPair ? 4 : 2);
  }
}

// A source row pitch of 0 carries the reader on from row to row.
class V012Walk {
 public:
  V012Walk(const uint8_t* src, uint32_t width, uint32_t src_stride)
      : src_(src), width_(width), pitch_(V012Pitch(width, src_stride)), rd_{src, 0}, decode_(PickDecoder()) {}

  void Row(uint32_t r, uint8_t* out, bool wholeLastPair) {
    if (pitch_ != 0) rd_ = {src_ + size_t{r} * pitch_, 0};
    ReadRow(rd_, width_, out, decode_, wholeLastPair);
  }

 private:
  const uint8_t* src_;
  uint32_t width_;
  uint32_t pitch_;
  Reader rd_;
  GroupFn decode_;
};

// A UYVY scratch row of whole pairs: on the stack when small, else QrAlloc.
class ScratchRow {
 public:
  explicit ScratchRow(uint32_t width) {
    const size_t n = (size_t{width} + 1) / 2 * 4;
    p_ = n <= sizeof stack_ ? stack_ : static_cast<uint8_t*>(QrAlloc(n));
  }
  ~ScratchRow() {
    if (p_ != stack_) QrFree(p_);
  }
  ScratchRow(const ScratchRow&) = delete;
  ScratchRow& operator=(const ScratchRow&) = delete;
  uint8_t* data() { return p_; }

 private:
  alignas(64) uint8_t stack_[8192];
  uint8_t* p_;
};

uint32_t V012ToUyvy(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss,
                    bool bottomUp) {
  SimdGuard();
  V012Walk walk(src, w, ss);
  for (uint32_t r = 0; r < h; ++r) walk.Row(r, dst + size_t{bottomUp ? h - 1 - r : r} * ds, false);
  return h * ds;
}

// YUY2 (crFirst false) or YVYU (crFirst true) from UYVY pairs; 2*width bytes.
void UyvyToYuyvRow(uint8_t* d, const uint8_t* s, uint32_t width, bool crFirst) {
  const uint32_t c0 = crFirst ? 2 : 0, c1 = crFirst ? 0 : 2;
  for (uint32_t k = 0; k < width / 2; ++k, s += 4, d += 4) {
    d[0] = s[1];
    d[1] = s[c0];
    d[2] = s[3];
    d[3] = s[c1];
  }
  if (width & 1) {
    d[0] = s[1];
    d[1] = s[c0];
  }
}

uint32_t V012ToYuyv(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss,
                    bool crFirst) {
  SimdGuard();
  V012Walk walk(src, w, ss);
  ScratchRow row(w);
  for (uint32_t r = 0; r < h; ++r) {
    walk.Row(r, row.data(), true);
    UyvyToYuyvRow(dst + size_t{r} * ds, row.data(), w, crFirst);
  }
  return h * ds;
}

// Planar destinations: luma rows of width bytes, chroma pitch dst_stride/2 and
// width/2 samples a row. 4:2:0 takes one chroma line per field: rows with
// r mod 4 = 0 or 3 give chroma row r/2.
uint32_t V012ToPlanar(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss,
                      bool is422, bool crFirst) {
  SimdGuard();
  const size_t lumaBytes = size_t{h} * ds;
  uint8_t* second = dst + lumaBytes;
  uint8_t* third = second + (is422 ? lumaBytes / 2 : lumaBytes / 4);
  uint8_t* cb = crFirst ? third : second;
  uint8_t* cr = crFirst ? second : third;
  const size_t cpitch = ds / 2;
  const uint32_t chromaRows = is422 ? h : h / 2;
  V012Walk walk(src, w, ss);
  ScratchRow row(w);
  for (uint32_t r = 0; r < h; ++r) {
    walk.Row(r, row.data(), true);
    const uint8_t* s = row.data();
    uint8_t* y = dst + size_t{r} * ds;
    for (uint32_t i = 0; i < w; ++i) y[i] = s[2 * i + 1];
    const uint32_t crow = is422 ? r : r / 2;
    const bool writes = is422 || (r % 4 == 0 || r % 4 == 3);
    if (writes && crow < chromaRows) {
      uint8_t* u = cb + crow * cpitch;
      uint8_t* v = cr + crow * cpitch;
      for (uint32_t k = 0; k < w / 2; ++k) {
        u[k] = s[4 * k];
        v[k] = s[4 * k + 2];
      }
    }
  }
  return is422 ? h * ds * 2 : h * ds * 3 / 2;
}

// 012v to three 4:2:2 planes of 8-bit (rounded) or 16-bit (the 10-bit value)
// samples: width luma samples and width/2 chroma samples a row; chroma rows
// dst_stride/2 bytes apart.
template <typename T>
uint32_t V012ToPlanes(T* y, T* cb, T* cr, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss) {
  SimdGuard();
  const uint32_t pitch = V012Pitch(w, ss);
  Reader rd{src, 0};
  auto at = [](T* plane, size_t bytes) { return reinterpret_cast<T*>(reinterpret_cast<uint8_t*>(plane) + bytes); };
  for (uint32_t r = 0; r < h; ++r) {
    if (pitch != 0) rd = {src + size_t{r} * pitch, 0};
    T* yr = at(y, size_t{r} * ds);
    T* ur = at(cb, size_t{r} * (ds / 2));
    T* vr = at(cr, size_t{r} * (ds / 2));
    for (uint32_t k = 0; k < (w + 1) / 2; ++k) {
      uint32_t s[4];
      for (uint32_t i = 0; i < 4; ++i) {
        s[i] = GroupSample(rd.group, 4 * rd.pair + i);
        if constexpr (sizeof(T) == 1) s[i] = Round8(s[i]);
      }
      if (++rd.pair == 3) {
        rd.pair = 0;
        rd.group += kV012GroupBytes;
      }
      yr[2 * k] = static_cast<T>(s[1]);
      if (2 * k + 1 < w) {
        yr[2 * k + 1] = static_cast<T>(s[3]);
        ur[k] = static_cast<T>(s[0]);
        vr[k] = static_cast<T>(s[2]);
      }
    }
  }
  return h * ds * 2;
}

}  // namespace

}  // namespace zelt::transcode

using namespace zelt;
using namespace zelt::transcode;

#define ZELT_V210_ARGS uint8_t *dst, const uint8_t *src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride

extern "C" {

ZELT_API uint32_t cycbcr_uyvy_to_012v(ZELT_V210_ARGS) {
  SimdGuard();
  const GroupFn encode = PickEncoder();
  const uint32_t minPitch = V012MinPitch(width);
  const size_t pitch = std::max(dst_stride, minPitch);
  const uint32_t full = width / 6, groups = (width + 5) / 6;
  for (uint32_t r = 0; r < height; ++r) {
    const uint8_t* s = src + size_t{r} * src_stride;
    uint8_t* d = dst + r * pitch;
    encode(d, s, full);
    // The last, partial group reads the rest of its twelve bytes past the row.
    UyvyToV012Groups(d + size_t{full} * 16, s + size_t{full} * 12, groups - full);
  }
  return minPitch * height;
}

ZELT_API uint32_t cycbcr_yuy2_to_012v(ZELT_V210_ARGS) {
  return PackPacked(dst, src, width, height, dst_stride, src_stride, 0, 1, 3, false);
}
ZELT_API uint32_t cycbcr_yvyu_to_012v(ZELT_V210_ARGS) {
  return PackPacked(dst, src, width, height, dst_stride, src_stride, 0, 3, 1, false);
}
ZELT_API uint32_t cycbcr_cyuv_to_012v(ZELT_V210_ARGS) {
  return PackPacked(dst, src, width, height, dst_stride, src_stride, 1, 0, 2, true);
}
ZELT_API uint32_t cycbcr_i420_to_012v(ZELT_V210_ARGS) {
  return PackPlanar(dst, src, width, height, dst_stride, src_stride, false, false);
}
ZELT_API uint32_t cycbcr_yv12_to_012v(ZELT_V210_ARGS) {
  return PackPlanar(dst, src, width, height, dst_stride, src_stride, false, true);
}
ZELT_API uint32_t cycbcr_p422_to_012v(ZELT_V210_ARGS) {
  return PackPlanar(dst, src, width, height, dst_stride, src_stride, true, false);
}

ZELT_API uint32_t cycbcr_012v_to_uyvy(ZELT_V210_ARGS) {
  return V012ToUyvy(dst, src, width, height, dst_stride, src_stride, false);
}
ZELT_API uint32_t cycbcr_012v_to_cyuv(ZELT_V210_ARGS) {
  return V012ToUyvy(dst, src, width, height, dst_stride, src_stride, true);
}
ZELT_API uint32_t cycbcr_012v_to_yuy2(ZELT_V210_ARGS) {
  return V012ToYuyv(dst, src, width, height, dst_stride, src_stride, false);
}
ZELT_API uint32_t cycbcr_012v_to_yvyu(ZELT_V210_ARGS) {
  return V012ToYuyv(dst, src, width, height, dst_stride, src_stride, true);
}
ZELT_API uint32_t cycbcr_012v_to_i420(ZELT_V210_ARGS) {
  return V012ToPlanar(dst, src, width, height, dst_stride, src_stride, false, false);
}
ZELT_API uint32_t cycbcr_012v_to_yv12(ZELT_V210_ARGS) {
  return V012ToPlanar(dst, src, width, height, dst_stride, src_stride, false, true);
}
ZELT_API uint32_t cycbcr_012v_to_p422(ZELT_V210_ARGS) {
  return V012ToPlanar(dst, src, width, height, dst_stride, src_stride, true, false);
}


ZELT_API uint32_t cycbcr_012v_to_planar422(uint8_t* y, uint8_t* cb, uint8_t* cr, const uint8_t* src, uint32_t width,
                                           uint32_t height, uint32_t dst_stride, uint32_t src_stride) {
  return V012ToPlanes(y, cb, cr, src, width, height, dst_stride, src_stride);
}
ZELT_API uint32_t cycbcr_012v_to_planar422_16(uint16_t* y, uint16_t* cb, uint16_t* cr, const uint8_t* src,
                                              uint32_t width, uint32_t height, uint32_t dst_stride,
                                              uint32_t src_stride) {
  return V012ToPlanes(y, cb, cr, src, width, height, dst_stride, src_stride);
}

}  // extern "C"
