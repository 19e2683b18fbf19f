/* Zelt whole-frame transcoder: the dispatcher and the packed 4:2:2 converters.

   Every cycbcr_<src>_to_<dst> converter takes (dst, src, width, height, dst_stride,
   src_stride): widths and heights in pixels and rows, strides in bytes, and returns
   the size of the destination frame in bytes (computed in 32 bits, wrapping). No
   argument is checked. */
#ifndef ZELT_YCBCR_H
#define ZELT_YCBCR_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

/* Converts one frame between any two of RGB32, UYVY, YUY2, YVYU, cyuv, I420, YV12,
   P422 and 012v (by four-character code, aliases included; 0 is RGB32). After
   `height` come six uint32_t: dst_stride, src_stride, matrix, flags, dst_code,
   src_code. Strides are normalised for their formats first. Returns the converter's
   byte count, 0 for an unknown pair (buffers untouched), 0xFFFFFFFF when the UYVY
   to YUY2 route caught a fault. `src` is not const: an RGB32 source in R,G,B,A
   order is rewritten to B,G,R,A in place by the RGB to UYVY route. */
ZELT_API uint32_t cycbcr_transcode(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height, ...);
/* 1 when both codes are among the twenty codes the transcoder knows, else 0. */
ZELT_API uint32_t cycbcr_can_transcode(uint32_t code_a, uint32_t code_b);

/* Swap of the two bytes of every 16-bit word: b0 b1 b2 b3 -> b1 b0 b3 b2. With
   equal strides the whole frame (padding included) is one run; otherwise each row
   swaps min(dst_stride, src_stride) bytes. */
ZELT_API uint32_t cycbcr_uyvy_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* The same operation as cycbcr_uyvy_to_yuy2. */
ZELT_API uint32_t cycbcr_yuy2_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Per row, width/2 groups b0 b1 b2 b3 -> b1 b0 b3 b2. The chroma bytes are not
   exchanged: YVYU comes out as Cr Y0 Cb Y1. */
ZELT_API uint32_t cycbcr_uyvy_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* The same operation as cycbcr_uyvy_to_yvyu. */
ZELT_API uint32_t cycbcr_yvyu_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Per row, width/2 groups b0 b1 b2 b3 -> b0 b3 b2 b1 (the chroma bytes exchanged). */
ZELT_API uint32_t cycbcr_yuy2_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* The same operation as cycbcr_yuy2_to_yvyu. */
ZELT_API uint32_t cycbcr_yvyu_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Vertical flip copy: dst row r = src row height-1-r, min(dst_stride, src_stride) bytes. */
ZELT_API uint32_t cycbcr_uyvy_to_cyuv(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* The same operation as cycbcr_uyvy_to_cyuv. */
ZELT_API uint32_t cycbcr_cyuv_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Word byte swap as cycbcr_uyvy_to_yuy2, then the destination flipped in place. */
ZELT_API uint32_t cycbcr_yuy2_to_cyuv(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* The same operation as cycbcr_yuy2_to_cyuv. */
ZELT_API uint32_t cycbcr_cyuv_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Word byte swap as cycbcr_uyvy_to_yuy2, then the destination flipped in place. */
ZELT_API uint32_t cycbcr_yvyu_to_cyuv(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* The same operation as cycbcr_yvyu_to_cyuv. */
ZELT_API uint32_t cycbcr_cyuv_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Frame copy: one run of height*dst_stride bytes with equal strides, else rows of
   min(dst_stride, src_stride) bytes. */
ZELT_API uint32_t cycbcr_uyvy_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Frame copy, as cycbcr_uyvy_to_uyvy. */
ZELT_API uint32_t cycbcr_yuy2_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Frame copy, as cycbcr_uyvy_to_uyvy. */
ZELT_API uint32_t cycbcr_yvyu_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Frame copy, as cycbcr_uyvy_to_uyvy. */
ZELT_API uint32_t cycbcr_cyuv_to_cyuv(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Frame copy through cycbcr_interleaved_copy; returns height * dst_stride. */
ZELT_API uint32_t cycbcr_012v_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Frame copy (width unused, no processor-level guard); returns height * dst_stride. */
ZELT_API uint32_t cycbcr_interleaved_copy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* In-place vertical flip of `height` rows of `stride` bytes. */
ZELT_API void cycbcr_invert(uint8_t* buffer, uint32_t stride, uint32_t height);

ZELT_EXTERN_C_END

#endif
