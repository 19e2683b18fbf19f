/* Zelt: the row pipeline: unpackers to 16-bit rows, packers to RGB, range mapping.

   Intermediate rows hold Y, then Cr, then Cb (the YR16 row alone puts Cb before
   Cr). "16s" rows carry right-aligned 10-bit values (0..1023), "16u" rows and
   YR16/YU64 left-aligned 16-bit values (v << (16 - bits)). Chroma is offset binary.
   Arguments are trusted: nothing is checked, and several functions read or write a
   v210 group or a vector block past the row end, as each comment says. */
#ifndef ZELT_ROWS_H
#define ZELT_ROWS_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

/* Three row or plane pointers: Y, Cr, Cb for YCbCr rows; G, R, B for RGB rows. */
typedef struct ZeltPlanes {
  void* plane[3];
} ZeltPlanes;

/* A frame size passed by value: width first, then height. */
typedef struct ZeltSize {
  int32_t width;
  int32_t height;
} ZeltSize;

/* ---- unpackers ---- */

/* One component of an 8-bit Cb-Y0-Cr-Y1 row to 16-bit samples. component 0 = Y, 1 = Cr,
   other = Cb; path 2 = vector path (AVX2 hosts), other = scalar. shift 2 with fullRange
   and/or matrix applies the full-range scale and/or the 601-to-709 re-matrix; results
   wrap in 16 bits. An odd luma count writes one extra sample. Returns source bytes used. */
ZELT_API uint32_t zeltUnpackRowYUV16s(const uint8_t* src, int16_t* dst, int32_t count, int32_t component, int32_t path, int32_t shift, int32_t fullRange, int32_t matrix);
/* 8-bit Y0-Cb-Y1-Cr row to Y, Cr, Cb planes (values 0..255). Rows under 32 pixels read
   and write a whole 32-pixel block; an odd width of 32 or more reads and writes one pixel
   past `width`. Returns source bytes used (overruns included). */
ZELT_API uint32_t zeltUnpackYUVRow16s(const uint8_t* src, int32_t width, const ZeltPlanes* planes);
/* v210 row to planar 16s rows; Cr per group is Cr0, Cr0, Cr1 (Cr2 unused). Exact width,
   in steps of two pixels. */
ZELT_API uint32_t zeltV210RowToPlanar16s(const uint8_t* src, int32_t width, int16_t* y, int16_t* cr, int16_t* cb);
/* v210 row to a packed 16s row (Y0 Cr Y1 Cb ...), ceil(width/6) whole groups, with the
   same Cr0, Cr0, Cr1 chroma. */
ZELT_API void zeltV210RowToYUV(const uint8_t* src, int16_t* dst, int32_t width);
/* v210 row to left-aligned 16-bit Y, Cb, Cr planes (note the argument order); only
   whole groups of six pixels are written. */
ZELT_API uint32_t zeltV210RowToYUV16(const uint8_t* src, uint16_t* y, uint16_t* cb, uint16_t* cr, int32_t width);
/* v210 frame to YR16 rows (Y, Cb, Cr, left-aligned); whole groups of six pixels only. */
ZELT_API void zeltV210ToYR16(const uint8_t* src, int32_t width, int32_t height, int32_t srcPitch, uint16_t* dst, int32_t dstPitch);
/* 8-bit Cb-Y-Cr-Y frame to Row16u rows (v << 8). Does nothing unless flags has bit value 2. */
ZELT_API uint32_t zeltCbYCrY_8bitToRow16u(void* reserved1, int32_t width, int32_t height, int32_t reserved2, const void* src, void* dst, int32_t dstPitch, int32_t reserved3, int32_t reserved4, uint8_t flags);
/* 10-bit frame stored as a low-bits area then an 8-bit area, to Row16u rows dstPitch
   bytes apart. Does nothing unless flags has bit value 2. */
ZELT_API uint32_t zeltCbYCrY_10bit_2_8ToRow16u(void* reserved1, int32_t width, int32_t height, int32_t reserved2, const void* src, void* dst, int32_t dstPitch, int32_t reserved3, int32_t reserved4, uint8_t flags);
/* 16-bit Cb-Y-Cr-Y frame to Row16u rows, values copied. Needs flags bit value 2. */
ZELT_API uint32_t zeltCbYCrY_16bitToRow16u(void* reserved1, int32_t width, int32_t height, int32_t reserved2, const void* src, void* dst, int32_t dstPitch, int32_t reserved3, int32_t reserved4, uint8_t flags);
/* 10-in-16-bit Cb-Y-Cr-Y frame to Row16u rows, values copied. Needs flags bit value 2. */
ZELT_API uint32_t zeltCbYCrY_16bit_10_6ToRow16u(void* reserved1, int32_t width, int32_t height, int32_t reserved2, const void* src, void* dst, int32_t dstPitch, int32_t reserved3, int32_t reserved4, uint8_t flags);
/* 2.14 fixed-point Cb-Y-Cr-Y frame to video-range Row16u rows, clamped. Needs flags bit value 2. */
ZELT_API uint32_t zeltCbYCrY_16bit_2_14ToRow16u(void* reserved1, int32_t width, int32_t height, int32_t reserved2, const void* src, void* dst, int32_t dstPitch, int32_t reserved3, int32_t reserved4, uint8_t flags);

/* ---- element converters ---- */

/* Frame of int16 to bytes clamped to 0..255; pitches in bytes. */
ZELT_API void zelt16sTo8u(const int16_t* src, int32_t srcPitch, uint8_t* dst, int32_t dstPitch, ZeltSize size);
/* Frame of int8 to int16 by sign extension; pitches in bytes. */
ZELT_API void zelt8sTo16s(const int8_t* src, int32_t srcPitch, int16_t* dst, int32_t dstPitch, ZeltSize size);
/* Row of int16 to int8 clamped to -128..127. */
ZELT_API void zeltRow16sTo8s(const int16_t* src, int8_t* dst, int32_t count);
/* YU64 row to right-aligned 10-bit values in place of each sample; ceil(width/2) words. */
ZELT_API void zeltYU64RowToYUV10bit(const uint32_t* src, uint32_t* dst, int32_t width);
/* Packed 16s row (Y0 Cr Y1 Cb) to planar 16s rows; ceil(width/2) pairs. */
ZELT_API void zeltYUVPacked16sRowToPlanar16s(const int16_t* src, int32_t width, int16_t* y, int16_t* cr, int16_t* cb);
/* As zeltYUVPacked16sRowToPlanar16s, each value >> 2 and clamped to 0..255 as bytes. */
ZELT_API void zeltYUVPacked16sRowToPlanar8u(const int16_t* src, int32_t width, uint8_t* y, uint8_t* cr, uint8_t* cb);

/* ---- packers to RGB ---- */

/* Y, Cr, Cb rows (each sample >> shift gives 8 bits) to B, G, R bytes by the matrix code
   (low 3 bits), truncating. Writes nothing unless format is 7. Odd widths write one more pixel. */
ZELT_API void zeltUnpacked16sRowToRGB24(const ZeltPlanes* planes, void* reserved, uint8_t* dst, int32_t width, int32_t shift, int32_t format, int32_t matrix);
/* As zeltUnpacked16sRowToRGB24 with B, G, R, alpha bytes; writes nothing unless format is 8. */
ZELT_API void zeltUnpacked16sRowToRGB32(const ZeltPlanes* planes, void* reserved, uint8_t* dst, int32_t width, int32_t shift, int32_t format, int32_t matrix, uint8_t alpha);
/* G, R, B rows of int16 to R, G, B uint16: each << (16 - bits - extra), clamped to 0..65535. */
ZELT_API void zeltUnpacked16sRowToRGB48(const ZeltPlanes* planes, void* reserved, uint16_t* dst, int32_t width, int32_t bits, int32_t extra);
/* G, R, B rows of int16 to 10-bit RGB words in layout 122, 123, 124, 125 or 128; any other
   format writes nothing. */
ZELT_API void zeltUnpacked16sRowToRGB30(const ZeltPlanes* planes, void* reserved, uint32_t* dst, int32_t width, int32_t bits, int32_t extra, int32_t format);
/* Frame of Y, Cr, Cb planes to RGB. format 7: left-aligned 16-bit planes to B, G, R with a
   rand() dither per pixel; other: 8-bit-valued planes to B, G, R, 255, rounded. pitches
   in bytes; flip with a positive dstPitch writes bottom-up. */
ZELT_API void zeltRow16uToDitheredRGB(void* reserved, const ZeltPlanes* planes, const int32_t* pitches, ZeltSize size, uint8_t* dst, void* reserved2, int32_t dstPitch, int32_t format, int32_t matrix, uint8_t flip);
/* Frame of G, R, B planes to B, G, R bytes: (sample + masked rand()) >> shift, clamped;
   pixels width..dstWidth of each row are zero. */
ZELT_API void zeltPlanarRGB16uToPackedRGB24(const ZeltPlanes* planes, const int32_t* pitches, ZeltSize size, uint8_t* dst, int32_t dstPitch, int32_t dstWidth, int32_t shift);
/* Frame of G, R, B planes to R, G, B uint16 unchanged; pixels width..dstWidth are zero. */
ZELT_API void zeltPlanarRGB16uToPackedRGB48(const ZeltPlanes* planes, const int32_t* pitches, ZeltSize size, uint16_t* dst, int32_t dstPitch, int32_t dstWidth);
/* Row of three back-to-back 16-bit planes, first two exchanged. Returns the last destination plane. */
ZELT_API void* zeltPlanarGRBToPlanarRGB(void* dst, const void* src, int32_t width);
/* As zeltPlanarGRBToPlanarRGB with a fourth plane copied unchanged. */
ZELT_API void* zeltPlanarGRBAToPlanarRGBA(void* dst, const void* src, int32_t width);

/* ---- range mapping ---- */

/* Full-range to video-range RGB in place, 3 x pixels samples of depth `bits`. Full
   blocks of eight samples use a fixed-point rule that may land one code lower than
   the exact rule used for the remaining samples. Return value carries no meaning. */
ZELT_API uint64_t zeltCGRGBtoVSRGB(uint16_t* samples, uint32_t pixels, int32_t bits);
/* Full-range to video-range RGBA in place by the exact rule; alpha untouched. */
ZELT_API void zeltCGRGBAtoVSRGBA(uint16_t* samples, uint32_t pixels, int32_t bits);

ZELT_EXTERN_C_END

#endif
