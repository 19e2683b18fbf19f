// 012v to 8-bit RGB: worked values, every pixel size and order, row pitches
// (raised to the minimum, or 0 for one continuous run of groups), exact widths.
#include <gtest/gtest.h>

#include <cstring>

#include "support/buffers.h"
#include "support/paths.h"
#include "support/rgb_reference.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_to_rgb.h"

namespace zelt {
namespace {

// 10-bit samples of a pixel stream: luma per pixel, chroma per pixel pair.
struct Samples {
  std::vector<uint16_t> y, cb, cr;
};

Samples RandomSamples(size_t pixels, uint32_t seed) {
  const std::vector<uint8_t> r = test::RandomBytes(pixels * 4 + 16, seed);
  Samples s;
  for (size_t i = 0; i < (pixels + 5) / 6 * 6; ++i) s.y.push_back(static_cast<uint16_t>((r[2 * i] | r[2 * i + 1] << 8) & 0x3FF));
  for (size_t i = 0; i < s.y.size() / 2; ++i) {
    s.cb.push_back(static_cast<uint16_t>((r[i] * 4 + r[i + 7]) & 0x3FF));
    s.cr.push_back(static_cast<uint16_t>((r[i + 3] * 4 + r[i + 11]) & 0x3FF));
  }
  return s;
}

// Packs pixels [first, first + count) of `s` (count a multiple of 6) as 012v groups.
void PackGroups(const Samples& s, size_t first, size_t count, uint8_t* out) {
  auto word = [&](uint8_t* p, uint32_t a, uint32_t b, uint32_t c) {
    const uint32_t w = a | (b << 10) | (c << 20);
    std::memcpy(p, &w, 4);  // little-endian host
  };
  for (size_t g = 0; g < count / 6; ++g, out += 16) {
    const size_t p = first + 6 * g, c = p / 2;
    word(out, s.cb[c], s.y[p], s.cr[c]);
    word(out + 4, s.y[p + 1], s.cb[c + 1], s.y[p + 2]);
    word(out + 8, s.cr[c + 1], s.y[p + 3], s.cb[c + 2]);
    word(out + 12, s.y[p + 4], s.cr[c + 2], s.y[p + 5]);
  }
}

TEST(V012ToRgb, WorkedValues) {
  const struct {
    uint32_t matrix;
    uint16_t y;
    uint8_t expected;
  } cases[] = {
      {0, 940, 254},  // 876 * 2910 = 2549160 -> 254
      {0, 64, 0},     {0, 0, 0},     {0, 1023, 255}, {1, 1023, 255},  // 1023 * 2500 / 10000 = 255.75
      {1, 512, 128},  {99, 940, 254}, {1, 4, 1},
  };
  for (const auto& c : cases) {
    Samples s;
    s.y.assign(6, c.y);
    s.cb.assign(3, 512);
    s.cr.assign(3, 512);
    uint8_t src[16];
    PackGroups(s, 0, 6, src);
    uint8_t dst[24];
    EXPECT_EQ(cycbcr_012v_to_rgb24(dst, src, 6, 1, 18, 16, c.matrix, 0), 18u);
    for (int i = 0; i < 18; ++i) ASSERT_EQ(dst[i], c.expected) << "id " << c.matrix << " Y " << c.y;
  }
}

using V012Fn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t);

TEST(V012ToRgb, FramesMatchThePixelRules) {
  const struct {
    V012Fn fn;
    uint32_t bpp;
  } kinds[] = {{cycbcr_012v_to_rgb24, 24}, {cycbcr_012v_to_rgb32, 32}, {cycbcr_012v_to_rgb555, 15},
               {cycbcr_012v_to_rgb565, 16}};
  const uint32_t kFlags[] = {0, 1, 2, 3, 0x8000, 0x8003, 5};
  const uint32_t kMatrices[] = {0, 1, 2, 3, 5, 6, 7, 42};
  std::vector<uint32_t> widths = test::InterestingWidths();
  widths.erase(std::remove_if(widths.begin(), widths.end(), [](uint32_t w) { return w > 300; }), widths.end());
  uint32_t seed = 0;
  for (const auto& k : kinds) {
    for (uint32_t w : widths) {
      for (uint32_t h : {1u, 2u, 4u}) {
        // Pitch 0 (continuous run), one below the minimum (raised), the minimum plus 32.
        for (uint32_t pitchKind = 0; pitchKind < 3; ++pitchKind) {
          ++seed;
          const uint32_t flags = kFlags[seed % 7], matrix = kMatrices[seed % 8];
          const uint32_t minPitch = (w + 47) / 48 * 128;
          const uint32_t pitch = pitchKind == 0 ? 0 : (pitchKind == 1 ? 16 : minPitch + 32);
          const uint32_t used = pitchKind == 0 ? 0 : (pitchKind == 1 ? minPitch : pitch);
          SCOPED_TRACE(testing::Message() << k.bpp << " bits w " << w << " h " << h << " pitch " << pitch
                                          << " flags " << flags << " id " << matrix);
          const size_t pixels = size_t{w} * h;
          const Samples s = RandomSamples(pixels + 6 * size_t{h} + 6, seed);
          std::vector<uint8_t> src;
          if (used == 0) {
            src.assign((pixels + 5) / 6 * 16, 0);
            PackGroups(s, 0, (pixels + 5) / 6 * 6, src.data());
          } else {
            src.assign(size_t{used} * h, 0);
            for (uint32_t r = 0; r < h; ++r) PackGroups(s, size_t{r} * w, (w + 5) / 6 * 6, src.data() + size_t{r} * used);
          }
          const size_t bytes = test::RefBytesPerPixel(k.bpp);
          const uint32_t ds = static_cast<uint32_t>(bytes * w + (seed % 2 ? 0 : 7));
          const size_t size = size_t{h - 1} * ds + bytes * w;
          test::GuardedBuffer init(size);
          init.FillRandom(seed);
          std::vector<uint8_t> want = init.Bytes();
          const std::string layout = test::RefLayout(k.bpp, flags);
          for (uint32_t r = 0; r < h; ++r) {
            const uint32_t dr = (flags & 0x8000) ? h - 1 - r : r;
            for (uint32_t x = 0; x < w; ++x) {
              const size_t p = size_t{r} * w + x;
              // Rows of a padded pitch each start on a fresh group, so their chroma
              // pairs restart with them.
              const size_t pair = used == 0 ? p / 2 : (size_t{r} * w + x / 2 * 2) / 2;
              test::RefPut(want, size_t{dr} * ds + x * bytes, k.bpp, layout,
                           test::RefDecode10To8(matrix, s.y[p], s.cb[pair], s.cr[pair]));
            }
          }
          const auto paths = test::RunEveryPath([&] {
            test::GuardedBuffer dst(size);
            std::memcpy(dst.data(), init.data(), size);
            EXPECT_EQ(k.fn(dst.data(), src.data(), w, h, ds, pitch, matrix, flags), bytes * w * h);
            EXPECT_TRUE(dst.GuardsIntact());  // exactly `width` pixels per row
            return dst.Bytes();
          });
          for (const auto& p : paths) ASSERT_EQ(p.bytes, want) << p.path << ": " << test::FirstDifference(p.bytes, want);
        }
      }
    }
  }
}

// Wide rows: whole 384-pixel chunks, a last partial chunk and a portable tail,
// over random words (the two spare bits of each set at random too).
TEST(V012ToRgb, VectorPathMatchesOverManySamples) {
  if (!test::HostHasAvx2()) GTEST_SKIP() << "no AVX2";
  const uint32_t h = 9;
  for (uint32_t w : {1920u, 1283u, 791u, 409u, 384u}) {
    const uint32_t pitch = (w + 47) / 48 * 128 + (w % 2 ? 0 : 64);
    const std::vector<uint8_t> src = test::RandomBytes(size_t{pitch} * h, 77 + w);
    for (uint32_t matrix = 0; matrix < 8; ++matrix) {
      const auto paths = test::RunEveryPath([&] {
        std::vector<uint8_t> dst(size_t{w} * h * 4);
        cycbcr_012v_to_rgb32(dst.data(), src.data(), w, h, 4 * w, pitch, matrix, matrix % 4);
        return dst;
      });
      ASSERT_GE(paths.size(), 2u);
      ASSERT_EQ(paths[0].bytes, paths[1].bytes) << "w " << w << " id " << matrix << ": "
                                                << test::FirstDifference(paths[0].bytes, paths[1].bytes);
    }
  }
}

TEST(V012ToRgb, GeneralEntryTakesThePixelSize) {
  Samples s;
  s.y = {100, 200, 300, 400, 500, 600};
  s.cb = {512, 300, 700};
  s.cr = {512, 800, 200};
  uint8_t src[16];
  PackGroups(s, 0, 6, src);
  for (uint32_t bpp : {15u, 16u, 24u, 32u}) {
    std::vector<uint8_t> a(6 * 4, 0xEE), b(a);
    EXPECT_EQ(cycbcr_v210ToRGB(a.data(), src, 6, 1, 24, 16, 1, 2, bpp), 6 * test::RefBytesPerPixel(bpp));
    const V012Fn fn = bpp == 15 ? cycbcr_012v_to_rgb555
                      : bpp == 16 ? cycbcr_012v_to_rgb565
                      : bpp == 24 ? cycbcr_012v_to_rgb24
                                  : cycbcr_012v_to_rgb32;
    fn(b.data(), src, 6, 1, 24, 16, 1, 2);
    EXPECT_EQ(a, b) << bpp;
  }
  std::vector<uint8_t> none(32, 0xEE);
  EXPECT_EQ(cycbcr_v210ToRGB(none.data(), src, 6, 1, 24, 16, 1, 2, 8), 24u);
  EXPECT_EQ(none, std::vector<uint8_t>(32, 0xEE));
}

}  // namespace
}  // namespace zelt
