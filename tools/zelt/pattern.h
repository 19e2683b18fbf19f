// Test patterns for the demo, computed by the tool itself (not by the library).
#pragma once

#include <cstdint>
#include <vector>

namespace zelt::tool {

// A 10-bit 4:4:4 picture, video range, BT.709: colour bars over the top half, a
// luma ramp and chroma ramps below, and a zone plate at the bottom.
struct Picture444 {
  uint32_t w = 0, h = 0;
  std::vector<uint16_t> y, cb, cr;  // w * h samples each
};
Picture444 MakePattern(uint32_t w, uint32_t h);

// Packs to v210 rows of `pitch` bytes (pitch >= the 48-pixel minimum); chroma
// comes from the even pixel of each pair.
std::vector<uint8_t> PackV210(const Picture444& p, uint32_t pitch);
// Packs to UYVY with 10-to-8-bit rounding.
std::vector<uint8_t> PackUyvy(const Picture444& p);

// Previews for the pictures: BT.709 video range to 8-bit R G B.
std::vector<uint8_t> PreviewUyvy(const uint8_t* uyvy, uint32_t w, uint32_t h, uint32_t stride);
// RGB32 from the library (channel order 0: B, G, R, A) to R G B.
std::vector<uint8_t> PreviewBgra(const uint8_t* bgra, uint32_t w, uint32_t h, uint32_t stride);

}  // namespace zelt::tool
