// Packed 10-bit transport against references built from RFC 4175's pgroup
// (Cb, Y0, Cr, Y1 as one 40-bit big-endian field) and the v210 word layout,
// on every code path, with guard zones or exact-size buffers around the data.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "support/buffers.h"
#include "support/paths.h"
#include "core/bit_writer.h"
#include "zelt/rfc4175.h"

namespace zelt {
namespace {

using test::GuardedBuffer;
using test::RandomBytes;
using test::RunEveryPath;
using test::ScopedFeatures;

using Bytes = std::vector<uint8_t>;
using Samples = std::vector<uint32_t>;

// ---- independent references ----------------------------------------------

// Samples as a most-significant-bit-first stream: each pgroup of four samples is
// the 40-bit number Cb << 30 | Y0 << 20 | Cr << 10 | Y1, written big-endian.
Bytes BitStream(const Samples& s) {
  Bytes out((s.size() * 10 + 7) / 8, 0);
  for (size_t i = 0; i < s.size(); ++i)
    for (int b = 9; b >= 0; --b)
      if ((s[i] >> b) & 1) {
        const size_t bit = i * 10 + (9 - b);
        out[bit / 8] |= static_cast<uint8_t>(0x80 >> (bit % 8));
      }
  return out;
}

// Sample i of a bit stream; bits at or past `length` bytes are 0.
uint32_t StreamSample(const Bytes& bytes, size_t bitPos, size_t length) {
  uint32_t v = 0;
  for (size_t b = 0; b < 10; ++b) {
    const size_t bit = bitPos + b;
    const uint32_t x = bit / 8 < length ? (bytes[bit / 8] >> (7 - bit % 8)) & 1 : 0;
    v = v << 1 | x;
  }
  return v;
}

// v210: sample i of a line (stream order) is field i % 3 of little-endian word i / 3.
uint32_t V210Get(const uint8_t* line, size_t i) {
  uint32_t w;
  std::memcpy(&w, line + i / 3 * 4, 4);
  return (w >> (10 * (i % 3))) & 0x3FF;
}
void V210Set(uint8_t* line, size_t i, uint32_t v) {
  uint32_t w;
  std::memcpy(&w, line + i / 3 * 4, 4);
  w = (w & ~(0x3FFu << (10 * (i % 3)))) | (v & 0x3FF) << (10 * (i % 3));
  std::memcpy(line + i / 3 * 4, &w, 4);
}

uint32_t V210Line(uint32_t width) { return (width + 47) / 48 * 48 * 8 / 3; }

Samples RandomSamples(size_t n, uint32_t seed) {
  std::mt19937 rng(seed);
  Samples s(n);
  for (auto& v : s) v = rng() & 0x3FF;
  return s;
}

// A random v210 frame with clean words (bits 30-31 zero).
Bytes RandomV210(uint32_t stride, uint32_t height, uint32_t seed) {
  Bytes f = RandomBytes(size_t{stride} * height, seed);
  for (size_t i = 3; i < f.size(); i += 4) f[i] &= 0x3F;
  return f;
}

uint32_t FieldLine(uint32_t n, uint32_t h) { return n < h / 2 ? 2 * n + 1 : 2 * (n - h / 2); }

// ---- the packed stream's geometry ----------------------------------------

TEST(PackedStream, EachSampleSlotOfABlock) {
  // One pgroup; each row sets one sample and names the bytes it must land in.
  struct Row {
    int slot;
    uint32_t value;
    Bytes block;
  };
  const Row rows[] = {
      {0, 0x3FF, {0xFF, 0xC0, 0x00, 0x00, 0x00}},
      {1, 0x3FF, {0x00, 0x3F, 0xF0, 0x00, 0x00}},
      {2, 0x3FF, {0x00, 0x00, 0x0F, 0xFC, 0x00}},
      {3, 0x3FF, {0x00, 0x00, 0x00, 0x03, 0xFF}},  // low two bits of byte 3, all of byte 4
      {3, 0x201, {0x00, 0x00, 0x00, 0x02, 0x01}},
      {0, 0x201, {0x80, 0x40, 0x00, 0x00, 0x00}},
  };
  for (const Row& r : rows) {
    Samples s(4, 0);
    s[r.slot] = r.value;
    EXPECT_EQ(BitStream(s), r.block) << "slot " << r.slot;
    // The packer and the unpacker agree with the byte picture.
    Bytes v210(V210Line(2), 0);
    for (int i = 0; i < 4; ++i) V210Set(v210.data(), i, s[i]);
    Bytes packed(5, 0);
    zlt_v210_to_YCbCr10Packed(packed.data(), v210.data(), 2, V210Line(2), 1, 0);
    EXPECT_EQ(packed, r.block) << "slot " << r.slot;
    Bytes back(V210Line(2), 0);
    zlt_YCbCr10Packed_to_v210(back.data(), r.block.data(), 2, 1, 0);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(V210Get(back.data(), i), s[i]) << "slot " << r.slot << " sample " << i;
  }
}

// ---- packed lines <-> v210 -----------------------------------------------

TEST(PackedLines, UnpackMatchesReferenceOnEveryPath) {
  for (uint32_t width : test::InterestingWidths()) {
    for (uint32_t height : {1u, 3u, 4u}) {
      for (uint8_t fields : {0, 1}) {
        const uint32_t lineBytes = width * 20 / 8, stride = V210Line(width), groups = (width + 5) / 6;
        Bytes src = RandomBytes(size_t{lineBytes} * height, width * 7 + height);
        const size_t have = size_t{lineBytes} * 8 / 10;
        auto results = RunEveryPath([&] {
          GuardedBuffer dst(size_t{stride} * height);
          dst.FillRandom(5);
          Bytes exact(src);  // exact-size heap block: an over-read shows under ASan
          zlt_YCbCr10Packed_to_v210(dst.data(), exact.data(), width, height, fields);
          EXPECT_TRUE(dst.GuardsIntact());
          return dst.Bytes();
        });
        Bytes expect = results[0].bytes;
        for (uint32_t n = 0; n < height; ++n) {
          uint8_t* line = expect.data() + size_t{fields ? FieldLine(n, height) : n} * stride;
          for (size_t i = 0; i < size_t{groups} * 12; ++i)
            V210Set(line, i, i < have ? StreamSample(src, size_t{n} * lineBytes * 8 + i * 10, src.size()) : 0);
          for (size_t w = 0; w < size_t{groups} * 4; ++w) line[4 * w + 3] &= 0x3F;  // whole words written
        }
        for (const auto& r : results)
          ASSERT_EQ(r.bytes, expect) << r.path << " width " << width << " height " << height << " fields " << int(fields)
                                     << test::FirstDifference(r.bytes, expect);
      }
    }
  }
}

TEST(PackedLines, PackMatchesReferenceAndRoundTrips) {
  for (uint32_t width : test::InterestingWidths()) {
    for (uint8_t fields : {0, 1}) {
      const uint32_t height = 5, stride = V210Line(width) + 64, lineBytes = width * 20 / 8;
      const Bytes v210 = RandomV210(stride, height, width);
      auto results = RunEveryPath([&] {
        GuardedBuffer dst(size_t{lineBytes} * height);
        dst.FillRandom(9);
        zlt_v210_to_YCbCr10Packed(dst.data(), v210.data(), width, stride, height, fields);
        EXPECT_TRUE(dst.GuardsIntact());
        return dst.Bytes();
      });
      for (const auto& r : results) {
        for (uint32_t n = 0; n < height; ++n) {
          const uint8_t* line = v210.data() + size_t{fields ? FieldLine(n, height) : n} * stride;
          const size_t whole = std::min<size_t>(size_t{lineBytes} * 8 / 10, 2 * width);
          Samples s(whole);
          for (size_t i = 0; i < whole; ++i) s[i] = V210Get(line, i);
          const Bytes ref = BitStream(s);
          // Whole bytes of the reference; a trailing partial byte is checked bit by bit.
          for (size_t b = 0; b < whole * 10 / 8; ++b)
            ASSERT_EQ(r.bytes[size_t{n} * lineBytes + b], ref[b]) << r.path << " width " << width << " line " << n << " byte " << b;
        }
        if (width % 2 == 0) {
          // Even widths carry every sample: unpacking gives the v210 lines back.
          Bytes back(size_t{V210Line(width)} * height, 0);
          zlt_YCbCr10Packed_to_v210(back.data(), r.bytes.data(), width, height, fields);
          for (uint32_t n = 0; n < height; ++n)
            for (size_t i = 0; i < 2 * width; ++i)
              ASSERT_EQ(V210Get(back.data() + size_t{n} * V210Line(width), i), V210Get(v210.data() + size_t{n} * stride, i))
                  << r.path << " width " << width << " line " << n << " sample " << i;
        }
      }
    }
  }
}

TEST(PackedLines, ToUyvyRoundsTenBitsToEight) {
  // 1020 rounds up to 255, 1021..1023 truncate to 255, 5 rounds to 1, 6 to 2.
  const Samples s = {1020, 1021, 1023, 5, 6, 0, 512, 2};
  const Bytes packed = BitStream(s);
  for (uint8_t fields : {0, 1}) {
    GuardedBuffer dst(8);
    zlt_YCbCr10Packed_to_uyvu(dst.data(), packed.data(), 4, 1, fields);
    EXPECT_TRUE(dst.GuardsIntact());
    EXPECT_EQ(dst.Bytes(), (Bytes{255, 255, 255, 1, 2, 0, 128, 1}));
  }
  // Fields: 4 lines of width 2, source lines 0,1 are frame lines 1,3.
  Samples four;
  for (uint32_t n = 0; n < 4; ++n)
    for (uint32_t i = 0; i < 4; ++i) four.push_back((n * 4 + i) * 4);
  Bytes out(16);
  zlt_YCbCr10Packed_to_uyvu(out.data(), BitStream(four).data(), 2, 4, 1);
  EXPECT_EQ(out, (Bytes{8, 9, 10, 11, 0, 1, 2, 3, 12, 13, 14, 15, 4, 5, 6, 7}));
}

// ---- packets -------------------------------------------------------------

struct PacketCase {
  uint32_t width, height, padding;
};

// Expected packet p of a frame: 960 samples of `pixels(p)` as a bit stream at +20.
TEST(Packets, V210FramesCutInto1280BytePackets) {
  const PacketCase cases[] = {{1920, 1080, 0}, {1920, 6, 256}, {960, 3, 128}};
  for (const PacketCase& c : cases) {
    const uint32_t stride = V210Line(c.width) + c.padding;
    const Bytes v210 = RandomV210(stride, c.height, c.width + c.height);
    const uint32_t count = c.width * c.height * 20 / 9600, perLine = count / c.height;
    Bytes outs[2];
    for (uint8_t useBitWriter : {0, 1}) {
      GuardedBuffer dst(size_t{count} * 1280, 64, 0xAA);
      const uint64_t r = zlt_v210_to_YCbCr10PackedToPacket(dst.data(), reinterpret_cast<const uint32_t*>(v210.data()),
                                                           c.width, c.height, stride, 1400, 0, 0, 0, useBitWriter);
      EXPECT_EQ(r, uint64_t{count} * 1400);
      EXPECT_TRUE(dst.GuardsIntact());
      outs[useBitWriter] = dst.Bytes();
    }
    ASSERT_EQ(outs[0], outs[1]) << "bit writer and line writer differ, width " << c.width;
    if (c.width == 1920 && c.height == 1080) {
      EXPECT_EQ(count, 4320u);
    }
    for (uint32_t p = 0; p < count; ++p) {
      const uint8_t* pk = outs[0].data() + size_t{p} * 1280;
      const uint32_t line = p / perLine, inLine = p % perLine;
      Samples s(960);
      for (size_t i = 0; i < 960; ++i) s[i] = V210Get(v210.data() + size_t{line} * stride + inLine * 1280, i);
      ASSERT_EQ(Bytes(pk + 20, pk + 1220), BitStream(s)) << "packet " << p;
      for (int b : {0, 19, 1220, 1279}) ASSERT_EQ(pk[b], 0xAA) << "packet " << p << " byte " << b;
    }
  }
}

TEST(Packets, OnePacketPerLineReadsTheSecondLineFromThePadding) {
  // 480 pixels a line: after packet 0 the line padding is not skipped, after later packets it is.
  const uint32_t width = 480, height = 3, stride = 1280 + 128;
  const Bytes v210 = RandomV210(stride, height, 3);
  Bytes dst(3 * 1280, 0);
  zlt_v210_to_YCbCr10PackedToPacket(dst.data(), reinterpret_cast<const uint32_t*>(v210.data()), width, height, stride,
                                    1280, 0, 0, 0, 1);
  const size_t sourceOf[3] = {0, 1280, 1280 + 1280 + 128};
  for (int p = 0; p < 3; ++p) {
    Samples s(960);
    for (size_t i = 0; i < 960; ++i) s[i] = V210Get(v210.data() + sourceOf[p], i);
    EXPECT_EQ(Bytes(dst.begin() + p * 1280 + 20, dst.begin() + p * 1280 + 1220), BitStream(s)) << "packet " << p;
  }
}

TEST(Packets, UyvyBytesBecomeTenBitSamplesTimesFour) {
  for (const PacketCase c : {PacketCase{1920, 4, 0}, PacketCase{1920, 3, 64}, PacketCase{480, 3, 32}}) {
    const uint32_t stride = c.width * 2 + c.padding;
    const Bytes uyvy = RandomBytes(size_t{stride} * c.height, c.width);
    const uint32_t count = c.width * c.height * 20 / 9600, perLine = count / c.height;
    Bytes outs[2];
    for (uint8_t useBitWriter : {0, 1}) {
      GuardedBuffer dst(size_t{count} * 1280, 64, 0x55);
      EXPECT_EQ(zlt_uyvy_to_YCbCr10PackedToPacket(dst.data(), reinterpret_cast<const uint32_t*>(uyvy.data()), c.width,
                                                  c.height, stride, 1280, 0, 0, useBitWriter),
                uint64_t{count} * 1280);
      EXPECT_TRUE(dst.GuardsIntact());
      outs[useBitWriter] = dst.Bytes();
    }
    ASSERT_EQ(outs[0], outs[1]);
    size_t src = 0;
    for (uint32_t p = 0; p < count; ++p) {
      Samples s(960);
      for (size_t i = 0; i < 960; ++i) s[i] = uyvy[src + i] * 4u;
      ASSERT_EQ(Bytes(outs[0].begin() + p * 1280 + 20, outs[0].begin() + p * 1280 + 1220), BitStream(s)) << "packet " << p;
      EXPECT_EQ(outs[0][p * 1280 + 19], 0x55);
      src += 960;
      if (p != 0 && p % perLine == perLine - 1) src += c.padding;
    }
  }
}

TEST(Packets, PacketisedFrameReadBackAt1220ByteSpacing) {
  for (uint8_t fields : {0, 1}) {
    const uint32_t width = 1920, height = 6, stride = V210Line(width);
    const Bytes v210 = RandomV210(stride, height, 11 + fields);
    Bytes packets(size_t{24} * 1280);
    zlt_v210_to_YCbCr10PackedToPacket(packets.data(), reinterpret_cast<const uint32_t*>(v210.data()), width, height,
                                      stride, 1280, 0, 0, 0, 0);
    // The reader wants each packet's samples from its first byte, packets 1220 bytes apart.
    Bytes spaced(size_t{24} * 1220 + 20, 0);
    for (int p = 0; p < 24; ++p) std::memcpy(spaced.data() + p * 1220, packets.data() + p * 1280 + 20, 1200);
    GuardedBuffer dst(size_t{stride} * height);
    dst.FillRandom(1);
    EXPECT_EQ(zlt_YCbCr10Packetized_to_v210(dst.data(), spaced.data(), width, height, fields), 0u);
    EXPECT_TRUE(dst.GuardsIntact());
    for (uint32_t n = 0; n < height; ++n) {
      const uint8_t* got = dst.data() + size_t{fields ? FieldLine(n, height) : n} * stride;
      for (size_t i = 0; i < 2 * width; ++i)
        ASSERT_EQ(V210Get(got, i), V210Get(v210.data() + size_t{n} * stride, i)) << "line " << n << " sample " << i;
    }
  }
  uint8_t untouched = 7;
  EXPECT_EQ(zlt_YCbCr10Packetized_to_v210(&untouched, nullptr, 1920, 0, 0), 0u);
  EXPECT_EQ(untouched, 7);
}

// ---- RFC 4175 payloads ---------------------------------------------------

TEST(Payload4175, EveryPhaseLengthAndPathMatchesTheReference) {
  // Pixel pairs land at v210 pixel positions startPhase, startPhase + 2, ...:
  // the phase pairs first (not counted in pgroups), then pgroups pairs from the
  // next group on. Samples past srcLength read as zero.
  for (uint32_t phase : {0u, 2u, 4u}) {
    for (int32_t pgroups : {0, 1, 2, 3, 4, 5, 6, 7, 17, 30, 31, 100, 275}) {
      const int32_t phasePairs = phase == 0 ? 0 : (6 - static_cast<int32_t>(phase)) / 2;
      const int32_t fullLength = (pgroups + phasePairs) * 5;
      for (int32_t srcLength : {fullLength, fullLength - 1, fullLength - 3, fullLength / 2, 1, 0, -4}) {
        const Bytes full = RandomBytes(static_cast<size_t>(fullLength) + 16, pgroups * 3 + phase);
        const size_t groups = (phase != 0) + (pgroups + 2) / 3 + 1;
        const Bytes before = RandomBytes(groups * 16, 77);
        auto results = RunEveryPath([&] {
          // Exactly srcLength bytes on the heap: any read at or past the end shows under ASan.
          Bytes src(full.begin(), full.begin() + std::max(srcLength, 0));
          GuardedBuffer dst(groups * 16);
          std::memcpy(dst.data(), before.data(), before.size());
          EXPECT_EQ(zlt_4175_to_v210(reinterpret_cast<uint32_t*>(dst.data()), src.data(), srcLength, pgroups, phase), 0u);
          EXPECT_TRUE(dst.GuardsIntact());
          return dst.Bytes();
        });
        Bytes expect = before;
        const size_t len = static_cast<size_t>(std::max(srcLength, 0));
        size_t pair = 0;
        auto place = [&](size_t pixel) {
          for (size_t k = 0; k < 4; ++k) V210Set(expect.data(), pixel / 2 * 4 + k, StreamSample(full, (pair * 4 + k) * 10, len));
          ++pair;
        };
        for (uint32_t x = phase; phase != 0 && x < 6; x += 2) place(x);
        const size_t first = phase == 0 ? 0 : 6;
        for (int32_t c = 0; c < pgroups; ++c) place(first + 2 * c);
        for (const auto& r : results)
          ASSERT_EQ(r.bytes, expect) << r.path << " phase " << phase << " pgroups " << pgroups << " srcLength " << srcLength
                                     << test::FirstDifference(r.bytes, expect);
      }
    }
  }
}

TEST(Payload4175, ShortPayloadReadsAsZeros) {
  // Two pgroups announced, 6 bytes given: pair 0 whole, then 8 bits of Cb1 and zeros.
  const Bytes src = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xAB};
  Bytes dst(16, 0xFF);
  zlt_4175_to_v210(reinterpret_cast<uint32_t*>(dst.data()), src.data(), 6, 2, 0);
  const uint32_t want[] = {1023, 1023, 1023, 1023, 0xAB << 2, 0, 0, 0};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(V210Get(dst.data(), i), want[i]) << i;
}

// ---- RTP headers ---------------------------------------------------------

uint32_t BE16(const uint8_t* p) { return uint32_t{p[0]} << 8 | p[1]; }
uint32_t BE32(const uint8_t* p) { return BE16(p) << 16 | BE16(p + 2); }

TEST(Rtp4175, HeadersForWideAndNarrowPictures) {
  struct Row {
    uint32_t width, height;
    uint16_t firstSequence;
    uint32_t length;
    uint8_t rowHighBits;  // OR of (row >> 8) over all rows
  };
  const Row rows[] = {
      {1920, 1080, 100, 1375, 1 | 2 | 3 | 4},
      {500, 3, 65534, 224, 0},  // narrow: fixed length 224, counter wraps
      {551, 2, 0, 1375, 0},
      {550, 2, 0, 224, 0},
  };
  for (const Row& r : rows) {
    const uint32_t stride = V210Line(r.width);
    Bytes buf = RandomV210(stride, r.height, r.width);
    const Bytes orig = buf;
    uint16_t seq = r.firstSequence;
    uint32_t a = 1, b = 2;
    EXPECT_EQ(zlt_v210_frame_to_rtp_4175(buf.data(), static_cast<int32_t>(buf.size()), &seq, 0x11223344u, 0xCAFEF00Du,
                                         0x5566, 0xFFFF, r.width, r.height, &a, &b),
              0u);
    EXPECT_EQ(seq, static_cast<uint16_t>(r.firstSequence + r.height));
    EXPECT_EQ(a, 0u);
    EXPECT_EQ(b, 0u);
    EXPECT_EQ(buf[0], 0x90);
    EXPECT_EQ(buf[1], 0xE0);  // payload type 96 and the marker
    EXPECT_EQ(BE16(&buf[2]), static_cast<uint16_t>(r.firstSequence + r.height - 1));
    EXPECT_EQ(BE32(&buf[4]), 0x11223344u);
    EXPECT_EQ(BE32(&buf[8]), 0xCAFEF00Du);
    EXPECT_EQ(BE16(&buf[12]), 0x5566u);
    EXPECT_EQ(BE16(&buf[14]), r.length);
    EXPECT_EQ(buf[16], orig[16] | r.rowHighBits) << "field bit byte keeps the picture's bits and earlier rows'";
    EXPECT_EQ(buf[17], r.height & 0xFF);  // rows numbered from 1; the last header stays
    EXPECT_EQ(buf[18], orig[18]);
    EXPECT_EQ(buf[19], 0);
    // Sample slot 0 of the payload holds Y1 of the last line's first pair.
    const uint32_t y1 = V210Get(orig.data() + size_t{r.height - 1} * stride, 3);
    EXPECT_EQ(buf[20], y1 >> 2);
    EXPECT_EQ(buf[21], (orig[21] & 0x3F) | ((y1 << 6) & 0xC0));
    EXPECT_TRUE(std::equal(buf.begin() + 22, buf.end(), orig.begin() + 22)) << "only the header and one slot change";
  }
}

TEST(Rtp4175, OneLinePictureTakesItsPairFromTheHeaderJustWritten) {
  Bytes buf = RandomV210(V210Line(96), 1, 4);
  uint16_t seq = 0;
  uint32_t a, b;
  zlt_v210_frame_to_rtp_4175(buf.data(), 0, &seq, 0xA1B2C3D4u, 0, 0, 0, 96, 1, &a, &b);
  // Y1 of pixel pair 0 is byte 4 with the low two bits of byte 5: the timestamp's first two bytes.
  const uint32_t y1 = 0xA1u | (0xB2u & 3) << 8;
  EXPECT_EQ(buf[20], y1 >> 2);
  EXPECT_EQ(buf[21] & 0xC0, (y1 << 6) & 0xC0);
}

TEST(Rtp4175, EmptyPicturesOnlySetTheMarker) {
  for (auto [w, h] : {std::pair{0u, 1080u}, std::pair{1920u, 0u}}) {
    Bytes buf = RandomBytes(64, 8);
    buf[1] = 0x12;
    const Bytes orig = buf;
    uint16_t seq = 42;
    uint32_t a = 9, b = 9;
    zlt_v210_frame_to_rtp_4175(buf.data(), 64, &seq, 1, 2, 3, 4, w, h, &a, &b);
    EXPECT_EQ(seq, 42);
    EXPECT_EQ(a + b, 0u);
    EXPECT_EQ(buf[1], 0x92);
    buf[1] = 0x12;
    EXPECT_EQ(buf, orig);
  }
}

// ---- single-line helpers -------------------------------------------------

TEST(Low8From10, AnyBitOffset) {
  const Samples s = RandomSamples(40, 3);
  const Bytes stream = BitStream(s);
  for (int32_t offset : {0, 1, 6, 7, 8, 9, 15, -5}) {
    // The stream moved `offset` bits on, behind a run of ones.
    const size_t shift = std::max(offset, 0);
    Bytes shifted((shift + 400 + 7) / 8 + 2, 0);
    for (size_t i = 0; i < shift + 400; ++i) {
      const bool one = i < shift || (stream[(i - shift) / 8] >> (7 - (i - shift) % 8)) & 1;
      if (one) shifted[i / 8] |= static_cast<uint8_t>(0x80 >> (i % 8));
    }
    Bytes dst(40);
    zlt_YCbCr10Packed_to_low8_from10(dst.data(), shifted.data(), offset, 40);
    for (size_t i = 0; i < 40; ++i) ASSERT_EQ(dst[i], s[i] < 1021 ? (s[i] + 2) >> 2 : 255u) << "offset " << offset << " sample " << i;
  }
}

TEST(Y10Packed, FifteenSamplesPerBlockThreePerWord) {
  struct Row {
    uint32_t width, blocks;
  };
  for (const Row r : {Row{1, 1}, Row{15, 1}, Row{16, 2}, Row{30, 2}, Row{1920, 128}}) {
    const Samples s = RandomSamples(size_t{r.blocks} * 15 + 4, r.width);
    const Bytes stream = BitStream(s);
    GuardedBuffer dst(size_t{r.blocks} * 20);
    zlt_Y10Packed_to_v210(reinterpret_cast<uint32_t*>(dst.data()), stream.data(), r.width);
    EXPECT_TRUE(dst.GuardsIntact()) << r.width;
    for (size_t i = 0; i < size_t{r.blocks} * 15; ++i) ASSERT_EQ(V210Get(dst.data(), i), s[i]) << r.width << " " << i;
  }
  GuardedBuffer none(0);
  zlt_Y10Packed_to_v210(reinterpret_cast<uint32_t*>(none.data()), nullptr, 0);
  EXPECT_TRUE(none.GuardsIntact());
}

// ---- Y210 ----------------------------------------------------------------

// A Y210 row: per pixel pair the 16-bit words Y0, Cb, Y1, Cr, value in bits 6-15.
Bytes Y210Row(const Samples& v210Order) {
  // v210 order per pair: Cb, Y0, Cr, Y1.
  Bytes row(v210Order.size() * 2);
  for (size_t p = 0; p < v210Order.size() / 4; ++p) {
    const uint32_t cb = v210Order[4 * p], y0 = v210Order[4 * p + 1], cr = v210Order[4 * p + 2], y1 = v210Order[4 * p + 3];
    const uint32_t words[4] = {y0 << 6, cb << 6, y1 << 6, cr << 6};
    for (int i = 0; i < 4; ++i) {
      row[8 * p + 2 * i] = static_cast<uint8_t>(words[i]);
      row[8 * p + 2 * i + 1] = static_cast<uint8_t>(words[i] >> 8);
    }
  }
  return row;
}

TEST(Y210, ToV210WithTailsOfEverySize) {
  for (uint32_t width : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 10u, 11u, 12u, 13u, 17u, 23u, 24u, 29u, 1920u, 1921u, 1925u}) {
    const uint32_t pairs = (width + 1) / 2, height = 2, srcStride = pairs * 8 + 16, dstStride = V210Line(width) + 32;
    std::vector<Samples> lines;
    Bytes src(size_t{srcStride} * height, 0xEE);
    for (uint32_t y = 0; y < height; ++y) {
      lines.push_back(RandomSamples(size_t{pairs} * 4, width * 2 + y));
      const Bytes row = Y210Row(lines.back());
      std::memcpy(src.data() + size_t{y} * srcStride, row.data(), row.size());
    }
    const Bytes before = RandomBytes(size_t{dstStride} * height, 6);
    auto results = RunEveryPath([&] {
      GuardedBuffer dst(before.size());
      std::memcpy(dst.data(), before.data(), before.size());
      zlt_Y210_to_v210(dst.data(), src.data(), dstStride, srcStride, width, height);
      EXPECT_TRUE(dst.GuardsIntact());
      return dst.Bytes();
    });
    // Whole groups take all 12 samples; a tail of 4-5 pixels fills words 0-1 and
    // the low two fields of word 2; a tail of 2-3 word 0 and the low field of word 1.
    // Fields a tail leaves unfilled are written as zero; words beyond stay.
    Bytes expect = before;
    for (uint32_t y = 0; y < height; ++y) {
      uint8_t* line = expect.data() + size_t{y} * dstStride;
      const uint32_t tail = width % 6, whole = width / 6 * 12;
      const uint32_t tailSamples = tail >= 4 ? 8 : tail >= 2 ? 4 : 0;
      const uint32_t tailWords = tail >= 4 ? 3 : tail >= 2 ? 2 : 0;
      for (uint32_t w = 0; w < whole / 3 + tailWords; ++w) std::memset(line + 4 * w, 0, 4);
      for (uint32_t i = 0; i < whole + tailSamples; ++i) V210Set(line, i, lines[y][i]);
    }
    for (const auto& r : results)
      ASSERT_EQ(r.bytes, expect) << r.path << " width " << width << test::FirstDifference(r.bytes, expect);
  }
}

TEST(Y210, ToUyvyKeepsY210SampleOrder) {
  for (uint32_t width : test::InterestingWidths()) {
    const uint32_t pairs = (width + 1) / 2, srcStride = pairs * 8 + 8, dstStride = pairs * 4 + 4, height = 3;
    const Bytes src = RandomBytes(size_t{srcStride} * height, width);
    auto results = RunEveryPath([&] {
      GuardedBuffer dst(size_t{dstStride} * height, 64, 0x11);
      zlt_Y210_to_uyvy(dst.data(), src.data(), dstStride, srcStride, width, height);
      EXPECT_TRUE(dst.GuardsIntact());
      return dst.Bytes();
    });
    Bytes expect(size_t{dstStride} * height, 0x11);
    for (uint32_t y = 0; y < height; ++y)
      for (uint32_t i = 0; i < pairs * 4; ++i) expect[size_t{y} * dstStride + i] = src[size_t{y} * srcStride + 2 * i + 1];
    for (const auto& r : results) ASSERT_EQ(r.bytes, expect) << r.path << " width " << width;
  }
}

// ---- the bit writer ------------------------------------------------------

TEST(BitWriter, MsbFirstKeepsNeighboursAndStopsAtTheEnd) {
  Bytes buf(4, 0xFF);
  BitWriterState st = MakeBitWriter(buf.data(), 3);
  SkipBits(&st, 3);
  WriteBits(&st, 10, 0);  // clears bits 3..12
  EXPECT_EQ(buf, (Bytes{0xE0, 0x07, 0xFF, 0xFF}));
  WriteBits(&st, 4, 0xA);  // bits 13..16
  EXPECT_EQ(buf, (Bytes{0xE0, 0x05, 0x7F, 0xFF}));
  WriteBits(&st, 12, 0);  // bits 17..28: the byte past the three given stays
  EXPECT_EQ(buf, (Bytes{0xE0, 0x05, 0x00, 0xFF}));
  EXPECT_EQ(st.bitPos, 29u);
  WriteBits(&st, 32, 0);
  EXPECT_EQ(buf[3], 0xFF);
  EXPECT_EQ(st.bitPos, 61u);
  // A full 32-bit field across five bytes.
  Bytes five(5, 0x00);
  BitWriterState st5 = MakeBitWriter(five.data(), 5);
  SkipBits(&st5, 5);
  WriteBits(&st5, 32, 0x80000001u);
  EXPECT_EQ(five, (Bytes{0x04, 0x00, 0x00, 0x00, 0x08}));
}

}  // namespace
}  // namespace zelt
