/* Zelt: SMPTE ST 2084 (PQ) tables and converters.

   Six read-only tables of 32-bit entries, each indexed by a code of its bit depth,
   stored back to back in the order of the getters below. The converters apply the
   8-bit tables; each line is processed over min(dstStride, srcStride) bytes, a
   height of 0 returns at once, and every converter returns 0. */
#ifndef ZELT_PQ_H
#define ZELT_PQ_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

/* Linear to PQ, 12-bit (4096 entries). */
ZELT_API const uint32_t* get_ardwRGB_to_SMPTE2048_12Bit(void);
/* Linear to PQ, 10-bit (1024 entries). */
ZELT_API const uint32_t* get_ardwRGB_to_SMPTE2048_10Bit(void);
/* Linear to PQ, 8-bit (256 entries). */
ZELT_API const uint32_t* get_ardwRGB_to_SMPTE2048_8Bit(void);
/* PQ to linear, 12-bit (4096 entries, ends at 4086). */
ZELT_API const uint32_t* get_ardwSMPTE2048_to_RGB_12Bit(void);
/* PQ to linear, 10-bit (1024 entries; below 64 unchanged, 512 and above 940). */
ZELT_API const uint32_t* get_ardwSMPTE2048_to_RGB_10Bit(void);
/* PQ to linear, 8-bit (256 entries; below 16 unchanged, 136 and above 235). */
ZELT_API const uint32_t* get_ardwSMPTE2048_to_RGB_8Bit(void);

/* Every byte through the 8-bit linear-to-PQ table. */
ZELT_API uint32_t zlt_rgb_to_st2084(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride, uint32_t height);
/* Every byte through the 8-bit PQ-to-linear table. */
ZELT_API uint32_t zlt_st2084_to_rgb(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride, uint32_t height);
/* 2vuy luma bytes through the 8-bit linear-to-PQ table; destination chroma bytes left alone. */
ZELT_API uint32_t zlt_yuv2_to_st2084(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride, uint32_t height);
/* 2vuy luma through the 8-bit PQ-to-linear table; copies bytes 1..4 of each group, so byte 0 of a line is never written and one byte past the last group is. */
ZELT_API uint32_t zlt_st2084_to_yuv2(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride, uint32_t height);
/* v210 read and written as words at byte offset 1 of each line, through the 8-bit linear-to-PQ table indexed by 10-bit codes; 16-byte steps reach up to 16 bytes past min(dstStride, srcStride) on each line. */
ZELT_API uint32_t zlt_v210_to_st2084(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride, uint32_t height);
/* v210 read and written as words at byte offset 1 of each line, through the 8-bit PQ-to-linear table indexed by 10-bit codes; up to 16 bytes past min(dstStride, srcStride) on each line, as zlt_v210_to_st2084. */
ZELT_API uint32_t zlt_st2084_to_v210(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride, uint32_t height);

ZELT_EXTERN_C_END

#endif
