// Coefficient tables against the published luma weights of BT.601, BT.709 and
// BT.2020, and the per-pixel decoding rules against worked values.
#include <gtest/gtest.h>

#include <cmath>

#include "core/matrices.h"

namespace zelt {
namespace {

struct Standard {
  double kr, kb;
};
constexpr Standard kBt601{0.299, 0.114};
constexpr Standard kBt709{0.2126, 0.0722};
constexpr Standard kBt2020{0.2627, 0.0593};

// Real-valued decoding weights: luma factor and the four chroma weights.
struct Weights {
  double yScale, crToR, cbToG, crToG, cbToB;
};

// Video range scales luma by 255/219 and chroma by 255/224. The full-range sets of
// BT.601 and BT.709 (ids 1, 3, 5) keep the video-range chroma relative to luma
// (chroma 219/224), while BT.2020 full range (id 7) is the true full-range set.
Weights Expected(Standard s, double lumaScale, double chromaScale) {
  const double kg = 1.0 - s.kr - s.kb;
  return {lumaScale, 2 * (1 - s.kr) * chromaScale, 2 * s.kb * (1 - s.kb) / kg * chromaScale,
          2 * s.kr * (1 - s.kr) / kg * chromaScale, 2 * (1 - s.kb) * chromaScale};
}

constexpr double kVideoLuma = 255.0 / 219.0, kVideoChroma = 255.0 / 224.0, kFullChroma = 219.0 / 224.0;

struct DecodeCase {
  uint32_t id;
  Standard standard;
  double lumaScale, chromaScale;
  int32_t yOffset;
  double tolerance;  // ids 2 and 3 are rounded to three decimals
};

const DecodeCase kDecodeCases[] = {
    {0, kBt601, kVideoLuma, kVideoChroma, 16, 0.0015},   {1, kBt601, 1.0, kFullChroma, 0, 0.0015},
    {2, kBt709, kVideoLuma, kVideoChroma, 16, 0.003},    {3, kBt709, 1.0, kFullChroma, 0, 0.003},
    {4, kBt709, kVideoLuma, kVideoChroma, 16, 0.003},    {5, kBt709, 1.0, kFullChroma, 0, 0.003},
    {6, kBt2020, kVideoLuma, kVideoChroma, 16, 0.0015},  {7, kBt2020, 1.0, 1.0, 0, 0.0015},
};

void ExpectNear(const YcbcrToRgbMatrix& m, const Weights& w, double scale, double tol, const char* table) {
  SCOPED_TRACE(table);
  EXPECT_NEAR(m.yScale / scale, w.yScale, tol);
  EXPECT_NEAR(m.crToR / scale, w.crToR, tol);
  EXPECT_NEAR(m.cbToG / scale, w.cbToG, tol);
  EXPECT_NEAR(m.crToG / scale, w.crToG, tol);
  EXPECT_NEAR(m.cbToB / scale, w.cbToB, tol);
}

TEST(Matrices, DecodeTablesFollowThePublishedStandards) {
  for (const DecodeCase& c : kDecodeCases) {
    SCOPED_TRACE(testing::Message() << "id " << c.id);
    const Weights w = Expected(c.standard, c.lumaScale, c.chromaScale);
    ExpectNear(YcbcrToRgb10000(c.id), w, 10000.0, c.tolerance, "scale 10000");
    ExpectNear(YcbcrToRgb10240(c.id), w, 10240.0, c.tolerance, "scale 10240");
    ExpectNear(YcbcrToRgb10Bit8(c.id), w, 2500.0, c.tolerance + 0.002, "10-bit in, 8-bit out");
    const double scale16 = c.id == 4 ? 256.0 * 10000.0 : 256.39 * 10000.0;
    ExpectNear(YcbcrToRgb16(c.id), w, scale16, c.tolerance + 0.001, "16-bit out");
    EXPECT_EQ(YcbcrToRgb10000(c.id).yOffset, c.yOffset);
    EXPECT_EQ(YcbcrToRgb16(c.id).yOffset, c.yOffset);
    EXPECT_EQ(YcbcrToRgb10240(c.id).yOffset, c.yOffset * 4);
    EXPECT_EQ(YcbcrToRgb10Bit8(c.id).yOffset, c.yOffset * 4);
  }
}

bool Same(const YcbcrToRgbMatrix& a, const YcbcrToRgbMatrix& b) {
  return a.yOffset == b.yOffset && a.yScale == b.yScale && a.crToR == b.crToR && a.cbToG == b.cbToG &&
         a.crToG == b.crToG && a.cbToB == b.cbToB;
}

TEST(Matrices, OnlyTheSixteenBitTableTellsIds2And4Apart) {
  EXPECT_TRUE(Same(YcbcrToRgb10000(2), YcbcrToRgb10000(4)));
  EXPECT_TRUE(Same(YcbcrToRgb10000(3), YcbcrToRgb10000(5)));
  EXPECT_TRUE(Same(YcbcrToRgb10240(2), YcbcrToRgb10240(4)));
  EXPECT_FALSE(Same(YcbcrToRgb16(2), YcbcrToRgb16(4)));
  EXPECT_TRUE(Same(YcbcrToRgb16(3), YcbcrToRgb16(5)));
  const YcbcrToRgbMatrix& m4 = YcbcrToRgb16(4);
  const YcbcrToRgbMatrix& b4 = YcbcrToRgb10000(4);
  EXPECT_EQ(m4.yScale, b4.yScale * 256);
  EXPECT_EQ(m4.cbToB, b4.cbToB * 256);
  EXPECT_EQ(YcbcrToRgb10000(1).crToG, 6979);  // not 6980
}

TEST(Matrices, UnknownIdsActAsIdZero) {
  for (uint32_t id : {8u, 11u, 99u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(&YcbcrToRgb10000(id), &YcbcrToRgb10000(0)) << id;
    EXPECT_EQ(&YcbcrToRgb16(id), &YcbcrToRgb16(0)) << id;
    EXPECT_EQ(&YcbcrToRgb10240(id), &YcbcrToRgb10240(0)) << id;
  }
  // Ids 8..10 exist only for encoding.
  for (uint32_t id : {8u, 9u, 10u}) EXPECT_NE(&RgbToYcbcrScale40000(id), &RgbToYcbcrScale40000(0)) << id;
  for (uint32_t id : {11u, 99u, 0xFFFFFFFFu}) EXPECT_EQ(&RgbToYcbcrScale40000(id), &RgbToYcbcrScale40000(0)) << id;
}

TEST(Matrices, Scale40000EncodingTable) {
  const RgbToYcbcr40000& id0 = RgbToYcbcrScale40000(0);
  EXPECT_EQ(id0.yR, 10280);
  EXPECT_EQ(id0.yG, 20160);
  EXPECT_EQ(id0.yB, 3920);
  const RgbToYcbcr40000& id4 = RgbToYcbcrScale40000(4);  // truncated from 7282.72, 24497.08, 2473.16
  EXPECT_EQ(id4.yR, 7282);
  EXPECT_EQ(id4.yG, 24497);
  EXPECT_EQ(id4.yB, 2473);
  // Luma weights of the standard sets: Kr, Kg, Kb (times 219/255 in video range),
  // at 10-bit output scale (x4 over the 8-bit weight).
  const struct {
    uint32_t id;
    Standard s;
    bool video;
    double tol;
  } cases[] = {{0, kBt601, true, 0.002}, {1, kBt601, false, 0.002}, {2, kBt709, true, 0.004},
               {3, kBt709, false, 0.004}, {4, kBt709, true, 0.002},  {5, kBt709, false, 0.002},
               {6, kBt2020, true, 0.002}, {7, kBt2020, false, 0.002}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "id " << c.id);
    const RgbToYcbcr40000& m = RgbToYcbcrScale40000(c.id);
    EXPECT_NEAR(m.yR / 40000.0, c.s.kr * (c.video ? 219.0 / 255.0 : 1.0), c.tol);
    EXPECT_NEAR(m.yG / 40000.0, (1 - c.s.kr - c.s.kb) * (c.video ? 219.0 / 255.0 : 1.0), c.tol);
    EXPECT_NEAR(m.yB / 40000.0, c.s.kb * (c.video ? 219.0 / 255.0 : 1.0), c.tol);
    EXPECT_EQ(m.yOffset, c.video ? 16 : 0);
    EXPECT_LT(m.cbR, 0);
    EXPECT_LT(m.cbG, 0);
    EXPECT_LT(m.crG, 0);
    EXPECT_LT(m.crB, 0);
  }
}

struct Decode8Case {
  uint32_t id;
  int y, cb, cr;
  Rgb8 expected;
};

TEST(Matrices, DecodePixel8WorkedValues) {
  const Decode8Case cases[] = {
      {0, 16, 128, 128, {0, 0, 0}},
      {0, 235, 128, 128, {254, 254, 254}},  // 219 * 11640 = 2549160 truncates to 254
      {0, 0, 128, 128, {0, 0, 0}},          // negative, clamped
      {0, 255, 128, 128, {255, 255, 255}},  // 278 clamped
      {1, 255, 128, 128, {255, 255, 255}},
      {99, 235, 128, 128, {254, 254, 254}},
      // Red: Y 81 Cb 90 Cr 240 (BT.601 video) -> R = (65*11640 + 112*15960) / 10000 = 254.4;
      // G = (756600 - (-38)*3920 - 112*8129) / 10000 = 0.99 -> 0 (truncated, not rounded);
      // B = (756600 - 38*20170) / 10000 = -0.1 -> 0.
      {0, 81, 90, 240, {254, 0, 0}},
  };
  for (const auto& c : cases) {
    const YcbcrToRgbMatrix& m = YcbcrToRgb10000(c.id);
    const Rgb8 p = DecodePixel8(m, c.y, MakeChromaTerms(m, c.cb - 128, c.cr - 128));
    EXPECT_EQ(p.r, c.expected.r) << c.id << " " << c.y;
    EXPECT_EQ(p.g, c.expected.g) << c.id << " " << c.y;
    EXPECT_EQ(p.b, c.expected.b) << c.id << " " << c.y;
  }
}

TEST(Matrices, SixteenBitDecodeBiasesRedAndBlueByOneUnit) {
  struct {
    uint32_t id;
    int y;
    Rgb16 expected;
  } cases[] = {
      // 128 * 2563900 = 328179200; R, B: (+5000 +5000) / 10000 = 32818; G: (+5000 -5000) -> 32817.
      {1, 128, {32818, 32817, 32818}},
      {1, 255, {65380, 65379, 65380}},
      {2, 235, {65358, 65357, 65358}},  // 219 * 2984379 = 653579001
      {4, 235, {65259, 65258, 65259}},  // 219 * 2979840 = 652584960: ids 2 and 4 differ here
      {0, 0, {0, 0, 0}},
  };
  for (const auto& c : cases) {
    const YcbcrToRgbMatrix& m = YcbcrToRgb16(c.id);
    const Rgb16 p = DecodePixel16(m, c.y, MakeChromaTerms(m, 0, 0));
    EXPECT_EQ(p.r, c.expected.r) << c.id << " " << c.y;
    EXPECT_EQ(p.g, c.expected.g) << c.id << " " << c.y;
    EXPECT_EQ(p.b, c.expected.b) << c.id << " " << c.y;
  }
  // Saturation at the top: full-range white with strong chroma.
  const YcbcrToRgbMatrix& m = YcbcrToRgb16(1);
  EXPECT_EQ(DecodePixel16(m, 255, MakeChromaTerms(m, 127, 127)).r, 65535);
  EXPECT_EQ(DecodePixel16(m, 0, MakeChromaTerms(m, -128, -128)).r, 0);
}

TEST(Matrices, TenBitDecodeGivesSixteenBitScale) {
  const YcbcrToRgbMatrix& full = YcbcrToRgb10240(1);
  EXPECT_EQ(DecodePixel10240(full, 1023, MakeChromaTerms(full, 0, 0)).g, 1023 * 64);
  const YcbcrToRgbMatrix& video = YcbcrToRgb10240(0);
  EXPECT_EQ(DecodePixel10240(video, 64, MakeChromaTerms(video, 0, 0)).r, 0);
  EXPECT_EQ(DecodePixel10240(video, 940, MakeChromaTerms(video, 0, 0)).b, 65256);  // 876 * 11919 / 160 = 65256.5
  EXPECT_EQ(DecodePixel10240(video, 1023, MakeChromaTerms(video, 511, 511)).r, 65535);
}

}  // namespace
}  // namespace zelt
