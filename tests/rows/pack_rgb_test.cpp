// Packers to RGB: matrix white and black points for every matrix code, colour against
// floating-point BT.601/709, the RGB30 layouts, RGB48 scaling, the rand() dither
// replayed from a seeded generator, flips, zero fill and the vector paths.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>

#include "rows/rows_test_util.h"
#include "support/levels.h"
#include "support/paths.h"
#include "zelt/rows.h"

namespace zelt::test {
namespace {

// ---------------------------------------------------------------- matrices ----

// Matrix code -> the standard it stands for. Codes 1 and 2 expand video range (luma
// 255/219, chroma 255/224); 5 and 6 keep luma and scale chroma by 219/224.
struct Standard {
  double kr, kb, lumaGain, lumaOffset, chromaGain;
};
Standard StandardFor(int32_t code) {
  const Standard bt601video{0.299, 0.114, 255.0 / 219, 16, 255.0 / 224};
  const Standard bt709video{0.2126, 0.0722, 255.0 / 219, 16, 255.0 / 224};
  switch (code & 7) {
    case 1: return bt601video;
    case 5: return {0.299, 0.114, 1.0, 0, 219.0 / 224};
    case 6: return {0.2126, 0.0722, 1.0, 0, 219.0 / 224};
    default: return bt709video;
  }
}

// B, G, R from 8-bit y, cb, cr by the textbook equations.
void IdealBgr(int32_t code, int y, int cb, int cr, double out[3]) {
  const Standard s = StandardFor(code);
  const double kg = 1 - s.kr - s.kb, c = (cr - 128) * s.chromaGain, d = (cb - 128) * s.chromaGain;
  const double l = (y - s.lumaOffset) * s.lumaGain;
  out[0] = l + 2 * (1 - s.kb) * d;
  out[1] = l - 2 * s.kb * (1 - s.kb) / kg * d - 2 * s.kr * (1 - s.kr) / kg * c;
  out[2] = l + 2 * (1 - s.kr) * c;
}

const int32_t kEveryCode[] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 13, 14, -1};

bool FullRangeLuma(int32_t code) { return (code & 7) == 5 || (code & 7) == 6; }

// Planes of one row whose every pixel is (y, cb, cr) in 8-bit codes, stored for `shift`
// with junk in the bits the shift drops.
struct RowPlanes {
  std::vector<uint16_t> y, cr, cb;
  ZeltPlanes planes;
  RowPlanes(size_t width, int y8, int cb8, int cr8, int shift) {
    const uint16_t junk = static_cast<uint16_t>((1u << shift) - 1);
    auto put = [&](int v) { return static_cast<uint16_t>((v << shift) | junk); };
    y.assign(width + 2, put(y8));
    cr.assign(width / 2 + 2, put(cr8));
    cb.assign(width / 2 + 2, put(cb8));
    planes = {{y.data(), cr.data(), cb.data()}};
  }
};

TEST(MatrixPackers, WhiteAndBlackForEveryCode) {
  for (int32_t code : kEveryCode) {
    for (int shift : {0, 2, 8}) {
      SCOPED_TRACE("code " + std::to_string(code) + " shift " + std::to_string(shift));
      // Video white stays one code short of full scale because the packers truncate.
      const uint8_t white = FullRangeLuma(code) ? 235 : 254;
      const uint8_t black = FullRangeLuma(code) ? 16 : 0;
      for (auto [y8, expect] : {std::pair{235, white}, std::pair{16, black}}) {
        RowPlanes p(8, y8, 128, 128, shift);
        std::vector<uint8_t> rgb24(24), rgb32(32);
        zeltUnpacked16sRowToRGB24(&p.planes, nullptr, rgb24.data(), 8, shift, 7, code);
        zeltUnpacked16sRowToRGB32(&p.planes, nullptr, rgb32.data(), 8, shift, 8, code, 0x5A);
        EXPECT_EQ(rgb24, std::vector<uint8_t>(24, expect));
        for (int px = 0; px < 8; ++px) {
          EXPECT_EQ(rgb32[4 * px], expect);
          EXPECT_EQ(rgb32[4 * px + 1], expect);
          EXPECT_EQ(rgb32[4 * px + 2], expect);
          EXPECT_EQ(rgb32[4 * px + 3], 0x5A);
        }
      }
    }
  }
}

TEST(MatrixPackers, ColoursFollowTheStandards) {
  std::mt19937 gen(4);
  for (int32_t code : {1, 2, 5, 6}) {
    for (int i = 0; i < 2000; ++i) {
      const int y = 16 + gen() % 220, cb = 16 + gen() % 225, cr = 16 + gen() % 225;
      RowPlanes p(2, y, cb, cr, 0);
      uint8_t bgr[6];
      zeltUnpacked16sRowToRGB24(&p.planes, nullptr, bgr, 2, 0, 7, code);
      double ideal[3];
      IdealBgr(code, y, cb, cr, ideal);
      for (int c = 0; c < 3; ++c) {
        const double expect = std::clamp(ideal[c], 0.0, 255.0);
        ASSERT_NEAR(bgr[c], expect, 2.0) << "code " << code << " y " << y << " cb " << cb << " cr " << cr << " ch " << c;
        ASSERT_EQ(bgr[c], bgr[3 + c]);
      }
    }
  }
}

TEST(MatrixPackers, FormatGateAndOddWidth) {
  RowPlanes p(4, 120, 90, 200, 0);
  for (int32_t format : {0, 6, 8, 9}) {
    Guarded<uint8_t> dst(12);
    zeltUnpacked16sRowToRGB24(&p.planes, nullptr, dst.data(), 4, 0, format, 2);
    EXPECT_EQ(dst.Values(12), std::vector<uint8_t>(12, 0xEE)) << format;
  }
  for (int32_t format : {0, 7, 9}) {
    Guarded<uint8_t> dst(16);
    zeltUnpacked16sRowToRGB32(&p.planes, nullptr, dst.data(), 4, 0, format, 2, 1);
    EXPECT_EQ(dst.Values(16), std::vector<uint8_t>(16, 0xEE)) << format;
  }
  // Pixel pairs: width 3 writes a fourth pixel, and nothing beyond it.
  Guarded<uint8_t> rgb24(9), rgb32(12);
  zeltUnpacked16sRowToRGB24(&p.planes, nullptr, rgb24.data(), 3, 0, 7, 2);
  zeltUnpacked16sRowToRGB32(&p.planes, nullptr, rgb32.data(), 3, 0, 8, 2, 7);
  EXPECT_TRUE(rgb24.Intact(3));
  EXPECT_TRUE(rgb32.Intact(4));
  EXPECT_NE(rgb24[9], 0xEE);
  EXPECT_EQ(rgb32[15], 7);
}

// The block path against the portable one: random 16-bit rows, every shift the callers
// use (and one beyond 16), every code, both pixel sizes.
TEST(MatrixPackers, BlockPathMatchesPortable) {
  const std::vector<uint8_t> raw = RandomBytes(2 * 2 * 1400, 10);
  const uint16_t* y = reinterpret_cast<const uint16_t*>(raw.data());
  ZeltPlanes planes = {{const_cast<uint16_t*>(y), const_cast<uint16_t*>(y + 1400), const_cast<uint16_t*>(y + 2100)}};
  for (int32_t code : {1, 2, 5, 6}) {
    for (int32_t shift : {0, 2, 8, 20}) {
      for (uint32_t w : InterestingWidths()) {
        if (w > 1300) continue;
        const size_t written = w + (w & 1);
        std::vector<std::vector<uint8_t>> outs;
        for (const Level& level : HostLevels()) {
          ScopedFeatures features(level.mask, level.extended);
          Guarded<uint8_t> rgb24(3 * w), rgb32(4 * w);
          zeltUnpacked16sRowToRGB24(&planes, nullptr, rgb24.data(), int32_t(w), shift, 7, code);
          zeltUnpacked16sRowToRGB32(&planes, nullptr, rgb32.data(), int32_t(w), shift, 8, code, 0x33);
          EXPECT_TRUE(rgb24.Intact(3 * (written - w)) && rgb32.Intact(4 * (written - w)));
          std::vector<uint8_t> both = rgb24.Values(3 * written), v32 = rgb32.Values(4 * written);
          both.insert(both.end(), v32.begin(), v32.end());
          outs.push_back(both);
        }
        for (size_t i = 1; i < outs.size(); ++i)
          ASSERT_EQ(outs[i], outs[0]) << "code " << code << " shift " << shift << " width " << w << " "
                                      << FirstDifference(outs[i], outs[0]);
      }
    }
  }
}

// ---------------------------------------------------------------- RGB48 / RGB30 ----

TEST(Rgb48, ShiftClampAndOrder) {
  struct Case {
    int32_t bits, extra;
    int16_t in;
    uint16_t out;
  };
  const Case cases[] = {
      {10, 0, 1023, 65472}, {10, 0, 1, 64},     {10, 0, -1, 0},      {10, 0, 1100, 65535}, {12, 0, 4095, 65520},
      {8, 2, 255, 16320},   {16, 0, 1234, 1234}, {16, 0, -5, 0},      {14, 20, 1, 16384},  // 16-14-20 = -18 -> 14
      {20, 0, 1, 65535},    {16, 0, 32767, 32767},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.bits) + "/" + std::to_string(c.extra) + " in " + std::to_string(c.in));
    int16_t g[1] = {c.in}, r[1] = {0}, b[1] = {0};
    ZeltPlanes planes = {{g, r, b}};
    uint16_t out[3] = {1, 1, 1};
    zeltUnpacked16sRowToRGB48(&planes, nullptr, out, 1, c.bits, c.extra);
    EXPECT_EQ(out[1], c.out);  // G sits in the middle
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[2], 0);
  }
  int16_t g[2] = {1, 4}, r[2] = {2, 5}, b[2] = {3, 6};
  ZeltPlanes planes = {{g, r, b}};
  uint16_t out[6] = {};
  zeltUnpacked16sRowToRGB48(&planes, nullptr, out, 2, 16, 0);
  EXPECT_EQ((std::vector<uint16_t>(out, out + 6)), (std::vector<uint16_t>{2, 1, 3, 5, 4, 6}));
}

// Bytes of one RGB30 pixel, assembled field by field from the layout table.
std::vector<uint8_t> Rgb30Bytes(int32_t code, uint32_t r, uint32_t g, uint32_t b) {
  uint32_t word = 0;
  bool bigEndian = false;
  switch (code) {
    case 122:
    case 125: word = b * (1u << 20) + g * (1u << 10) + r; break;
    case 123: word = r * (1u << 20) + g * (1u << 10) + b, bigEndian = true; break;
    case 124: word = r * (1u << 20) + g * (1u << 10) + b; break;
    case 128: word = r * (1u << 22) + g * (1u << 12) + b * 4, bigEndian = true; break;
  }
  std::vector<uint8_t> bytes(4);
  for (int i = 0; i < 4; ++i) bytes[bigEndian ? 3 - i : i] = static_cast<uint8_t>(word / (1u << (8 * i)));
  return bytes;
}

TEST(Rgb30, LayoutsAndByteOrders) {
  for (int32_t code : {122, 123, 124, 125, 128}) {
    SCOPED_TRACE(code);
    // 10-bit samples (bits 10): R, G, B all distinct and asymmetric.
    int16_t g[1] = {0x0F0}, r[1] = {0x201}, b[1] = {0x10F};
    ZeltPlanes planes = {{g, r, b}};
    uint8_t out[4] = {};
    zeltUnpacked16sRowToRGB30(&planes, nullptr, reinterpret_cast<uint32_t*>(out), 1, 10, 0, code);
    EXPECT_EQ(std::vector<uint8_t>(out, out + 4), Rgb30Bytes(code, 0x201, 0x0F0, 0x10F));
  }
  int16_t full[1] = {1023};
  ZeltPlanes white = {{full, full, full}};
  uint32_t word = 0;
  zeltUnpacked16sRowToRGB30(&white, nullptr, &word, 1, 10, 0, 124);
  EXPECT_EQ(word, 0x3FFFFFFFu);
  uint8_t bytes[4];
  zeltUnpacked16sRowToRGB30(&white, nullptr, reinterpret_cast<uint32_t*>(bytes), 1, 10, 0, 128);
  EXPECT_EQ(std::vector<uint8_t>(bytes, bytes + 4), (std::vector<uint8_t>{0xFF, 0xFF, 0xFF, 0xFC}));
  for (int32_t code : {0, 121, 126, 127, 129}) {
    uint32_t untouched[9];
    std::fill(std::begin(untouched), std::end(untouched), 0xDEADBEEFu);
    int16_t s[9] = {};
    ZeltPlanes planes = {{s, s, s}};
    zeltUnpacked16sRowToRGB30(&planes, nullptr, untouched, 9, 10, 0, code);
    EXPECT_TRUE(std::all_of(std::begin(untouched), std::end(untouched), [](uint32_t v) { return v == 0xDEADBEEFu; }))
        << code;
  }
}

TEST(Rgb30, DepthsScaleToTenBits) {
  struct Case {
    int32_t bits, extra;
    int16_t in;
    uint32_t ten;
  };
  const Case cases[] = {{8, 0, 255, 1020}, {12, 0, 4095, 1023}, {12, 0, 5, 1}, {10, 0, -3, 0}, {10, 0, 1100, 1023}, {16, 0, 64, 1}};
  for (const Case& c : cases) {
    int16_t v[1] = {c.in}, z[1] = {0};
    ZeltPlanes planes = {{z, v, z}};
    uint32_t word = 0;
    zeltUnpacked16sRowToRGB30(&planes, nullptr, &word, 1, c.bits, c.extra, 124);
    EXPECT_EQ(word >> 20, c.ten) << c.bits << " " << c.in;
  }
}

TEST(Rgb30, BlockPathMatchesPortable) {
  const std::vector<uint8_t> raw = RandomBytes(3 * 2 * 1400, 8);
  const int16_t* g = reinterpret_cast<const int16_t*>(raw.data());
  ZeltPlanes planes = {{const_cast<int16_t*>(g), const_cast<int16_t*>(g + 1400), const_cast<int16_t*>(g + 2800)}};
  for (int32_t code : {122, 123, 124, 125, 128}) {
    for (auto [bits, extra] : {std::pair{10, 0}, std::pair{8, 0}, std::pair{12, 2}, std::pair{16, 0}, std::pair{0, 0}}) {
      for (uint32_t w : InterestingWidths()) {
        if (w > 1400) continue;
        std::vector<std::vector<uint32_t>> outs;
        for (const Level& level : HostLevels()) {
          ScopedFeatures features(level.mask, level.extended);
          Guarded<uint32_t> out(w);
          zeltUnpacked16sRowToRGB30(&planes, nullptr, out.data(), int32_t(w), bits, extra, code);
          EXPECT_TRUE(out.Intact());
          outs.push_back(out.Values(w));
        }
        for (size_t i = 1; i < outs.size(); ++i)
          ASSERT_EQ(outs[i], outs[0]) << "code " << code << " bits " << bits << " width " << w;
      }
    }
  }
}

// ---------------------------------------------------------------- frame packers ----

TEST(DitheredRgb, RoundedPathWhiteAndBlack) {
  for (int32_t code : kEveryCode) {
    const uint8_t white = FullRangeLuma(code) ? 235 : 255, black = FullRangeLuma(code) ? 16 : 0;
    for (auto [y8, expect] : {std::pair{235, white}, std::pair{16, black}}) {
      RowPlanes p(4, y8, 128, 128, 0);
      const int32_t pitches[3] = {8, 4, 4};
      std::vector<uint8_t> out(16);
      zeltRow16uToDitheredRGB(nullptr, &p.planes, pitches, ZeltSize{4, 1}, out.data(), nullptr, 16, 0, code, 0);
      for (int px = 0; px < 4; ++px) {
        EXPECT_EQ(out[4 * px], expect) << code;
        EXPECT_EQ(out[4 * px + 1], expect) << code;
        EXPECT_EQ(out[4 * px + 2], expect) << code;
        EXPECT_EQ(out[4 * px + 3], 255);
      }
    }
  }
}

// The coefficient sets by code, as published for these packers, for the replay below.
struct Set {
  int32_t crR, crG, cbG, cbB, gain, offset;
};
Set SetFor(int32_t code) {
  switch (code & 7) {
    case 1: return {204, 208, 100, 258, 19072, 16};
    case 5: return {175, 179, 86, 222, 16384, 0};
    case 6: return {197, 118, 47, 232, 16384, 0};
    default: return {230, 137, 55, 270, 19072, 16};
  }
}

TEST(DitheredRgb, DitherReplaysFromSeededRand) {
  const int32_t w = 37, h = 3, pitchY = 2 * w + 6, pitchC = w + 4, dstPitch = 3 * w + 5;
  std::mt19937 gen(12);
  std::vector<uint16_t> y(size_t(pitchY / 2) * h), cr(size_t(pitchC / 2) * h), cb(cr.size());
  for (auto* v : {&y, &cr, &cb})
    for (auto& s : *v) s = static_cast<uint16_t>(gen());
  ZeltPlanes planes = {{y.data(), cr.data(), cb.data()}};
  const int32_t pitches[3] = {pitchY, pitchC, pitchC};
  for (int32_t code : {1, 2, 5, 6}) {
    std::vector<uint8_t> got(size_t(dstPitch) * h + 3, 0xEE), expect = got;
    std::srand(777);
    zeltRow16uToDitheredRGB(nullptr, &planes, pitches, ZeltSize{w, h}, got.data(), nullptr, dstPitch, 7, code, 0);
    std::srand(777);
    const Set k = SetFor(code);
    auto clamp8 = [](int32_t v) { return static_cast<uint8_t>(std::clamp(v, 0, 255)); };
    for (int32_t r = 0; r < h; ++r) {
      for (int32_t x = 0; x < w + 1; ++x) {  // the odd width finishes its pair
        // An odd byte pitch halves to whole elements.
        const int32_t c = cr[r * (pitchC / 2) + x / 2] - 32768, d = cb[r * (pitchC / 2) + x / 2] - 32768;
        const int32_t yy = ((int32_t(y[r * (pitchY / 2) + x]) - k.offset * 256) * k.gain) >> 7;
        const int32_t n = std::rand() & 0x7FFF;
        uint8_t* o = expect.data() + r * dstPitch + 3 * x;
        o[0] = clamp8((yy + d * k.cbB + n) >> 15);
        o[1] = clamp8((yy - (d >> 1) * k.cbG - (c >> 1) * k.crG + n) >> 15);
        o[2] = clamp8((yy + c * k.crR + n) >> 15);
      }
    }
    EXPECT_EQ(got, expect) << code << " " << FirstDifference(got, expect);
  }
}

TEST(DitheredRgb, FlipWritesBottomUp) {
  const int32_t w = 6, h = 4;
  std::mt19937 gen(3);
  std::vector<uint16_t> y(size_t(w) * h), cr(size_t(w / 2) * h), cb(cr.size());
  for (auto* v : {&y, &cr, &cb})
    for (auto& s : *v) s = static_cast<uint16_t>(gen());
  ZeltPlanes planes = {{y.data(), cr.data(), cb.data()}};
  const int32_t pitches[3] = {2 * w, w, w};
  for (int32_t format : {7, 0}) {
    const int32_t bpp = format == 7 ? 3 : 4, pitch = bpp * w;
    std::vector<uint8_t> normal(size_t(pitch) * h), flipped(normal.size()), negative(normal.size());
    std::srand(5);
    zeltRow16uToDitheredRGB(nullptr, &planes, pitches, ZeltSize{w, h}, normal.data(), nullptr, pitch, format, 2, 0);
    std::srand(5);
    zeltRow16uToDitheredRGB(nullptr, &planes, pitches, ZeltSize{w, h}, flipped.data(), nullptr, pitch, format, 2, 1);
    // A negative pitch is the caller's own bottom-up walk; flip adds nothing to it.
    std::srand(5);
    zeltRow16uToDitheredRGB(nullptr, &planes, pitches, ZeltSize{w, h}, negative.data() + (h - 1) * pitch, nullptr,
                            -pitch, format, 2, 1);
    for (int32_t r = 0; r < h; ++r) {
      EXPECT_TRUE(std::equal(normal.begin() + r * pitch, normal.begin() + (r + 1) * pitch,
                             flipped.begin() + (h - 1 - r) * pitch))
          << format << " row " << r;
    }
    EXPECT_EQ(negative, flipped) << format;
  }
}

// Planar RGB to 24-bit with the masked rand() dither: replayed exactly at every level,
// with signed reads below shift 8 and zero fill out to dstWidth.
TEST(PlanarRgb24, DitherReplayEveryLevel) {
  const int32_t maxW = 100, h = 2, pitch = 2 * maxW + 8;
  const std::vector<uint8_t> raw = RandomBytes(3 * size_t(pitch) * h, 41);
  const uint16_t* base = reinterpret_cast<const uint16_t*>(raw.data());
  const size_t planeElems = size_t(pitch / 2) * h;
  ZeltPlanes planes = {{const_cast<uint16_t*>(base), const_cast<uint16_t*>(base + planeElems),
                        const_cast<uint16_t*>(base + 2 * planeElems)}};
  const int32_t pitches[3] = {pitch, pitch, pitch};
  for (const Level& level : HostLevels()) {
    ScopedFeatures features(level.mask, level.extended);
    for (int32_t shift : {8, 2, 10, 1, 7, 12, 16}) {
      for (int32_t w : {1, 15, 16, 17, 33, 100}) {
        for (int32_t dstWidth : {w, w + 5}) {
          SCOPED_TRACE(level.name + " shift " + std::to_string(shift) + " width " + std::to_string(w) + " dstWidth " +
                       std::to_string(dstWidth));
          const int32_t dstPitch = 3 * dstWidth + 4;
          std::vector<uint8_t> got(size_t(dstPitch) * h, 0xEE), expect = got;
          std::srand(99);
          zeltPlanarRGB16uToPackedRGB24(&planes, pitches, ZeltSize{w, h}, got.data(), dstPitch, dstWidth, shift);
          std::srand(99);
          const int32_t mask = (1 << (shift - 1)) - 1;
          for (int32_t r = 0; r < h; ++r) {
            for (int32_t x = 0; x < w; ++x) {
              const int32_t n = std::rand() & mask;
              for (int c = 0; c < 3; ++c) {
                const uint16_t raw16 = base[(2 - c) * planeElems + r * pitch / 2 + x];  // B, G, R from planes 2, 0, 1
                const uint16_t s = c == 1 ? base[r * pitch / 2 + x] : c == 2 ? base[planeElems + r * pitch / 2 + x] : raw16;
                const int32_t v = shift < 8 ? int32_t(int16_t(s)) : int32_t(s);
                expect[r * dstPitch + 3 * x + c] = static_cast<uint8_t>(std::clamp((v + n) >> shift, 0, 255));
              }
            }
            std::fill_n(expect.begin() + r * dstPitch + 3 * w, 3 * (dstWidth - w), 0);
          }
          ASSERT_EQ(got, expect) << FirstDifference(got, expect);
        }
      }
    }
  }
}

TEST(PlanarRgbFrames, NothingForDstWidthBelowOne) {
  uint16_t s[4] = {1000, 2000, 3000, 4000};
  ZeltPlanes planes = {{s, s, s}};
  const int32_t pitches[3] = {8, 8, 8};
  for (int32_t dstWidth : {0, -3}) {
    std::vector<uint8_t> rgb24(12, 0xEE);
    zeltPlanarRGB16uToPackedRGB24(&planes, pitches, ZeltSize{4, 1}, rgb24.data(), 12, dstWidth, 8);
    EXPECT_EQ(rgb24, std::vector<uint8_t>(12, 0xEE));
    std::vector<uint16_t> rgb48(12, 0xEEEE);
    zeltPlanarRGB16uToPackedRGB48(&planes, pitches, ZeltSize{4, 1}, rgb48.data(), 24, dstWidth);
    EXPECT_EQ(rgb48, std::vector<uint16_t>(12, 0xEEEE));
  }
}

TEST(PlanarRgbFrames, Rgb48OrderAndZeroFill) {
  const int32_t w = 3, h = 2, pitch = 2 * w + 2, dstWidth = 5, dstPitch = 6 * dstWidth + 4;
  std::vector<uint16_t> g(size_t(pitch / 2) * h), r(g.size()), b(g.size());
  for (size_t i = 0; i < g.size(); ++i) g[i] = uint16_t(0x1000 + i), r[i] = uint16_t(0x2000 + i), b[i] = uint16_t(0xF000 + i);
  ZeltPlanes planes = {{g.data(), r.data(), b.data()}};
  const int32_t pitches[3] = {pitch, pitch, pitch};
  std::vector<uint16_t> out(size_t(dstPitch / 2) * h, 0xEEEE);
  zeltPlanarRGB16uToPackedRGB48(&planes, pitches, ZeltSize{w, h}, out.data(), dstPitch, dstWidth);
  for (int32_t row = 0; row < h; ++row) {
    const uint16_t* o = out.data() + row * dstPitch / 2;
    for (int32_t x = 0; x < w; ++x) {
      const size_t i = size_t(row) * pitch / 2 + x;
      EXPECT_EQ(o[3 * x], r[i]);
      EXPECT_EQ(o[3 * x + 1], g[i]);
      EXPECT_EQ(o[3 * x + 2], b[i]);
    }
    for (int32_t k = 3 * w; k < 3 * dstWidth; ++k) EXPECT_EQ(o[k], 0);
    EXPECT_EQ(o[3 * dstWidth], 0xEEEE);  // row padding untouched
  }
}

TEST(PlanarRgbRows, FirstTwoPlanesExchanged) {
  const int32_t w = 5;
  std::vector<uint16_t> src(4 * w), dst(4 * w + 1, 0xEEEE);
  for (size_t i = 0; i < src.size(); ++i) src[i] = uint16_t(i);
  void* last = zeltPlanarGRBToPlanarRGB(dst.data(), src.data(), w);
  EXPECT_EQ(last, dst.data() + 2 * w);
  for (int32_t i = 0; i < w; ++i) {
    EXPECT_EQ(dst[i], src[w + i]);          // R
    EXPECT_EQ(dst[w + i], src[i]);          // G
    EXPECT_EQ(dst[2 * w + i], src[2 * w + i]);
    EXPECT_EQ(dst[3 * w + i], 0xEEEE);
  }
  last = zeltPlanarGRBAToPlanarRGBA(dst.data(), src.data(), w);
  EXPECT_EQ(last, dst.data() + 3 * w);
  for (int32_t i = 0; i < w; ++i) EXPECT_EQ(dst[3 * w + i], src[3 * w + i]);
  EXPECT_EQ(dst[4 * w], 0xEEEE);
}

}  // namespace
}  // namespace zelt::test
