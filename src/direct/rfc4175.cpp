// Packed 10-bit transport: bare packed lines, 1280-byte packets, RFC 4175
// payloads and RTP headers, and the Y210 line converters.
#include <algorithm>
#include <cstring>

#include "direct/rfc4175_kernels.h"
#include "core/formats.h"
#include "core/paths.h"
#include "core/simd_level.h"
#include "core/bit_writer.h"
#include "zelt/rfc4175.h"

namespace zelt::transport {
namespace {

constexpr uint32_t kPacketBytes = 1280;
constexpr uint32_t kPacketHeaderBits = 160;
constexpr uint32_t kPacketTrailerBits = 480;
constexpr uint32_t kPacketPixels = 480;
constexpr uint32_t kPacketizedSpacing = 1220;  // the reader's spacing; the writers use 1280

// v210 line size these functions compute themselves: ceil48(width) * 8 / 3.
inline uint32_t V210Line(uint32_t width) { return V012MinPitch(width); }

// Packed line size: width * 20 / 8 bytes (32-bit arithmetic).
inline uint32_t PackedLine(uint32_t width) { return width * 20 / 8; }

// Frame line of source line n: with fields the first height/2 lines are the
// second (odd) lines of the frame, the rest the even lines.
inline uint32_t FrameLine(uint32_t n, uint32_t height, bool fields) {
  if (!fields) return n;
  const uint32_t half = height >> 1;
  return n < half ? 2 * n + 1 : 2 * (n - half);
}

inline uint32_t SetField(uint32_t word, uint32_t field, uint32_t v) {
  const uint32_t shift = 10 * field;
  return (word & ~(0x3FFu << shift)) | ((v & 0x3FFu) << shift);
}

// Places a pixel pair at pixel `phase` (0, 2 or 4) of a v210 group, keeping every
// other bit of the words it touches.
void PutPair(uint8_t* group, uint32_t phase, uint32_t cb, uint32_t y0, uint32_t cr, uint32_t y1) {
  uint32_t w[4];
  std::memcpy(w, group, 16);
  switch (phase) {
    case 0:
      w[0] = SetField(SetField(SetField(w[0], 0, cb), 1, y0), 2, cr);
      w[1] = SetField(w[1], 0, y1);
      break;
    case 2:
      w[1] = SetField(SetField(w[1], 1, cb), 2, y0);
      w[2] = SetField(SetField(w[2], 0, cr), 1, y1);
      break;
    default:
      w[2] = SetField(w[2], 2, cb);
      w[3] = SetField(SetField(SetField(w[3], 0, y0), 1, cr), 2, y1);
      break;
  }
  std::memcpy(group, w, 16);
}

// One v210 group from 15 stream bytes (three 40-bit blocks), words written whole.
inline void UnpackGroup(uint8_t* dst, const uint8_t* src) {
  uint32_t v[12];
  for (int b = 0; b < 3; ++b) {
    const uint8_t* p = src + 5 * b;
    const uint64_t block = uint64_t{p[0]} << 32 | uint64_t{p[1]} << 24 | uint64_t{p[2]} << 16 | uint64_t{p[3]} << 8 | p[4];
    for (int k = 0; k < 4; ++k) v[4 * b + k] = static_cast<uint32_t>(block >> (30 - 10 * k)) & 0x3FF;
  }
  for (int j = 0; j < 4; ++j) Store32(dst + 4 * j, v[3 * j] | v[3 * j + 1] << 10 | v[3 * j + 2] << 20);
}

// A packed line of `lineBytes` bytes to `groups` whole v210 groups. Samples the
// line does not hold whole are written as 0.
void UnpackLine(uint8_t* dst, const uint8_t* src, uint32_t lineBytes, uint32_t groups, bool avx2) {
  const size_t samples = size_t{lineBytes} * 8 / 10;
  size_t g = 0;
  if (avx2 && lineBytes > 15) g = UnpackGroupsAvx2(dst, src, std::min<size_t>(groups, (lineBytes - 1) / 15), 0);
  for (; g < groups && 12 * (g + 1) <= samples; ++g) UnpackGroup(dst + 16 * g, src + 15 * g);
  for (; g < groups; ++g) {
    for (uint32_t j = 0; j < 4; ++j) {
      uint32_t word = 0;
      for (uint32_t m = 0; m < 3; ++m) {
        const size_t s = 12 * g + 3 * j + m;
        if (s < samples) word |= ReadSample(src, s) << (10 * m);
      }
      Store32(dst + 16 * g + 4 * j, word);
    }
  }
}

// Four samples into one five-byte block.
inline void PackBlock(uint8_t* d, uint32_t s0, uint32_t s1, uint32_t s2, uint32_t s3) {
  d[0] = static_cast<uint8_t>(s0 >> 2);
  d[1] = static_cast<uint8_t>((s0 << 6) | (s1 >> 4));
  d[2] = static_cast<uint8_t>((s1 << 4) | (s2 >> 6));
  d[3] = static_cast<uint8_t>((s2 << 2) | (s3 >> 8));
  d[4] = static_cast<uint8_t>(s3);
}

inline uint32_t V210Sample(const uint8_t* line, size_t s) { return (Load32(line + (s / 3) * 4) >> (10 * (s % 3))) & 0x3FF; }

// `samples` v210 samples into a packed stream: whole blocks directly, the rest
// merged so that bits past the last sample keep what they held.
void PackSamples(uint8_t* dst, const uint8_t* v210, size_t samples, bool avx2) {
  size_t s = avx2 ? 12 * PackGroupsAvx2(dst, v210, samples / 12) : 0;
  for (; s + 12 <= samples; s += 12) {
    uint32_t w[4];
    std::memcpy(w, v210 + s / 3 * 4, 16);
    uint32_t v[12];
    for (int j = 0; j < 4; ++j) {
      v[3 * j] = w[j] & 0x3FF;
      v[3 * j + 1] = (w[j] >> 10) & 0x3FF;
      v[3 * j + 2] = (w[j] >> 20) & 0x3FF;
    }
    uint8_t* d = dst + s / 4 * 5;
    PackBlock(d, v[0], v[1], v[2], v[3]);
    PackBlock(d + 5, v[4], v[5], v[6], v[7]);
    PackBlock(d + 10, v[8], v[9], v[10], v[11]);
  }
  for (; s < samples; ++s) WriteSample(dst, s, V210Sample(v210, s));
}

// `bytes` 8-bit samples (a multiple of 4) into the packed stream as byte * 4.
void PackBytes(uint8_t* dst, const uint8_t* src, size_t bytes) {
  for (size_t i = 0; i + 4 <= bytes; i += 4)
    PackBlock(dst + i / 4 * 5, EightToTen(src[i]), EightToTen(src[i + 1]), EightToTen(src[i + 2]), EightToTen(src[i + 3]));
}

// MSB-first reader over [src, src + length): bits at or past the end read as 0
// and are never touched.
class BoundedBitReader {
 public:
  BoundedBitReader(const uint8_t* src, int64_t length) : src_(src), length_(length) {}

  uint32_t Read(int n) {
    if (n < 1) return 0;
    const int used = 8 - bitsLeft_;
    if (n <= 16 && byte_ + 3 <= length_) {
      const uint32_t v = uint32_t{src_[byte_]} << 16 | uint32_t{src_[byte_ + 1]} << 8 | src_[byte_ + 2];
      Advance(n);
      return (v >> (24 - used - n)) & ((1u << n) - 1u);
    }
    uint32_t v = 0;
    for (int i = 0; i < n; ++i) {
      const uint32_t bit = byte_ < length_ ? (src_[byte_] >> (bitsLeft_ - 1)) & 1u : 0u;
      v = (v << 1) | bit;
      Advance(1);
    }
    return v;
  }

  int64_t Byte() const { return byte_; }
  void SeekByte(int64_t b) { byte_ = b, bitsLeft_ = 8; }

 private:
  void Advance(int n) {
    const int used = 8 - bitsLeft_ + n;
    byte_ += used / 8;
    bitsLeft_ = 8 - used % 8;
  }
  const uint8_t* src_;
  int64_t length_;
  int64_t byte_ = 0;
  int bitsLeft_ = 8;
};

// Pair extraction from a v210 line at pixel x (x even), straight from the bytes.
struct Pair {
  uint32_t cb, y0, cr, y1;
};
Pair ExtractPair(const uint8_t* line, uint32_t x) {
  const uint8_t* b = line + (x / 6) * 16;
  switch (x % 6) {
    case 0:
      return {b[0] | (b[1] & 3u) << 8, b[1] >> 2 | (b[2] & 15u) << 6, b[2] >> 4 | (b[3] & 63u) << 4, b[4] | (b[5] & 3u) << 8};
    case 2:
      return {b[5] >> 2 | (b[6] & 15u) << 6, b[6] >> 4 | (b[7] & 63u) << 4, b[8] | (b[9] & 3u) << 8, b[9] >> 2 | (b[10] & 15u) << 6};
    default:
      return {b[10] >> 4 | (b[11] & 63u) << 4, b[12] | (b[13] & 3u) << 8, b[13] >> 2 | (b[14] & 15u) << 6, b[14] >> 4 | (b[15] & 63u) << 4};
  }
}

inline void PutBE16(uint8_t* p, uint32_t v) {
  p[0] = static_cast<uint8_t>(v >> 8);
  p[1] = static_cast<uint8_t>(v);
}
inline void PutBE32(uint8_t* p, uint32_t v) {
  PutBE16(p, v >> 16);
  PutBE16(p + 2, v);
}

void Y210Tail(uint8_t* d, const uint8_t* s, uint32_t pixels) {
  auto w = [s](int i) { return uint32_t{s[2 * i]} | uint32_t{s[2 * i + 1]} << 8; };
  if (pixels >= 4) {
    Store32(d, w(3) << 14 | w(0) << 4 | w(1) >> 6);
    Store32(d + 4, w(4) << 14 | w(5) << 4 | w(2) >> 6);
    Store32(d + 8, w(6) << 4 | w(7) >> 6);
  } else if (pixels >= 2) {
    Store32(d, w(3) << 14 | w(0) << 4 | w(1) >> 6);
    Store32(d + 4, w(2) >> 6);
  }
}

// One group of six pixels.
void Y210Group(uint8_t* d, const uint8_t* s) {
  auto w = [s](int i) { return uint32_t{s[2 * i]} | uint32_t{s[2 * i + 1]} << 8; };
  Store32(d, w(3) << 14 | w(0) << 4 | w(1) >> 6);
  Store32(d + 4, w(4) << 14 | w(5) << 4 | w(2) >> 6);
  Store32(d + 8, w(9) << 14 | w(6) << 4 | w(7) >> 6);
  Store32(d + 12, w(10) << 14 | w(11) << 4 | w(8) >> 6);
}

// The packetisers' shared frame walk. `packet(p, src)` fills packet p from src;
// the source then advances 480 pixels (`packetSrcBytes`), and after the last
// packet of a line by `padBytes` as well, except after packet 0.
template <typename FillPacket>
uint64_t Packetize(uint32_t width, uint32_t height, uint32_t packetStride, const uint8_t* src, uint32_t packetSrcBytes,
                   uint32_t padBytes, FillPacket fill) {
  const uint32_t count = width * height * 20 / 9600;
  if (count == 0) return 0;
  const uint32_t perLine = count / height;
  for (uint32_t p = 0; p < count; ++p) {
    fill(p, src);
    src += packetSrcBytes;
    if (p != 0 && p % perLine == perLine - 1) src += padBytes;
  }
  return uint64_t{count} * packetStride;
}

}  // namespace
}  // namespace zelt::transport

using namespace zelt;
using namespace zelt::transport;

extern "C" {

ZELT_API uint64_t zlt_v210_frame_to_rtp_4175(uint8_t* buffer, int32_t bufferLength, uint16_t* sequence,
                                             uint32_t timestamp, uint32_t ssrc, uint16_t extendedSequence,
                                             uint16_t reserved, uint32_t width, uint32_t height, uint32_t* outA,
                                             uint32_t* outB) {
  SimdGuard();
  const uint32_t lineSize = V210Line(width);
  uint16_t counter = *sequence;
  for (uint32_t n = 0; n < height && width != 0; ++n) {
    const uint8_t* line = buffer + size_t{n} * lineSize;
    const uint32_t offset = 0;
    // Header over the previous one. Bytes 16 and 18 are ORed, so bits left there
    // by the picture or by earlier rows survive.
    buffer[0] = 0x90;
    buffer[1] = 0x60;
    PutBE16(buffer + 2, counter++);
    PutBE32(buffer + 4, timestamp);
    PutBE32(buffer + 8, ssrc);
    PutBE16(buffer + 12, extendedSequence);
    PutBE16(buffer + 14, offset + 550 < width ? 1375 : 224);
    buffer[16] = static_cast<uint8_t>(buffer[16] | (((n + 1) >> 8) & 0x7F));
    buffer[17] = static_cast<uint8_t>((n + 1) & 0xFF);
    buffer[18] = static_cast<uint8_t>(buffer[18] | ((offset >> 8) & 0x7F));
    buffer[19] = static_cast<uint8_t>(offset & 0xFF);
    // A bit writer over the payload is prepared for every packet and left unused.
    [[maybe_unused]] const BitWriterState payloadWriter = MakeBitWriter(buffer + 20, 1375);
    // Every step of the payload loop extracts the pair at the packet's starting
    // pixel and merges its four samples, one after the other, into sample slot 0,
    // so the slot ends holding Y1 of the line's first pair. The steps are all
    // alike (the pair is read from below byte 20), so one merge gives their bytes;
    // with an odd width the loop's unsigned test would only end after wrapping.
    if (std::min(width - 0u, 550u) > 0) {
      const Pair pr = ExtractPair(line, offset);
      uint8_t* payload = buffer + 20;
      WriteSample(payload, 0, pr.cb);
      WriteSample(payload, 0, pr.y0);
      WriteSample(payload, 0, pr.cr);
      WriteSample(payload, 0, pr.y1);
    }
  }
  buffer[1] = static_cast<uint8_t>(buffer[1] | 0x80);
  *sequence = counter;
  *outA = 0;
  *outB = 0;
  return 0;
}

ZELT_API uint64_t zlt_4175_to_v210(uint32_t* dst, const uint8_t* src, int32_t srcLength, int32_t pgroups,
                                   uint32_t startPhase) {
  SimdGuard();
  uint8_t* group = reinterpret_cast<uint8_t*>(dst);
  BoundedBitReader reader(src, srcLength);
  int64_t c = 0;
  if (startPhase == 0 && pgroups >= 1 && CurrentPaths().avx2) {
    // Whole groups of three pairs whose 15 bytes (and one more, for the 16-byte
    // loads) lie before the end; the rest goes through the reader below.
    const int64_t byBytes = srcLength > 15 ? (int64_t{srcLength} - 1) / 15 : 0;
    const size_t groups = static_cast<size_t>(std::min<int64_t>(pgroups / 3, byBytes));
    const size_t done = UnpackGroupsAvx2(group, src, groups, 0xC0000000u);
    group += 16 * done;
    c = 3 * static_cast<int64_t>(done);
    reader.SeekByte(15 * static_cast<int64_t>(done));
  }
  auto readPair = [&](uint32_t phase) {
    const uint32_t cb = reader.Read(10), y0 = reader.Read(10), cr = reader.Read(10), y1 = reader.Read(10);
    PutPair(group, phase, cb, y0, cr, y1);
  };
  if (startPhase == 2 || startPhase == 4) {
    if (startPhase == 2) readPair(2);
    readPair(4);
    group += 16;
  }
  // Pairs are 40 bits, so the reader is byte-aligned here: whole groups whose 15
  // bytes lie before the end are unpacked straight from the bytes.
  for (; c + 3 <= pgroups && reader.Byte() + 15 <= int64_t{srcLength}; c += 3, group += 16) {
    uint8_t words[16];
    UnpackGroup(words, src + reader.Byte());
    for (int j = 0; j < 4; ++j) Store32(group + 4 * j, (Load32(group + 4 * j) & 0xC0000000u) | Load32(words + 4 * j));
    reader.SeekByte(reader.Byte() + 15);
  }
  for (; c < pgroups; c += 3, group += 16) {
    readPair(0);
    if (c + 1 < pgroups) readPair(2);
    if (c + 2 < pgroups) readPair(4);
  }
  return 0;
}

ZELT_API uint64_t zlt_YCbCr10Packed_to_v210(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                            uint8_t fields) {
  SimdGuard();
  const bool avx2 = CurrentPaths().avx2;
  const uint32_t stride = V210Line(width), lineBytes = PackedLine(width), groups = (width + 5) / 6;
  for (uint32_t n = 0; n < height; ++n)
    UnpackLine(dst + size_t{FrameLine(n, height, fields != 0)} * stride, src + size_t{n} * lineBytes, lineBytes, groups, avx2);
  return 0;
}

ZELT_API uint64_t zlt_YCbCr10Packetized_to_v210(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                                uint8_t fields) {
  SimdGuard();
  if (height == 0) return 0;
  const uint32_t perLine = (width * height * 20 / 9600) / height;
  const uint32_t pixelsPerPacket = width / perLine;
  const uint32_t stride = V210Line(width);
  for (uint32_t n = 0; n < height; ++n) {
    uint8_t* line = dst + size_t{FrameLine(n, height, fields != 0)} * stride;
    const uint8_t* packet = src;
    size_t s = 0;
    for (uint32_t x = 0; x < width; x += 2) {
      if (x % pixelsPerPacket == 0) {
        packet = src + size_t{perLine * n + x / pixelsPerPacket} * kPacketizedSpacing;
        s = 0;
      }
      const uint32_t cb = ReadSample(packet, s), y0 = ReadSample(packet, s + 1), cr = ReadSample(packet, s + 2),
                     y1 = ReadSample(packet, s + 3);
      s += 4;
      PutPair(line + (x / 6) * 16, x % 6, cb, y0, cr, y1);
    }
  }
  return 0;
}

ZELT_API uint64_t zlt_v210_to_YCbCr10Packed(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t srcStride,
                                            uint32_t height, uint8_t fields) {
  SimdGuard();
  const uint32_t lineBytes = PackedLine(width);
  const size_t samples = std::min<size_t>(size_t{lineBytes} * 8 / 10, size_t{width} * 2);
  const bool avx2 = CurrentPaths().avx2;
  for (uint32_t n = 0; n < height; ++n)
    PackSamples(dst + size_t{n} * lineBytes, src + size_t{FrameLine(n, height, fields != 0)} * srcStride, samples, avx2);
  return 0;
}

ZELT_API uint64_t zlt_v210_to_YCbCr10PackedToPacket(uint8_t* dst, const uint32_t* src, uint32_t width,
                                                    uint32_t height, uint32_t srcStride, uint32_t packetStride,
                                                    uint32_t unused0, uint32_t unused1, uint32_t unused2,
                                                    uint8_t useBitWriter) {
  SimdGuard();
  const bool avx2 = CurrentPaths().avx2;
  const uint32_t padBytes = (srcStride / 4 - V210Line(width) / 4) * 4;
  const uint8_t* s = reinterpret_cast<const uint8_t*>(src);
  const uint32_t count = height == 0 ? 0 : width * height * 20 / 9600;
  BitWriterState bw = MakeBitWriter(dst, count * kPacketBytes);
  return Packetize(width, height, packetStride, s, kPacketPixels * 8 / 3, padBytes, [&](uint32_t p, const uint8_t* in) {
    if (useBitWriter) {
      SkipBits(&bw, kPacketHeaderBits);
      for (uint32_t g = 0; g < 80; ++g) {
        for (uint32_t j = 0; j < 4; ++j) {
          const uint32_t w = Load32(in + 16 * g + 4 * j);
          WriteBits(&bw, 10, w & 0x3FF);
          WriteBits(&bw, 10, (w >> 10) & 0x3FF);
          WriteBits(&bw, 10, (w >> 20) & 0x3FF);
        }
      }
      SkipBits(&bw, kPacketTrailerBits);
    } else {
      PackSamples(dst + size_t{p} * kPacketBytes + 20, in, 2 * kPacketPixels, avx2);
    }
  });
}

ZELT_API uint64_t zlt_uyvy_to_YCbCr10PackedToPacket(uint8_t* dst, const uint32_t* src, uint32_t width,
                                                    uint32_t height, uint32_t srcStride, uint32_t packetStride,
                                                    uint32_t unused0, uint32_t unused1, uint8_t useBitWriter) {
  SimdGuard();
  const uint32_t padBytes = (srcStride - width * 2) / 4 * 4;
  const uint8_t* s = reinterpret_cast<const uint8_t*>(src);
  const uint32_t count = height == 0 ? 0 : width * height * 20 / 9600;
  BitWriterState bw = MakeBitWriter(dst, count * kPacketBytes);
  return Packetize(width, height, packetStride, s, kPacketPixels * 2, padBytes, [&](uint32_t p, const uint8_t* in) {
    if (useBitWriter) {
      SkipBits(&bw, kPacketHeaderBits);
      for (uint32_t i = 0; i < 2 * kPacketPixels; ++i) WriteBits(&bw, 10, EightToTen(in[i]));
      SkipBits(&bw, kPacketTrailerBits);
    } else {
      PackBytes(dst + size_t{p} * kPacketBytes + 20, in, 2 * kPacketPixels);
    }
  });
}

ZELT_API uint64_t zlt_YCbCr10Packed_to_uyvu(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                            uint8_t fields) {
  SimdGuard();
  const uint32_t lineBytes = PackedLine(width);
  const size_t have = size_t{lineBytes} * 8 / 10, samples = size_t{width} * 2;
  for (uint32_t n = 0; n < height; ++n) {
    uint8_t* d = dst + size_t{FrameLine(n, height, fields != 0)} * samples;
    const uint8_t* s = src + size_t{n} * lineBytes;
    for (size_t i = 0; i < samples; ++i) d[i] = i < have ? TenToEight(ReadSample(s, i)) : 0;
  }
  return 0;
}

ZELT_API uint64_t zlt_YCbCr10Packed_to_low8_from10(uint8_t* dst, const uint8_t* src, int32_t bitOffset,
                                                   uint32_t count) {
  SimdGuard();
  size_t bit = bitOffset > 0 ? static_cast<size_t>(bitOffset) : 0;
  for (uint32_t i = 0; i < count; ++i, bit += 10) {
    const uint8_t* p = src + bit / 8;
    const uint32_t used = bit % 8;
    // The sample ends in the second byte when it starts within the first six bits.
    const uint32_t v = used <= 6 ? (uint32_t{p[0]} << 8 | p[1]) >> (6 - used)
                                 : (uint32_t{p[0]} << 16 | uint32_t{p[1]} << 8 | p[2]) >> (14 - used);
    dst[i] = TenToEight(v & 0x3FF);
  }
  return 0;
}

ZELT_API uint64_t zlt_Y10Packed_to_v210(uint32_t* dst, const uint8_t* src, uint32_t width) {
  SimdGuard();
  if (width == 0) return 0;
  const uint32_t blocks = (width - 1) / 15 + 1;
  uint8_t* d = reinterpret_cast<uint8_t*>(dst);
  for (size_t w = 0; w < size_t{blocks} * 5; ++w)
    Store32(d + 4 * w, ReadSample(src, 3 * w) | ReadSample(src, 3 * w + 1) << 10 | ReadSample(src, 3 * w + 2) << 20);
  return 0;
}

ZELT_API void zlt_Y210_to_v210(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride,
                               uint32_t width, uint32_t height) {
  SimdGuard();
  const bool avx2 = CurrentPaths().avx2;
  const size_t groups = width / 6;
  for (uint32_t y = 0; y < height; ++y) {
    uint8_t* d = dst + size_t{y} * dstStride;
    const uint8_t* s = src + size_t{y} * srcStride;
    size_t g = avx2 ? Y210GroupsAvx2(d, s, groups) : 0;
    for (; g < groups; ++g) Y210Group(d + 16 * g, s + 24 * g);
    Y210Tail(d + 16 * groups, s + 24 * groups, width % 6);
  }
}

ZELT_API void zlt_Y210_to_uyvy(uint8_t* dst, const uint8_t* src, uint32_t dstStride, uint32_t srcStride,
                               uint32_t width, uint32_t height) {
  SimdGuard();
  const bool avx2 = CurrentPaths().avx2;
  const size_t pairs = (size_t{width} + 1) / 2;
  for (uint32_t y = 0; y < height; ++y) {
    uint8_t* d = dst + size_t{y} * dstStride;
    const uint8_t* s = src + size_t{y} * srcStride;
    size_t p = avx2 ? Y210HighBytesAvx2(d, s, pairs) : 0;
    for (; p < pairs; ++p) {
      d[4 * p] = s[8 * p + 1];
      d[4 * p + 1] = s[8 * p + 3];
      d[4 * p + 2] = s[8 * p + 5];
      d[4 * p + 3] = s[8 * p + 7];
    }
  }
}

}  // extern "C"
