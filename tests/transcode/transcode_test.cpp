#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "support/buffers.h"
#include "support/paths.h"
#include "core/formats.h"
#include "core/simd_level.h"
#include "core/testing.h"
#include "zelt/ycbcr.h"

namespace zelt {
namespace {

uint32_t Code(const char (&s)[5]) { return FourCC(s[0], s[1], s[2], s[3]); }

uint32_t Transcode(uint8_t* dst, uint8_t* src, uint32_t w, uint32_t h, uint32_t ds, uint32_t ss, uint32_t dstCode,
                   uint32_t srcCode) {
  return cycbcr_transcode(dst, src, w, h, ds, ss, 0u, 0u, dstCode, srcCode);
}

TEST(Transcode, AliasesReachThePackedRoutes) {
  const uint32_t w = 6, h = 2, stride = 16;  // valid for packed and for 012v
  std::vector<uint8_t> src = test::RandomBytes(stride * h, 5);
  using PackedFnT = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);
  struct Row {
    const char* what;
    uint32_t dstCode, srcCode;
    PackedFnT direct;
  } rows[] = {
      {"YUNV->2vuy", Code("2vuy"), Code("YUNV"), cycbcr_yuy2_to_uyvy},
      {"AJYU->YUY2", Code("YUY2"), Code("AJYU"), cycbcr_uyvy_to_yuy2},
      {"host->YVYU", Code("YVYU"), 0x8800001Eu, cycbcr_uyvy_to_yvyu},
      {"yuV2->cyuv", Code("cyuv"), Code("yuV2"), cycbcr_uyvy_to_cyuv},
      {"YVYU->YUNV", Code("YUNV"), Code("YVYU"), cycbcr_yvyu_to_yuy2},
      {"cyuv->YVYU", Code("YVYU"), Code("cyuv"), cycbcr_cyuv_to_yvyu},
      {"cyuv->cyuv", Code("cyuv"), Code("cyuv"), cycbcr_cyuv_to_cyuv},
      {"UYNV->2Vuy", Code("2Vuy"), Code("UYNV"), cycbcr_uyvy_to_uyvy},
      {"v210->012v", Code("012v"), Code("v210"), cycbcr_012v_to_012v},
  };
  for (const Row& r : rows) {
    std::vector<uint8_t> viaDispatcher(stride * h, 0xEE), direct(stride * h, 0xEE);
    EXPECT_EQ(Transcode(viaDispatcher.data(), src.data(), w, h, stride, stride, r.dstCode, r.srcCode), stride * h)
        << r.what;
    r.direct(direct.data(), src.data(), w, h, stride, stride);
    EXPECT_EQ(viaDispatcher, direct) << r.what;
  }
}

TEST(Transcode, UnknownPairsReturnZeroAndTouchNothing) {
  std::vector<uint8_t> src = test::RandomBytes(64, 1), dst(64, 0xEE);
  const uint32_t cases[][2] = {
      {Code("UYVY"), 0x12345678u},  // unknown source
      {0x12345678u, Code("UYVY")},  // unknown destination
      {0, 0},                       // RGB32 to RGB32 has no route
      {Code("422P"), Code("UYVY")}, // 422P is a source name only
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Transcode(dst.data(), src.data(), 8, 2, 16, 16, c[0], c[1]), 0u);
    EXPECT_TRUE(std::all_of(dst.begin(), dst.end(), [](uint8_t b) { return b == 0xEE; }));
  }
}

TEST(Transcode, NormalisesPackedStridesBeforeRouting) {
  const uint32_t w = 8, h = 3;
  std::vector<uint8_t> src = test::RandomBytes(2 * w * h, 3), dst(2 * w * h, 0);
  // Both strides 0: raised to 2 * width; the result reports the raised stride.
  EXPECT_EQ(Transcode(dst.data(), src.data(), w, h, 0, 0, Code("YUY2"), Code("UYVY")), h * 2 * w);
  std::vector<uint8_t> want(dst.size());
  cycbcr_uyvy_to_yuy2(want.data(), src.data(), w, h, 2 * w, 2 * w);
  EXPECT_EQ(dst, want);
}

TEST(Transcode, ChoosesTheProcessorLevelOnFirstUse) {
  test::ScopedFeatures f(test::kMaskSse2);
  uint8_t a[4] = {}, b[4] = {};
  Transcode(a, b, 0, 0, 0, 0, 0x12345678u, 0x12345678u);  // even a refused pair runs the guard
  EXPECT_EQ(zelt::CurrentSimdLevel(), 2);
}

TEST(Transcode, GuardedRouteReturnsAllOnesAndStaysSilentOnAFault) {
  std::vector<std::string> messages;
  zeltSetErrorLog([](void* u, uint32_t, const char* m) { static_cast<std::vector<std::string>*>(u)->push_back(m); },
                  &messages);
  std::vector<uint8_t> src = test::RandomBytes(32, 2), dst(32, 0);
  zelt::testing::ArmFault("cycbcr_transcode");
  EXPECT_EQ(Transcode(dst.data(), src.data(), 8, 2, 16, 16, Code("YUY2"), Code("UYVY")), 0xFFFFFFFFu);
  // Other routes are not guarded, so the armed site is never passed there.
  EXPECT_EQ(Transcode(dst.data(), src.data(), 8, 2, 16, 16, Code("UYVY"), Code("YUY2")), 32u);
  zelt::testing::DisarmFault();
  zeltSetErrorLog(nullptr, nullptr);
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(Transcode(dst.data(), src.data(), 8, 2, 16, 16, Code("YUY2"), Code("UYVY")), 32u);
}

TEST(Transcode, RoundTripsBetweenPackedLayouts) {
  const uint32_t w = 37, h = 9, stride = 2 * w;
  std::vector<uint8_t> start = test::RandomBytes(stride * h, 11);
  std::vector<uint8_t> a(start.size()), b(start.size());
  // UYVY <-> YVYU is a swap that does not exchange chroma, so it comes back to
  // UYVY only through itself; YUY2 <-> YVYU exchanges chroma both ways.
  const uint32_t loop[] = {Code("UYVY"), Code("YUY2"), Code("YVYU"), Code("YUY2"), Code("cyuv"),
                           Code("UYVY"), Code("YVYU"), Code("UYVY"), Code("cyuv"), Code("UYVY")};
  std::vector<uint8_t> cur = start;
  for (size_t i = 0; i + 1 < std::size(loop); ++i) {
    std::vector<uint8_t> next(start.size());
    ASSERT_EQ(Transcode(next.data(), cur.data(), w, h, stride, stride, loop[i + 1], loop[i]), stride * h);
    cur = next;
  }
  // The odd last pixel of each row is not swapped on the group-wise route, so
  // compare the whole pixel pairs only.
  for (uint32_t r = 0; r < h; ++r)
    EXPECT_TRUE(std::equal(cur.begin() + r * stride, cur.begin() + r * stride + (w / 2) * 4, start.begin() + r * stride))
        << "row " << r;
}

}  // namespace
}  // namespace zelt
