// The rounded fast-path decoders and where the converters take them: the 4:2:0
// front of cycbcr_ToRGB, the UYVY to 32-bit choice by level and matrix id, the
// UYVY to 24-bit converter and the planar-output front.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "transcode/fast_decode.h"
#include "support/buffers.h"
#include "support/paths.h"
#include "support/rgb_reference.h"
#include "core/simd_level.h"
#include "zelt/ycbcr_to_rgb.h"

namespace zelt {
namespace {

using test::RefRgb;

TEST(FastDecode, FormulaSetsRoundToNearest) {
  // Every sample combination on a coarse grid; the 16-bit fixed point may land one
  // code value off only where the real value sits on a half.
  for (int set = 0; set < 3; ++set) {
    int off = 0, total = 0;
    for (int y = 0; y < 256; y += 3) {
      for (int cb = 0; cb < 256; cb += 5) {
        for (int cr = 0; cr < 256; cr += 7) {
          uint8_t bgr[3];
          transcode::fast_decode::DecodeBgr(static_cast<transcode::fast_decode::Set>(set), y, cb, cr, bgr);
          const RefRgb want = test::RefFastDecode(set, y, cb, cr);
          const int d[3] = {bgr[0] - want.b, bgr[1] - want.g, bgr[2] - want.r};
          for (int v : d) {
            ASSERT_LE(std::abs(v), 1) << set << " " << y << " " << cb << " " << cr;
            off += v != 0;
            ++total;
          }
        }
      }
    }
    // Exact halves are common (integer samples, three-decimal weights; the luma of
    // the HDTV set is not scaled), and the 1/65536 weights fall either side of them.
    EXPECT_LT(off * 100, total) << "set " << set;
  }
}

// A 4:2:0 frame with its planes at explicit strides.
struct Planes420 {
  uint32_t w, h, stride;
  std::vector<uint8_t> y, cb, cr;
  Planes420(uint32_t w_, uint32_t h_, uint32_t stride_, uint32_t seed)
      : w(w_), h(h_), stride(stride_), y(test::RandomBytes(size_t{h_} * stride_, seed)),
        cb(test::RandomBytes(size_t{(h_ + 1) / 2} * (stride_ / 2) + 1, seed + 1)),
        cr(test::RandomBytes(size_t{(h_ + 1) / 2} * (stride_ / 2) + 1, seed + 2)) {}
  RefRgb At(int set, uint32_t x, uint32_t r) const {
    const size_t c = size_t{r / 2} * (stride / 2) + x / 2;
    return test::RefFastDecode(set, y[size_t{r} * stride + x], cb[c], cr[c]);
  }
};

void ExpectPixel(const uint8_t* p, RefRgb want, uint8_t alpha, const char* what) {
  EXPECT_NEAR(p[0], want.b, 1) << what;
  EXPECT_NEAR(p[1], want.g, 1) << what;
  EXPECT_NEAR(p[2], want.r, 1) << what;
  EXPECT_EQ(p[3], alpha) << what;
}

TEST(ToRgbFast, Planar420ThirtyTwoBitsTopDownTakesTheRoundedPath) {
  const struct {
    uint32_t matrix;
    int set;
    bool packedRows;  // rows width * 4 apart instead of dstStride
  } cases[] = {{0, 0, false}, {1, 0, false}, {6, 0, false}, {7, 0, false}, {99, 0, false},
               {2, 1, true},  {4, 1, true},  {3, 2, false}, {5, 2, false}};
  for (uint32_t w : {2u, 7u, 30u}) {
    const uint32_t h = 5, srcStride = w + 10, ds = 4 * w + 12;
    const Planes420 f(w, h, srcStride, w);
    for (const auto& c : cases) {
      SCOPED_TRACE(testing::Message() << "id " << c.matrix << " width " << w);
      test::GuardedBuffer dst(size_t{h} * ds);
      dst.Fill(0xCD);
      EXPECT_EQ(cycbcr_ToRGB(dst.data(), f.y.data(), f.cb.data(), f.cr.data(), w, h, ds, srcStride, c.matrix, 0, 0,
                             1, 32, srcStride / 2),
                uint64_t{h} * ds);
      EXPECT_TRUE(dst.GuardsIntact());
      const uint32_t rowBytes = c.packedRows ? 4 * w : ds;
      for (uint32_t r = 0; r < h; ++r) {
        for (uint32_t x = 0; x < w; ++x) ExpectPixel(dst.data() + size_t{r} * rowBytes + 4 * x, f.At(c.set, x, r), 255, "");
      }
      if (!c.packedRows) {
        EXPECT_EQ(dst.data()[4 * w], 0xCD);  // nothing past the width
      }
    }
  }
}

TEST(ToRgbFast, VectorPathGivesTheSameBytes) {
  uint32_t seed = 40;
  for (uint32_t w : test::InterestingWidths()) {
    if (w > 300) continue;
    for (uint32_t h : {1u, 2u, 5u}) {
      for (uint32_t matrix : {0u, 2u, 3u, 4u, 5u, 7u}) {
        const uint32_t srcStride = w + (seed % 3) * 8, ds = 4 * w + (seed % 2) * 4;
        const Planes420 f(w, h, srcStride, ++seed);
        const size_t size = size_t{h} * ds;
        const auto paths = test::RunEveryPath([&] {
          test::GuardedBuffer dst(size);
          dst.Fill(0x33);
          cycbcr_ToRGB(dst.data(), f.y.data(), f.cb.data(), f.cr.data(), w, h, ds, srcStride, matrix, 0, 0, 1, 32,
                       srcStride / 2);
          EXPECT_TRUE(dst.GuardsIntact());
          return dst.Bytes();
        });
        for (const auto& p : paths) {
          ASSERT_EQ(p.bytes, paths[0].bytes) << p.path << " w " << w << " h " << h << " id " << matrix << ": "
                                             << test::FirstDifference(p.bytes, paths[0].bytes);
        }
      }
    }
  }
}

TEST(ToRgbFast, OnlyFlagsZeroTakesTheRoundedPath) {
  const uint32_t w = 16, h = 4;
  const Planes420 f(w, h, w, 5);
  std::vector<uint8_t> a(size_t{w} * h * 4 + 64), b(a.size());
  // Flags 2: general path, result width * height * 4, whatever the stride.
  EXPECT_EQ(cycbcr_ToRGB(a.data(), f.y.data(), f.cb.data(), f.cr.data(), w, h, 4 * w + 16, w, 6, 2, 0, 1, 32, w / 2),
            uint64_t{w} * h * 4);
  cycbcr_ToRGBInt(b.data(), f.y.data(), f.cb.data(), f.cr.data(), w, h, 4 * w + 16, w, 6, 2, 0, 1, 32, w / 2);
  EXPECT_EQ(a, b);
  // Id 6 decodes BT.2020 on the general path but BT.601 on the rounded one, where it
  // matches id 0.
  std::vector<uint8_t> fast6(size_t{w} * h * 4), fast0(fast6.size()), int6(fast6.size()), int0(fast6.size());
  cycbcr_ToRGB(fast6.data(), f.y.data(), f.cb.data(), f.cr.data(), w, h, 4 * w, w, 6, 0, 0, 1, 32, w / 2);
  cycbcr_ToRGB(fast0.data(), f.y.data(), f.cb.data(), f.cr.data(), w, h, 4 * w, w, 0, 0, 0, 1, 32, w / 2);
  cycbcr_ToRGBInt(int6.data(), f.y.data(), f.cb.data(), f.cr.data(), w, h, 4 * w, w, 6, 0, 0, 1, 32, w / 2);
  cycbcr_ToRGBInt(int0.data(), f.y.data(), f.cb.data(), f.cr.data(), w, h, 4 * w, w, 0, 0, 0, 1, 32, w / 2);
  EXPECT_EQ(fast6, fast0);
  EXPECT_NE(int6, int0);
  // 4:2:2 planar, packed input and other pixel sizes never take it.
  EXPECT_EQ(cycbcr_ToRGB(a.data(), f.y.data(), f.y.data(), f.y.data(), w, h, 4 * w + 16, w, 0, 0, 1, 1, 32, 8),
            uint64_t{w} * h * 4);
  EXPECT_EQ(cycbcr_ToRGB(b.data(), a.data() + 1, a.data(), a.data() + 2, w, h, 4 * w + 16, w, 0, 0, 0, 0, 32, 8),
            uint64_t{w} * h * 4);
  EXPECT_EQ(cycbcr_ToRGB(a.data(), f.y.data(), f.cb.data(), f.cr.data(), w, h, 3 * w + 16, w, 0, 0, 0, 1, 24, 8),
            uint64_t{w} * h * 3);
}

// UYVY to 32 bits: which path each level and id take.
enum class Path { General, Rounded };

uint32_t LevelOf(int force) {
  if (force >= 0) SelectSimdLevel(static_cast<uint32_t>(force));
  return static_cast<uint32_t>(CurrentSimdLevel());
}

TEST(UyvyToRgb32, PathChoiceByLevelOrderAndId) {
  const uint32_t w = 12, h = 3, ss = 2 * w, ds = 4 * w + 8;
  const std::vector<uint8_t> src = test::RandomBytes(size_t{ss} * h, 11);
  const struct {
    uint32_t mask;
    int force;  // -1: the level the mask selects
    uint32_t level, matrix, flags;
    Path path;
  } cases[] = {
      {test::kMaskSse41, -1, 4, 1, 0, Path::Rounded},   {test::kMaskSse41, -1, 4, 3, 2, Path::Rounded},
      {test::kMaskSse41, -1, 4, 5, 0x8000, Path::Rounded}, {test::kMaskSse41, -1, 4, 7, 1, Path::Rounded},
      {test::kMaskSse41, -1, 4, 99, 0, Path::Rounded},  {test::kMaskSse41, -1, 4, 0, 0, Path::General},
      {test::kMaskSse41, -1, 4, 4, 2, Path::General},   {test::kMaskSse2, -1, 2, 1, 3, Path::Rounded},
      {test::kMaskNone, -1, 1, 1, 0, Path::Rounded},    {test::kMaskNone, -1, 1, 1, 0x8000, Path::Rounded},
      {test::kMaskNone, -1, 1, 1, 2, Path::General},    {test::kMaskSse41, 0, 0, 5, 0, Path::General},
      {test::kMaskSse2 | (1u << 7), 6, 6, 7, 0, Path::Rounded},
      {test::kMaskAvx2, -1, 5, 1, 0, Path::General},
  };
  for (const auto& c : cases) {
    if (c.level == 5 && !test::HostHasAvx2()) continue;
    SCOPED_TRACE(testing::Message() << "level " << c.level << " id " << c.matrix << " flags " << c.flags);
    test::ScopedFeatures features(c.mask);
    SimdGuard();
    ASSERT_EQ(LevelOf(c.force), c.level);
    test::GuardedBuffer dst(size_t{h} * ds);
    dst.Fill(0xCD);
    const uint32_t result = cycbcr_uyvy_to_rgb32(dst.data(), src.data(), w, h, ds, ss, c.matrix, c.flags);
    ASSERT_EQ(CurrentSimdLevel(), static_cast<int32_t>(c.level));
    EXPECT_TRUE(dst.GuardsIntact());
    if (c.path == Path::General) {
      std::vector<uint8_t> want(dst.size(), 0xCD);
      EXPECT_EQ(result, cycbcr_ToRGBInt(want.data(), src.data() + 1, src.data(), src.data() + 2, w, h, ds, ss,
                                        c.matrix, c.flags, 1, 0, 32, ss / 2));
      EXPECT_EQ(dst.Bytes(), want);
      continue;
    }
    // Rounded path: BT.709 for ids with bit 2, else BT.601; alpha 0; B G R A, or
    // R G B A for flags exactly 2; rows top-down at the strides whatever the flags.
    EXPECT_EQ(result, h * ds);
    const int set = (c.matrix & 4) ? 2 : 0;
    const bool rgba = c.flags == 2;
    for (uint32_t r = 0; r < h; ++r) {
      for (uint32_t x = 0; x < w; ++x) {
        const uint8_t* g = src.data() + size_t{r} * ss + x / 2 * 4;
        RefRgb want = test::RefFastDecode(set, g[(x & 1) ? 3 : 1], g[0], g[2]);
        if (rgba) std::swap(want.r, want.b);
        ExpectPixel(dst.data() + size_t{r} * ds + 4 * x, want, 0, "");
      }
      EXPECT_EQ(dst.data()[size_t{r} * ds + 4 * w], 0xCD);
    }
  }
}

TEST(UyvyToRgb24, RoundedDecodersAndFlagsIgnored) {
  const uint32_t w = 10, h = 3, ss = 2 * w + 4, ds = 3 * w + 5;
  const std::vector<uint8_t> src = test::RandomBytes(size_t{ss} * h, 21);
  for (uint32_t matrix : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 12u}) {
    test::GuardedBuffer dst(size_t{h} * ds);
    dst.Fill(0xCD);
    EXPECT_EQ(cycbcr_uyvy_to_rgb24(dst.data(), src.data(), w, h, ds, ss, matrix, 0), h * ds);
    EXPECT_TRUE(dst.GuardsIntact());
    std::vector<uint8_t> flagged(dst.size(), 0xCD);
    cycbcr_uyvy_to_rgb24(flagged.data(), src.data(), w, h, ds, ss, matrix, 0x8001);
    EXPECT_EQ(flagged, dst.Bytes()) << "flags must not matter";
    for (uint32_t r = 0; r < h; ++r) {
      for (uint32_t x = 0; x < w; ++x) {
        const uint8_t* g = src.data() + size_t{r} * ss + x / 2 * 4;
        // Bit 2: BT.709 of the UYVY samples. Otherwise the bytes are read as
        // Y0 Cr Y1 Cb: the chroma byte is taken for luma and so on.
        const RefRgb want = (matrix & 4) ? test::RefFastDecode(2, g[(x & 1) ? 3 : 1], g[0], g[2])
                                         : test::RefFastDecode(0, g[(x & 1) ? 2 : 0], g[3], g[1]);
        const uint8_t* p = dst.data() + size_t{r} * ds + 3 * x;
        ASSERT_NEAR(p[0], want.r, 1) << matrix << " " << r << " " << x;
        ASSERT_NEAR(p[1], want.g, 1);
        ASSERT_NEAR(p[2], want.b, 1);
      }
      EXPECT_EQ(dst.data()[size_t{r} * ds + 3 * w], 0xCD);
    }
  }
}

TEST(ToRgbPlanarFast, UyvyIds3And5SplitTheRoundedBt709Pixels) {
  const uint32_t w = 14, h = 3, ds = w + 2;
  const std::vector<uint8_t> src = test::RandomBytes(size_t{2 * w} * h, 31);
  std::vector<uint8_t> rgb(size_t{3 * w} * h);
  cycbcr_uyvy_to_rgb24(rgb.data(), src.data(), w, h, 3 * w, 2 * w, 5, 0);
  for (uint32_t matrix : {3u, 5u}) {
    std::vector<uint8_t> g(size_t{h} * ds, 7), r(g), b(g);
    uint8_t* const planes[3] = {g.data(), r.data(), b.data()};
    const uint8_t* s = src.data();
    EXPECT_EQ(cycbcr_ToRGBPlanar(planes, s + 1, s, s + 2, w, h, ds, 2 * w, matrix, 0, 1, 0, w), 3ull * h * ds);
    for (uint32_t row = 0; row < h; ++row) {
      for (uint32_t x = 0; x < w; ++x) {
        const size_t at = size_t{row} * ds + x, in = (size_t{row} * w + x) * 3;
        ASSERT_EQ(r[at], rgb[in]);
        ASSERT_EQ(g[at], rgb[in + 1]);
        ASSERT_EQ(b[at], rgb[in + 2]);
      }
      EXPECT_EQ(g[size_t{row} * ds + w], 7);
    }
  }
}

}  // namespace
}  // namespace zelt
