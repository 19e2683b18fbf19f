/* Zelt: RGB to YCbCr converters of the transcoder.

   Sources are 8-bit-per-channel RGB (24 or 32 bits per pixel) or 16-bit-per-channel
   RGB (48 or 64 bits, little-endian samples of which only the high byte is read).
   `flags`: channel order in the low 15 bits, 0x8000 for bottom-up source rows.
     order  24 bits   32 bits      48/64 bits
     0      B,G,R     B,G,R,A      B,G,R(,A)
     1      B,G,R     A,B,G,R      A,B,G,R
     2      R,G,B     R,G,B,A      R,G,B(,A)
     3      R,G,B     A,R,G,B      A,R,G,B
     4 up   B,G,R     B,G,R,A      B,G,R(,A)
   `matrix`: colour matrix id 0..10 (0 BT.601 video range, 1 BT.601 full, 2/3 BT.709
   video/full to three decimals, 4 BT.709 video to six decimals, 5 BT.709 full,
   6/7 BT.2020 video/full, 8/9 house encodings video/full, 10 BT.601 full-range luma
   with simplified chroma); other ids act as 0. 48-bit orders 1 and 3 read the
   four-sample positions, so their last channel comes from the next pixel's first
   sample (2 bytes past the row for its last pixel).

   Chroma comes from the first pixel of each pair, never averaged; an odd last
   pixel is not converted (its bytes are not written). 4:2:0 chroma is taken from
   source rows 0, 3, 4, 7, 8, 11, ... Planar outputs truncate the second luma of
   every pair. Packed and 4:2:2 results are 2*width*height, 4:2:0 results
   width*height + 2*((width*height)/4). Chroma planes have half the destination
   stride as their pitch. A 4:2:0 frame of 4k+1 rows writes its last chroma row
   half outside the quarter plane (up to dst_stride/4 bytes past the frame). The
   012v converters at the end have rules of their own (chroma from the pair's sum,
   every pixel encoded, 10-bit samples). No argument is checked.

   On processors with 256-bit integer vectors, 4:2:2 output (packed or planar)
   from 32-bit pixels is computed in 14-bit fixed point and may differ from the
   result above by one code value; every other output is the same on every
   processor. */
#ifndef ZELT_YCBCR_FROM_RGB_H
#define ZELT_YCBCR_FROM_RGB_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

/* 24-bit RGB to UYVY. */
ZELT_API uint32_t cycbcr_RGB24_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 32-bit RGB to UYVY. Without 256-bit vectors, matrices 0 and 5 with orders 0 and 2 take a BGR fast path (pair-averaged chroma, returns width*dst_stride; order 2 rewrites the source to B,G,R,A in place; bottom-up flips the output afterwards). */
ZELT_API uint32_t cycbcr_RGB32_to_uyvy(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 48- or 64-bit RGB (bits_per_pixel) to UYVY. */
ZELT_API uint32_t cycbcr_RGB64_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags, uint32_t bits_per_pixel);
/* 24-bit RGB to bottom-up UYVY: cycbcr_RGB24_to_uyvy, then the destination flipped in place. */
ZELT_API uint32_t cycbcr_RGB24_to_cyuv(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 32-bit RGB to bottom-up UYVY: cycbcr_RGB32_to_uyvy (with its side effects), then the destination flipped in place. */
ZELT_API uint32_t cycbcr_RGB32_to_cyuv(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 24-bit RGB to YUY2. */
ZELT_API uint32_t cycbcr_RGB24_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 32-bit RGB to YUY2. */
ZELT_API uint32_t cycbcr_RGB32_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 24-bit RGB to YVYU. */
ZELT_API uint32_t cycbcr_RGB24_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 32-bit RGB to YVYU. */
ZELT_API uint32_t cycbcr_RGB32_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 24-bit RGB to I420 (Cb plane at height*dst_stride, Cr a quarter plane later). */
ZELT_API uint32_t cycbcr_RGB24_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 32-bit RGB to I420. */
ZELT_API uint32_t cycbcr_RGB32_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 24-bit RGB to YV12 (Cr plane first). */
ZELT_API uint32_t cycbcr_RGB24_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 32-bit RGB to YV12. */
ZELT_API uint32_t cycbcr_RGB32_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 24-bit RGB to P422 (Cb plane at height*dst_stride, Cr half a plane later). */
ZELT_API uint32_t cycbcr_RGB24_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 32-bit RGB to P422. */
ZELT_API uint32_t cycbcr_RGB32_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 32-bit RGB to 012v with the scale-40000 table: 10-bit luma per pixel, chroma from the pair's sum, rounded half away from zero, clamped to 0..1023; rows written whole (pixels past the width repeat the last one) at max(dst_stride, the 012v minimum) apart (pitch 0 means the minimum). Returns height * that pitch. */
ZELT_API uint32_t cycbcr_RGB32_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 24-bit RGB to 012v, as cycbcr_RGB32_to_012v. */
ZELT_API uint32_t cycbcr_RGB24_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 16-bit-per-channel RGB to P422; bits per pixel are (src_stride / width) * 8, so a padded source row changes the layout read; a width of 0 divides by zero. */
ZELT_API uint32_t cycbcr_RGB64_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t matrix, uint32_t flags);
/* 32-bit RGB to three caller-given planes: 4:2:2 when full_chroma_rows is nonzero, else 4:2:0; chroma rows chroma_stride apart. */
ZELT_API uint32_t cycbcr_RGB32_to_planar(uint8_t* dst_y, uint8_t* dst_cb, uint8_t* dst_cr, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t chroma_stride, uint32_t full_chroma_rows, uint32_t src_stride, uint32_t matrix, uint32_t flags);

ZELT_EXTERN_C_END

#endif
