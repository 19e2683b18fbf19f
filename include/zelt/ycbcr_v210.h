/* Zelt: 012v (v210) packing, high-bit-depth planar converters and NV12.

   012v packs six 4:2:2 pixels into four little-endian 32-bit words, three 10-bit
   samples per word (bits 0-9, 10-19, 20-29): Cb0 Y0 Cr0 | Y1 Cb1 Y2 | Cr1 Y3 Cb2 |
   Y4 Cr2 Y5. A row holds ceil(width/6) groups; the last group is written whole,
   its samples past the width taken from whatever the source holds there. The
   smallest row pitch is the width rounded up to 48 pixels, 128 bytes per 48; a
   smaller pitch is raised to it. 8-bit v becomes 10-bit v*4; 10-bit v becomes
   8-bit (v+2)>>2 below 1021 and v>>2 from 1021 up.

   The 8-bit converters take (dst, src, width, height, dst_stride, src_stride) and
   return a byte count computed in 32 bits. Planar 8-bit frames (I420, YV12, P422)
   are one buffer: a luma plane, then the two chroma planes. No argument is checked. */
#ifndef ZELT_YCBCR_V210_H
#define ZELT_YCBCR_V210_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

/* ---- 8-bit to 012v. The destination pitch is raised to the 012v minimum (0
   included); each sample is multiplied by 4; ceil(width/6) groups per row, the
   last reading up to 5 pixels past the row end. All return height * the minimum
   012v pitch, whatever pitch was written. ---- */

/* UYVY rows at src + r*src_stride. */
ZELT_API uint32_t cycbcr_uyvy_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YUY2 rows at src + r*src_stride. */
ZELT_API uint32_t cycbcr_yuy2_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YVYU rows at src + r*src_stride. */
ZELT_API uint32_t cycbcr_yvyu_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* cyuv (UYVY bytes, bottom row first): 012v row r comes from source row height-1-r. */
ZELT_API uint32_t cycbcr_cyuv_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* I420: luma rows of width bytes, Cb at width*height, Cr at width*height*5/4, chroma rows of width/2 bytes, row r using chroma row r/2. src_stride is not read. */
ZELT_API uint32_t cycbcr_i420_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YV12: as I420 with Cr at width*height and Cb at width*height*5/4. */
ZELT_API uint32_t cycbcr_yv12_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* P422: luma rows of width bytes, Cb at width*height, Cr at width*height*3/2, chroma row r for row r. */
ZELT_API uint32_t cycbcr_p422_to_012v(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);

/* ---- 012v to 8-bit. Source pitch below the minimum is raised to it; a source
   pitch of 0 walks the source as one run of groups, a new row starting every
   ceil(width/2) pixel pairs (so a row may begin inside a group). Each 10-bit
   sample is rounded to 8 bits as above. Packed rows get exactly 2*width bytes:
   with an odd width the last pair is cut to its first two bytes. ---- */

/* UYVY rows at dst + r*dst_stride. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_012v_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YUY2 (Y0 Cb Y1 Cr). Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_012v_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YVYU (Y0 Cr Y1 Cb, the chroma exchanged). Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_012v_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* cyuv: UYVY bytes, source row r written to destination row height-1-r. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_012v_to_cyuv(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* I420: width luma bytes per row at dst + r*dst_stride; Cb plane at height*dst_stride, Cr at height*dst_stride*5/4, pitch dst_stride/2, width/2 samples a row. Chroma row k is taken from source row 2k (k even) or 2k+1 (k odd), one line per field, no averaging; rows beyond height/2 chroma rows are not written. Returns height*dst_stride*3/2. */
ZELT_API uint32_t cycbcr_012v_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YV12: as cycbcr_012v_to_i420 with Cr at height*dst_stride and Cb at height*dst_stride*5/4. */
ZELT_API uint32_t cycbcr_012v_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* P422: luma as above; Cb plane at height*dst_stride, Cr at height*dst_stride*3/2, pitch dst_stride/2, one chroma row per row. Returns height*dst_stride*2. */
ZELT_API uint32_t cycbcr_012v_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);

/* ---- 16-bit planar sources (values in the low bits of each sample). Luma rows
   at y + r*src_stride bytes; 4:2:2 chroma rows at (r*src_stride)/2 bytes, 4:4:4
   chroma rows at r*src_stride bytes. Frames wider than the threshold (2048
   pixels; 1920 for the 12-bit 4:2:2 source) are cut into eight bands of
   height/8 rows (the last band takes the rest) converted on eight worker threads
   started for the call; band k starts k*(height/8)*dst_stride bytes into dst, so
   threaded calls expect dst_stride to be the pitch in use. On AVX2 processors a
   single-threaded 256-bit kernel converts every width. The threaded form returns
   height*dst_stride; the single-threaded forms return height*pitch in use. ---- */

/* 10-bit 4:2:2 to 012v: samples masked to 10 bits. When width is not a multiple of 6, words 0 and 1 of one more group are written after the last group (inside the row padding); they are left out when the pitch has no room for them (widths 43 to 47 past a multiple of 48 at the minimum pitch). Destination pitch max(minimum, dst_stride). */
ZELT_API uint32_t cycbcr_yuv422p10_to_012v(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* 12-bit 4:2:2 to 012v: each sample shifted right by 2 (no rounding), else as the 10-bit form; threads above width 1920. */
ZELT_API uint32_t cycbcr_yuv422p12_to_012v(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* 12-bit 4:4:4 to 012v: as the 12-bit 4:2:2 form, chroma taken from the even pixels (co-sited, no filtering); chroma planes full width with row pitch src_stride; threads above width 2048. */
ZELT_API uint32_t cycbcr_yuv444p12_to_012v(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* 10-bit 4:2:2 to UYVY: each sample shifted right by 2 (no rounding, low 8 bits kept), ceil(width/2) groups a row at dst + r*dst_stride; threads above width 2048. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_yuv422p10_to_uyvy(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);

/* The rest of the family, with the same arguments, pitches, results and eight-band
   split above 2048 pixels. 16-bit samples become 10 bits by a right shift of 6
   (8 bits: 8), no rounding. 4:2:0 sources read chroma row r/2 for picture row r,
   chroma rows (r/2)*src_stride/2 bytes apart from the plane start. */

/* 16-bit 4:2:2 to 012v. */
ZELT_API uint32_t cycbcr_yuv422p16_to_012v(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* 10-bit 4:4:4 to 012v: samples masked to 10 bits, chroma from the even pixels, chroma row pitch src_stride. */
ZELT_API uint32_t cycbcr_yuv444p10_to_012v(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* 10-bit 4:2:0 to 012v: samples masked to 10 bits. */
ZELT_API uint32_t cycbcr_yuv420p10_to_012v(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* 16-bit 4:2:0 to 012v. */
ZELT_API uint32_t cycbcr_yuv420p16_to_012v(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* 10-bit 4:2:0 to UYVY (each sample >> 2, low 8 bits kept). Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_yuv420p10_to_uyvy(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* 16-bit 4:2:0 to UYVY (each sample >> 8). Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_yuv420p16_to_uyvy(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);

/* Any depth of 4:2:2 to 012v: `bits` 10, 12 and 16 (or below 10, taken as 10) are cycbcr_yuv422p10/p12/p16_to_012v; 11, 13, 14, 15 and above 16 (taken as 16) shift right by bits-10 in one portable pass on the calling thread, returning height*pitch in use. */
ZELT_API uint32_t cycbcr_planar_16_to_012v(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t bits);

/* ---- 012v to separate 4:2:2 planes, source pitch rules as for the 8-bit
   destinations. Luma rows of width samples at dst_stride bytes, chroma rows of
   width/2 samples at dst_stride/2 bytes; both return height*dst_stride*2. ---- */

/* 8-bit planes, each sample rounded to 8 bits. */
ZELT_API uint32_t cycbcr_012v_to_planar422(uint8_t* y, uint8_t* cb, uint8_t* cr, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* 16-bit planes holding the 10-bit values in their low bits. */
ZELT_API uint32_t cycbcr_012v_to_planar422_16(uint16_t* y, uint16_t* cb, uint16_t* cr, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);

/* ---- NV12. Called directly, not through cycbcr_transcode. ---- */

/* Planar 4:2:0 of 10-bit samples (L luma, L/4 Cb, L/4 Cr, L = size/3, size in bytes of the source) to 16-bit NV12 (L luma, then L/4 Cb,Cr pairs), every sample shifted left by 6. Returns 0. */
ZELT_API uint32_t cycbcr_420p10_to_NV12p16(uint16_t* dst, const uint16_t* src, uint32_t size);
/* As cycbcr_420p10_to_NV12p16 for 12-bit samples (shift 4). Returns 0. */
ZELT_API uint32_t cycbcr_420p12_to_NV12p16(uint16_t* dst, const uint16_t* src, uint32_t size);
/* As cycbcr_420p10_to_NV12p16 for 16-bit samples (copied unshifted). Returns 0. */
ZELT_API uint32_t cycbcr_420p16_to_NV12p16(uint16_t* dst, const uint16_t* src, uint32_t size);
/* 8-bit NV12 (luma rows of width bytes, then at width*height one Cb,Cr row of width bytes per two luma rows) to UYVY: width/2 groups per row at dst + r*dst_stride, rows 2k and 2k+1 repeating chroma row k. */
ZELT_API void cycbcr_NV12_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride);

ZELT_EXTERN_C_END

#endif
