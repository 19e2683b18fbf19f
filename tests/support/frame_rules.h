// How many bytes a whole frame of each dispatcher layout occupies, and the few
// documented exceptions to "every byte the converter touches lies inside it".
//
// The fuzzer, the concurrency stress test and the guarded-buffer tests size their
// frames with these rules, so a converter that reads or writes one byte past what
// its layout needs is caught. When a family's routes land, its layouts get their
// rule here (FrameBytes) and its documented over-reads/over-writes their entry in
// RouteAllowance; nothing else in the harnesses needs to change. Header-only: the
// fuzz build links neither GoogleTest nor the test support library.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "core/formats.h"

namespace zelt::test {

// Bytes of a frame of `layout`, given the stride the dispatcher passes to the route
// (already normalised).
inline size_t FrameBytes(Layout layout, uint32_t width, uint32_t height, uint32_t stride) {
  const size_t w = width, h = height, s = stride;
  switch (layout) {
    case Layout::RGB32:
      return h * std::max(s, 4 * w);
    case Layout::UYVY:
    case Layout::YUY2:
    case Layout::YVYU:
    case Layout::CYUV:
      // The stride is at least 2 * width after normalisation.
      return h * s;
    case Layout::V012: {
      // 0 means rows follow one another at the minimum pitch; the copy route moves
      // height * stride bytes, the packers height * pitch in use.
      const size_t pitch = V012Pitch(width, stride) == 0 ? V012MinPitch(width) : V012Pitch(width, stride);
      return h * std::max(s, pitch);
    }
    case Layout::I420:
    case Layout::YV12: {
      // Chroma planes sit at height * stride (planar<->planar) or width * height
      // (planar<->packed); size for whichever lies further out.
      const size_t luma = h * std::max(s, w);
      return luma + 2 * ((h + 1) / 2) * ((std::max(s, w) + 1) / 2);
    }
    case Layout::P422: {
      const size_t luma = h * std::max(s, w);
      return luma + 2 * h * ((std::max(s, w) + 1) / 2);
    }
  }
  return 0;
}

// Documented bytes a route may touch past FrameBytes, on either side.
struct Allowance {
  size_t src = 0;
  size_t dst = 0;
};

inline bool IsPlanar(Layout l) { return l == Layout::I420 || l == Layout::YV12 || l == Layout::P422; }
inline bool IsPacked(Layout l) {
  return l == Layout::UYVY || l == Layout::YUY2 || l == Layout::YVYU || l == Layout::CYUV;
}

inline Allowance RouteAllowance(Layout src, Layout dst, uint32_t width, uint32_t height, uint32_t srcStride,
                                uint32_t dstStride) {
  const bool odd = (width & 1) != 0;
  // Planar to planar copies move whole planes of height * dst_stride (chroma: half
  // or a quarter of that) from source planes placed by src_stride, so a wider
  // destination stride reads on past the source frame.
  if (IsPlanar(src) && IsPlanar(dst) && dstStride > srcStride) {
    return {size_t{height} * (dstStride - srcStride) + 2, 0};
  }
  // To RGB32: an odd width decodes the last pair whole, one pixel past the width on
  // every row; source rows are read back to back at the even-rounded width, so the
  // source runs on by one pair (packed) or one luma byte (planar) per row.
  if (dst == Layout::RGB32 && src != Layout::RGB32 && odd) {
    return {IsPacked(src) ? size_t{2} * height : size_t{height} + 2, 4};
  }
  // Planes to packed 4:2:2: with an odd width the engine writes a whole last group,
  // reading one luma sample past the row and writing two bytes past it (the UYVY
  // reorder leaves the odd pixel alone, but flags & 16 sends 4:2:0 to the engine).
  // Field-sited 4:2:0 gives picture row 4k+1 chroma row 2k+1, which for a height of
  // 4k+2 is one chroma row (at most half the widest normalised stride) past the plane.
  if (IsPlanar(src) && IsPacked(dst)) {
    const size_t chromaRow = src == Layout::P422 ? 0 : size_t{(width + 127) / 128} * 64;
    return {chromaRow + (odd ? 1 : 0), size_t{odd ? 2u : 0u}};
  }
  // 8-bit to 012v converts whole groups of six pixels, the last one reading up to
  // five pixels past the row end (on the last row: past the frame).
  if (dst == Layout::V012 && src != Layout::V012 && src != Layout::RGB32) {
    return {IsPacked(src) ? size_t{10} : size_t{5}, 0};
  }
  // The packed 4:2:2 reorders and copies stay inside their frames.
  return {};
}

// How far (in code values, per byte) the 256-bit path of a route may be from the
// same level without it; 0 for every route but the documented ones, -1 where the
// two are different algorithms. RGB to 4:2:2 (packed or planar) is computed in
// 14-bit fixed point on 256-bit processors; RGB to UYVY (and cyuv, which is UYVY
// flipped) without 256-bit vectors takes a fast path of its own (pair-averaged
// chroma, another byte count).
inline int PathTolerance(Layout src, Layout dst) {
  if (src == Layout::RGB32 && (dst == Layout::UYVY || dst == Layout::CYUV)) return -1;
  if (src == Layout::RGB32 && (IsPacked(dst) || dst == Layout::P422)) return 1;
  return 0;
}

// Whether two outputs of a route agree within its tolerance.
inline bool PathsAgree(const uint8_t* a, const uint8_t* b, size_t n, int tolerance) {
  for (size_t i = 0; i < n; ++i) {
    const int d = static_cast<int>(a[i]) - static_cast<int>(b[i]);
    if (d > tolerance || d < -tolerance) return false;
  }
  return true;
}

// The codes worth feeding the dispatcher: the twenty it knows, the source-only
// alias, and one it does not know.
inline constexpr uint32_t kFuzzExtraCodes[] = {kCode422P, FourCC('N', 'V', '1', '2')};

}  // namespace zelt::test
