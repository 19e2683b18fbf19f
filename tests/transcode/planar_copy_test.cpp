// Planar-to-planar routes, the planar copies and the Cb/Cr asymmetry between the
// 4:2:0 layouts and P422.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/buffers.h"
#include "support/paths.h"
#include "core/formats.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_planar.h"

namespace zelt {
namespace {

using Fn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);

uint32_t Transcode(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss,
                   uint32_t dstCode, uint32_t srcCode) {
  return cycbcr_transcode(dst, const_cast<uint8_t*>(src), w, h, ds, ss, 0u, 0u, dstCode, srcCode);
}
uint32_t Yv12ToP422(uint8_t* dst, const uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss) {
  return Transcode(dst, src, w, h, ds, ss, kCodeP422, kCodeYV12);
}

struct Case {
  const char* name;
  Fn fn;
  bool src422, dst422;
  int fromPlane[2];  // source plane (1 or 2) of destination planes 1 and 2
};

// Planes are numbered 1 (second in the frame) and 2 (third). Between the 4:2:0
// layouts Cb lands on Cb; between 4:2:0 and P422 the P422 second plane counts as Cr.
const Case kCases[] = {
    {"i420_to_i420", cycbcr_i420_to_i420, false, false, {1, 2}},
    {"yv12_to_yv12", cycbcr_yv12_to_yv12, false, false, {1, 2}},
    {"i420_to_yv12", cycbcr_i420_to_yv12, false, false, {2, 1}},
    {"yv12_to_i420", cycbcr_yv12_to_i420, false, false, {2, 1}},
    {"i420_to_p422", cycbcr_i420_to_p422, false, true, {2, 1}},
    {"yv12_to_p422", Yv12ToP422, false, true, {1, 2}},
    {"p422_to_i420", cycbcr_p422_to_i420, true, false, {2, 1}},
    {"p422_to_yv12", cycbcr_p422_to_yv12, true, false, {1, 2}},
    {"p422_to_p422", cycbcr_p422_to_p422, true, true, {1, 2}},
};

TEST(PlanarToPlanar, PlaneOrderLineDoublingAndDroppingResults) {
  struct Geometry {
    uint32_t w, h, ds, ss;
  };
  const Geometry geometries[] = {{8, 8, 8, 8}, {6, 4, 6, 6}, {10, 6, 10, 10}, {7, 6, 7, 7}, {12, 4, 14, 12}, {12, 4, 12, 16}};
  uint32_t seed = 7;
  for (const auto& c : kCases) {
    for (const auto& g : geometries) {
      SCOPED_TRACE(::testing::Message() << c.name << " " << g.w << "x" << g.h);
      const size_t sLuma = size_t{g.h} * g.ss, dLuma = size_t{g.h} * g.ds;
      const size_t sPlane[3] = {0, sLuma, sLuma + (c.src422 ? sLuma / 2 : sLuma / 4)};
      const size_t dPlane[3] = {0, dLuma, dLuma + (c.dst422 ? dLuma / 2 : dLuma / 4)};
      const size_t dSize = dLuma + (c.dst422 ? dLuma : dLuma / 2);
      const std::vector<uint8_t> src = test::RandomBytes(size_t{g.h} * std::max(g.ds, g.ss) * 2, seed++);
      test::GuardedBuffer dst(dSize);
      const uint32_t expectedResult = c.dst422 ? g.h * g.ds * 2 : g.h * g.ds * 3 / 2;
      EXPECT_EQ(c.fn(dst.data(), src.data(), g.w, g.h, g.ds, g.ss), expectedResult);
      EXPECT_TRUE(dst.GuardsIntact());
      const uint8_t* d = dst.data();
      if (c.src422 && c.dst422) {
        // Three runs of the destination's sizes; the source chroma planes are
        // placed by the source stride.
        ASSERT_TRUE(std::equal(d, d + dLuma, src.data()));
        ASSERT_TRUE(std::equal(d + dPlane[1], d + dPlane[1] + dLuma / 2, src.data() + sPlane[1]));
        ASSERT_TRUE(std::equal(d + dPlane[2], d + dPlane[2] + dLuma / 2, src.data() + sPlane[2]));
        continue;
      }
      for (uint32_t r = 0; r < g.h; ++r)
        for (uint32_t x = 0; x < g.w; ++x) ASSERT_EQ(d[r * g.ds + x], src[r * g.ss + x]);
      // Destination chroma row k comes from source row k (same subsampling), k/2
      // (4:2:0 to 4:2:2, doubled) or 2k (4:2:2 to 4:2:0, odd rows dropped).
      const uint32_t dRows = c.dst422 ? g.h : g.h / 2;
      for (int p = 1; p <= 2; ++p) {
        for (uint32_t k = 0; k < dRows; ++k) {
          const uint32_t from = c.src422 == c.dst422 ? k : (c.dst422 ? k / 2 : 2 * k);
          for (uint32_t i = 0; i < g.w / 2; ++i)
            ASSERT_EQ(d[dPlane[p] + k * (g.ds / 2) + i], src[sPlane[c.fromPlane[p - 1]] + from * (g.ss / 2) + i])
                << "plane " << p << " row " << k << " sample " << i;
        }
      }
    }
  }
}

// An I420 frame with Cb 64 and Cr 192 becomes P422 with 192 in its second plane;
// the packed routes read that plane as Cb, so the trip to UYVY exchanges the two.
TEST(PlanarToPlanar, ChromaOrderAsymmetryEndToEnd) {
  constexpr uint32_t w = 16, h = 4;
  std::vector<uint8_t> i420(w * h * 3 / 2, 100), yv12(w * h * 3 / 2, 100);
  std::fill(i420.begin() + w * h, i420.begin() + w * h * 5 / 4, 64);
  std::fill(i420.begin() + w * h * 5 / 4, i420.end(), 192);
  std::fill(yv12.begin() + w * h, yv12.begin() + w * h * 5 / 4, 192);
  std::fill(yv12.begin() + w * h * 5 / 4, yv12.end(), 64);
  std::vector<uint8_t> p422(w * h * 2), fromYv12(w * h * 2), uyvy(w * h * 2);
  EXPECT_EQ(Transcode(p422.data(), i420.data(), w, h, w, w, kCodeP422, kCodeI420), w * h * 2);
  EXPECT_EQ(Transcode(fromYv12.data(), yv12.data(), w, h, w, w, kCodeP422, kCodeYV12), w * h * 2);
  EXPECT_EQ(std::vector<uint8_t>(p422.begin() + w * h, p422.begin() + w * h * 3 / 2),
            std::vector<uint8_t>(w * h / 2, 192));
  EXPECT_EQ(std::vector<uint8_t>(p422.begin() + w * h * 3 / 2, p422.end()), std::vector<uint8_t>(w * h / 2, 64));
  EXPECT_EQ(fromYv12, p422);
  Transcode(uyvy.data(), p422.data(), w, h, 2 * w, w, kCodeUYVY, kCodeP422);
  for (size_t g = 0; g < uyvy.size(); g += 4) {
    ASSERT_EQ(uyvy[g], 192);
    ASSERT_EQ(uyvy[g + 2], 64);
  }
  // And back to I420 the asymmetry undoes itself.
  std::vector<uint8_t> back(i420.size());
  Transcode(back.data(), p422.data(), w, h, w, w, kCodeI420, kCodeP422);
  EXPECT_EQ(back, i420);
}

TEST(PlanarCopy, EqualStridesCopyRunsUnequalStridesCopyRows) {
  constexpr uint32_t h = 6;
  struct Strides {
    uint32_t ds, ss;
  };
  for (const auto& s : {Strides{20, 20}, Strides{24, 20}, Strides{20, 26}}) {
    SCOPED_TRACE(::testing::Message() << s.ds << "/" << s.ss);
    const std::vector<uint8_t> src = test::RandomBytes(size_t{h} * s.ss * 2, s.ds + s.ss);
    const size_t dl = size_t{h} * s.ds, sl = size_t{h} * s.ss;
    test::GuardedBuffer dst(dl * 3 / 2, 64, 0xEE);
    uint8_t* d = dst.data();
    // width is not read: pass something absurd
    EXPECT_EQ(cycbcr_planar_copy(d, d + dl, d + dl * 5 / 4, src.data(), src.data() + sl, src.data() + sl * 5 / 4,
                                 0xFFFFFFFFu, h, s.ds, s.ss),
              h * s.ds * 3 / 2);
    EXPECT_TRUE(dst.GuardsIntact());
    const uint32_t n = std::min(s.ds, s.ss);
    for (uint32_t r = 0; r < h; ++r)
      for (uint32_t x = 0; x < s.ds; ++x)
        ASSERT_EQ(d[r * s.ds + x], x < n ? src[r * s.ss + x] : 0xEE) << r << "," << x;
    for (int p = 0; p < 2; ++p) {
      const size_t dp = dl + p * dl / 4, sp = sl + p * sl / 4;
      if (s.ds == s.ss) {
        for (size_t i = 0; i < dl / 4; ++i) ASSERT_EQ(d[dp + i], src[sp + i]);
      } else {
        for (uint32_t k = 0; k < h / 2; ++k)
          for (uint32_t x = 0; x < s.ds / 2; ++x)
            ASSERT_EQ(d[dp + k * (s.ds / 2) + x], x < n / 2 ? src[sp + k * (s.ss / 2) + x] : 0xEE);
      }
    }
  }
}

TEST(Planar422420, FlagsChooseCopyOrResamplingAndTheResult) {
  constexpr uint32_t w = 8, h = 6, stride = 8;
  const size_t luma = w * h;
  const std::vector<uint8_t> src = test::RandomBytes(luma * 2, 77);
  const uint8_t* sy = src.data();
  struct Case {
    uint32_t dst422, src422, result;
  };
  for (const auto& c : {Case{0, 0, 72}, Case{1, 1, 96}, Case{1, 0, 96}, Case{0, 1, 72}}) {
    SCOPED_TRACE(::testing::Message() << "dst422 " << c.dst422 << " src422 " << c.src422);
    const size_t sc = c.src422 ? luma / 2 : luma / 4, dc = c.dst422 ? luma / 2 : luma / 4;
    test::GuardedBuffer dst(luma + 2 * dc);
    uint8_t* d = dst.data();
    EXPECT_EQ(cycbcr_planar_422_420(d, d + luma, d + luma + dc, sy, sy + luma, sy + luma + sc, w, h, stride, stride,
                                    c.dst422, c.src422),
              c.result);
    EXPECT_TRUE(dst.GuardsIntact());
    EXPECT_TRUE(std::equal(d, d + luma, sy));
    for (int p = 0; p < 2; ++p) {  // A to A, B to B
      const uint32_t rows = c.dst422 ? h : h / 2;
      for (uint32_t k = 0; k < rows; ++k) {
        const uint32_t from = c.src422 == c.dst422 ? k : (c.dst422 ? k / 2 : 2 * k);
        EXPECT_TRUE(std::equal(d + luma + p * dc + k * 4, d + luma + p * dc + k * 4 + 4,
                               sy + luma + p * sc + from * 4))
            << "plane " << p << " row " << k;
      }
    }
  }
  // Zero rows: the same formulas, nothing written.
  EXPECT_EQ(cycbcr_planar_422_420(nullptr, nullptr, nullptr, sy, sy, sy, w, 0, stride, stride, 1, 0), 0u);
}

}  // namespace
}  // namespace zelt
