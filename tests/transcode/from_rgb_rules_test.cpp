// The encode table against the published BT.601/709/2020 definitions, and the
// integer rounding rules with their deliberate asymmetries.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "core/matrices_encode.h"
#include "zelt/ycbcr_from_rgb.h"

namespace zelt {
namespace {

struct Standard {
  uint32_t id;
  double kr, kb;
  double lumaScale, chromaScale;  // range compression of luma and chroma
  int offset;
  double tolerance;  // in table units (1/1000000)
};

// Video range compresses luma to 219/255 and chroma to 224/255; id 4 is derived
// from the 10-bit ranges 876/1023 and 896/1023. The full-range chroma of ids 1 and
// 3 is stretched a little on purpose: the factor comes from cbB, the other five
// chroma weights must follow it.
const Standard kStandards[] = {
    {0, 0.299, 0.114, 219.0 / 255, 224.0 / 255, 16, 500},     // three decimals
    {1, 0.299, 0.114, 1.0, 0.0, 0, 20},
    {2, 0.2126, 0.0722, 219.0 / 255, 224.0 / 255, 16, 1000},  // three decimals, chroma balanced
    {3, 0.2126, 0.0722, 1.0, 0.0, 0, 600},
    {4, 0.2126, 0.0722, 876.0 / 1023, 896.0 / 1023, 16, 20},  // six decimals
    {5, 0.2126, 0.0722, 1.0, 1.0, 0, 1},
    {6, 0.2627, 0.0593, 219.0 / 255, 224.0 / 255, 16, 10},
    {7, 0.2627, 0.0593, 1.0, 1.0, 0, 5},  // five decimals
};

TEST(EncodeTable, MatchesThePublishedCoefficients) {
  for (const Standard& s : kStandards) {
    const RgbToYcbcrMatrix& m = RgbToYcbcrFor(s.id);
    const double kg = 1 - s.kr - s.kb;
    const double chroma = s.chromaScale != 0 ? s.chromaScale : m.cbB / 500000.0;
    const double want[9] = {s.kr * s.lumaScale,
                            kg * s.lumaScale,
                            s.kb * s.lumaScale,
                            -s.kr / (2 * (1 - s.kb)) * chroma,
                            -kg / (2 * (1 - s.kb)) * chroma,
                            0.5 * chroma,
                            0.5 * chroma,
                            -kg / (2 * (1 - s.kr)) * chroma,
                            -s.kb / (2 * (1 - s.kr)) * chroma};
    const int32_t got[9] = {m.yR, m.yG, m.yB, m.cbR, m.cbG, m.cbB, m.crR, m.crG, m.crB};
    for (int i = 0; i < 9; ++i)
      EXPECT_NEAR(got[i], want[i] * 1e6, s.tolerance + 0.5) << "id " << s.id << " weight " << i;
    EXPECT_EQ(m.yOffset, s.offset) << "id " << s.id;
  }
  // Unknown ids are id 0.
  EXPECT_EQ(&RgbToYcbcrFor(11), &RgbToYcbcrFor(0));
  EXPECT_EQ(&RgbToYcbcrFor(0xFFFFFFFFu), &RgbToYcbcrFor(0));
}

TEST(EncodeRounding, LumaRoundsUpOnlyPastOneHalf) {
  struct Case {
    uint32_t sum;
    int offset;
    int rounded, truncated;
  };
  const Case cases[] = {
      {219045000, 16, 235, 235},  // id 0 white: remainder 45000
      {218362620, 16, 234, 234},  // id 4 white
      {100500000, 16, 116, 116},  // exactly one half stays down
      {100500001, 16, 117, 116},
      {100600000, 0, 101, 100},   // planar second luma: 600000 is dropped
      {250000000, 16, 255, 255},  // only clamped at the top
      {0, 16, 16, 16},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(EncodeLumaRounded(c.sum, c.offset), c.rounded) << c.sum;
    EXPECT_EQ(EncodeLumaTruncated(c.sum, c.offset), c.truncated) << c.sum;
  }
}

// Cb leans: up above +0.45, down below -0.25. Cr is symmetric about one half.
TEST(EncodeRounding, CbThresholdsAreSkewedAgainstCr) {
  struct Case {
    int32_t sum;
    int cb, cr;
  };
  const Case cases[] = {
      {10460000, 139, 138}, {10440000, 138, 138},   {10450000, 138, 138},   {10450001, 139, 138},
      {10500000, 139, 138}, {10500001, 139, 139},   {-10260000, 117, 118},  {-10240000, 118, 118},
      {-10250000, 118, 118}, {-10500000, 117, 118}, {-10500001, 117, 117},  {0, 128, 128},
      {-460000, 127, 128},  {460000, 129, 128},     {200000000, 255, 255},  {-200000000, 0, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(EncodeCb(c.sum), c.cb) << c.sum;
    EXPECT_EQ(EncodeCr(c.sum), c.cr) << c.sum;
  }
}

// Whole pixels through a converter: B, G, R, A in, UYVY or P422 out.
struct Pixel {
  uint8_t b, g, r;
};
std::vector<uint8_t> ToUyvy(Pixel a, Pixel b, uint32_t id) {
  uint8_t src[8] = {a.b, a.g, a.r, 0, b.b, b.g, b.r, 0};
  std::vector<uint8_t> dst(4);
  cycbcr_RGB24_to_uyvy(dst.data(), std::vector<uint8_t>{a.b, a.g, a.r, b.b, b.g, b.r}.data(), 2, 1, 4, 6, id, 0);
  std::vector<uint8_t> dst32(4);
  cycbcr_RGB32_to_yuy2(dst32.data(), src, 2, 1, 4, 8, id, 0);
  EXPECT_EQ(dst32, (std::vector<uint8_t>{dst[1], dst[0], dst[3], dst[2]}));
  return dst;
}

TEST(EncodePixels, WorkedValues) {
  const Pixel white{255, 255, 255}, black{0, 0, 0}, blue{255, 0, 0};
  struct Case {
    const char* what;
    Pixel p;
    uint32_t id;
    std::vector<uint8_t> uyvy;
  };
  const Case cases[] = {
      {"white id 0", white, 0, {128, 235, 128, 235}},
      {"white id 2", white, 2, {128, 235, 128, 235}},
      {"white id 4", white, 4, {128, 234, 128, 234}},
      {"white id 6", white, 6, {128, 235, 128, 235}},
      {"white id 99", white, 99, {128, 235, 128, 235}},
      {"black id 0", black, 0, {128, 16, 128, 16}},
      {"white id 8: weights sum past one, Y clamps", white, 8, {126, 255, 128, 255}},
      {"blue id 9: Cb clamps at 255", blue, 9, {255, 148, 118, 148}},
      {"white id 1: full range", white, 1, {128, 255, 128, 255}},
  };
  for (const Case& c : cases) EXPECT_EQ(ToUyvy(c.p, c.p, c.id), c.uyvy) << c.what;
}

// The second luma of a planar pair is truncated, the first rounded; packed output
// rounds both. Grey 1 under id 0 sums to 859000.
TEST(EncodePixels, PlanarTruncatesTheSecondLumaOnly) {
  const uint8_t grey[8] = {1, 1, 1, 0, 1, 1, 1, 0};
  uint8_t p422[4] = {};
  cycbcr_RGB32_to_p422(p422, grey, 2, 1, 2, 8, 0, 0);
  EXPECT_EQ(p422[0], 17);
  EXPECT_EQ(p422[1], 16);
  uint8_t uyvy[4] = {};
  cycbcr_RGB32_to_yuy2(uyvy, grey, 2, 1, 4, 8, 0, 0);
  EXPECT_EQ(uyvy[0], 17);
  EXPECT_EQ(uyvy[2], 17);
}

}  // namespace
}  // namespace zelt
