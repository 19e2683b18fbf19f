// 8-bit resampling: 2vuy <-> 3-byte 4:4:4 (chroma repeated, chroma dropped) and
// I420 to 2vuy against the I420 sampling grid.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "support/buffers.h"
#include "zelt/direct.h"

namespace zelt {
namespace {

TEST(Resample, WorkedGroups) {
  const std::vector<uint8_t> pair = {0x80, 0x10, 0x90, 0xEB};
  std::vector<uint8_t> px(6, 0);
  zlt_yuv422_yuv444_8(px.data(), pair.data(), 2, 1);
  EXPECT_EQ(px, (std::vector<uint8_t>{0x10, 0x80, 0x90, 0xEB, 0x80, 0x90}));

  const std::vector<uint8_t> two = {0x10, 0x70, 0x90, 0xEB, 0x60, 0xA0};
  std::vector<uint8_t> out(4, 0);
  zlt_yuv444_yuv422_8(out.data(), two.data(), 2, 1);
  EXPECT_EQ(out, (std::vector<uint8_t>{0x70, 0x10, 0x90, 0xEB}));
}

// Pixel counts (width x height) and the bytes each direction writes: whole pairs,
// so an odd count writes half a pair more; a zero count writes nothing.
TEST(Resample, WholeGroupsRepeatAndDropChroma) {
  struct Case {
    uint32_t w, h;
  };
  for (const Case& c : std::initializer_list<Case>{{0, 5}, {7, 0}, {1, 1}, {2, 1}, {3, 1}, {7, 3}, {1920, 2}, {1279, 1}}) {
    const size_t pixels = size_t{c.w} * c.h, pairs = (pixels + 1) / 2;

    // 4:2:2 -> 4:4:4: pairs * 6 bytes written, 3 past the picture when odd.
    const std::vector<uint8_t> yuv = test::RandomBytes(pairs * 4, c.w + c.h);
    test::GuardedBuffer dst444(pixels * 3);
    dst444.Fill(0x5A);
    test::GuardedBuffer src422(pairs * 4);
    if (!yuv.empty()) std::memcpy(src422.data(), yuv.data(), yuv.size());
    zlt_yuv422_yuv444_8(dst444.data(), src422.data(), c.w, c.h);
    EXPECT_TRUE(dst444.GuardsIntact(pixels % 2 ? 3 : 0)) << c.w << "x" << c.h;
    EXPECT_TRUE(src422.GuardsIntact());
    for (size_t p = 0; p < pixels; ++p) {
      const uint8_t* g = &yuv[4 * (p / 2)];
      const uint8_t* q = dst444.data() + 3 * p;
      EXPECT_EQ(q[0], g[p % 2 ? 3 : 1]) << "Y of pixel " << p;
      EXPECT_EQ(q[1], g[0]) << "Cb of pixel " << p;
      EXPECT_EQ(q[2], g[2]) << "Cr of pixel " << p;
    }

    // 4:4:4 -> 4:2:2: pairs * 4 bytes written; even pixels' chroma kept, odd dropped.
    const std::vector<uint8_t> px = test::RandomBytes(pixels * 3 + 1, c.w * 3 + c.h);
    test::GuardedBuffer src444(pixels * 3 + 1), dst422(pairs * 4);
    std::memcpy(src444.data(), px.data(), px.size());
    dst422.Fill(0x5A);
    zlt_yuv444_yuv422_8(dst422.data(), src444.data(), c.w, c.h);
    EXPECT_TRUE(dst422.GuardsIntact() && src444.GuardsIntact()) << c.w << "x" << c.h;
    for (size_t j = 0; j < pixels / 2; ++j) {
      const uint8_t* p0 = &px[6 * j];
      const uint8_t* g = dst422.data() + 4 * j;
      EXPECT_EQ(std::vector<uint8_t>(g, g + 4), (std::vector<uint8_t>{p0[1], p0[0], p0[2], p0[3]})) << "pair " << j;
    }
  }
}

// The I420 grid: pixel (x, y) takes luma y * w + x, chroma (y / 2) * (w / 2) + x / 2.
std::vector<uint8_t> I420To2vuy(const std::vector<uint8_t>& i420, uint32_t w, uint32_t h, uint32_t pitch,
                                std::vector<uint8_t> dst) {
  const uint8_t* cb = i420.data() + w * h;
  const uint8_t* cr = cb + w * h / 4;
  for (uint32_t y = 0; y < h; ++y) {
    for (uint32_t x = 0; x < w; x += 2) {
      uint8_t* d = &dst[size_t{y} * pitch + 2 * x];
      d[0] = cb[(y / 2) * (w / 2) + x / 2];
      d[1] = i420[size_t{y} * w + x];
      d[2] = cr[(y / 2) * (w / 2) + x / 2];
      d[3] = i420[size_t{y} * w + x + 1];
    }
  }
  return dst;
}

TEST(I420To2vuy, MatchesTheSamplingGridForStridesAndHeightSigns) {
  struct Case {
    uint32_t w;
    int32_t h;
    uint32_t dstStride, pitch;
  };
  const Case cases[] = {
      {8, 4, 0, 16},           {8, 4, 0xFFFFFFFFu, 16}, {8, 4, 20, 20}, {8, -4, 0, 16},
      {720, 6, 1440, 1440},    {64, 5, 200, 200},       {2, 2, 1, 1},  // a stride of 1: rows overlap
  };
  for (const Case& c : cases) {
    const uint32_t rows = static_cast<uint32_t>(std::abs(c.h));
    // Odd row counts read a little past the chroma planes.
    const std::vector<uint8_t> src = test::RandomBytes(size_t{c.w} * rows * 3 / 2 + c.w, c.w + rows);
    const size_t size = size_t{c.pitch} * (rows - 1) + 2 * c.w;
    const std::vector<uint8_t> before(size, 0x5A);
    std::vector<uint8_t> want = before;
    if (c.pitch >= 2 * c.w) want = I420To2vuy(src, c.w, rows, c.pitch, before);
    test::GuardedBuffer d(size, 64, 0x5A);
    zlt_i420_2vuy(d.data(), src.data(), c.w, c.h, c.dstStride);
    EXPECT_TRUE(d.GuardsIntact()) << c.w << "x" << c.h;
    if (c.pitch >= 2 * c.w) {
      EXPECT_EQ(d.Bytes(), want) << c.w << "x" << c.h << " stride " << c.dstStride << ": "
                                 << test::FirstDifference(d.Bytes(), want);
    } else {
      // Overlapping rows: each row's first pair is written after the row above's,
      // so the last row comes out whole.
      const std::vector<uint8_t> full = I420To2vuy(src, c.w, rows, 2 * c.w, std::vector<uint8_t>(2 * c.w * rows));
      EXPECT_EQ(0, std::memcmp(d.data() + size - 2 * c.w, &full[2 * c.w * (rows - 1)], 2 * c.w));
    }
  }
}

TEST(I420To2vuy, OddWidthWalksLumaContiguously) {
  // Width 3: two pairs per row, four luma bytes per row; row r starts at luma r * 4,
  // one byte further into the plane than the picture's row r * 3.
  const uint32_t w = 3;
  const int32_t h = 2;
  std::vector<uint8_t> src(64, 0);
  for (size_t i = 0; i < src.size(); ++i) src[i] = static_cast<uint8_t>(i);
  // Cb at 6, Cr at 6 + 6/4 = 7.
  // (A stride of 0 would put the rows 2 x width = 6 bytes apart, less than the
  // 8 bytes a row of whole pairs takes.)
  std::vector<uint8_t> dst(16, 0xEE);
  zlt_i420_2vuy(dst.data(), src.data(), w, h, 8);
  EXPECT_EQ(dst, (std::vector<uint8_t>{6, 0, 7, 1, 7, 2, 8, 3,  // row 0: chroma row 0 (c = 0)
                                       6, 4, 7, 5, 7, 6, 8, 7}));  // row 1 shares chroma row 0
}

TEST(I420To2vuy, NoRowsReturnsStridePlusOne) {
  std::vector<uint8_t> src(16, 1), dst(16, 0xEE);
  EXPECT_EQ(zlt_i420_2vuy(dst.data(), src.data(), 4, 0, 1440), 1441u);
  EXPECT_EQ(zlt_i420_2vuy(dst.data(), src.data(), 4, 0, 0xFFFFFFFFu), 0u);
  EXPECT_EQ(dst, std::vector<uint8_t>(16, 0xEE));
}

}  // namespace
}  // namespace zelt
