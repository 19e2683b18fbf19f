// The dispatcher's route table is assembled from one list per converter family,
// each defined beside that family's converters. A pair missing from every list has
// no route and the dispatcher answers it with 0.
#pragma once

#include <cstdint>
#include <span>

#include "core/formats.h"

namespace zelt::transcode {

// Every route is called with the normalised strides; matrix and flags matter only
// when one side is RGB32.
using RouteFn = uint32_t (*)(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride,
                             uint32_t src_stride, uint32_t matrix, uint32_t flags);

struct Route {
  Layout src;
  Layout dst;
  RouteFn fn;
};

// Adapts a converter of the plain (dst, src, w, h, dst_stride, src_stride) form.
template <auto F>
uint32_t PlainRoute(uint8_t* dst, uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t,
                    uint32_t) {
  return F(dst, src, w, h, ds, ss);
}

// Adapts a converter that also takes (matrix, flags).
template <auto F>
uint32_t RgbRoute(uint8_t* dst, uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t matrix,
                  uint32_t flags) {
  return F(dst, src, w, h, ds, ss, matrix, flags);
}

extern const std::span<const Route> kPackedRoutes;  // packed.cpp
extern const std::span<const Route> kPlanarRoutes;  // planar routes
extern const std::span<const Route> kV210Routes;    // 012v routes
extern const std::span<const Route> kToRgbRoutes;   // YCbCr layouts to RGB32
extern const std::span<const Route> kFromRgbRoutes; // RGB32 to YCbCr layouts

// The route for a pair, or nullptr.
RouteFn FindRoute(Layout src, Layout dst);

}  // namespace zelt::transcode
