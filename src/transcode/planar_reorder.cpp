// The IPP 4:2:x reorder primitives, reproduced. They move bytes only, so the
// results are exact. What IPP does with an odd region width is not documented (its
// manual asks for even sizes); we convert width/2 pairs and leave the last odd
// pixel alone. A region with a width below 2 or a height below 1 is refused with
// the size error, null pointers with the null-pointer error, as IPP does.
#include "core/platform.h"
#include "transcode/planar_reorder.h"

#include <cstddef>

#include "transcode/planar_kernels.h"

namespace zelt::transcode::reorder {

namespace {

Status Check(const void* a, const void* b, const void* c, const void* d, Roi roi) {
  if (a == nullptr || b == nullptr || c == nullptr || d == nullptr) return kNullPtrErr;
  if (roi.width < 2 || roi.height < 1) return kSizeErr;
  return kNoErr;
}

// Planes to packed Cb Y0 Cr Y1 rows: packed row r takes luma row r and chroma row
// r >> chromaShift of the given planes.
Status PlanesToCbYCr(const uint8_t* y0, int yStep, const uint8_t* cb0, int cbStep, const uint8_t* cr0, int crStep,
                     int chromaShift, uint8_t* dst, int dstStep, Roi roi, bool wide, bool stream) {
  const Status st = Check(y0, cb0, cr0, dst, roi);
  if (st != kNoErr) return st;
  const size_t pairs = static_cast<size_t>(roi.width) / 2;
  const PackRowFn packRow = wide ? Select(kBlockPackRow, CurrentPaths()) : nullptr;
  for (int r = 0; r < roi.height; ++r) {
    const int k = r >> chromaShift;
    uint8_t* d = dst + ptrdiff_t{r} * dstStep;
    const uint8_t* y = y0 + ptrdiff_t{r} * yStep;
    const uint8_t* cb = cb0 + ptrdiff_t{k} * cbStep;
    const uint8_t* cr = cr0 + ptrdiff_t{k} * crStep;
    if (packRow != nullptr) {
      packRow(d, y, cb, cr, pairs, false, stream);
    } else {
      PackRow(d, y, cb, cr, pairs, false);
    }
  }
  if (packRow != nullptr && stream) StreamingFence();
  return kNoErr;
}

}  // namespace

// ippiYCbCr422ToCbYCr422_8u_P3C2R: planes Y, Cb, Cr (chroma half width, full
// height) to packed Cb Y0 Cr Y1; row r of every plane feeds packed row r.
Status YCbCr422ToCbYCr422_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep,
                                Roi roi, bool wide, bool stream) {
  return PlanesToCbYCr(src[0], srcStep[0], src[1], srcStep[1], src[2], srcStep[2], 0, dst, dstStep, roi, wide,
                       stream);
}

// ippiYCrCb420ToCbYCr422_8u_P3C2R: planes given as Y, Cr, Cb (4:2:0) to packed
// Cb Y0 Cr Y1 with progressive chroma siting: luma rows 2k and 2k+1 both take
// chroma row k, repeated, not interpolated.
Status YCrCb420ToCbYCr422_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep,
                                Roi roi, bool wide, bool stream) {
  return PlanesToCbYCr(src[0], srcStep[0], src[2], srcStep[2], src[1], srcStep[1], 1, dst, dstStep, roi, wide,
                       stream);
}

// ippiCbYCr422ToYCbCr422_8u_C2P3R: packed Cb Y0 Cr Y1 to planes Y, Cb, Cr (chroma
// half width, full height); packed row r feeds row r of every plane.
Status CbYCr422ToYCbCr422_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3],
                                Roi roi, bool wide, bool stream) {
  const Status st = Check(src, dst[0], dst[1], dst[2], roi);
  if (st != kNoErr) return st;
  const size_t pairs = static_cast<size_t>(roi.width) / 2;
  const UnpackRowFn unpackRow = wide ? Select(kBlockUnpackRow, CurrentPaths()) : nullptr;
  for (int r = 0; r < roi.height; ++r) {
    uint8_t* y = dst[0] + ptrdiff_t{r} * dstStep[0];
    uint8_t* cb = dst[1] + ptrdiff_t{r} * dstStep[1];
    uint8_t* cr = dst[2] + ptrdiff_t{r} * dstStep[2];
    const uint8_t* s = src + ptrdiff_t{r} * srcStep;
    if (unpackRow != nullptr) {
      unpackRow(y, cb, cr, s, pairs, false, stream);
    } else {
      UnpackRow(y, cb, cr, s, pairs, false);
    }
  }
  if (unpackRow != nullptr && stream) StreamingFence();
  return kNoErr;
}

}  // namespace zelt::transcode::reorder
