// Our own equivalents of the IPP primitives the RGB to YCbCr converters use:
// evaluated in 16-bit fixed point, rounded to nearest, saturated to 0..255.
#pragma once

#include <cstdint>

namespace zelt::transcode {

// ippiSwapChannels_8u_C4IR: in place, for `width` pixels of each of `height` rows
// `step` bytes apart, destination channel i = source channel order[i]. {2,1,0,3}
// turns B,G,R,A into R,G,B,A and back.
void SwapChannels8uC4IR(uint8_t* image, uint32_t step, uint32_t width, uint32_t height, const uint8_t order[4]);

// ippiBGRToCbYCr422_8u_AC4C2R, BT.601:
//   Y  =  0.257R + 0.504G + 0.098B + 16
//   Cb = -0.148R - 0.291G + 0.439B + 128
//   Cr =  0.439R - 0.368G - 0.071B + 128
// Source B,G,R,A (A ignored), output Cb0 Y0 Cr0 Y1 per pair. The reference leaves
// open how a pair's chroma is formed; we take the chroma of the pair's average
// colour. width/2 pairs per row; an odd last pixel is not written.
void BgrToCbYCr422Bt601(const uint8_t* src, uint32_t srcStep, uint8_t* dst, uint32_t dstStep, uint32_t width,
                        uint32_t height);

// ippiBGRToCbYCr422_709HDTV_8u_AC4C2R, BT.709 with unscaled luma:
//   Y  =  0.213R + 0.715G + 0.072B
//   Cb = -0.117R - 0.394G + 0.511B + 128
//   Cr =  0.511R - 0.464G - 0.047B + 128
// Same layout, chroma and odd-width rule as BgrToCbYCr422Bt601.
void BgrToCbYCr422Bt709Hdtv(const uint8_t* src, uint32_t srcStep, uint8_t* dst, uint32_t dstStep, uint32_t width,
                            uint32_t height);

}  // namespace zelt::transcode
