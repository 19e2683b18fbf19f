// Unpackers from packed 8-bit, 10-bit (v210) and 16-bit 4:2:2 rows to the 16-bit
// intermediate rows, and the plain element converters.
//
// The per-sample rules here are the definition; the SSE4.1 and AVX2 block loops in
// unpack_sse41.cpp / unpack_avx2.cpp produce the same samples and leave the rest of
// a row to these routines.
#include <algorithm>
#include <cstring>

#include "core/paths.h"
#include "core/platform.h"
#include "core/simd_level.h"
#include "zelt/rows.h"
#include "rows/row_kernels.h"

namespace zelt::rows {
namespace {

inline uint32_t Load32(const uint8_t* p) {
  uint32_t w;
  std::memcpy(&w, p, 4);
  return w;
}

// ---- 8-bit Cb-Y0-Cr-Y1 component unpacker ----

inline int32_t FullChroma(int32_t v) { return (v * 56) >> 4; }
inline int32_t FullLuma(int32_t v) { return (v * 55) >> 4; }

inline int32_t LumaOf(UnpackMode m, int32_t y, int32_t cr, int32_t cb, int shift) {
  switch (m) {
    case UnpackMode::kShift: return static_cast<int32_t>(uint32_t(y) << (shift & 31));
    case UnpackMode::kFull: return FullLuma(y) + 64;
    case UnpackMode::kMatrix: return (y * 1024 - cr * 212 - cb * 118 + 42240) >> 8;
    case UnpackMode::kFullMatrix:
      return (FullLuma(y) * 1024 + 213376 - FullChroma(cb) * 118 - FullChroma(cr) * 212) >> 10;
  }
  return 0;
}

inline int32_t CrOf(UnpackMode m, int32_t cr, int32_t cb, int shift) {
  switch (m) {
    case UnpackMode::kShift: return static_cast<int32_t>(uint32_t(cr) << (shift & 31));
    case UnpackMode::kFull: return FullChroma(cr) + 64;
    case UnpackMode::kMatrix: return ((cb * 76 - 144000 + cr * 1049) >> 8) + 512;
    case UnpackMode::kFullMatrix: return ((FullChroma(cb) * 76 - 504000 + FullChroma(cr) * 1049) >> 10) + 512;
  }
  return 0;
}

inline int32_t CbOf(UnpackMode m, int32_t cr, int32_t cb, int shift) {
  switch (m) {
    case UnpackMode::kShift: return static_cast<int32_t>(uint32_t(cb) << (shift & 31));
    case UnpackMode::kFull: return FullChroma(cb) + 64;
    case UnpackMode::kMatrix: return ((cr * 116 - 148352 + cb * 1043) >> 8) + 512;
    case UnpackMode::kFullMatrix: return ((FullChroma(cr) * 116 - 519232 + FullChroma(cb) * 1043) >> 10) + 512;
  }
  return 0;
}

// Scalar loop from source byte `done` until `limit` (2 x count for Y, 4 x count for
// chroma); returns the byte counter at the end (a multiple of 4).
uint32_t UnpackComponentScalar(const uint8_t* src, int16_t* dst, uint32_t done, uint32_t limit, int component,
                               UnpackMode m, int shift) {
  uint32_t i = done;
  if (component == 0) {
    for (int16_t* d = dst + i / 2; i < limit; i += 4, d += 2) {
      const int32_t cb = src[i], y0 = src[i + 1], cr = src[i + 2], y1 = src[i + 3];
      d[0] = static_cast<int16_t>(LumaOf(m, y0, cr, cb, shift));
      d[1] = static_cast<int16_t>(LumaOf(m, y1, cr, cb, shift));
    }
  } else {
    for (int16_t* d = dst + i / 4; i < limit; i += 4, ++d) {
      const int32_t cb = src[i], cr = src[i + 2];
      *d = static_cast<int16_t>(component == 1 ? CrOf(m, cr, cb, shift) : CbOf(m, cr, cb, shift));
    }
  }
  return i;
}

// ---- v210 ----

struct V210Group {
  uint16_t cb0, y0, cr0, y1, cb1, y2, cr1, y3, cb2, y4, cr2, y5;
};

inline V210Group ReadGroup(const uint8_t* p) {
  const uint32_t w0 = Load32(p), w1 = Load32(p + 4), w2 = Load32(p + 8), w3 = Load32(p + 12);
  auto f = [](uint32_t w, int pos) { return static_cast<uint16_t>((w >> (10 * pos)) & 0x3FF); };
  return {f(w0, 0), f(w0, 1), f(w0, 2), f(w1, 0), f(w1, 1), f(w1, 2),
          f(w2, 0), f(w2, 1), f(w2, 2), f(w3, 0), f(w3, 1), f(w3, 2)};
}

// Whole groups to planar 16s rows with the row pipeline's Cr0, Cr0, Cr1 chroma.
void V210PlanarGroups(const uint8_t* src, size_t first, size_t groups, int16_t* y, int16_t* cr, int16_t* cb) {
  for (size_t g = first; g < groups; ++g) {
    const V210Group v = ReadGroup(src + 16 * g);
    int16_t* yy = y + 6 * g;
    yy[0] = v.y0, yy[1] = v.y1, yy[2] = v.y2, yy[3] = v.y3, yy[4] = v.y4, yy[5] = v.y5;
    cr[3 * g] = v.cr0, cr[3 * g + 1] = v.cr0, cr[3 * g + 2] = v.cr1;
    cb[3 * g] = v.cb0, cb[3 * g + 1] = v.cb1, cb[3 * g + 2] = v.cb2;
  }
}

// Whole groups to left-aligned Y, Cb, Cr with the true chroma.
void V210ToYCbCr16(const uint8_t* src, size_t groups, uint16_t* y, uint16_t* cb, uint16_t* cr) {
  for (size_t g = 0; g < groups; ++g) {
    const V210Group v = ReadGroup(src + 16 * g);
    uint16_t* yy = y + 6 * g;
    yy[0] = static_cast<uint16_t>(v.y0 << 6), yy[1] = static_cast<uint16_t>(v.y1 << 6);
    yy[2] = static_cast<uint16_t>(v.y2 << 6), yy[3] = static_cast<uint16_t>(v.y3 << 6);
    yy[4] = static_cast<uint16_t>(v.y4 << 6), yy[5] = static_cast<uint16_t>(v.y5 << 6);
    cb[3 * g] = static_cast<uint16_t>(v.cb0 << 6), cb[3 * g + 1] = static_cast<uint16_t>(v.cb1 << 6);
    cb[3 * g + 2] = static_cast<uint16_t>(v.cb2 << 6);
    cr[3 * g] = static_cast<uint16_t>(v.cr0 << 6), cr[3 * g + 1] = static_cast<uint16_t>(v.cr1 << 6);
    cr[3 * g + 2] = static_cast<uint16_t>(v.cr2 << 6);
  }
}

// ---- CbYCrY frames to Row16u ----

// One pixel pair's outputs, already in left-aligned 16-bit form.
struct Pair16 {
  uint16_t cb, y0, cr, y1;
};

template <typename ReadPair>
void ToRow16u(int32_t width, int32_t height, uint8_t* dst, size_t dstPitch, ReadPair read) {
  const int32_t half = width / 2;
  for (int32_t r = 0; r < height; ++r) {
    uint16_t* row = reinterpret_cast<uint16_t*>(dst + size_t(r) * dstPitch);
    uint16_t* crPart = row + width;
    uint16_t* cbPart = row + width + half;
    for (int32_t x = 0, i = 0; x < width; x += 2, ++i) {
      const Pair16 p = read(r, i);
      row[2 * i] = p.y0;
      row[2 * i + 1] = p.y1;
      crPart[i] = p.cr;
      cbPart[i] = p.cb;
    }
  }
}

inline uint16_t Read16(const uint8_t* p) {
  uint16_t v;
  std::memcpy(&v, p, 2);
  return v;
}

template <typename ReadPair>
uint32_t CbYCrYFrame(int32_t width, int32_t height, void* dst, size_t dstPitch, uint8_t flags, ReadPair read) {
  SimdGuard();
  if ((flags & 2) == 0 || width < 1 || height < 1) return 0;
  ToRow16u(width, height, static_cast<uint8_t*>(dst), dstPitch, read);
  return 0;
}

inline uint16_t Clamp16(int32_t v) { return static_cast<uint16_t>(std::clamp(v, 0, 65535)); }

}  // namespace
}  // namespace zelt::rows

using namespace zelt;
using namespace zelt::rows;

extern "C" ZELT_API uint32_t zeltUnpackRowYUV16s(const uint8_t* src, int16_t* dst, int32_t count, int32_t component,
                                                 int32_t path, int32_t shift, int32_t fullRange, int32_t matrix) {
  SimdGuard();
  if (count < 1) return 0;
  UnpackMode m = UnpackMode::kShift;
  if (shift == 2) {
    if (fullRange && matrix) m = UnpackMode::kFullMatrix;
    else if (fullRange) m = UnpackMode::kFull;
    else if (matrix) m = UnpackMode::kMatrix;
  }
  const uint32_t limit = component == 0 ? 2u * uint32_t(count) : 4u * uint32_t(count);
  uint32_t done = 0;
#if ZELT_X86
  if (path == 2 && CurrentPaths().avx2) {
    done = static_cast<uint32_t>(UnpackRowYUV16sAvx2(src, dst, limit / 16 * 16, component, m, shift));
  }
#endif
  return UnpackComponentScalar(src, dst, done, limit, component, m, shift);
}

extern "C" ZELT_API uint32_t zeltUnpackYUVRow16s(const uint8_t* src, int32_t width, const ZeltPlanes* planes) {
  SimdGuard();
  if (width < 1) return 0;
  int16_t* y = static_cast<int16_t*>(planes->plane[0]);
  int16_t* cr = static_cast<int16_t*>(planes->plane[1]);
  int16_t* cb = static_cast<int16_t*>(planes->plane[2]);
  [[maybe_unused]] const bool sse41 = CurrentPaths().sse41;
  auto block = [&](int32_t x) {
    const uint8_t* s = src + 2 * size_t(x);
#if ZELT_X86
    if (sse41) {
      UnpackYuy2BlockSse41(s, y + x, cr + x / 2, cb + x / 2);
      return;
    }
#endif
    for (int k = 0; k < 16; ++k) {
      y[x + 2 * k] = s[4 * k];
      y[x + 2 * k + 1] = s[4 * k + 2];
      cr[x / 2 + k] = s[4 * k + 3];
      cb[x / 2 + k] = s[4 * k + 1];
    }
  };
  // Blocks of 32 pixels while at least two remain, then one block whatever is left
  // (a short row reads and writes a whole block), then pairs.
  int32_t x = 0;
  while (width - x >= 64) {
    block(x);
    x += 32;
  }
  block(x);
  x += 32;
  for (; x < width; x += 2) {
    const uint8_t* s = src + 2 * size_t(x);
    y[x] = s[0];
    y[x + 1] = s[2];
    cr[x / 2] = s[3];
    cb[x / 2] = s[1];
  }
  return 2u * uint32_t(x);
}

extern "C" ZELT_API uint32_t zeltV210RowToPlanar16s(const uint8_t* src, int32_t width, int16_t* y, int16_t* cr,
                                                    int16_t* cb) {
  SimdGuard();
  if (width < 1) return 0;
  const size_t groups = size_t(width) / 6;
  size_t done = 0;
#if ZELT_X86
  if (CurrentPaths().avx2) {
    done = V210PlanarGroupsAvx2(src, groups, y, cr, cb);
  } else if (CurrentPaths().sse41) {
    done = V210PlanarGroupsSse41(src, groups, y, cr, cb);
  }
#endif
  V210PlanarGroups(src, done, groups, y, cr, cb);
  const int32_t rest = width - int32_t(groups) * 6;
  if (rest > 0) {
    const V210Group v = ReadGroup(src + 16 * groups);
    const uint16_t ys[6] = {v.y0, v.y1, v.y2, v.y3, v.y4, v.y5};
    const uint16_t crs[3] = {v.cr0, v.cr0, v.cr1};
    const uint16_t cbs[3] = {v.cb0, v.cb1, v.cb2};
    int16_t* yy = y + 6 * groups;
    for (int32_t p = 0; 2 * p < rest; ++p) {
      yy[2 * p] = ys[2 * p];
      yy[2 * p + 1] = ys[2 * p + 1];
      cr[3 * groups + p] = crs[p];
      cb[3 * groups + p] = cbs[p];
    }
  }
  return uint32_t(width);
}

extern "C" ZELT_API void zeltV210RowToYUV(const uint8_t* src, int16_t* dst, int32_t width) {
  SimdGuard();
  if (width < 1) return;
  const size_t groups = (size_t(width) + 5) / 6;
  for (size_t g = 0; g < groups; ++g) {
    const V210Group v = ReadGroup(src + 16 * g);
    const uint16_t out[12] = {v.y0, v.cr0, v.y1, v.cb0, v.y2, v.cr0, v.y3, v.cb1, v.y4, v.cr1, v.y5, v.cb2};
    std::memcpy(dst + 12 * g, out, sizeof out);
  }
}

extern "C" ZELT_API uint32_t zeltV210RowToYUV16(const uint8_t* src, uint16_t* y, uint16_t* cb, uint16_t* cr,
                                                int32_t width) {
  SimdGuard();
  if (width < 1) return 0;
  const size_t groups = size_t(width) / 6;
  size_t done = 0;
#if ZELT_X86
  if (CurrentPaths().avx2) {
    done = V210Yuv16GroupsAvx2(src, groups, y, cb, cr);
  } else if (CurrentPaths().sse41) {
    done = V210Yuv16GroupsSse41(src, groups, y, cb, cr);
  }
#endif
  V210ToYCbCr16(src + 16 * done, groups - done, y + 6 * done, cb + 3 * done, cr + 3 * done);
  return uint32_t(width) / 6 * 6;
}

extern "C" ZELT_API void zeltV210ToYR16(const uint8_t* src, int32_t width, int32_t height, int32_t srcPitch,
                                        uint16_t* dst, int32_t dstPitch) {
  SimdGuard();
  if (width < 1 || height < 1) return;
  const size_t groups = size_t(width) / 6;
  [[maybe_unused]] const bool avx2 = CurrentPaths().avx2;
  [[maybe_unused]] const bool sse41 = CurrentPaths().sse41;
  for (int32_t r = 0; r < height; ++r) {
    const uint8_t* s = src + ptrdiff_t(r) * srcPitch;
    uint16_t* d = reinterpret_cast<uint16_t*>(reinterpret_cast<uint8_t*>(dst) + ptrdiff_t(r) * dstPitch);
    uint16_t* cb = d + width;
    uint16_t* cr = d + width + width / 2;
    size_t done = 0;
#if ZELT_X86
    if (avx2) {
      done = V210Yuv16GroupsAvx2(s, groups, d, cb, cr);
    } else if (sse41) {
      done = V210Yuv16GroupsSse41(s, groups, d, cb, cr);
    }
#endif
    V210ToYCbCr16(s + 16 * done, groups - done, d + 6 * done, cb + 3 * done, cr + 3 * done);
  }
}

extern "C" ZELT_API uint32_t zeltCbYCrY_8bitToRow16u(void*, int32_t width, int32_t height, int32_t, const void* src,
                                                     void* dst, int32_t, int32_t, int32_t, uint8_t flags) {
  const uint8_t* s = static_cast<const uint8_t*>(src);
  const size_t pitch = 2 * size_t(std::max(width, 0));
  return CbYCrYFrame(width, height, dst, 2 * pitch, flags, [&](int32_t r, int32_t i) {
    const uint8_t* p = s + size_t(r) * pitch + 4 * size_t(i);
    return Pair16{uint16_t(p[0] << 8), uint16_t(p[1] << 8), uint16_t(p[2] << 8), uint16_t(p[3] << 8)};
  });
}

extern "C" ZELT_API uint32_t zeltCbYCrY_10bit_2_8ToRow16u(void*, int32_t width, int32_t height, int32_t,
                                                          const void* src, void* dst, int32_t dstPitch, int32_t,
                                                          int32_t, uint8_t flags) {
  const uint8_t* s = static_cast<const uint8_t*>(src);
  const size_t w = size_t(std::max(width, 0)), h = size_t(std::max(height, 0));
  const uint8_t* high = s + w * h / 2;
  return CbYCrYFrame(width, height, dst, size_t(ptrdiff_t(dstPitch)), flags, [&](int32_t r, int32_t i) {
    const uint8_t lo = s[size_t(r) * (w / 2) + size_t(i)];
    const uint8_t* p = high + size_t(r) * 2 * w + 4 * size_t(i);
    auto v = [](uint8_t hi, int bits) { return uint16_t((hi << 8) | (bits << 6)); };
    return Pair16{v(p[0], (lo >> 6) & 3), v(p[1], (lo >> 4) & 3), v(p[2], (lo >> 2) & 3), v(p[3], lo & 3)};
  });
}

extern "C" ZELT_API uint32_t zeltCbYCrY_16bitToRow16u(void*, int32_t width, int32_t height, int32_t, const void* src,
                                                      void* dst, int32_t, int32_t, int32_t, uint8_t flags) {
  const uint8_t* s = static_cast<const uint8_t*>(src);
  const size_t pitch = 4 * size_t(std::max(width, 0));
  return CbYCrYFrame(width, height, dst, pitch, flags, [&](int32_t r, int32_t i) {
    const uint8_t* p = s + size_t(r) * pitch + 8 * size_t(i);
    return Pair16{Read16(p), Read16(p + 2), Read16(p + 4), Read16(p + 6)};
  });
}

extern "C" ZELT_API uint32_t zeltCbYCrY_16bit_10_6ToRow16u(void* reserved1, int32_t width, int32_t height,
                                                           int32_t reserved2, const void* src, void* dst,
                                                           int32_t dstPitch, int32_t reserved3, int32_t reserved4,
                                                           uint8_t flags) {
  return zeltCbYCrY_16bitToRow16u(reserved1, width, height, reserved2, src, dst, dstPitch, reserved3, reserved4,
                                  flags);
}

extern "C" ZELT_API uint32_t zeltCbYCrY_16bit_2_14ToRow16u(void*, int32_t width, int32_t height, int32_t,
                                                           const void* src, void* dst, int32_t, int32_t, int32_t,
                                                           uint8_t flags) {
  const uint8_t* s = static_cast<const uint8_t*>(src);
  const size_t pitch = 4 * size_t(std::max(width, 0));
  auto luma = [](int16_t v) { return Clamp16((int32_t(v) * 219 + 0x40000) >> 6); };
  auto chroma = [](int16_t v) { return Clamp16((int32_t(v) * 224 + 0x200000) >> 6); };
  return CbYCrYFrame(width, height, dst, pitch, flags, [&](int32_t r, int32_t i) {
    const uint8_t* p = s + size_t(r) * pitch + 8 * size_t(i);
    auto at = [&](int k) { return static_cast<int16_t>(Read16(p + 2 * k)); };
    return Pair16{chroma(at(0)), luma(at(1)), chroma(at(2)), luma(at(3))};
  });
}

// ---- element converters ----

extern "C" ZELT_API void zelt16sTo8u(const int16_t* src, int32_t srcPitch, uint8_t* dst, int32_t dstPitch,
                                     ZeltSize size) {
  SimdGuard();
  if (size.width < 1 || size.height < 1) return;
  const ptrdiff_t sp = srcPitch >> 1;
  for (int32_t r = 0; r < size.height; ++r) {
    const int16_t* s = src + r * sp;
    uint8_t* d = dst + ptrdiff_t(r) * dstPitch;
    for (int32_t x = 0; x < size.width; ++x) d[x] = static_cast<uint8_t>(std::clamp<int32_t>(s[x], 0, 255));
  }
}

extern "C" ZELT_API void zelt8sTo16s(const int8_t* src, int32_t srcPitch, int16_t* dst, int32_t dstPitch,
                                     ZeltSize size) {
  SimdGuard();
  if (size.width < 1 || size.height < 1) return;
  const ptrdiff_t dp = dstPitch >> 1;
  for (int32_t r = 0; r < size.height; ++r) {
    const int8_t* s = src + ptrdiff_t(r) * srcPitch;
    int16_t* d = dst + r * dp;
    for (int32_t x = 0; x < size.width; ++x) d[x] = s[x];
  }
}

extern "C" ZELT_API void zeltRow16sTo8s(const int16_t* src, int8_t* dst, int32_t count) {
  SimdGuard();
  for (int32_t i = 0; i < count; ++i) dst[i] = static_cast<int8_t>(std::clamp<int32_t>(src[i], -128, 127));
}

extern "C" ZELT_API void zeltYU64RowToYUV10bit(const uint32_t* src, uint32_t* dst, int32_t width) {
  SimdGuard();
  if (width < 1) return;
  const size_t words = (size_t(width) + 1) / 2;
  for (size_t i = 0; i < words; ++i) dst[i] = (src[i] >> 6) & 0x3FF03FFu;
}

extern "C" ZELT_API void zeltYUVPacked16sRowToPlanar16s(const int16_t* src, int32_t width, int16_t* y, int16_t* cr,
                                                        int16_t* cb) {
  SimdGuard();
  if (width < 1) return;
  const size_t pairs = (size_t(width) + 1) / 2;
  for (size_t i = 0; i < pairs; ++i) {
    y[2 * i] = src[4 * i];
    cr[i] = src[4 * i + 1];
    y[2 * i + 1] = src[4 * i + 2];
    cb[i] = src[4 * i + 3];
  }
}

extern "C" ZELT_API void zeltYUVPacked16sRowToPlanar8u(const int16_t* src, int32_t width, uint8_t* y, uint8_t* cr,
                                                       uint8_t* cb) {
  SimdGuard();
  if (width < 1) return;
  auto to8 = [](int16_t v) { return static_cast<uint8_t>(std::clamp(int32_t(v) >> 2, 0, 255)); };
  const size_t pairs = (size_t(width) + 1) / 2;
  for (size_t i = 0; i < pairs; ++i) {
    y[2 * i] = to8(src[4 * i]);
    cr[i] = to8(src[4 * i + 1]);
    y[2 * i + 1] = to8(src[4 * i + 2]);
    cb[i] = to8(src[4 * i + 3]);
  }
}
