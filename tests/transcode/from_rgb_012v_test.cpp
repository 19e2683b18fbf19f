// RGB to 012v: samples against BT.601/709/2020 computed here from their published
// weights, the group layout read back bit by bit, orders, bottom-up rows, the
// partial last group and the dispatcher route.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/buffers.h"
#include "support/v012_bits.h"
#include "core/formats.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_from_rgb.h"

namespace zelt {
namespace {

struct Standard {
  uint32_t id;
  double kr, kb;
  bool video;
};

// 10-bit Y'CbCr of one 8-bit R'G'B' colour (chroma of a pair of equal pixels).
void Expected(const Standard& s, int r, int g, int b, double* y, double* cb, double* cr) {
  const double kg = 1 - s.kr - s.kb;
  const double Y = (s.kr * r + kg * g + s.kb * b) / 255.0;
  const double pb = (b / 255.0 - Y) / (2 * (1 - s.kb)), pr = (r / 255.0 - Y) / (2 * (1 - s.kr));
  *y = s.video ? 64 + 876 * Y : 1023 * Y;
  *cb = 512 + (s.video ? 896 : 1023) * pb;
  *cr = 512 + (s.video ? 896 : 1023) * pr;
}

TEST(RgbTo012v, SamplesFollowTheStandardsWithinTwoCodes) {
  const Standard standards[] = {{0, 0.299, 0.114, true}, {2, 0.2126, 0.0722, true}, {6, 0.2627, 0.0593, true}};
  const int colours[][3] = {{255, 255, 255}, {0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {191, 191, 0}, {30, 140, 220}};
  for (const Standard& s : standards) {
    for (const auto& c : colours) {
      std::vector<uint8_t> bgra(6 * 4), out(128, 0);
      for (int p = 0; p < 6; ++p) {
        bgra[p * 4] = uint8_t(c[2]);
        bgra[p * 4 + 1] = uint8_t(c[1]);
        bgra[p * 4 + 2] = uint8_t(c[0]);
      }
      EXPECT_EQ(cycbcr_RGB32_to_012v(out.data(), bgra.data(), 6, 1, 0, 24, s.id, 0), 128u);
      double y, cb, cr;
      Expected(s, c[0], c[1], c[2], &y, &cb, &cr);
      for (size_t i = 0; i < 12; ++i) {
        const double want = (i % 2 == 1) ? y : (i % 4 == 0 ? cb : cr);
        EXPECT_NEAR(test::GetV012Sample(out.data(), i), want, 2.0)
            << "matrix " << s.id << " colour " << c[0] << "," << c[1] << "," << c[2] << " sample " << i;
      }
    }
  }
}

TEST(RgbTo012v, OrdersBottomUpAndThePartialGroup) {
  // Two rows of 7 pixels, every pixel different; width 7 leaves a partial second group.
  const uint32_t w = 7, h = 2;
  std::vector<uint8_t> rgba(w * 4 * h);
  for (size_t i = 0; i < rgba.size(); ++i) rgba[i] = uint8_t(i * 37 + 11);
  // The same picture as B,G,R,A (order 0) and as R,G,B,A (order 2) must encode alike.
  std::vector<uint8_t> bgra = rgba;
  for (size_t p = 0; p < w * h; ++p) std::swap(bgra[p * 4], bgra[p * 4 + 2]);
  std::vector<uint8_t> a(2 * 128, 0xEE), b(2 * 128, 0xEE), flipped(2 * 128, 0xEE);
  cycbcr_RGB32_to_012v(a.data(), bgra.data(), w, h, 128, w * 4, 2, 0);
  cycbcr_RGB32_to_012v(b.data(), rgba.data(), w, h, 128, w * 4, 2, 2);
  EXPECT_EQ(a, b);
  cycbcr_RGB32_to_012v(flipped.data(), bgra.data(), w, h, 128, w * 4, 2, 0x8000);
  EXPECT_TRUE(std::equal(a.begin(), a.begin() + 32, flipped.begin() + 128));
  EXPECT_TRUE(std::equal(a.begin() + 128, a.begin() + 160, flipped.begin()));
  // Two whole groups a row; the rest of the 128-byte row is left alone.
  EXPECT_EQ(a[32], 0xEE);
  // Pixels 7..11 of the second group repeat pixel 6: Y6 = Y7 = ... = Y11.
  for (size_t i : {3u, 5u, 7u, 9u, 11u}) EXPECT_EQ(test::GetV012Sample(&a[16], i), test::GetV012Sample(&a[16], 1));
  // Bits 30 and 31 of every word are zero.
  for (size_t word = 0; word < 8; ++word) EXPECT_EQ(a[word * 4 + 3] & 0xC0, 0) << word;
}

TEST(RgbTo012v, PitchIsRaisedAndTheDispatcherRoutesIt) {
  const uint32_t w = 50, h = 3;  // minimum pitch 256
  std::vector<uint8_t> src = test::RandomBytes(w * 4 * h, 3);
  std::vector<uint8_t> direct(256 * h + 64, 0), routed(256 * h + 64, 0);
  EXPECT_EQ(cycbcr_RGB32_to_012v(direct.data(), src.data(), w, h, 100, w * 4, 0, 0), 256u * h);
  EXPECT_EQ(cycbcr_transcode(routed.data(), src.data(), w, h, 0u, w * 4, 0u, 0u, kCodeV210, 0u), 256u * h);
  EXPECT_EQ(direct, routed);
  // 24-bit sources give the same samples as 32-bit ones.
  std::vector<uint8_t> src24(w * 3 * h), out24(direct.size(), 0);
  for (size_t p = 0; p < w * h; ++p)
    for (int k = 0; k < 3; ++k) src24[p * 3 + k] = src[p * 4 + k];
  cycbcr_RGB24_to_012v(out24.data(), src24.data(), w, h, 0, w * 3, 0, 0);
  EXPECT_EQ(out24, direct);
}

}  // namespace
}  // namespace zelt
