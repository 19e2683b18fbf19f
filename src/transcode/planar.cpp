// 8-bit planar (I420, YV12, P422) <-> packed 4:2:2 conversions: the two engines,
// the wrappers that aim them at the planes of a frame, and the planar copies.
#include <algorithm>
#include <cstring>

#include "transcode/planar_reorder.h"
#include "transcode/planar_kernels.h"
#include "core/platform.h"
#include "core/paths.h"
#include "core/simd_level.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_planar.h"

namespace zelt::transcode {

void PackRow(uint8_t* dst, const uint8_t* y, const uint8_t* c0, const uint8_t* c1, size_t pairs, bool lumaFirst) {
  const int ly = lumaFirst ? 0 : 1, lc = lumaFirst ? 1 : 0;
  for (size_t i = 0; i < pairs; ++i) {
    dst[4 * i + lc] = c0[i];
    dst[4 * i + ly] = y[2 * i];
    dst[4 * i + lc + 2] = c1[i];
    dst[4 * i + ly + 2] = y[2 * i + 1];
  }
}

void UnpackRow(uint8_t* y, uint8_t* c0, uint8_t* c1, const uint8_t* src, size_t pairs, bool lumaFirst) {
  const int ly = lumaFirst ? 0 : 1, lc = lumaFirst ? 1 : 0;
  for (size_t i = 0; i < pairs; ++i) {
    c0[i] = src[4 * i + lc];
    y[2 * i] = src[4 * i + ly];
    c1[i] = src[4 * i + lc + 2];
    y[2 * i + 1] = src[4 * i + ly + 2];
  }
}

void UnpackLumaRow(uint8_t* y, const uint8_t* src, size_t pairs, bool lumaFirst) {
  const int ly = lumaFirst ? 0 : 1;
  for (size_t i = 0; i < pairs; ++i) {
    y[2 * i] = src[4 * i + ly];
    y[2 * i + 1] = src[4 * i + ly + 2];
  }
}

namespace {

enum ChromaMode : uint32_t { k420 = 0, k422 = 1, k444 = 2 };
constexpr uint32_t kNoIpp420 = 16;

// The packed pointers are in UYVY order when A sits one byte before the luma
// pointer and B one byte after it.
bool UyvyOrder(const uint8_t* y, const uint8_t* a, const uint8_t* b) { return a + 1 == y && b == y + 1; }

// How three packed pointers (luma, A, B) lay out one 4-byte group, when they form
// one of the four 4:2:2 byte orders: UYVY, VYUY (chroma first), YUY2, YVYU (luma
// first). `bFirst`: B is the first chroma byte of the group.
struct GroupShape {
  bool known = false;
  bool lumaFirst = false;
  bool bFirst = false;
  ptrdiff_t base = 0;  // group start relative to the luma pointer
};

GroupShape ShapeOf(const uint8_t* y, const uint8_t* a, const uint8_t* b) {
  const ptrdiff_t da = a - y, db = b - y;
  if (da == -1 && db == 1) return {true, false, false, -1};
  if (da == 1 && db == -1) return {true, false, true, -1};
  if (da == 1 && db == 3) return {true, true, false, 0};
  if (da == 3 && db == 1) return {true, true, true, 0};
  return {};
}

// Writes the groups for pixels 0, 2, 4 ... < width of one packed row. The group at
// pixel x takes chroma sample x/2 * chromaStep; an odd width reads one luma sample
// past the row. Returns how far the chroma pointers moved.
size_t FromPlanarRow(uint8_t* pY, uint8_t* pA, uint8_t* pB, const uint8_t* y, const uint8_t* a, const uint8_t* b,
                     uint32_t width, size_t chromaStep) {
  size_t c = 0;
  for (uint32_t x = 0; x < width; x += 2, c += chromaStep) {
    const size_t o = size_t{x} * 2;
    pY[o] = y[x];
    pY[o + 2] = y[x + 1];
    pA[o] = a[c];
    pB[o] = b[c];
  }
  return c;
}

uint32_t FromPlanarGeneric(const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint8_t* dstY, uint8_t* dstA,
                           uint8_t* dstB, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss, uint32_t mode) {
  const size_t chromaPitch = ss / 2;
  const size_t step = mode == k444 ? 2 : 1;
  // At level 5 the whole pairs of a row go through the 256-bit rows (each byte of a
  // row is written once, in either case); an odd last pixel's group stays here.
  const GroupShape shape = ShapeOf(dstY, dstA, dstB);
  const PackRowFn packRow = Select(kBlockPackRow, CurrentPaths());
  const bool wide = packRow != nullptr && step == 1 && shape.known;
  const bool stream = size_t{height} * ds >= kPlanarStreamBytes;
  const size_t pairs = wide ? width / 2 : 0;
  const uint8_t* a = srcA;
  const uint8_t* b = srcB;
  for (uint32_t r = 0; r < height; ++r) {
    const size_t d = size_t{r} * ds;
    if (mode == k420) {
      // Field siting: the chroma rows of a 4:2:0 plane alternate between the fields.
      const size_t row = 2 * (r / 4) + (r % 2);
      a = srcA + row * chromaPitch;
      b = srcB + row * chromaPitch;
    }
    const uint8_t* y = srcY + size_t{r} * ss;
    if (wide) {
      packRow(dstY + d + shape.base, y, shape.bFirst ? b : a, shape.bFirst ? a : b, pairs, shape.lumaFirst, stream);
    }
    const size_t x = 2 * pairs, o = 2 * x;
    const size_t moved =
        pairs + FromPlanarRow(dstY + d + o, dstA + d + o, dstB + d + o, y + x, a + pairs, b + pairs,
                              static_cast<uint32_t>(width - x), step);
    if (mode != k420) {  // 4:2:2 and 4:4:4 chroma is read as one run, whatever the stride
      a += moved;
      b += moved;
    }
  }
  if (wide && stream) StreamingFence();
  return height * ds;
}

// Planes to UYVY through the reorder primitives. `wide` when the 256-bit kernels
// may run. The status is ignored, as the callers ignore it.
void FromPlanarReorder(const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint8_t* dstY, uint32_t width,
                       uint32_t height, uint32_t ds, uint32_t ss, bool is422, bool wide) {
  const int steps[3] = {static_cast<int>(ss), static_cast<int>(ss / 2), static_cast<int>(ss / 2)};
  const reorder::Roi roi{static_cast<int>(width), static_cast<int>(height)};
  uint8_t* packed = dstY - 1;  // the lowest of the three packed pointers
  const bool stream = size_t{height} * ds >= kPlanarStreamBytes;
  if (is422) {
    const uint8_t* planes[3] = {srcY, srcA, srcB};
    reorder::YCbCr422ToCbYCr422_P3C2R(planes, steps, packed, static_cast<int>(ds), roi, wide, stream);
  } else {
    const uint8_t* planes[3] = {srcY, srcB, srcA};
    reorder::YCrCb420ToCbYCr422_P3C2R(planes, steps, packed, static_cast<int>(ds), roi, wide, stream);
  }
}

uint32_t FromPlanar(const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint8_t* dstY, uint8_t* dstA,
                    uint8_t* dstB, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss, uint32_t flags) {
  const uint32_t mode = flags & 15;
  if (UyvyOrder(dstY, dstA, dstB)) {
    const size_t lumaPlane = size_t{ss} * height;
    // 256-bit kernels for planes laid out as one I420, YV12 or P422 frame. The
    // 4:2:0 kernel uses the progressive siting of the reorder path below (so UYVY
    // from I420 is the same on every processor) and, like that path, gives way to
    // the field-sited engine when flags & 16 asks for it.
    if (CurrentPaths().avx2) {
      const bool i420 = srcA == srcY + lumaPlane && srcB == srcA + lumaPlane / 4;
      const bool yv12 = srcB == srcY + lumaPlane && srcA == srcB + lumaPlane / 4;
      const bool p422 = srcA == srcY + lumaPlane && srcB == srcA + size_t{ss / 2} * height;
      if ((mode == k420 && (flags & kNoIpp420) == 0 && (i420 || yv12)) || (mode == k422 && p422)) {
        FromPlanarReorder(srcY, srcA, srcB, dstY, width, height, ds, ss, mode == k422, true);
        return height * ds;
      }
    }
    // The reorder primitives, at every level; any mode but 4:2:2 takes the 4:2:0 one.
    if (mode == k422 || (flags & kNoIpp420) == 0) {
      FromPlanarReorder(srcY, srcA, srcB, dstY, width, height, ds, ss, mode == k422, false);
      return height * ds;
    }
  }
  return FromPlanarGeneric(srcY, srcA, srcB, dstY, dstA, dstB, width, height, ds, ss, mode);
}

uint32_t FromPlanarFieldInvert(const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint8_t* dstY,
                               uint8_t* dstA, uint8_t* dstB, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss,
                               uint32_t flags) {
  const uint32_t mode = flags & 15;
  const size_t chromaPitch = ss / 2;
  const uint8_t* a = srcA;
  const uint8_t* b = srcB;
  for (uint32_t r = 0; r < height; ++r) {
    const uint32_t to = (r % 2 == 0) ? r + 1 : r - 1;  // the fields change places
    const size_t d = size_t{to} * ds;
    const uint8_t* y = srcY + size_t{r} * ss;
    if (mode == k420) {
      // Chroma is set on odd rows only; even rows run on from where the previous
      // row stopped (the plane start for row 0).
      if (r % 2 == 1) {
        a = srcA + size_t{(r - 1) / 2} * chromaPitch;
        b = srcB + size_t{(r - 1) / 2} * chromaPitch;
      }
      for (uint32_t x = 0; x < width; x += 2) {
        if (x != 0 && x % 4 == 0) {
          ++a;
          ++b;
        }
        const size_t o = size_t{x} * 2;
        dstY[d + o] = y[x];
        dstY[d + o + 2] = y[x + 1];
        dstA[d + o] = *a;
        dstB[d + o] = *b;
      }
    } else {
      const size_t moved = FromPlanarRow(dstY + d, dstA + d, dstB + d, y, a, b, width, mode == k444 ? 2 : 1);
      a += moved;
      b += moved;
    }
  }
  return height * ds;
}

// Rows r with r mod 4 of 0 or 3 carry the chroma of a 4:2:0 plane (one line per
// field); their chroma goes to row r/2.
bool ToPlanarWritesChroma(uint32_t r) { return r % 4 == 0 || r % 4 == 3; }

uint32_t ToPlanarResult(uint32_t height, uint32_t ds) {
  const uint32_t luma = height * ds;
  return luma + ((luma / 2) & ~1u);
}

// `fieldInvert`: planar row r is read from packed row r+1 (r even) or r-1 (r odd),
// the two fields changing places; with an odd height the last row is read from one
// row past the frame. That variant has no fast path.
uint32_t ToPlanar(const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint8_t* dstY, uint8_t* dstA,
                  uint8_t* dstB, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss, uint32_t flags,
                  bool fieldInvert = false) {
  const uint32_t mode = flags & 15;
  const size_t chromaPitch = ds / 2;
  const size_t pairs = width / 2;

  // 256-bit rows for the planes of one I420, YV12 or P422 frame, from any of the
  // four packed byte orders. They store luma, Cb and Cr in blocks rather than sample
  // by sample, so they are taken only where no two destination rows share a byte.
  bool wide = false;
  const GroupShape shape = ShapeOf(srcY, srcA, srcB);
  const Paths paths = CurrentPaths();
  const UnpackRowFn unpackRow = Select(kBlockUnpackRow, paths);
  const UnpackLumaRowFn unpackLumaRow = Select(kBlockUnpackLumaRow, paths);
  if (!fieldInvert && shape.known && unpackRow != nullptr && height != 0 && 2 * pairs <= ds) {
    const size_t lumaPlane = size_t{ds} * height;
    if (mode == k420) {
      const bool fits = size_t{(height - 1) / 2} * chromaPitch + pairs <= lumaPlane / 4;
      wide = fits && ((dstA == dstY + lumaPlane && dstB == dstA + lumaPlane / 4) ||
                      (dstB == dstY + lumaPlane && dstA == dstB + lumaPlane / 4));
    } else if (mode == k422) {
      wide = dstA == dstY + lumaPlane && dstB == dstA + chromaPitch * height;
    }
  }

  const bool stream = size_t{height} * ds * 3 / 2 >= kPlanarStreamBytes;
  for (uint32_t r = 0; r < height; ++r) {
    const size_t s = size_t{fieldInvert ? (r ^ 1u) : r} * ss;
    uint8_t* y = dstY + size_t{r} * ds;
    const bool chroma = mode != k420 || ToPlanarWritesChroma(r);
    if (!chroma) {
      if (wide) {
        unpackLumaRow(y, srcY + shape.base + s, pairs, shape.lumaFirst, stream);
      } else {
        for (size_t i = 0; i < pairs; ++i) {
          y[2 * i] = srcY[s + 4 * i];
          y[2 * i + 1] = srcY[s + 4 * i + 2];
        }
      }
      continue;
    }
    const size_t crow = (mode == k420 ? r / 2 : r) * chromaPitch;
    uint8_t* a = dstA + crow;
    uint8_t* b = dstB + crow;
    if (wide) {
      unpackRow(y, shape.bFirst ? b : a, shape.bFirst ? a : b, srcY + shape.base + s, pairs, shape.lumaFirst, stream);
    } else {
      for (size_t i = 0; i < pairs; ++i) {
        y[2 * i] = srcY[s + 4 * i];
        y[2 * i + 1] = srcY[s + 4 * i + 2];
        a[i] = srcA[s + 4 * i];
        b[i] = srcB[s + 4 * i];
      }
    }
  }
  if (wide && stream) StreamingFence();
  return ToPlanarResult(height, ds);
}

// Packed byte orders: offsets of luma, A (Cb) and B (Cr) in a group.
struct PackedOrder {
  uint32_t y, a, b;
};
constexpr PackedOrder kUyvy{1, 0, 2};
constexpr PackedOrder kYuy2{0, 1, 3};
constexpr PackedOrder kYvyu{0, 3, 1};

// The second and third plane of a planar source addressed by width (planar to
// packed) and of a planar destination addressed by stride (packed to planar).
struct Planes {
  size_t second, third;
};
Planes SourcePlanes(uint32_t width, uint32_t height, bool is422) {
  const size_t luma = size_t{width} * height;
  return {luma, luma + (is422 ? luma / 2 : luma / 4)};
}
Planes StridePlanes(uint32_t height, uint32_t stride, bool is422) {
  const size_t luma = size_t{height} * stride;
  return {luma, luma + (is422 ? luma / 2 : luma / 4)};
}

// `swapChroma`: A is the third plane (YV12).
uint32_t PlanarToPacked(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss,
                        uint32_t mode, bool swapChroma, PackedOrder order) {
  SimdGuard();
  const Planes p = SourcePlanes(width, height, mode == k422);
  const uint8_t* second = src + p.second;
  const uint8_t* third = src + p.third;
  return FromPlanar(src, swapChroma ? third : second, swapChroma ? second : third, dst + order.y, dst + order.a,
                    dst + order.b, width, height, ds, ss, mode);
}

uint32_t PackedToPlanar(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss,
                        uint32_t mode, bool swapChroma, PackedOrder order) {
  SimdGuard();
  const Planes p = StridePlanes(height, ds, mode == k422);
  uint8_t* second = dst + p.second;
  uint8_t* third = dst + p.third;
  return ToPlanar(src + order.y, src + order.a, src + order.b, dst, swapChroma ? third : second,
                  swapChroma ? second : third, width, height, ds, ss, mode);
}

// cyuv is UYVY stored bottom-up: convert as UYVY, then flip every plane in place.
uint32_t CyuvToPlanar(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss,
                      uint32_t mode, bool swapChroma) {
  const uint32_t result = PackedToPlanar(dst, src, width, height, ds, ss, mode, swapChroma, kUyvy);
  const Planes p = StridePlanes(height, ds, mode == k422);
  cycbcr_invert(dst, ds, height);
  if (mode == k422) {
    // The third plane's flip is placed by the width, not the stride (the same
    // place whenever the stride is the width).
    cycbcr_invert(dst + p.second, ds / 2, height);
    cycbcr_invert(dst + p.second + size_t{width} * height / 2, ds / 2, height);
  } else {
    cycbcr_invert(dst + p.second, ds / 2, height / 2);
    cycbcr_invert(dst + p.third, ds / 2, height / 2);
  }
  return result;
}

void CopyRun(uint8_t* dst, const uint8_t* src, size_t bytes) {
  if (bytes != 0) CopyMemoryFast(dst, src, bytes);
}

void CopyRows(uint8_t* dst, const uint8_t* src, uint32_t rows, size_t bytes, size_t dp, size_t sp) {
  if (bytes == 0) return;
  for (uint32_t r = 0; r < rows; ++r) std::memcpy(dst + r * dp, src + r * sp, bytes);
}

uint32_t PlanarCopy(uint8_t* dstY, uint8_t* dstA, uint8_t* dstB, const uint8_t* srcY, const uint8_t* srcA,
                    const uint8_t* srcB, uint32_t height, uint32_t ds, uint32_t ss) {
  if (ds == ss) {
    CopyRun(dstY, srcY, size_t{height} * ds);
    CopyRun(dstA, srcA, size_t{height} * ds / 4);
    CopyRun(dstB, srcB, size_t{height} * ds / 4);
  } else {
    const uint32_t n = std::min(ds, ss);
    CopyRows(dstY, srcY, height, n, ds, ss);
    CopyRows(dstA, srcA, height / 2, n / 2, ds / 2, ss / 2);
    CopyRows(dstB, srcB, height / 2, n / 2, ds / 2, ss / 2);
  }
  return height * ds * 3 / 2;
}

uint32_t Planar422420(uint8_t* dstY, uint8_t* dstA, uint8_t* dstB, const uint8_t* srcY, const uint8_t* srcA,
                      const uint8_t* srcB, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss, bool dst422,
                      bool src422) {
  if (!dst422 && !src422) return PlanarCopy(dstY, dstA, dstB, srcY, srcA, srcB, height, ds, ss);
  if (dst422 && src422) {
    CopyRun(dstY, srcY, size_t{height} * ds);
    CopyRun(dstA, srcA, size_t{height} * ds / 2);
    CopyRun(dstB, srcB, size_t{height} * ds / 2);
    return height * ds * 2;
  }
  CopyRows(dstY, srcY, height, width, ds, ss);
  const size_t dp = ds / 2, sp = ss / 2, n = width / 2;
  for (uint32_t r = 0; r < height; ++r) {
    if (!dst422 && r % 2 != 0) continue;
    const size_t from = (src422 ? r : r / 2) * sp;
    const size_t to = (dst422 ? r : r / 2) * dp;
    if (n != 0) {
      std::memcpy(dstA + to, srcA + from, n);
      std::memcpy(dstB + to, srcB + from, n);
    }
  }
  return dst422 ? height * ds * 2 : height * ds * 3 / 2;
}

enum class Planar { I420, YV12, P422 };

// Planar to planar by stride. The Cb/Cr planes are paired so that Cb lands on Cb
// between the 4:2:0 layouts; between 4:2:0 and P422 the P422 second plane counts
// as Cr (the packed routes count it as Cb; both are kept as they are).
uint32_t PlanarToPlanar(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss,
                        Planar from, Planar to) {
  SimdGuard();
  const bool src422 = from == Planar::P422, dst422 = to == Planar::P422;
  const Planes sp = StridePlanes(height, ss, src422);
  const Planes dp = StridePlanes(height, ds, dst422);
  // Which plane holds Cr: the second for YV12 and (here) P422, the third for I420.
  const uint8_t* srcCr = src + (from == Planar::I420 ? sp.third : sp.second);
  const uint8_t* srcCb = src + (from == Planar::I420 ? sp.second : sp.third);
  uint8_t* dstCr = dst + (to == Planar::I420 ? dp.third : dp.second);
  uint8_t* dstCb = dst + (to == Planar::I420 ? dp.second : dp.third);
  if (src422 && dst422) {
    // Three runs; the source chroma planes are placed by the source stride.
    CopyRun(dst, src, size_t{height} * ds);
    CopyRun(dst + dp.second, src + sp.second, size_t{height} * ds / 2);
    CopyRun(dst + dp.third, src + sp.third, size_t{height} * ds / 2);
    return height * ds * 2;
  }
  return Planar422420(dst, dstCb, dstCr, src, srcCb, srcCr, width, height, ds, ss, dst422, src422);
}

}  // namespace

// YV12 to P422 has no export of its own; the dispatcher reaches it through its route list.
uint32_t Yv12ToP422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss) {
  return PlanarToPlanar(dst, src, width, height, ds, ss, Planar::YV12, Planar::P422);
}

}  // namespace zelt::transcode

using namespace zelt;
using namespace zelt::transcode;

#define ZELT_PLANAR_ARGS uint8_t *dst, const uint8_t *src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride
#define ZELT_ENGINE_ARGS                                                                                              \
  const uint8_t *srcY, const uint8_t *srcA, const uint8_t *srcB, uint8_t *dstY, uint8_t *dstA, uint8_t *dstB,         \
      uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t flags

extern "C" {

ZELT_API uint32_t cycbcr_fromplanar(ZELT_ENGINE_ARGS) {
  SimdGuard();
  return FromPlanar(srcY, srcA, srcB, dstY, dstA, dstB, width, height, dst_stride, src_stride, flags);
}

ZELT_API uint32_t cycbcr_fromplanar_fieldinvert(ZELT_ENGINE_ARGS) {
  SimdGuard();
  return FromPlanarFieldInvert(srcY, srcA, srcB, dstY, dstA, dstB, width, height, dst_stride, src_stride, flags);
}

ZELT_API uint32_t cycbcr_toplanar(ZELT_ENGINE_ARGS) {
  SimdGuard();
  return ToPlanar(srcY, srcA, srcB, dstY, dstA, dstB, width, height, dst_stride, src_stride, flags);
}

ZELT_API uint32_t cycbcr_toplanar_fieldinvert(ZELT_ENGINE_ARGS) {
  SimdGuard();
  return ToPlanar(srcY, srcA, srcB, dstY, dstA, dstB, width, height, dst_stride, src_stride, flags, true);
}

ZELT_API uint32_t cycbcr_i420_to_uyvy(ZELT_PLANAR_ARGS) {
  return PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k420, false, kUyvy);
}
ZELT_API uint32_t cycbcr_i420_to_yuy2(ZELT_PLANAR_ARGS) {
  return PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k420, false, kYuy2);
}
ZELT_API uint32_t cycbcr_i420_to_yvyu(ZELT_PLANAR_ARGS) {
  return PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k420, false, kYvyu);
}
ZELT_API uint32_t cycbcr_i420_to_cyuv(ZELT_PLANAR_ARGS) {
  const uint32_t result = PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k420, false, kUyvy);
  cycbcr_invert(dst, dst_stride, height);
  return result;
}
ZELT_API uint32_t cycbcr_yv12_to_uyvy(ZELT_PLANAR_ARGS) {
  return PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k420, true, kUyvy);
}
ZELT_API uint32_t cycbcr_yv12_to_yuy2(ZELT_PLANAR_ARGS) {
  return PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k420, true, kYuy2);
}
ZELT_API uint32_t cycbcr_yv12_to_yvyu(ZELT_PLANAR_ARGS) {
  return PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k420, true, kYvyu);
}
ZELT_API uint32_t cycbcr_yv12_to_cyuv(ZELT_PLANAR_ARGS) {
  // Writes the YUY2 byte order into the cyuv frame; long-standing behaviour that
  // callers rely on, kept as it is.
  const uint32_t result = PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k420, true, kYuy2);
  cycbcr_invert(dst, dst_stride, height);
  return result;
}
ZELT_API uint32_t cycbcr_p422_to_uyvy(ZELT_PLANAR_ARGS) {
  return PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k422, false, kUyvy);
}
ZELT_API uint32_t cycbcr_p422_to_yuy2(ZELT_PLANAR_ARGS) {
  return PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k422, false, kYuy2);
}
ZELT_API uint32_t cycbcr_p422_to_yvyu(ZELT_PLANAR_ARGS) {
  return PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k422, false, kYvyu);
}
ZELT_API uint32_t cycbcr_p422_to_cyuv(ZELT_PLANAR_ARGS) {
  const uint32_t result = PlanarToPacked(dst, src, width, height, dst_stride, src_stride, k422, false, kUyvy);
  cycbcr_invert(dst, dst_stride, height);
  return result;
}

ZELT_API uint32_t cycbcr_uyvy_to_i420(ZELT_PLANAR_ARGS) {
  return PackedToPlanar(dst, src, width, height, dst_stride, src_stride, k420, false, kUyvy);
}
ZELT_API uint32_t cycbcr_uyvy_to_yv12(ZELT_PLANAR_ARGS) {
  return PackedToPlanar(dst, src, width, height, dst_stride, src_stride, k420, true, kUyvy);
}
ZELT_API uint32_t cycbcr_uyvy_to_p422(ZELT_PLANAR_ARGS) {
  SimdGuard();
  const Paths paths = CurrentPaths();
  if (AtLevels(kPlanarReorderLevels, paths)) {
    // The reorder primitive: 256-bit rows at level 5 on AVX2 (unless the caller's
    // stride makes destination rows overlap), portable rows at levels 4 and 6 and
    // at level 5 without AVX2.
    const size_t luma = size_t{dst_stride} * height;
    uint8_t* planes[3] = {dst, dst + luma, dst + luma + luma / 2};
    const int steps[3] = {static_cast<int>(dst_stride), static_cast<int>(dst_stride / 2),
                          static_cast<int>(dst_stride / 2)};
    const reorder::Status st = reorder::CbYCr422ToYCbCr422_C2P3R(src, static_cast<int>(src_stride), planes, steps,
                                                         {static_cast<int>(width), static_cast<int>(height)},
                                                         paths.avx2 && (width / 2) * 2 <= dst_stride,
                                                         luma * 2 >= kPlanarStreamBytes);
    if (st == reorder::kNoErr) return dst_stride * height;
  }
  return PackedToPlanar(dst, src, width, height, dst_stride, src_stride, k422, false, kUyvy);
}
ZELT_API uint32_t cycbcr_yuy2_to_i420(ZELT_PLANAR_ARGS) {
  return PackedToPlanar(dst, src, width, height, dst_stride, src_stride, k420, false, kYuy2);
}
ZELT_API uint32_t cycbcr_yuy2_to_yv12(ZELT_PLANAR_ARGS) {
  return PackedToPlanar(dst, src, width, height, dst_stride, src_stride, k420, true, kYuy2);
}
ZELT_API uint32_t cycbcr_yuy2_to_p422(ZELT_PLANAR_ARGS) {
  return PackedToPlanar(dst, src, width, height, dst_stride, src_stride, k422, false, kYuy2);
}
ZELT_API uint32_t cycbcr_yvyu_to_i420(ZELT_PLANAR_ARGS) {
  return PackedToPlanar(dst, src, width, height, dst_stride, src_stride, k420, false, kYvyu);
}
ZELT_API uint32_t cycbcr_yvyu_to_yv12(ZELT_PLANAR_ARGS) {
  return PackedToPlanar(dst, src, width, height, dst_stride, src_stride, k420, true, kYvyu);
}
ZELT_API uint32_t cycbcr_yvyu_to_p422(ZELT_PLANAR_ARGS) {
  return PackedToPlanar(dst, src, width, height, dst_stride, src_stride, k422, false, kYvyu);
}
ZELT_API uint32_t cycbcr_cyuv_to_i420(ZELT_PLANAR_ARGS) {
  return CyuvToPlanar(dst, src, width, height, dst_stride, src_stride, k420, false);
}
ZELT_API uint32_t cycbcr_cyuv_to_yv12(ZELT_PLANAR_ARGS) {
  return CyuvToPlanar(dst, src, width, height, dst_stride, src_stride, k420, true);
}
ZELT_API uint32_t cycbcr_cyuv_to_p422(ZELT_PLANAR_ARGS) {
  return CyuvToPlanar(dst, src, width, height, dst_stride, src_stride, k422, false);
}

ZELT_API uint32_t cycbcr_i420_to_i420(ZELT_PLANAR_ARGS) {
  return PlanarToPlanar(dst, src, width, height, dst_stride, src_stride, Planar::I420, Planar::I420);
}
ZELT_API uint32_t cycbcr_yv12_to_yv12(ZELT_PLANAR_ARGS) {
  return PlanarToPlanar(dst, src, width, height, dst_stride, src_stride, Planar::YV12, Planar::YV12);
}
ZELT_API uint32_t cycbcr_i420_to_yv12(ZELT_PLANAR_ARGS) {
  return PlanarToPlanar(dst, src, width, height, dst_stride, src_stride, Planar::I420, Planar::YV12);
}
ZELT_API uint32_t cycbcr_yv12_to_i420(ZELT_PLANAR_ARGS) {
  return PlanarToPlanar(dst, src, width, height, dst_stride, src_stride, Planar::YV12, Planar::I420);
}
ZELT_API uint32_t cycbcr_p422_to_p422(ZELT_PLANAR_ARGS) {
  return PlanarToPlanar(dst, src, width, height, dst_stride, src_stride, Planar::P422, Planar::P422);
}
ZELT_API uint32_t cycbcr_i420_to_p422(ZELT_PLANAR_ARGS) {
  return PlanarToPlanar(dst, src, width, height, dst_stride, src_stride, Planar::I420, Planar::P422);
}
ZELT_API uint32_t cycbcr_p422_to_i420(ZELT_PLANAR_ARGS) {
  return PlanarToPlanar(dst, src, width, height, dst_stride, src_stride, Planar::P422, Planar::I420);
}
ZELT_API uint32_t cycbcr_p422_to_yv12(ZELT_PLANAR_ARGS) {
  return PlanarToPlanar(dst, src, width, height, dst_stride, src_stride, Planar::P422, Planar::YV12);
}

ZELT_API uint32_t cycbcr_planar_copy(uint8_t* dstY, uint8_t* dstA, uint8_t* dstB, const uint8_t* srcY,
                                     const uint8_t* srcA, const uint8_t* srcB, uint32_t width, uint32_t height,
                                     uint32_t dst_stride, uint32_t src_stride) {
  (void)width;
  SimdGuard();
  return PlanarCopy(dstY, dstA, dstB, srcY, srcA, srcB, height, dst_stride, src_stride);
}

ZELT_API uint32_t cycbcr_planar_422_420(uint8_t* dstY, uint8_t* dstA, uint8_t* dstB, const uint8_t* srcY,
                                        const uint8_t* srcA, const uint8_t* srcB, uint32_t width, uint32_t height,
                                        uint32_t dst_stride, uint32_t src_stride, uint32_t dst_is_422,
                                        uint32_t src_is_422) {
  SimdGuard();
  return Planar422420(dstY, dstA, dstB, srcY, srcA, srcB, width, height, dst_stride, src_stride, dst_is_422 != 0,
                      src_is_422 != 0);
}

}  // extern "C"
