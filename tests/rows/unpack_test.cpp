// Unpackers to 16-bit rows: v210 field placement and width rules against an
// independent bit-level v210 encoder, the 8-bit component unpacker's arithmetic
// cases, block contracts, the CbYCrY frame family and the element converters, on
// every processor level the host offers.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "rows/rows_test_util.h"
#include "support/levels.h"
#include "support/paths.h"
#include "zelt/rows.h"

namespace zelt::test {
namespace {

// ---------------------------------------------------------------- v210 ----

struct V210Fields {
  uint16_t cb[3], cr[3], y[6];
};

// Writes the fields of each group as a little-endian bit stream: per 32-bit word three
// 10-bit fields from bit 0 upwards, then two zero bits. Stream order per group:
// Cb0 Y0 Cr0 | Y1 Cb1 Y2 | Cr1 Y3 Cb2 | Y4 Cr2 Y5.
std::vector<uint8_t> EncodeV210(const std::vector<V210Fields>& groups, size_t padBytes = 0) {
  std::vector<uint8_t> out(groups.size() * 16 + padBytes, 0);
  size_t bit = 0;
  auto put = [&](uint16_t v) {
    for (int i = 0; i < 10; ++i, ++bit)
      if ((v >> i) & 1) out[bit / 8] |= static_cast<uint8_t>(1u << (bit % 8));
  };
  for (const V210Fields& g : groups) {
    const uint16_t order[12] = {g.cb[0], g.y[0], g.cr[0], g.y[1], g.cb[1], g.y[2],
                                g.cr[1], g.y[3], g.cb[2], g.y[4], g.cr[2], g.y[5]};
    for (int k = 0; k < 12; ++k) {
      put(order[k]);
      if (k % 3 == 2) bit += 2;
    }
  }
  return out;
}

std::vector<V210Fields> RandomGroups(size_t n, uint32_t seed) {
  std::mt19937 gen(seed);
  std::vector<V210Fields> g(n);
  for (auto& f : g) {
    for (auto& v : f.cb) v = gen() & 0x3FF;
    for (auto& v : f.cr) v = gen() & 0x3FF;
    for (auto& v : f.y) v = gen() & 0x3FF;
  }
  return g;
}

// One group whose twelve fields all differ, chroma included.
const V210Fields kDistinct = {{0x011, 0x022, 0x033}, {0x144, 0x155, 0x166}, {0x200, 0x201, 0x302, 0x303, 0x3F4, 0x005}};

TEST(V210, FieldPlacementInEveryUnpacker) {
  const std::vector<uint8_t> src = EncodeV210({kDistinct});
  const V210Fields& f = kDistinct;

  std::vector<int16_t> packed(12);
  zeltV210RowToYUV(src.data(), packed.data(), 6);
  // The second pair repeats Cr0, the third takes Cr1; Cr2 never appears.
  EXPECT_EQ(packed, (std::vector<int16_t>{0x200, 0x144, 0x201, 0x011, 0x302, 0x144, 0x303, 0x022, 0x3F4, 0x155,
                                          0x005, 0x033}));

  std::vector<int16_t> y(6), cr(3), cb(3);
  zeltV210RowToPlanar16s(src.data(), 6, y.data(), cr.data(), cb.data());
  EXPECT_EQ(y, (std::vector<int16_t>{0x200, 0x201, 0x302, 0x303, 0x3F4, 0x005}));
  EXPECT_EQ(cr, (std::vector<int16_t>{0x144, 0x144, 0x155}));
  EXPECT_EQ(cb, (std::vector<int16_t>{0x011, 0x022, 0x033}));

  // The 16-bit unpackers carry the true chroma, left-aligned; note the Y, Cb, Cr arguments.
  std::vector<uint16_t> y16(6), cb16(3), cr16(3);
  zeltV210RowToYUV16(src.data(), y16.data(), cb16.data(), cr16.data(), 6);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(y16[i], f.y[i] << 6) << i;
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(cb16[i], f.cb[i] << 6) << i;
    EXPECT_EQ(cr16[i], f.cr[i] << 6) << i;
  }

  std::vector<uint16_t> yr(12);
  zeltV210ToYR16(src.data(), 6, 1, 16, yr.data(), 24);
  EXPECT_EQ(yr, (std::vector<uint16_t>{0x200 << 6, 0x201 << 6, 0x302 << 6, 0x303 << 6, 0x3F4 << 6, 0x005 << 6,
                                       0x011 << 6, 0x022 << 6, 0x033 << 6, 0x144 << 6, 0x155 << 6, 0x166 << 6}));
}

// How many luma samples each unpacker writes for widths around one group.
TEST(V210, WidthRules) {
  struct Case {
    int32_t width;
    size_t planarLuma, planarChroma, packedSamples, luma16;
  };
  const Case cases[] = {
      {1, 2, 1, 12, 0}, {5, 6, 3, 12, 0}, {6, 6, 3, 12, 6}, {7, 8, 4, 24, 6}, {8, 8, 4, 24, 6}, {11, 12, 6, 24, 6},
      {12, 12, 6, 24, 12}, {13, 14, 7, 36, 12},
  };
  const std::vector<uint8_t> src = EncodeV210(RandomGroups(3, 5));
  auto written = [](const std::vector<uint16_t>& v) {
    return size_t(std::count_if(v.begin(), v.end(), [](uint16_t s) { return s != 0xFFFF; }));
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.width);
    std::vector<uint16_t> y(64, 0xFFFF), cr(64, 0xFFFF), cb(64, 0xFFFF), packed(64, 0xFFFF);
    zeltV210RowToPlanar16s(src.data(), c.width, reinterpret_cast<int16_t*>(y.data()),
                           reinterpret_cast<int16_t*>(cr.data()), reinterpret_cast<int16_t*>(cb.data()));
    EXPECT_EQ(written(y), c.planarLuma);
    EXPECT_EQ(written(cr), c.planarChroma);
    EXPECT_EQ(written(cb), c.planarChroma);
    zeltV210RowToYUV(src.data(), reinterpret_cast<int16_t*>(packed.data()), c.width);
    EXPECT_EQ(written(packed), c.packedSamples);

    std::vector<uint16_t> y16(64, 0xFFFF), cb16(64, 0xFFFF), cr16(64, 0xFFFF), yr(64, 0xFFFF);
    zeltV210RowToYUV16(src.data(), y16.data(), cb16.data(), cr16.data(), c.width);
    EXPECT_EQ(written(y16), c.luma16);
    EXPECT_EQ(written(cb16), c.luma16 / 2);
    zeltV210ToYR16(src.data(), c.width, 1, 64, yr.data(), 128);
    EXPECT_EQ(written(yr), c.luma16 * 2);
  }
}

// Random rows of many widths through every unpacker at every level, against the fields
// the encoder was given, with guards at exactly the documented write extent.
TEST(V210, RandomRowsEveryLevel) {
  const std::vector<V210Fields> groups = RandomGroups(260, 17);
  const std::vector<uint8_t> src = EncodeV210(groups);
  for (const Level& level : HostLevels()) {
    ScopedFeatures features(level.mask, level.extended);
    for (uint32_t w : InterestingWidths()) {
      if (w > 1500) continue;
      SCOPED_TRACE(level.name + " width " + std::to_string(w));
      const size_t whole = w / 6, ceil6 = (w + 5) / 6;
      const size_t lumaOut = w + (w & 1), chromaOut = (w + 1) / 2;
      Guarded<int16_t> y(lumaOut), cr(chromaOut), cb(chromaOut), packed(12 * ceil6);
      zeltV210RowToPlanar16s(src.data(), int32_t(w), y.data(), cr.data(), cb.data());
      zeltV210RowToYUV(src.data(), packed.data(), int32_t(w));
      EXPECT_TRUE(y.Intact() && cr.Intact() && cb.Intact() && packed.Intact());
      for (size_t i = 0; i < lumaOut; ++i) ASSERT_EQ(y[i], groups[i / 6].y[i % 6]) << i;
      for (size_t i = 0; i < chromaOut; ++i) {
        const V210Fields& g = groups[i / 3];
        ASSERT_EQ(cb[i], g.cb[i % 3]) << i;
        ASSERT_EQ(cr[i], g.cr[i % 3 == 2 ? 1 : 0]) << i;
      }
      for (size_t gi = 0; gi < ceil6; ++gi) {
        const V210Fields& g = groups[gi];
        const int16_t expect[12] = {int16_t(g.y[0]), int16_t(g.cr[0]), int16_t(g.y[1]), int16_t(g.cb[0]),
                                    int16_t(g.y[2]), int16_t(g.cr[0]), int16_t(g.y[3]), int16_t(g.cb[1]),
                                    int16_t(g.y[4]), int16_t(g.cr[1]), int16_t(g.y[5]), int16_t(g.cb[2])};
        for (int k = 0; k < 12; ++k) ASSERT_EQ(packed[12 * gi + k], expect[k]) << gi << ":" << k;
      }

      Guarded<uint16_t> y16(6 * whole), cb16(3 * whole), cr16(3 * whole);
      zeltV210RowToYUV16(src.data(), y16.data(), cb16.data(), cr16.data(), int32_t(w));
      EXPECT_TRUE(y16.Intact() && cb16.Intact() && cr16.Intact());
      for (size_t i = 0; i < 6 * whole; ++i) ASSERT_EQ(y16[i], groups[i / 6].y[i % 6] << 6) << i;
      for (size_t i = 0; i < 3 * whole; ++i) {
        ASSERT_EQ(cb16[i], groups[i / 3].cb[i % 3] << 6) << i;
        ASSERT_EQ(cr16[i], groups[i / 3].cr[i % 3] << 6) << i;
      }
    }
  }
}

TEST(V210, YR16FrameHonoursBothPitches) {
  const int32_t w = 18, h = 3, srcPitch = 64, dstPitch = 2 * 2 * w + 10;  // padding on both sides
  std::vector<V210Fields> groups = RandomGroups(size_t(h) * 4, 3);
  const std::vector<uint8_t> src = EncodeV210(groups);  // 4 groups per 64-byte row
  for (const Level& level : HostLevels()) {
  ScopedFeatures features(level.mask, level.extended);
  SCOPED_TRACE(level.name);
  std::vector<uint16_t> dst(size_t(h) * dstPitch / 2, 0xBEEF);
  zeltV210ToYR16(src.data(), w, h, srcPitch, dst.data(), dstPitch);
  for (int32_t r = 0; r < h; ++r) {
    const uint16_t* row = dst.data() + r * dstPitch / 2;
    for (int32_t i = 0; i < w; ++i) ASSERT_EQ(row[i], groups[r * 4 + i / 6].y[i % 6] << 6);
    for (int32_t i = 0; i < w / 2; ++i) {
      ASSERT_EQ(row[w + i], groups[r * 4 + i / 3].cb[i % 3] << 6);
      ASSERT_EQ(row[w + w / 2 + i], groups[r * 4 + i / 3].cr[i % 3] << 6);
    }
    for (int32_t i = 2 * w; i < dstPitch / 2; ++i) ASSERT_EQ(row[i], 0xBEEF);  // padding untouched
  }
  }
}

// Sources sized exactly to what each unpacker may read (whole v210 groups; 2 x count or
// 4 x count bytes; rows of 32 pixels or more), so the sanitizer build sees any over-read.
TEST(RowReads, StayInsideTheDocumentedSource) {
  for (const Level& level : HostLevels()) {
    ScopedFeatures features(level.mask, level.extended);
    for (int32_t w : {6, 7, 12, 13, 18, 19, 32, 33, 64, 65, 95, 96, 191, 192}) {
      SCOPED_TRACE(level.name + " width " + std::to_string(w));
      const std::vector<uint8_t> groups = RandomBytes(16 * size_t((w + 5) / 6), uint32_t(w));
      const std::vector<uint8_t> whole(groups.begin(), groups.begin() + 16 * (w / 6));
      std::vector<int16_t> y(w + 1), cr(w), cb(w), packed(12 * size_t((w + 5) / 6));
      zeltV210RowToPlanar16s(groups.data(), w, y.data(), cr.data(), cb.data());
      zeltV210RowToYUV(groups.data(), packed.data(), w);
      std::vector<uint16_t> y16(w), cb16(w), cr16(w);
      zeltV210RowToYUV16(whole.data(), y16.data(), cb16.data(), cr16.data(), w);
      std::vector<uint16_t> yr(2 * size_t(w));
      zeltV210ToYR16(whole.data(), w, 1, 0, yr.data(), 0);

      for (int32_t comp : {0, 1}) {
        const std::vector<uint8_t> row = RandomBytes(size_t(comp == 0 ? 2 * (w + (w & 1)) : 4 * w), 2);
        std::vector<int16_t> out(w + 1);
        zeltUnpackRowYUV16s(row.data(), out.data(), w, comp, 2, 2, 1, 1);
      }
      if (w >= 32) {
        const std::vector<uint8_t> yuy2 = RandomBytes(2 * size_t(w + (w & 1)), 3);
        ZeltPlanes planes = {{y.data(), cr.data(), cb.data()}};
        zeltUnpackYUVRow16s(yuy2.data(), w, &planes);
      }
    }
  }
}

// ------------------------------------------------ 8-bit component unpacker ----

struct ComponentCase {
  const char* name;
  uint8_t cb, y, cr;
  int32_t shift, fullRange, matrix;
  int16_t y16, cr16, cb16;
};

TEST(UnpackRowYUV16s, ArithmeticCases) {
  const ComponentCase cases[] = {
      // 8 -> 10 bit and 8 -> left-aligned 16 bit; the range/matrix flags matter only at shift 2.
      {"shift2", 50, 200, 100, 2, 0, 0, 800, 400, 200},
      {"shift8", 128, 235, 16, 8, 0, 0, int16_t(60160), 4096, int16_t(32768)},
      {"shift0 flags ignored", 1, 235, 2, 0, 1, 1, 235, 2, 1},
      // Full range 0..255 into video range: white 940, black 64, neutral chroma 512.
      {"full white", 128, 255, 128, 2, 1, 0, 940, 512, 512},
      {"full black", 0, 0, 255, 2, 1, 0, 64, 956, 64},
      // Neutral chroma passes the re-matrix unchanged: luma 4 x Y, chroma 512.
      {"matrix neutral", 128, 100, 128, 2, 0, 1, 400, 512, 512},
      {"full+matrix neutral", 128, 255, 128, 2, 1, 1, 940, 512, 512},
      // Out-of-range results wrap in the 16-bit store instead of clamping.
      {"matrix under", 128, 0, 255, 2, 0, 1, -106, 1032, 569},
      {"matrix over", 0, 255, 0, 2, 0, 1, 1185, -51, -68},
  };
  for (const ComponentCase& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<uint8_t> src;
    for (int g = 0; g < 16; ++g) src.insert(src.end(), {c.cb, c.y, c.cr, c.y});
    for (int32_t path : {0, 2}) {
      std::vector<int16_t> y(32), cr(16), cb(16);
      zeltUnpackRowYUV16s(src.data(), y.data(), 32, 0, path, c.shift, c.fullRange, c.matrix);
      zeltUnpackRowYUV16s(src.data(), cr.data(), 16, 1, path, c.shift, c.fullRange, c.matrix);
      zeltUnpackRowYUV16s(src.data(), cb.data(), 16, 7, path, c.shift, c.fullRange, c.matrix);
      EXPECT_EQ(y, std::vector<int16_t>(32, c.y16));
      EXPECT_EQ(cr, std::vector<int16_t>(16, c.cr16));
      EXPECT_EQ(cb, std::vector<int16_t>(16, c.cb16));
    }
  }
}

TEST(UnpackRowYUV16s, ComponentBytesCountsAndReturn) {
  const std::vector<uint8_t> src = RandomBytes(64, 9);
  for (int32_t count = 1; count <= 9; ++count) {
    SCOPED_TRACE(count);
    const size_t lumaOut = count + (count & 1);  // an odd luma count finishes its pair
    Guarded<int16_t> y(count), cr(count), cb(count);
    EXPECT_EQ(zeltUnpackRowYUV16s(src.data(), y.data(), count, 0, 0, 0, 0, 0), 2 * lumaOut);
    EXPECT_EQ(zeltUnpackRowYUV16s(src.data(), cr.data(), count, 1, 0, 0, 0, 0), 4u * count);
    EXPECT_EQ(zeltUnpackRowYUV16s(src.data(), cb.data(), count, 2, 0, 0, 0, 0), 4u * count);
    EXPECT_TRUE(y.Intact(lumaOut - count) && cr.Intact() && cb.Intact());
    for (size_t i = 0; i < lumaOut; ++i) EXPECT_EQ(y[i], src[2 * i + 1]) << i;
    for (int32_t i = 0; i < count; ++i) {
      EXPECT_EQ(cr[i], src[4 * i + 2]);
      EXPECT_EQ(cb[i], src[4 * i]);
    }
  }
  int16_t untouched = 77;
  EXPECT_EQ(zeltUnpackRowYUV16s(src.data(), &untouched, 0, 0, 2, 2, 0, 0), 0u);
  EXPECT_EQ(untouched, 77);
}

// The vector path against the scalar path, every case, many counts and shifts.
TEST(UnpackRowYUV16s, VectorPathMatchesScalar) {
  const std::vector<uint8_t> src = RandomBytes(8192, 21);
  struct Mode {
    int32_t shift, full, matrix;
  };
  const Mode modes[] = {{2, 0, 0}, {2, 1, 0}, {2, 0, 1}, {2, 1, 1}, {0, 0, 0}, {8, 1, 1}, {15, 0, 0}, {16, 0, 0}, {-3, 0, 0}};
  std::vector<uint32_t> counts = InterestingWidths();
  counts.insert(counts.end(), {4, 8, 15, 16, 24, 40, 1024});
  for (const Level& level : HostLevels()) {
    ScopedFeatures features(level.mask, level.extended);
    for (const Mode& m : modes) {
      for (int32_t comp : {0, 1, 2}) {
        for (uint32_t count : counts) {
          if (count > 1500) continue;
          SCOPED_TRACE(level.name + " shift " + std::to_string(m.shift) + " full " + std::to_string(m.full) +
                       " matrix " + std::to_string(m.matrix) + " comp " + std::to_string(comp) + " count " +
                       std::to_string(count));
          std::vector<int16_t> scalar(count + 1, 0x5A5A), vec(count + 1, 0x5A5A);
          const uint32_t a = zeltUnpackRowYUV16s(src.data(), scalar.data(), int32_t(count), comp, 0, m.shift, m.full, m.matrix);
          const uint32_t b = zeltUnpackRowYUV16s(src.data(), vec.data(), int32_t(count), comp, 2, m.shift, m.full, m.matrix);
          ASSERT_EQ(a, b);
          ASSERT_EQ(scalar, vec);
        }
      }
    }
  }
}

// ------------------------------------------------ 8-bit Y0-Cb-Y1-Cr rows ----

TEST(UnpackYUVRow16s, BlockContractAndValuesEveryLevel) {
  const std::vector<uint8_t> src = RandomBytes(4096, 33);
  std::vector<int32_t> widths;
  for (int32_t w = 1; w <= 70; ++w) widths.push_back(w);
  widths.insert(widths.end(), {95, 96, 97, 127, 128, 129, 719, 1283});
  for (const Level& level : HostLevels()) {
    ScopedFeatures features(level.mask, level.extended);
    for (int32_t w : widths) {
      SCOPED_TRACE(level.name + " width " + std::to_string(w));
      // A short row is done as one whole 32-pixel block; otherwise odd widths finish their pair.
      const size_t lumaOut = std::max<size_t>(32, size_t(w) + (w & 1)), chromaOut = lumaOut / 2;
      Guarded<int16_t> y(w), cr((w + 1) / 2), cb((w + 1) / 2);
      ZeltPlanes planes = {{y.data(), cr.data(), cb.data()}};
      EXPECT_EQ(zeltUnpackYUVRow16s(src.data(), w, &planes), 2 * lumaOut);
      EXPECT_TRUE(y.Intact(lumaOut - w));
      EXPECT_TRUE(cr.Intact(chromaOut - (w + 1) / 2) && cb.Intact(chromaOut - (w + 1) / 2));
      for (size_t i = 0; i < lumaOut / 2; ++i) {
        ASSERT_EQ(y[2 * i], src[4 * i]) << i;
        ASSERT_EQ(y[2 * i + 1], src[4 * i + 2]) << i;
        ASSERT_EQ(cb[i], src[4 * i + 1]) << i;
        ASSERT_EQ(cr[i], src[4 * i + 3]) << i;
      }
    }
  }
}

// ------------------------------------------------ CbYCrY frames to Row16u ----

using Row16uFn = uint32_t (*)(void*, int32_t, int32_t, int32_t, const void*, void*, int32_t, int32_t, int32_t, uint8_t);

struct Row16uCase {
  const char* name;
  Row16uFn fn;
  size_t srcBytes;  // for a frame of w x h
};

TEST(CbYCrYToRow16u, FlagsBit2GatesEveryLayout) {
  const Row16uFn fns[] = {zeltCbYCrY_8bitToRow16u, zeltCbYCrY_10bit_2_8ToRow16u, zeltCbYCrY_16bitToRow16u,
                          zeltCbYCrY_16bit_10_6ToRow16u, zeltCbYCrY_16bit_2_14ToRow16u};
  const std::vector<uint8_t> src = RandomBytes(1024, 1);
  for (Row16uFn fn : fns) {
    for (uint8_t flags : {0x00, 0x01, 0xFD, 0x02, 0xFF}) {
      std::vector<uint16_t> dst(256, 0xABCD);
      fn(nullptr, 8, 2, 0, src.data(), dst.data(), 32, 0, 0, flags);
      const bool touched = std::any_of(dst.begin(), dst.end(), [](uint16_t v) { return v != 0xABCD; });
      EXPECT_EQ(touched, (flags & 2) != 0) << int(flags);
    }
    std::vector<uint16_t> dst(16, 0xABCD);
    fn(nullptr, 0, 2, 0, src.data(), dst.data(), 32, 0, 0, 2);
    fn(nullptr, 4, 0, 0, src.data(), dst.data(), 32, 0, 0, 2);
    EXPECT_EQ(dst, std::vector<uint16_t>(16, 0xABCD));
  }
}

// Places pair outputs the way a Row16u row is laid out: Y at 2i and 2i+1, Cr from
// sample width, Cb from width + width/2, written in that order pair after pair (so an
// odd width's extra pair lands on the first chroma slots).
void PlacePair(uint16_t* row, int32_t width, int32_t i, uint16_t cb, uint16_t y0, uint16_t cr, uint16_t y1) {
  row[2 * i] = y0;
  row[2 * i + 1] = y1;
  row[width + i] = cr;
  row[width + width / 2 + i] = cb;
}

TEST(CbYCrYToRow16u, LayoutsAgainstReorderedSource) {
  for (int32_t w : {2, 8, 7, 30, 33}) {
    const int32_t h = 3, pairs = (w + 1) / 2;
    const std::vector<uint8_t> src = RandomBytes(size_t(8) * w * h + 64, uint32_t(w));
    auto s16 = [&](size_t sample) { return uint16_t(src[2 * sample] | (src[2 * sample + 1] << 8)); };
    const size_t rowSamples = 2 * size_t(w);
    SCOPED_TRACE(w);

    std::vector<uint16_t> expect8(rowSamples * h + 8, 0x1111), expect16 = expect8, got(expect8.size());
    for (int32_t r = 0; r < h; ++r) {
      for (int32_t i = 0; i < pairs; ++i) {
        const uint8_t* p = src.data() + size_t(r) * 2 * w + 4 * i;
        PlacePair(expect8.data() + r * rowSamples, w, i, p[0] << 8, p[1] << 8, p[2] << 8, p[3] << 8);
        const size_t q = size_t(r) * 2 * w + 4 * i;
        PlacePair(expect16.data() + r * rowSamples, w, i, s16(q), s16(q + 1), s16(q + 2), s16(q + 3));
      }
    }
    std::fill(got.begin(), got.end(), 0x1111);
    zeltCbYCrY_8bitToRow16u(nullptr, w, h, 0, src.data(), got.data(), 3, 0, 0, 2);
    EXPECT_EQ(got, expect8);
    for (Row16uFn fn : {zeltCbYCrY_16bitToRow16u, zeltCbYCrY_16bit_10_6ToRow16u}) {
      std::fill(got.begin(), got.end(), 0x1111);
      fn(nullptr, w, h, 0, src.data(), got.data(), 3, 0, 0, 2);
      EXPECT_EQ(got, expect16);
    }

    // 10_2_8: low-bits area first (w/2 bytes per row), then the 8-bit area; rows dstPitch apart.
    const int32_t dstPitch = 4 * w + 12;
    std::vector<uint16_t> expect10(size_t(dstPitch / 2) * h + 8, 0x1111), got10 = expect10;
    const uint8_t* high = src.data() + size_t(w) * h / 2;
    for (int32_t r = 0; r < h; ++r) {
      for (int32_t i = 0; i < pairs; ++i) {
        const uint8_t lo = src[size_t(r) * (w / 2) + i];
        const uint8_t* p = high + size_t(r) * 2 * w + 4 * i;
        auto ten = [](uint8_t hi, unsigned two) { return uint16_t(((hi << 2) | two) << 6); };
        PlacePair(expect10.data() + r * dstPitch / 2, w, i, ten(p[0], lo >> 6), ten(p[1], (lo >> 4) & 3),
                  ten(p[2], (lo >> 2) & 3), ten(p[3], lo & 3));
      }
    }
    zeltCbYCrY_10bit_2_8ToRow16u(nullptr, w, h, 0, src.data(), got10.data(), dstPitch, 0, 0, 2);
    EXPECT_EQ(got10, expect10);
  }
}

TEST(CbYCrYToRow16u, TenBitLowBitsPerSample) {
  struct Case {
    uint8_t hi[4], lo;
    uint16_t cb, y0, cr, y1;
  };
  const Case cases[] = {
      {{0x80, 0x80, 0x80, 0x80}, 0xFF, 0x80C0, 0x80C0, 0x80C0, 0x80C0},
      {{0x10, 0x20, 0x30, 0x40}, 0xE4, 0x10C0, 0x2080, 0x3040, 0x4000},  // low bits 3, 2, 1, 0
      {{0xFF, 0x00, 0xFF, 0x00}, 0x00, 0xFF00, 0x0000, 0xFF00, 0x0000},
  };
  for (const Case& c : cases) {
    const uint8_t src[5] = {c.lo, c.hi[0], c.hi[1], c.hi[2], c.hi[3]};  // width 2, height 1
    uint16_t dst[4] = {};
    zeltCbYCrY_10bit_2_8ToRow16u(nullptr, 2, 1, 0, src, dst, 8, 0, 0, 2);
    EXPECT_EQ(dst[0], c.y0);
    EXPECT_EQ(dst[1], c.y1);
    EXPECT_EQ(dst[2], c.cr);
    EXPECT_EQ(dst[3], c.cb);
  }
}

TEST(CbYCrYToRow16u, FixedPoint2_14ToVideoRange) {
  // Y: 0.0..1.0 is 0..16384 -> 16 << 8 .. 235 << 8; chroma -0.5..0.5 -> 16 << 8 .. 240 << 8.
  struct Case {
    int16_t in;
    uint16_t luma, chroma;
  };
  const Case cases[] = {
      {0, 4096, 32768},  {16384, 60160, 65535}, {8192, 32128, 61440}, {-8192, 0, 4096},
      {32767, 65535, 65535}, {-32768, 0, 0}, {1, 4099, 32771},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.in);
    const int16_t src[4] = {c.in, c.in, c.in, c.in};
    uint16_t dst[4] = {};
    zeltCbYCrY_16bit_2_14ToRow16u(nullptr, 2, 1, 0, src, dst, 0, 0, 0, 2);
    EXPECT_EQ(dst[0], c.luma);
    EXPECT_EQ(dst[1], c.luma);
    EXPECT_EQ(dst[2], c.chroma);
    EXPECT_EQ(dst[3], c.chroma);
  }
}

// ------------------------------------------------ element converters ----

TEST(ElementConverters, ClampsAndSignExtension) {
  const int16_t wide[] = {-32768, -129, -128, -1, 0, 1, 127, 128, 255, 256, 32767};
  const uint8_t to8u[] = {0, 0, 0, 0, 0, 1, 127, 128, 255, 255, 255};
  const int8_t to8s[] = {-128, -128, -128, -1, 0, 1, 127, 127, 127, 127, 127};
  const int n = 11;
  std::vector<uint8_t> u(n);
  zelt16sTo8u(wide, 2 * n, u.data(), n, ZeltSize{n, 1});
  EXPECT_EQ(u, std::vector<uint8_t>(to8u, to8u + n));
  std::vector<int8_t> s(n);
  zeltRow16sTo8s(wide, s.data(), n);
  EXPECT_EQ(s, std::vector<int8_t>(to8s, to8s + n));

  const int8_t narrow[] = {-128, -1, 0, 1, 127};
  std::vector<int16_t> ext(5);
  zelt8sTo16s(narrow, 5, ext.data(), 10, ZeltSize{5, 1});
  EXPECT_EQ(ext, (std::vector<int16_t>{-128, -1, 0, 1, 127}));
}

// Frames with padded, odd byte pitches (a 16-bit pitch counts whole elements) and
// rows long enough for the 64-element loop.
TEST(ElementConverters, FramesWithPitches) {
  for (int32_t w : {1, 63, 64, 65, 200}) {
    const int32_t h = 3, srcPitch16 = 2 * w + 5, dstPitch8 = w + 3;  // 16-bit pitch halves to w + 2
    const std::vector<uint8_t> raw = RandomBytes(size_t(srcPitch16) * h + 8, uint32_t(w));
    const int16_t* src16 = reinterpret_cast<const int16_t*>(raw.data());
    std::vector<uint8_t> out(size_t(dstPitch8) * h, 0x5C);
    zelt16sTo8u(src16, srcPitch16, out.data(), dstPitch8, ZeltSize{w, h});
    for (int32_t r = 0; r < h; ++r) {
      for (int32_t x = 0; x < w; ++x)
        ASSERT_EQ(out[r * dstPitch8 + x], std::clamp<int32_t>(src16[r * (w + 2) + x], 0, 255));
      for (int32_t x = w; x < dstPitch8; ++x) ASSERT_EQ(out[r * dstPitch8 + x], 0x5C);
    }

    const int8_t* src8 = reinterpret_cast<const int8_t*>(raw.data());
    const int32_t srcPitch8 = w + 1, dstPitch16 = 2 * w + 3;  // halves to w + 1 elements
    std::vector<int16_t> wide(size_t(w + 1) * h + 1, 0x7777);
    zelt8sTo16s(src8, srcPitch8, wide.data(), dstPitch16, ZeltSize{w, h});
    for (int32_t r = 0; r < h; ++r) {
      for (int32_t x = 0; x < w; ++x) ASSERT_EQ(wide[r * (w + 1) + x], src8[r * srcPitch8 + x]);
      ASSERT_EQ(wide[r * (w + 1) + w], 0x7777);
    }
  }
}

TEST(ElementConverters, PackedRows) {
  // YU64: both halves of every word >> 6; ceil(width / 2) words.
  const uint32_t yu64[] = {0xFFC0FFC0u, 0x00400040u, 0x003F003Fu, 0x8000FFFFu};
  uint32_t ten[4] = {9, 9, 9, 9};
  zeltYU64RowToYUV10bit(yu64, ten, 5);
  EXPECT_EQ(ten[0], 0x03FF03FFu);
  EXPECT_EQ(ten[1], 0x00010001u);
  EXPECT_EQ(ten[2], 0u);
  EXPECT_EQ(ten[3], 9u);

  // Packed 16s Y0 Cr Y1 Cb to planes, unchanged or >> 2 and clamped; odd widths finish the pair.
  const int16_t packed[] = {1023, 512, 4, -4, 3, 1024, -1, 1020};
  int16_t y[4] = {}, cr[2] = {}, cb[2] = {};
  zeltYUVPacked16sRowToPlanar16s(packed, 3, y, cr, cb);
  EXPECT_EQ((std::vector<int16_t>(y, y + 4)), (std::vector<int16_t>{1023, 4, 3, -1}));
  EXPECT_EQ((std::vector<int16_t>(cr, cr + 2)), (std::vector<int16_t>{512, 1024}));
  EXPECT_EQ((std::vector<int16_t>(cb, cb + 2)), (std::vector<int16_t>{-4, 1020}));
  uint8_t y8[4] = {}, cr8[2] = {}, cb8[2] = {};
  zeltYUVPacked16sRowToPlanar8u(packed, 3, y8, cr8, cb8);
  EXPECT_EQ((std::vector<uint8_t>(y8, y8 + 4)), (std::vector<uint8_t>{255, 1, 0, 0}));
  EXPECT_EQ((std::vector<uint8_t>(cr8, cr8 + 2)), (std::vector<uint8_t>{128, 255}));
  EXPECT_EQ((std::vector<uint8_t>(cb8, cb8 + 2)), (std::vector<uint8_t>{0, 255}));
}

}  // namespace
}  // namespace zelt::test
