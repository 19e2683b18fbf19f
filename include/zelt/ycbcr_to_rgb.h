/* Zelt: YCbCr to RGB converters of the transcoder.

   8-bit YCbCr (packed 4:2:2 or three planes, 4:2:2 or 4:2:0) to RGB of 15, 16, 24
   or 32 bits per pixel. `matrix` is a colour matrix id 0..7 (anything else is 0).
   `flags`: bit 0x8000 writes the rows bottom-up; the other bits are the channel
   order, 4 and up acting as 2:
     order  32-bit        24-bit   565 / 555 word
     0      B G R 255     B G R    B high, R low
     1      255 B G R     B G R    as 0
     2      R G B 255     R G B    R high, B low
     3      255 R G B     R G B    as 2
   Decoding truncates toward zero and clamps; chroma is repeated across a pixel
   pair, never interpolated. An odd width decodes the last pair whole, so one pixel
   past `width` is written on every row. The rounded fast paths named below are the
   exceptions: they decode exactly `width` pixels with rows at the strides. The
   format-named converters go through cycbcr_ToRGB, so outside those fast paths
   their source rows are read back to back (srcStride only locates planar chroma
   planes). No argument is checked. */
#ifndef ZELT_YCBCR_TO_RGB_H
#define ZELT_YCBCR_TO_RGB_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

/* General converter. `y`, `cb`, `cr` point at the first samples (into one stream
   for packed input). Luma and packed rows are read on without gaps (`srcStride`
   and `chromaStride` are not used); planar chroma row c starts at (c*width)/2.
   `fullChromaRows` nonzero: 4:2:2, else 4:2:0. bitsPerPixel 15, 16, 24 or 32 (other
   values write nothing). Returns bytes-per-pixel * width * height (4 for unknown sizes). */
ZELT_API uint64_t cycbcr_ToRGBInt(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags, uint32_t fullChromaRows, uint32_t planar, uint32_t bitsPerPixel, uint32_t chromaStride);
/* As cycbcr_ToRGBInt, except planar 4:2:0 to 32 bits with flags 0, which takes a
   fast path (rows at srcStride and srcStride/2; ids 2/4 and 3/5 BT.709, all other
   ids BT.601, rounded; ids 2/4 pack rows width*4 apart) and returns height*dstStride. */
ZELT_API uint64_t cycbcr_ToRGB(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags, uint32_t fullChromaRows, uint32_t planar, uint32_t bitsPerPixel, uint32_t chromaStride);
/* As cycbcr_ToRGBInt with 16-bit little-endian samples: bitsPerPixel 24 or 48 give
   three samples per pixel, 32 or 64 four with alpha 65535 (other values write
   nothing). Returns sample bytes per pixel * width * height. */
ZELT_API uint64_t cycbcr_ToRGBInt16(uint8_t* dst, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags, uint32_t fullChromaRows, uint32_t planar, uint32_t bitsPerPixel, uint32_t chromaStride);
/* As cycbcr_ToRGBInt into three byte planes planes[0] = G, planes[1] = R,
   planes[2] = B, each row dstStride bytes; only the 0x8000 bit of flags counts.
   Returns 3 * width * height. */
ZELT_API uint64_t cycbcr_ToRGBPlanarInt(uint8_t* const* planes, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags, uint32_t fullChromaRows, uint32_t planar, uint32_t chromaStride);
/* As cycbcr_ToRGBPlanarInt, with a fast path for packed UYVY top-down with ids 3
   and 5 (rounded BT.709 full range, rows at srcStride) returning 3*height*dstStride. */
ZELT_API uint64_t cycbcr_ToRGBPlanar(uint8_t* const* planes, const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags, uint32_t fullChromaRows, uint32_t planar, uint32_t chromaStride);

/* UYVY to 32 bits. Odd ids at levels 1-4 and 6 (level 1 only for order 0) take a
   rounded BT.601 (ids 1, 3) or BT.709 (5, 7) path writing alpha 0, B G R A or, for
   flags exactly 2, R G B A; that path ignores bottom-up and orders 1, 3 and returns
   height*dstStride. */
ZELT_API uint32_t cycbcr_uyvy_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* UYVY to R, G, B bytes, rounded, exactly width pixels, rows at the strides; flags ignored.
   Ids with bit 2 set decode BT.709 full range; the others decode BT.601 video range reading
   the bytes as Y0 Cr Y1 Cb. Returns height*dstStride. */
ZELT_API uint32_t cycbcr_uyvy_to_rgb24(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* UYVY to 555. */
ZELT_API uint32_t cycbcr_uyvy_to_rgb555(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* UYVY to 565. */
ZELT_API uint32_t cycbcr_uyvy_to_rgb565(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* cyuv (UYVY stored bottom-up) to 32 bits: the 0x8000 flag is inverted. */
ZELT_API uint32_t cycbcr_cyuv_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YUY2 to 24 bits. */
ZELT_API uint32_t cycbcr_yuy2_to_rgb24(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YUY2 to 32 bits. */
ZELT_API uint32_t cycbcr_yuy2_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YUY2 to 555. */
ZELT_API uint32_t cycbcr_yuy2_to_rgb555(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YUY2 to 565. */
ZELT_API uint32_t cycbcr_yuy2_to_rgb565(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YVYU to 24 bits. */
ZELT_API uint32_t cycbcr_yvyu_to_rgb24(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YVYU to 32 bits. */
ZELT_API uint32_t cycbcr_yvyu_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YVYU to 555. */
ZELT_API uint32_t cycbcr_yvyu_to_rgb555(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YVYU to 565. */
ZELT_API uint32_t cycbcr_yvyu_to_rgb565(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YV12 (Y, then Cr at h*s, Cb at h*s + h*s/4) to 24 bits. */
ZELT_API uint32_t cycbcr_yv12_to_rgb24(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YV12 to 32 bits (fast path for flags 0, see cycbcr_ToRGB). */
ZELT_API uint32_t cycbcr_yv12_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YV12 to 555. */
ZELT_API uint32_t cycbcr_yv12_to_rgb555(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* YV12 to 565. */
ZELT_API uint32_t cycbcr_yv12_to_rgb565(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* I420 (Y, then Cb at h*s, Cr at h*s + h*s/4) to 32 bits (fast path for flags 0). */
ZELT_API uint32_t cycbcr_i420_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* P422 (Y, then Cb at h*s, Cr at h*s + h*s/2) to 32 bits. */
ZELT_API uint32_t cycbcr_p422_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* NV12 (Y, then Cb Cr pairs at h*s) to 32 bits; rows as cycbcr_ToRGBInt 4:2:0. */
ZELT_API uint32_t cycbcr_nv12_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);

/* 012v (v210) to 8-bit RGB, exactly `width` pixels per row; source rows at the
   012v pitch in use (0: one continuous run of groups). Weights are the 8-bit ones
   divided by 4. bitsPerPixel 15, 16, 24 or 32 (other values write nothing). Returns
   bytes-per-pixel * width * height (4 for unknown sizes). */
ZELT_API uint32_t cycbcr_v210ToRGB(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags, uint32_t bitsPerPixel);
/* 012v to 24 bits. */
ZELT_API uint32_t cycbcr_012v_to_rgb24(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* 012v to 32 bits. */
ZELT_API uint32_t cycbcr_012v_to_rgb32(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* 012v to 555. */
ZELT_API uint32_t cycbcr_012v_to_rgb555(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);
/* 012v to 565. */
ZELT_API uint32_t cycbcr_012v_to_rgb565(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dstStride, uint32_t srcStride, uint32_t matrix, uint32_t flags);

ZELT_EXTERN_C_END

#endif
