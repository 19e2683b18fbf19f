/* Zelt: RFC 4175 pgroups, packed 10-bit transport and RTP headers.

   The packed stream carries 10-bit samples most significant bit first with no
   padding (four samples in five bytes); a 4:2:2 pixel pair is one pgroup
   Cb, Y0, Cr, Y1. A v210 line that these functions lay out themselves is
   ceil48(width) * 8 / 3 bytes. "fields" non-zero: the source holds the two fields
   one after the other and source line n goes to frame line 2n + 1 (n < height/2)
   or 2(n - height/2). Arguments are trusted; see each function for what it reads. */
#ifndef ZELT_RFC4175_H
#define ZELT_RFC4175_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

/* Writes one RTP/RFC 4175 header per v210 line of `buffer` at the buffer start (each over the last), one merged sample slot, the marker; advances *sequence; returns 0. */
ZELT_API uint64_t zlt_v210_frame_to_rtp_4175(uint8_t* buffer, int32_t bufferLength, uint16_t* sequence, uint32_t timestamp, uint32_t ssrc, uint16_t extendedSequence, uint16_t reserved, uint32_t width, uint32_t height, uint32_t* outA, uint32_t* outB);
/* Unpacks `pgroups` pixel pairs of an RFC 4175 payload (never reading at or past src + srcLength) into a v210 line, starting at pixel 0, 2 or 4 of the first group. */
ZELT_API uint64_t zlt_4175_to_v210(uint32_t* dst, const uint8_t* src, int32_t srcLength, int32_t pgroups, uint32_t startPhase);
/* Packed lines (width * 20 / 8 bytes each, back to back) to a v210 frame. */
ZELT_API uint64_t zlt_YCbCr10Packed_to_v210(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint8_t fields);
/* Packetised frame, packets read 1220 bytes apart from their first byte, to a v210 frame. */
ZELT_API uint64_t zlt_YCbCr10Packetized_to_v210(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint8_t fields);
/* v210 frame (srcStride bytes per line) to packed lines, the inverse of zlt_YCbCr10Packed_to_v210. */
ZELT_API uint64_t zlt_v210_to_YCbCr10Packed(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t srcStride, uint32_t height, uint8_t fields);
/* v210 frame to 1280-byte packets of 480 pixels (header and trailer areas skipped), packet p at dst + p*1280 whatever packetStride is; returns packet count * packetStride (packetStride only scales the result). */
ZELT_API uint64_t zlt_v210_to_YCbCr10PackedToPacket(uint8_t* dst, const uint32_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint32_t packetStride, uint32_t unused0, uint32_t unused1, uint32_t unused2, uint8_t useBitWriter);
/* 8-bit UYVY frame to 1280-byte packets of 480 pixels, each byte as a 10-bit sample byte * 4, packet p at dst + p*1280 whatever packetStride is; returns packet count * packetStride (packetStride only scales the result). */
ZELT_API uint64_t zlt_uyvy_to_YCbCr10PackedToPacket(uint8_t* dst, const uint32_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint32_t packetStride, uint32_t unused0, uint32_t unused1, uint8_t useBitWriter);
/* Packed lines to 8-bit 4:2:2 in UYVY byte order (2 * width bytes per line). */
ZELT_API uint64_t zlt_YCbCr10Packed_to_uyvu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint8_t fields);
/* Skips bitOffset bits of a packed stream, then writes `count` 10-bit samples as 8-bit bytes. */
ZELT_API uint64_t zlt_YCbCr10Packed_to_low8_from10(uint8_t* dst, const uint8_t* src, int32_t bitOffset, uint32_t count);
/* One line of packed 10-bit luma to 32-bit words of three samples, in blocks of 15 samples ((width - 1) / 15 + 1 blocks). */
ZELT_API uint64_t zlt_Y10Packed_to_v210(uint32_t* dst, const uint8_t* src, uint32_t width);
/* Y210 (16-bit Y0 Cb Y1 Cr, value in bits 6-15) to v210; a tail of 2 to 5 pixels writes the words it fills. */
ZELT_API void zlt_Y210_to_v210(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride, uint32_t width, uint32_t height);
/* Y210 to 8-bit: the high byte of each 16-bit sample, kept in Y210 sample order; width rounded up to pairs. */
ZELT_API void zlt_Y210_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride, uint32_t width, uint32_t height);

ZELT_EXTERN_C_END

#endif
