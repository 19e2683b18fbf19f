// Pixel writers of the YCbCr to RGB converters: channel order and pixel size.
#pragma once

#include <cstdint>
#include <cstring>

#include "core/matrices.h"

namespace zelt::transcode {

inline constexpr uint32_t kBottomUp = 0x8000;

// Channel order of the flags; 4 and up act as 2.
constexpr uint32_t ChannelOrder(uint32_t flags) {
  const uint32_t order = flags & ~kBottomUp;
  return order > 3 ? 2 : order;
}

// Bytes per pixel used for the size a converter reports: 2 for 15 and 16, 3 for 24
// and 4 for everything else.
constexpr uint64_t ReportedBytesPerPixel(uint32_t bitsPerPixel) {
  return (bitsPerPixel == 15 || bitsPerPixel == 16) ? 2 : (bitsPerPixel == 24 ? 3 : 4);
}

// Writes one pixel of `Bpp` bits (15, 16, 24, 32) in channel order `Order` (0..3).
template <int Bpp, int Order>
inline void PutPixel(uint8_t* d, Rgb8 p) {
  constexpr bool rgbFirst = Order >= 2;  // orders 2, 3: R before B (or R in the high bits)
  if constexpr (Bpp == 32) {
    const uint8_t first = rgbFirst ? p.r : p.b, last = rgbFirst ? p.b : p.r;
    if constexpr (Order == 0 || Order == 2) {
      d[0] = first;
      d[1] = p.g;
      d[2] = last;
      d[3] = 255;
    } else {
      d[0] = 255;
      d[1] = first;
      d[2] = p.g;
      d[3] = last;
    }
  } else if constexpr (Bpp == 24) {
    d[0] = rgbFirst ? p.r : p.b;
    d[1] = p.g;
    d[2] = rgbFirst ? p.b : p.r;
  } else {
    const uint32_t hi = rgbFirst ? p.r : p.b, lo = rgbFirst ? p.b : p.r;
    uint16_t w;
    if constexpr (Bpp == 16) {
      w = static_cast<uint16_t>(((hi >> 3) << 11) | ((uint32_t{p.g} >> 2) << 5) | (lo >> 3));
    } else {
      w = static_cast<uint16_t>(((hi >> 3) << 10) | ((uint32_t{p.g} >> 3) << 5) | (lo >> 3));
    }
    d[0] = static_cast<uint8_t>(w);
    d[1] = static_cast<uint8_t>(w >> 8);
  }
}

// Calls f.template operator()<Bpp, Order>() for the writer that `bitsPerPixel` and
// `order` select; returns false (calling nothing) for an unknown pixel size.
template <class F>
bool WithPixelWriter(uint32_t bitsPerPixel, uint32_t order, F&& f) {
  const bool rgb = order >= 2;
  switch (bitsPerPixel) {
    case 32:
      switch (order) {
        case 0: f.template operator()<32, 0>(); break;
        case 1: f.template operator()<32, 1>(); break;
        case 2: f.template operator()<32, 2>(); break;
        default: f.template operator()<32, 3>(); break;
      }
      return true;
    case 24:
      rgb ? f.template operator()<24, 2>() : f.template operator()<24, 0>();
      return true;
    case 16:
      rgb ? f.template operator()<16, 2>() : f.template operator()<16, 0>();
      return true;
    case 15:
      rgb ? f.template operator()<15, 2>() : f.template operator()<15, 0>();
      return true;
    default:
      return false;
  }
}

}  // namespace zelt::transcode
