/* Zelt: direct converters: field and frame operations, channel-order swaps, alpha and key planes, 8-bit resampling.

   Arguments are trusted as given: no pointer, size or overlap is checked. Strides are
   byte counts; line n of a picture starts n strides after its first byte. */
#ifndef ZELT_DIRECT_H
#define ZELT_DIRECT_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

/* ---- Field and frame operations ------------------------------------------------ */

/* Edge-aware deinterlacer for 32-bit pixels. Mode 2 blends combed pixels of every line to (u+2c+d)>>2; other modes keep
   the even lines and set combed pixels of odd lines to (u+d)>>1; mode 17 copies every line, leaving the picture
   unchanged. Filtered line 0 reads the line one stride before src. Returns 0. */
ZELT_API uint32_t zlt_deinterlace_rgb(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t stride, uint32_t threshold, uint32_t softness, uint32_t reserved, uint32_t mode);
/* Not provided: always returns 0xFFFFFFFF. */
ZELT_API uint32_t zlt_deinterlace_yuv(void);
/* Smooths the second luma of each pixel pair of one 2vuy row in place (modes 1 to 6). Mode 1 reads and writes up to
   2 bytes past byte_count when it is not a multiple of 4. Returns 0. */
ZELT_API uint32_t zlt_2yuv_average_2y(uint8_t* row, int32_t byte_count, int32_t mode);
/* Field operations on 32-bit pictures: mode 3 swaps the fields, mode 4 averages lines; every other mode does nothing.
   line_step 0 means the stride. Returns 0 (mode 4 with fewer than 2 lines: 0xFFFFFFFF). */
ZELT_API uint32_t zlt_change_field_rgb(uint8_t* picture, int32_t mode, int64_t width, int32_t height, uint32_t stride, uint8_t* second, uint32_t line_step);
/* zlt_change_field_rgb with modes 4, 11 and 12 mapped to 1, 9 and 10, so only mode 3 (field swap) does anything. */
ZELT_API uint32_t zlt_change_field_yuv(uint8_t* picture, uint32_t mode, int64_t width, int32_t height, uint32_t stride, uint8_t* second, uint32_t line_step);
/* Mirrors every line of 32-bit pixels left to right; dst == src works in place. */
ZELT_API void zlt_flip_horz(uint8_t* dst, const uint8_t* src, uint32_t width, int32_t height, int32_t stride);
/* Turns the picture upside down (stride bytes per line); dst == src works in place. */
ZELT_API void zlt_flip_vert(uint8_t* dst, const uint8_t* src, uint32_t width, int32_t height, uint32_t stride);

/* ---- Channel-order swaps: (dst, src, pixel count); dst may equal src. The result has no meaning. */

/* Swaps bytes 0 and 2 of every 32-bit pixel. */
ZELT_API uint32_t abgr2argb(uint32_t* dst, const uint32_t* src, uint64_t count);
/* Swaps bytes 0 and 2 of every 32-bit pixel. */
ZELT_API uint32_t argb2abgr(uint32_t* dst, const uint32_t* src, uint64_t count);
/* Swaps bytes 0 and 2 of every 32-bit pixel. */
ZELT_API uint32_t bgra2rgba(uint32_t* dst, const uint32_t* src, uint64_t count);
/* Swaps bytes 0 and 3 of every 32-bit pixel. */
ZELT_API uint32_t argb2rgba(uint32_t* dst, const uint32_t* src, uint64_t count);
/* Reverses the four bytes of every pixel. */
ZELT_API uint32_t argb2bgra(uint32_t* dst, const uint32_t* src, uint64_t count);
/* Reverses the four bytes of every pixel. */
ZELT_API uint32_t bgra2argb(uint32_t* dst, const uint32_t* src, uint64_t count);
/* Rotates every pixel left by 8 bits. */
ZELT_API uint32_t abgr2bgra(uint32_t* dst, const uint32_t* src, uint64_t count);
/* Rotates every pixel right by 8 bits. */
ZELT_API uint32_t bgra2abgr(uint32_t* dst, const uint32_t* src, uint64_t count);
/* Rotates every pixel right by 8 bits. */
ZELT_API uint32_t rgba2argb(uint32_t* dst, const uint32_t* src, uint64_t count);
/* Rotates every pixel right by 8 bits. */
ZELT_API uint32_t bgra2abgrMMX(uint32_t* dst, const uint32_t* src, uint64_t count);
/* Rotates every pixel right by 8 bits (like bgra2abgr, not the left rotation of abgr2bgra). */
ZELT_API uint32_t abgr2bgraMMX(uint32_t* dst, const uint32_t* src, uint64_t count);

/* ---- Alpha and key planes: return 0; a height below 1 does nothing. ------------------------ */

/* Sets U and V of every 2vuy pair to 0x80, keeping both lumas. */
ZELT_API uint32_t zlt_2yuv_strip_chroma(uint8_t* dst, int32_t dst_stride, const uint8_t* src, int32_t src_stride, int32_t width, int32_t height);
/* Writes the two lumas of every 2vuy pair to a one-byte-per-pixel plane. */
ZELT_API uint32_t zlt_2yuv_to_alphay(uint8_t* dst, int32_t dst_stride, const uint8_t* src, int32_t src_stride, int32_t width, int32_t height);
/* Makes 2vuy pairs 0x80, a0, 0x80, a1 from a plane; bottom line first, each line from its end. */
ZELT_API uint32_t zlt_alphay_to_2yuv(uint8_t* dst, uint32_t dst_stride, const uint8_t* src, uint32_t src_stride, int32_t width, uint32_t height);
/* Makes 32-bit pixels a, a, a, a from a plane whose lines are `width` bytes apart. */
ZELT_API uint32_t zlt_alpha_to_rgba(uint8_t* dst, int32_t dst_stride, const uint8_t* src, int32_t reserved, int32_t width, int32_t height);
/* Writes byte 0 of every 32-bit pixel to a plane whose lines are `width` bytes apart. */
ZELT_API uint32_t zlt_rgba_to_alpha(uint8_t* dst, int32_t reserved, const uint8_t* src, int32_t src_stride, int32_t width, int32_t height);
/* Widens 3-byte pixels to 4 bytes with the given fourth byte; bottom line first. */
ZELT_API uint32_t zlt_rgba_addalpha(const uint8_t* src, uint8_t* dst, uint32_t src_stride, int32_t dst_stride, uint8_t alpha, uint32_t width, int32_t height);
/* Sets byte 3 of every 32-bit pixel to `alpha`, in place. */
ZELT_API uint32_t zlt_rgba_setalpha(uint8_t* picture, int32_t stride, uint8_t alpha, int32_t width, int32_t height);

/* ---- 8-bit YCbCr resampling ----------------------------------------------------------------- */

/* 2vuy pairs to 3-byte Y, Cb, Cr pixels, both pixels taking the pair's chroma; whole pairs (an odd count writes 3 bytes more). */
ZELT_API void zlt_yuv422_yuv444_8(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height);
/* 3-byte Y, Cb, Cr pixels to 2vuy pairs, keeping the even pixel's chroma; whole pairs (an odd pixel count reads 1 byte
   past the source and writes 2 bytes past width * height * 2). */
ZELT_API void zlt_yuv444_yuv422_8(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height);
/* I420 (contiguous planes) to 2vuy; |height| rows top to bottom; dst_stride 0 or 0xFFFFFFFF means 2 x width. An odd
   width writes ceil(width/2) pairs and reads luma on without a row reset (each later row one byte further on). Returns 0,
   or dst_stride + 1 without writing when there are no rows. */
ZELT_API uint32_t zlt_i420_2vuy(uint8_t* dst, const uint8_t* src, uint32_t width, int32_t height, uint32_t dst_stride);

ZELT_EXTERN_C_END

#endif
