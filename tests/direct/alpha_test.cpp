// Alpha and key planes: per-pixel rules, strides and line orders, shown with
// pictures whose lines differ and with buffers the exports share in place.
#include <gtest/gtest.h>

#include <cstring>

#include "support/aligned.h"
#include "support/buffers.h"
#include "support/levels.h"
#include "zelt/direct.h"

namespace zelt {
namespace {

TEST(StripChroma, WorkedPair) {
  std::vector<uint8_t> px = {0x10, 0x50, 0xF0, 0x60}, out(4, 0);
  EXPECT_EQ(zlt_2yuv_strip_chroma(out.data(), 4, px.data(), 4, 2, 1), 0u);
  EXPECT_EQ(out, (std::vector<uint8_t>{0x80, 0x50, 0x80, 0x60}));
}

TEST(StripChroma, EveryPathInPlaceAndDistinct) {
  for (uint32_t w : test::InterestingWidths()) {
    const uint32_t h = 3, ss = 2 * w + 8, ds = 2 * w + 4;
    const std::vector<uint8_t> src = test::RandomBytes(size_t{ss} * h, w);
    for (bool inPlace : {false, true}) {
      const uint32_t stride = inPlace ? ss : ds;
      std::vector<uint8_t> want = inPlace ? src : std::vector<uint8_t>(size_t{ds} * h, 0x33);
      for (uint32_t n = 0; n < h; ++n) {
        for (uint32_t j = 0; j < w / 2; ++j) {
          const uint8_t* s = &src[size_t{n} * ss + 4 * j];
          uint8_t* d = &want[size_t{n} * stride + 4 * j];
          d[0] = 0x80;
          d[1] = s[1];
          d[2] = 0x80;
          d[3] = s[3];
        }
      }
      for (const test::PathResult& r : test::RunEveryLevel([&] {
             test::GuardedBuffer s(src.size()), d(size_t{ds} * h, 64, 0x33);
             std::memcpy(s.data(), src.data(), src.size());
             uint8_t* out = inPlace ? s.data() : d.data();
             zlt_2yuv_strip_chroma(out, static_cast<int32_t>(stride), s.data(), static_cast<int32_t>(ss),
                                   static_cast<int32_t>(w), h);
             EXPECT_TRUE(s.GuardsIntact() && d.GuardsIntact());
             return inPlace ? s.Bytes() : d.Bytes();
           })) {
        EXPECT_EQ(r.bytes, want) << "w=" << w << (inPlace ? " in place" : "") << " [" << r.path
                                 << "]: " << test::FirstDifference(r.bytes, want);
      }
    }
  }
}

TEST(StripChroma, LargeAlignedFrame) {
  const int32_t w = 2048, h = 2100, stride = 2 * w;
  const std::vector<uint8_t> src = test::RandomBytes(size_t(stride) * h, 6);
  std::vector<uint8_t> want = src;
  for (size_t i = 0; i < want.size(); i += 4) want[i] = want[i + 2] = 0x80;
  for (const test::PathResult& r : test::RunEveryPath([&] {
         test::AlignedBytes s(src.size()), d(src.size());
         s.Assign(src);
         zlt_2yuv_strip_chroma(d.data(), stride, s.data(), stride, w, h);
         return d.Bytes();
       })) {
    EXPECT_TRUE(r.bytes == want) << r.path;
  }
}

// Small exports, each on a 3-line picture whose lines differ, against the
// expected bytes spelled out from the layouts.
TEST(KeyPlanes, LumaToPlaneAndBack) {
  // 2vuy, width 5 (two whole pairs; the fifth pixel is not written), stride 12.
  const std::vector<uint8_t> yuv = {
      0x80, 0x11, 0x81, 0x12, 0x82, 0x13, 0x83, 0x14, 0xEE, 0xEE, 0xEE, 0xEE,  //
      0x80, 0x21, 0x81, 0x22, 0x82, 0x23, 0x83, 0x24, 0xEE, 0xEE, 0xEE, 0xEE,  //
      0x80, 0x31, 0x81, 0x32, 0x82, 0x33, 0x83, 0x34, 0xEE, 0xEE, 0xEE, 0xEE,
  };
  std::vector<uint8_t> plane(3 * 6, 0);
  EXPECT_EQ(zlt_2yuv_to_alphay(plane.data(), 6, yuv.data(), 12, 5, 3), 0u);
  EXPECT_EQ(plane, (std::vector<uint8_t>{0x11, 0x12, 0x13, 0x14, 0, 0, 0x21, 0x22, 0x23, 0x24, 0, 0, 0x31, 0x32,
                                         0x33, 0x34, 0, 0}));
  std::vector<uint8_t> one(4, 0);
  zlt_2yuv_to_alphay(one.data(), 4, yuv.data(), 12, 1, 1);  // width 1: no whole pair
  EXPECT_EQ(one, std::vector<uint8_t>(4, 0));
  zlt_2yuv_to_alphay(one.data(), 4, yuv.data(), 12, 4, 0);  // no lines
  EXPECT_EQ(one, std::vector<uint8_t>(4, 0));
}

TEST(KeyPlanes, PlaneTo2vuyIsRightAlignedToTheStrides) {
  // Plane lines 6 bytes apart, 2vuy lines 12 apart, width 4: each line's pairs are
  // read from the last 4 bytes of the plane line and written to the last 8 bytes
  // of the 2vuy line.
  const std::vector<uint8_t> plane = {1, 2, 0x11, 0x12, 0x13, 0x14, 3, 4, 0x21, 0x22, 0x23, 0x24,
                                      5, 6, 0x31, 0x32, 0x33, 0x34};
  std::vector<uint8_t> yuv(36, 0xEE);
  EXPECT_EQ(zlt_alphay_to_2yuv(yuv.data(), 12, plane.data(), 6, 4, 3), 0u);
  std::vector<uint8_t> want(36, 0xEE);
  for (int n = 0; n < 3; ++n) {
    const uint8_t base = static_cast<uint8_t>(0x11 + 0x10 * n);
    const uint8_t pairs[8] = {0x80, base, 0x80, static_cast<uint8_t>(base + 1),
                              0x80, static_cast<uint8_t>(base + 2), 0x80, static_cast<uint8_t>(base + 3)};
    std::memcpy(&want[12 * n + 4], pairs, 8);
  }
  EXPECT_EQ(yuv, want) << test::FirstDifference(yuv, want);
}

TEST(KeyPlanes, PlaneTo2vuyWidensInPlaceBottomLineAndLastPairFirst) {
  // A 6 x 4 plane packed at the start of a buffer becomes 2vuy with twice the
  // stride in the same buffer. Any other order would overwrite plane bytes before
  // reading them.
  const uint32_t w = 6, h = 4;
  std::vector<uint8_t> buf(2 * w * h, 0);
  for (uint32_t i = 0; i < w * h; ++i) buf[i] = static_cast<uint8_t>(i + 1);
  EXPECT_EQ(zlt_alphay_to_2yuv(buf.data(), 2 * w, buf.data(), w, static_cast<int32_t>(w), h), 0u);
  for (uint32_t i = 0; i < w * h; ++i) {
    EXPECT_EQ(buf[2 * i], 0x80) << i;
    EXPECT_EQ(buf[2 * i + 1], i + 1) << i;
  }
}

TEST(KeyPlanes, PlaneToPixelsAndBack) {
  // Plane lines are `width` bytes apart whatever the picture's stride.
  const std::vector<uint8_t> plane = {0x10, 0x20, 0x30, 0x40, 0x50, 0x60};  // 3 x 2
  std::vector<uint8_t> rgba(2 * 16, 0xEE);
  EXPECT_EQ(zlt_alpha_to_rgba(rgba.data(), 16, plane.data(), 999, 3, 2), 0u);
  std::vector<uint8_t> want(2 * 16, 0xEE);
  for (int n = 0; n < 2; ++n)
    for (int x = 0; x < 3; ++x) std::memset(&want[16 * n + 4 * x], plane[3 * n + x], 4);
  EXPECT_EQ(rgba, want);

  // Byte 0 of each pixel back to a plane; the other bytes do not matter.
  for (size_t i = 0; i < rgba.size(); ++i)
    if (i % 4 != 0) rgba[i] = static_cast<uint8_t>(i);
  std::vector<uint8_t> back(6 + 4, 0xEE);
  EXPECT_EQ(zlt_rgba_to_alpha(back.data(), 999, rgba.data(), 16, 3, 2), 0u);
  EXPECT_EQ(back, (std::vector<uint8_t>{0x10, 0x20, 0x30, 0x40, 0x50, 0x60, 0xEE, 0xEE, 0xEE, 0xEE}));

  std::vector<uint8_t> untouched(32, 0xEE);
  zlt_alpha_to_rgba(untouched.data(), 16, plane.data(), 0, 3, 0);
  zlt_rgba_to_alpha(untouched.data(), 0, plane.data(), 16, 3, -1);
  EXPECT_EQ(untouched, std::vector<uint8_t>(32, 0xEE));
}

TEST(KeyPlanes, AddAlphaGoesBottomLineFirst) {
  // 2 x 3 picture of 3-byte pixels, lines 8 bytes apart. Widened into the same
  // buffer one line further down: bottom line first, each line is read before the
  // line above it is written over it.
  const uint32_t w = 2, stride = 8;
  const int32_t h = 3;
  std::vector<uint8_t> buf(stride * (h + 1), 0);
  for (int n = 0; n < h; ++n)
    for (uint32_t i = 0; i < 3 * w; ++i) buf[stride * n + i] = static_cast<uint8_t>(0x10 * (n + 1) + i);
  EXPECT_EQ(zlt_rgba_addalpha(buf.data(), buf.data() + stride, stride, stride, 0xA5, w, h), 0u);
  for (int n = 0; n < h; ++n) {
    for (uint32_t x = 0; x < w; ++x) {
      const uint8_t* p = &buf[stride * (n + 1) + 4 * x];
      const uint8_t b = static_cast<uint8_t>(0x10 * (n + 1) + 3 * x);
      EXPECT_EQ(p[0], b) << n << "," << x;
      EXPECT_EQ(p[1], b + 1) << n << "," << x;
      EXPECT_EQ(p[2], b + 2) << n << "," << x;
      EXPECT_EQ(p[3], 0xA5) << n << "," << x;
    }
  }
}

TEST(KeyPlanes, SetAlphaTouchesOnlyByte3OfWidthPixels) {
  std::vector<uint8_t> pic = test::RandomBytes(2 * 20, 4);  // 4 pixels + 4 bytes padding per line
  std::vector<uint8_t> want = pic;
  for (int n = 0; n < 2; ++n)
    for (int x = 0; x < 4; ++x) want[20 * n + 4 * x + 3] = 0x3C;
  EXPECT_EQ(zlt_rgba_setalpha(pic.data(), 20, 0x3C, 4, 2), 0u);
  EXPECT_EQ(pic, want);
  EXPECT_EQ(zlt_rgba_setalpha(pic.data(), 20, 0x00, 4, 0), 0u);
  EXPECT_EQ(pic, want);
}

}  // namespace
}  // namespace zelt
