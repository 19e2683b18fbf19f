/* Zelt: 8-bit planar (I420, YV12, P422) conversions and their packed counterparts.

   Planar frames are one buffer: the luma plane, then two chroma planes. I420 holds
   (Y, Cb, Cr), YV12 (Y, Cr, Cb), P422 (Y, Cb, Cr) for the packed routes; chroma
   planes are half the luma width, half (4:2:0) or full (P422) height.

   Planar source to packed destination: the chroma planes are found at width*height
   and width*height*5/4 (4:2:0) or *3/2 (P422) bytes from `src`, whatever the stride.
   Packed source to planar destination: at height*dst_stride and height*dst_stride*5/4
   (or *3/2), chroma pitch dst_stride/2. Planar to planar: both sides by their
   stride, chroma pitches half the strides.

   4:2:0 chroma siting differs between routes on purpose:
   - UYVY (and cyuv) written from I420, and UYVY from YV12: progressive, luma rows 2k
     and 2k+1 share chroma row k, on every processor;
   - YUY2 and YVYU written from I420/YV12, and cyuv from YV12: field siting, luma
     rows 0 and 2 share chroma row 0, rows 1 and 3 chroma row 1, rows 4 and 6 row 2;
   - packed to I420/YV12: chroma row k is packed row 2k when k is even and 2k+1 when
     odd (one line per field, no averaging).
   The UYVY routes convert width/2 pixel pairs a row (an odd last pixel is left
   alone); the YUY2 and YVYU routes from planes write a whole last group, reading one
   luma sample past the row and writing two bytes past it.

   The planar-to-planar routes between the 4:2:0 layouts and P422 take the P422
   second plane as Cr and the third as Cb, unlike every packed route: I420 -> P422
   -> UYVY comes out with Cb and Cr exchanged. */
#ifndef ZELT_YCBCR_PLANAR_H
#define ZELT_YCBCR_PLANAR_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

/* Planes to packed 4:2:2. The packed side is three pointers (luma, A, B) to the first group, 4 bytes per group, luma pairs 2 bytes apart; A/B match srcA/srcB. flags&15: 0 = 4:2:0 (field-sited), 1 = 4:2:2, 2 = full chroma (every other sample used); an odd width writes a whole last group. In UYVY order (A = luma-1, B = luma+1) mode 1 and, unless flags&16, every other mode take the pair-wise reorder (chroma pitch src_stride/2, 4:2:0 progressive, width/2 pairs). Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_fromplanar(const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint8_t* dstY, uint8_t* dstA, uint8_t* dstB, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t flags);
/* As cycbcr_fromplanar (no fast path), writing source row r to row r+1 (r even) or r-1 (r odd); with an odd height one row past the frame is written. 4:2:0 chroma is set on odd rows to chroma row (r-1)/2 and steps on at every 4th pixel. */
ZELT_API uint32_t cycbcr_fromplanar_fieldinvert(const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint8_t* dstY, uint8_t* dstA, uint8_t* dstB, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t flags);
/* Packed 4:2:2 (pointers as cycbcr_fromplanar) to planes; width/2 groups a row. flags&15: 0 = 4:2:0 (chroma row k from packed row 2k or 2k+1, see above), 1 = 4:2:2. Returns h*dst_stride + (h*dst_stride/2 rounded down to even), for both modes. */
ZELT_API uint32_t cycbcr_toplanar(const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint8_t* dstY, uint8_t* dstA, uint8_t* dstB, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t flags);
/* As cycbcr_toplanar (no fast path), reading planar row r from packed row r+1 (r even) or r-1 (r odd); with an odd height one row past the source is read. Undoes cycbcr_fromplanar_fieldinvert in mode 1. */
ZELT_API uint32_t cycbcr_toplanar_fieldinvert(const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint8_t* dstY, uint8_t* dstA, uint8_t* dstB, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t flags);

/* I420 to UYVY, progressive chroma. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_i420_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* I420 to YUY2, field-sited chroma. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_i420_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* I420 to YVYU, field-sited chroma. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_i420_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* I420 to UYVY as cycbcr_i420_to_uyvy, then flipped bottom-up. */
ZELT_API uint32_t cycbcr_i420_to_cyuv(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YV12 to UYVY, progressive chroma. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_yv12_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YV12 to YUY2, field-sited chroma. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_yv12_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YV12 to YVYU, field-sited chroma. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_yv12_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YV12 to cyuv: writes the YUY2 byte order (Y0 Cb Y1 Cr, field-sited), then flips bottom-up. */
ZELT_API uint32_t cycbcr_yv12_to_cyuv(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* P422 to UYVY. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_p422_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* P422 to YUY2; chroma read as contiguous rows of (width+1)/2 samples. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_p422_to_yuy2(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* P422 to YVYU; chroma read as contiguous rows of (width+1)/2 samples. Returns height*dst_stride. */
ZELT_API uint32_t cycbcr_p422_to_yvyu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* P422 to UYVY as cycbcr_p422_to_uyvy, then flipped bottom-up. */
ZELT_API uint32_t cycbcr_p422_to_cyuv(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);

/* UYVY to I420. Returns as cycbcr_toplanar. */
ZELT_API uint32_t cycbcr_uyvy_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* UYVY to YV12. Returns as cycbcr_toplanar. */
ZELT_API uint32_t cycbcr_uyvy_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* UYVY to P422, width/2 pairs a row. Returns height*dst_stride, except below processor level 4 (or for a width below 2 or a height of 0) where it returns as cycbcr_toplanar. */
ZELT_API uint32_t cycbcr_uyvy_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YUY2 to I420. Returns as cycbcr_toplanar. */
ZELT_API uint32_t cycbcr_yuy2_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YUY2 to YV12. Returns as cycbcr_toplanar. */
ZELT_API uint32_t cycbcr_yuy2_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YUY2 to P422. Returns as cycbcr_toplanar. */
ZELT_API uint32_t cycbcr_yuy2_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YVYU to I420. Returns as cycbcr_toplanar. */
ZELT_API uint32_t cycbcr_yvyu_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YVYU to YV12. Returns as cycbcr_toplanar. */
ZELT_API uint32_t cycbcr_yvyu_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YVYU to P422. Returns as cycbcr_toplanar. */
ZELT_API uint32_t cycbcr_yvyu_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* cyuv to I420: as UYVY, then each plane flipped in place (chroma with dst_stride/2, height/2). */
ZELT_API uint32_t cycbcr_cyuv_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* cyuv to YV12: as UYVY, then each plane flipped in place (chroma with dst_stride/2, height/2). */
ZELT_API uint32_t cycbcr_cyuv_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* cyuv to P422: as UYVY (4:2:2 engine), then each plane flipped; the third plane's flip starts width*height/2 bytes after the second's. */
ZELT_API uint32_t cycbcr_cyuv_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);

/* I420 to I420 through cycbcr_planar_copy. Returns height*dst_stride*3/2. */
ZELT_API uint32_t cycbcr_i420_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YV12 to YV12 through cycbcr_planar_copy. Returns height*dst_stride*3/2. */
ZELT_API uint32_t cycbcr_yv12_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* I420 to YV12 (chroma planes exchanged) through cycbcr_planar_copy. Returns height*dst_stride*3/2. */
ZELT_API uint32_t cycbcr_i420_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* YV12 to I420 (chroma planes exchanged) through cycbcr_planar_copy. Returns height*dst_stride*3/2. */
ZELT_API uint32_t cycbcr_yv12_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* P422 copy: height*dst_stride luma bytes, two chroma runs of height*dst_stride/2. Returns height*dst_stride*2. */
ZELT_API uint32_t cycbcr_p422_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* I420 to P422 by line doubling; Cr lands in the P422 second plane, Cb in the third. Returns height*dst_stride*2. */
ZELT_API uint32_t cycbcr_i420_to_p422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* P422 to I420 keeping even chroma rows; the P422 second plane is taken as Cr. Returns height*dst_stride*3/2. */
ZELT_API uint32_t cycbcr_p422_to_i420(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* P422 to YV12 keeping even chroma rows; the P422 second plane is taken as Cr. Returns height*dst_stride*3/2. */
ZELT_API uint32_t cycbcr_p422_to_yv12(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);

/* 4:2:0 three-plane copy (width unused): one run per plane with equal strides, else rows of min(strides) and min(strides)/2 bytes. Returns height*dst_stride*3/2. */
ZELT_API uint32_t cycbcr_planar_copy(uint8_t* dstY, uint8_t* dstA, uint8_t* dstB, const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride);
/* Three-plane copy between 4:2:0 and 4:2:2 (A to A, B to B): chroma rows doubled or even rows kept; both 4:2:0 is cycbcr_planar_copy, both 4:2:2 three runs. With an odd height a 4:2:0 destination gets one chroma row more than height/2. Returns height*dst_stride*2 for a 4:2:2 destination, else *3/2. */
ZELT_API uint32_t cycbcr_planar_422_420(uint8_t* dstY, uint8_t* dstA, uint8_t* dstB, const uint8_t* srcY, const uint8_t* srcA, const uint8_t* srcB, uint32_t width, uint32_t height, uint32_t dst_stride, uint32_t src_stride, uint32_t dst_is_422, uint32_t src_is_422);

ZELT_EXTERN_C_END

#endif
