// Our own versions of the three IPP 8-bit 4:2:x reorder primitives the planar
// converters use as fast paths. Same arguments and the same results as the IPP
// functions: planes with their own row steps, a packed image with its step, a
// region of interest in pixels, and an IPP-style status.
#pragma once

#include <cstdint>

namespace zelt::transcode::reorder {

enum Status : int {
  kNoErr = 0,
  kSizeErr = -6,
  kNullPtrErr = -8,
};

struct Roi {
  int width;
  int height;
};

// `wide` selects the 256-bit row kernels and `stream` their streaming stores (the
// caller decides; the bytes are the same either way).
Status YCbCr422ToCbYCr422_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep,
                                Roi roi, bool wide, bool stream);
Status YCrCb420ToCbYCr422_P3C2R(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep,
                                Roi roi, bool wide, bool stream);
Status CbYCr422ToYCbCr422_C2P3R(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3],
                                Roi roi, bool wide, bool stream);

}  // namespace zelt::transcode::reorder
