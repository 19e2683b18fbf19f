// Chroma siting, plane order and byte order of every planar <-> packed wrapper,
// on small frames whose samples say where they came from, on every code path.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/buffers.h"
#include "support/paths.h"
#include "transcode/planar_test_util.h"
#include "core/simd_level.h"
#include "zelt/ycbcr.h"
#include "zelt/ycbcr_planar.h"

namespace zelt {
namespace {

using test::GroupOrder;
using test::Picture;
using Fn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);

// Which chroma row each of 8 luma rows uses.
const std::vector<uint32_t> kProgressive = {0, 0, 1, 1, 2, 2, 3, 3};
const std::vector<uint32_t> kField = {0, 1, 0, 1, 2, 3, 2, 3};
const std::vector<uint32_t> kFull = {0, 1, 2, 3, 4, 5, 6, 7};

struct FromPlanarCase {
  const char* name;
  Fn fn;
  bool crFirst;  // YV12 source
  bool is422;
  GroupOrder order;
  const std::vector<uint32_t>* siting;
  bool flip;  // cyuv destination
};

const FromPlanarCase kFromPlanar[] = {
    {"i420_to_uyvy", cycbcr_i420_to_uyvy, false, false, test::kOrderUyvy, &kProgressive, false},
    {"i420_to_yuy2", cycbcr_i420_to_yuy2, false, false, test::kOrderYuy2, &kField, false},
    {"i420_to_yvyu", cycbcr_i420_to_yvyu, false, false, test::kOrderYvyu, &kField, false},
    {"i420_to_cyuv", cycbcr_i420_to_cyuv, false, false, test::kOrderUyvy, &kProgressive, true},
    {"yv12_to_uyvy", cycbcr_yv12_to_uyvy, true, false, test::kOrderUyvy, &kProgressive, false},
    {"yv12_to_yuy2", cycbcr_yv12_to_yuy2, true, false, test::kOrderYuy2, &kField, false},
    {"yv12_to_yvyu", cycbcr_yv12_to_yvyu, true, false, test::kOrderYvyu, &kField, false},
    // cyuv from YV12 carries the YUY2 byte order and the field siting.
    {"yv12_to_cyuv", cycbcr_yv12_to_cyuv, true, false, test::kOrderYuy2, &kField, true},
    {"p422_to_uyvy", cycbcr_p422_to_uyvy, false, true, test::kOrderUyvy, &kFull, false},
    {"p422_to_yuy2", cycbcr_p422_to_yuy2, false, true, test::kOrderYuy2, &kFull, false},
    {"p422_to_yvyu", cycbcr_p422_to_yvyu, false, true, test::kOrderYvyu, &kFull, false},
    {"p422_to_cyuv", cycbcr_p422_to_cyuv, false, true, test::kOrderUyvy, &kFull, true},
};

TEST(PlanarToPacked, ChromaSitingPlaneAndByteOrder) {
  constexpr uint32_t w = 8, h = 8;
  for (const auto& c : kFromPlanar) {
    SCOPED_TRACE(c.name);
    const Picture pic(w, h, c.is422 ? h : h / 2);
    const std::vector<uint8_t> src = pic.Frame(c.crFirst);
    std::vector<uint8_t> expected = pic.Packed(c.order, *c.siting);
    if (c.flip) expected = test::FlipRows(expected, 2 * w, h);
    for (const auto& r : test::RunEveryPath([&] {
           test::GuardedBuffer dst(expected.size());
           EXPECT_EQ(c.fn(dst.data(), src.data(), w, h, 2 * w, w), h * 2 * w);
           EXPECT_TRUE(dst.GuardsIntact());
           return dst.Bytes();
         })) {
      EXPECT_EQ(r.bytes, expected) << r.path << ": " << test::FirstDifference(r.bytes, expected);
    }
  }
}

struct ToPlanarCase {
  const char* name;
  Fn fn;
  GroupOrder order;
  bool flip;     // cyuv source
  int dst;       // 0 I420, 1 YV12, 2 P422
  uint32_t ret;  // for 8 rows of stride 8
};

// Chroma row k of a 4:2:0 destination comes from packed row 0, 3, 4, 7.
const std::vector<uint32_t> kFieldPick = {0, 3, 4, 7};

const ToPlanarCase kToPlanar[] = {
    {"uyvy_to_i420", cycbcr_uyvy_to_i420, test::kOrderUyvy, false, 0, 96},
    {"uyvy_to_yv12", cycbcr_uyvy_to_yv12, test::kOrderUyvy, false, 1, 96},
    {"uyvy_to_p422", cycbcr_uyvy_to_p422, test::kOrderUyvy, false, 2, 64},
    {"yuy2_to_i420", cycbcr_yuy2_to_i420, test::kOrderYuy2, false, 0, 96},
    {"yuy2_to_yv12", cycbcr_yuy2_to_yv12, test::kOrderYuy2, false, 1, 96},
    {"yuy2_to_p422", cycbcr_yuy2_to_p422, test::kOrderYuy2, false, 2, 96},
    {"yvyu_to_i420", cycbcr_yvyu_to_i420, test::kOrderYvyu, false, 0, 96},
    {"yvyu_to_yv12", cycbcr_yvyu_to_yv12, test::kOrderYvyu, false, 1, 96},
    {"yvyu_to_p422", cycbcr_yvyu_to_p422, test::kOrderYvyu, false, 2, 96},
    {"cyuv_to_i420", cycbcr_cyuv_to_i420, test::kOrderUyvy, true, 0, 96},
    {"cyuv_to_yv12", cycbcr_cyuv_to_yv12, test::kOrderUyvy, true, 1, 96},
    {"cyuv_to_p422", cycbcr_cyuv_to_p422, test::kOrderUyvy, true, 2, 96},
};

TEST(PackedToPlanar, ChromaSitingPlaneOrderAndResult) {
  constexpr uint32_t w = 8, h = 8;
  const Picture pic(w, h, h);  // every packed row carries its own chroma
  for (const auto& c : kToPlanar) {
    SCOPED_TRACE(c.name);
    std::vector<uint8_t> src = pic.Packed(c.order, kFull);
    if (c.flip) src = test::FlipRows(src, 2 * w, h);
    // Expected planes, in picture order. (For cyuv the field pick is symmetric in
    // an 8-row frame: picture rows 0, 3, 4, 7 again.)
    std::vector<uint8_t> expected = pic.y;
    std::vector<uint8_t> cb, cr;
    const uint32_t rows = c.dst == 2 ? h : h / 2;
    for (uint32_t k = 0; k < rows; ++k) {
      const uint32_t from = c.dst == 2 ? k : kFieldPick[k];
      cb.insert(cb.end(), pic.cb.begin() + from * 4, pic.cb.begin() + from * 4 + 4);
      cr.insert(cr.end(), pic.cr.begin() + from * 4, pic.cr.begin() + from * 4 + 4);
    }
    const bool crFirst = c.dst == 1;
    expected.insert(expected.end(), (crFirst ? cr : cb).begin(), (crFirst ? cr : cb).end());
    expected.insert(expected.end(), (crFirst ? cb : cr).begin(), (crFirst ? cb : cr).end());
    for (const auto& r : test::RunEveryPath([&] {
           test::GuardedBuffer dst(expected.size());
           EXPECT_EQ(c.fn(dst.data(), src.data(), w, h, w, 2 * w), c.ret);
           EXPECT_TRUE(dst.GuardsIntact());
           return dst.Bytes();
         })) {
      EXPECT_EQ(r.bytes, expected) << r.path << ": " << test::FirstDifference(r.bytes, expected);
    }
  }
}

// The packed-to-planar engine reports one and a half luma planes, rounded down to
// even, for every destination; UYVY to P422 reports one luma plane where it takes
// the reorder primitive (levels 4 to 6) and the engine's figure below that.
TEST(PackedToPlanar, ResultByProcessorLevel) {
  constexpr uint32_t w = 4, h = 3, ds = 10;  // 30 + (15 rounded down to 14)
  std::vector<uint8_t> src = test::RandomBytes(h * 2 * w, 3);
  struct Level {
    uint32_t mask;
    int32_t forced;  // -1: as chosen from the mask
    uint32_t expected;
  };
  const Level levels[] = {
      {test::kMaskNone, -1, 44}, {test::kMaskSse2, -1, 44}, {test::kMaskSse41, -1, 30},
      {test::kMaskSse41, 6, 30}, {test::kMaskAvx2, -1, 30},
  };
  std::vector<uint8_t> first;
  for (const auto& l : levels) {
    if (l.mask == test::kMaskAvx2 && !test::HostHasAvx2()) continue;
    test::ScopedFeatures f(l.mask);
    SimdGuard();
    if (l.forced >= 0) SimdLevel.store(l.forced);
    SCOPED_TRACE(CurrentSimdLevel());
    std::vector<uint8_t> dst(h * ds * 2, 0xEE);
    EXPECT_EQ(cycbcr_uyvy_to_p422(dst.data(), src.data(), w, h, ds, 2 * w), l.expected);
    EXPECT_EQ(cycbcr_yuy2_to_p422(dst.data(), src.data(), w, h, ds, 2 * w), 44u);
    EXPECT_EQ(cycbcr_uyvy_to_i420(dst.data(), src.data(), w, h, ds, 2 * w), 44u);
    cycbcr_uyvy_to_p422(dst.data(), src.data(), w, h, ds, 2 * w);
    if (first.empty()) first = dst;
    EXPECT_EQ(dst, first);  // the same bytes at every level
  }
  // A width below one pair is refused by the reorder primitive: the engine's figure.
  test::ScopedFeatures f(test::kMaskSse41);
  std::vector<uint8_t> dst(h * ds * 2);
  EXPECT_EQ(cycbcr_uyvy_to_p422(dst.data(), src.data(), 1, h, ds, 2 * w), 44u);
}

TEST(PlanarToPacked, OddWidthEngineWritesWholeLastGroupReorderStopsAtLastPair) {
  constexpr uint32_t w = 5, h = 4, ds = 2 * w;
  const std::vector<uint8_t> src = test::RandomBytes(64, 11);
  for (const auto& r : test::RunEveryPath([&] {
         // Field-sited engine (YUY2): a third group per row, its second luma sample
         // read past the row (the first of the next), two bytes past the frame.
         test::GuardedBuffer yuy2(h * ds, 64, 0xEE);
         cycbcr_i420_to_yuy2(yuy2.data(), src.data(), w, h, ds, w);
         EXPECT_TRUE(yuy2.GuardsIntact(2));
         EXPECT_FALSE(yuy2.GuardsIntact(0));
         EXPECT_EQ(yuy2.data()[8], src[4]);
         EXPECT_EQ(yuy2.data()[10], src[5]);
         // Reorder path (UYVY): width/2 pairs, the odd last pixel not written.
         test::GuardedBuffer uyvy(h * ds, 64, 0xEE);
         cycbcr_i420_to_uyvy(uyvy.data(), src.data(), w, h, ds, w);
         EXPECT_TRUE(uyvy.GuardsIntact());
         for (uint32_t row = 0; row < h; ++row) {
           EXPECT_EQ(uyvy.data()[row * ds + 8], 0xEE);
           EXPECT_EQ(uyvy.data()[row * ds + 9], 0xEE);
         }
         std::vector<uint8_t> out = yuy2.Bytes();
         out.insert(out.end(), uyvy.data(), uyvy.data() + uyvy.size());
         return out;
       })) {
    SUCCEED() << r.path;
  }
}

// 4:2:2 chroma of the engine runs on from row to row ((width+1)/2 samples a row)
// whatever the stride; the UYVY reorder path steps by half the stride.
TEST(PlanarToPacked, P422ChromaRowsRunOnInTheEngineButFollowTheStrideInUyvy) {
  constexpr uint32_t w = 6, h = 3, ss = 8;
  const std::vector<uint8_t> src = test::RandomBytes(64, 5);
  const size_t cb = w * h, cr = w * h + w * h / 2;  // placed by width
  for (const auto& r : test::RunEveryPath([&] {
         std::vector<uint8_t> yuy2(h * 2 * w), uyvy(h * 2 * w);
         cycbcr_p422_to_yuy2(yuy2.data(), src.data(), w, h, 2 * w, ss);
         cycbcr_p422_to_uyvy(uyvy.data(), src.data(), w, h, 2 * w, ss);
         for (uint32_t row = 0; row < h; ++row)
           for (uint32_t i = 0; i < w / 2; ++i) {
             const uint8_t* g = &yuy2[row * 2 * w + 4 * i];
             EXPECT_EQ(g[0], src[row * ss + 2 * i]);
             EXPECT_EQ(g[1], src[cb + row * (w / 2) + i]);
             EXPECT_EQ(g[3], src[cr + row * (w / 2) + i]);
             const uint8_t* u = &uyvy[row * 2 * w + 4 * i];
             EXPECT_EQ(u[1], src[row * ss + 2 * i]);
             EXPECT_EQ(u[0], src[cb + row * (ss / 2) + i]);
             EXPECT_EQ(u[2], src[cr + row * (ss / 2) + i]);
           }
         yuy2.insert(yuy2.end(), uyvy.begin(), uyvy.end());
         return yuy2;
       })) {
    SUCCEED() << r.path;
  }
}

// The engine called directly: how the flags and the packed order choose the siting.
TEST(FromPlanarEngine, FlagsAndPackedOrderChooseTheSiting) {
  constexpr uint32_t w = 8, h = 8;
  const Picture pic(w, h, h / 2);
  const std::vector<uint8_t> frame = pic.Frame(false);
  const uint8_t* y = frame.data();
  const uint8_t* cb = y + w * h;
  const uint8_t* cr = cb + w * h / 4;
  struct Case {
    GroupOrder order;
    uint32_t flags;
    const std::vector<uint32_t>* siting;
  };
  const Case cases[] = {
      {test::kOrderUyvy, 0, &kProgressive},
      {test::kOrderUyvy, 16, &kField},  // flag 16 keeps the field siting on every processor
      {test::kOrderYuy2, 0, &kField},
      {test::kOrderYuy2, 16, &kField},
      {test::kOrderYvyu, 0, &kField},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << "order y" << c.order.y << " flags " << c.flags);
    const std::vector<uint8_t> expected = pic.Packed(c.order, *c.siting);
    for (const auto& r : test::RunEveryPath([&] {
           std::vector<uint8_t> dst(expected.size());
           EXPECT_EQ(cycbcr_fromplanar(y, cb, cr, dst.data() + c.order.y, dst.data() + c.order.cb,
                                       dst.data() + c.order.cr, w, h, 2 * w, w, c.flags),
                     h * 2 * w);
           return dst;
         })) {
      EXPECT_EQ(r.bytes, expected) << r.path << ": " << test::FirstDifference(r.bytes, expected);
    }
  }
}

TEST(FromPlanarEngine, FullChromaModeDropsEveryOtherSampleOrTakesThe420PrimitiveInUyvyOrder) {
  constexpr uint32_t w = 8, h = 4;
  const std::vector<uint8_t> y = test::RandomBytes(w * h, 1);
  const std::vector<uint8_t> cb = test::RandomBytes(w * h, 2);
  const std::vector<uint8_t> cr = test::RandomBytes(w * h, 3);
  for (const auto& r : test::RunEveryPath([&] {
         std::vector<uint8_t> yuy2(h * 2 * w), uyvy(h * 2 * w);
         cycbcr_fromplanar(y.data(), cb.data(), cr.data(), yuy2.data(), yuy2.data() + 1, yuy2.data() + 3, w, h,
                           2 * w, w, 2);
         cycbcr_fromplanar(y.data(), cb.data(), cr.data(), uyvy.data() + 1, uyvy.data(), uyvy.data() + 2, w, h,
                           2 * w, w, 2);
         for (uint32_t row = 0; row < h; ++row)
           for (uint32_t i = 0; i < w / 2; ++i) {
             EXPECT_EQ(yuy2[row * 2 * w + 4 * i + 1], cb[row * w + 2 * i]);
             EXPECT_EQ(yuy2[row * 2 * w + 4 * i + 3], cr[row * w + 2 * i]);
             EXPECT_EQ(uyvy[row * 2 * w + 4 * i], cb[(row / 2) * (w / 2) + i]);
             EXPECT_EQ(uyvy[row * 2 * w + 4 * i + 2], cr[(row / 2) * (w / 2) + i]);
           }
         yuy2.insert(yuy2.end(), uyvy.begin(), uyvy.end());
         return yuy2;
       })) {
    SUCCEED() << r.path;
  }
}

// Field exchange: source row r lands on row r^1. 4:2:0 chroma is set on odd rows
// to chroma row (r-1)/2; even rows run on from where the previous row stopped;
// the pointers step at pixels 4, 8, ...
TEST(FromPlanarEngine, FieldInvertSwapsRowPairsWithItsOwnChromaWalk) {
  constexpr uint32_t w = 8, h = 4;
  const Picture pic(w, h, h / 2);
  const std::vector<uint8_t> frame = pic.Frame(false);
  const uint8_t* cb = frame.data() + w * h;
  const uint8_t* cr = cb + w * h / 4;
  // (chroma row, first sample) each source row starts from; samples advance every 2 pairs.
  struct Start {
    uint32_t row, sample;
  };
  const Start start[h] = {{0, 0}, {0, 0}, {0, 1}, {1, 0}};
  for (const auto& r : test::RunEveryPath([&] {
         std::vector<uint8_t> dst(h * 2 * w);
         EXPECT_EQ(cycbcr_fromplanar_fieldinvert(frame.data(), cb, cr, dst.data() + 1, dst.data(), dst.data() + 2, w,
                                                 h, 2 * w, w, 0),
                   h * 2 * w);
         for (uint32_t row = 0; row < h; ++row) {
           const uint32_t to = row ^ 1;
           for (uint32_t i = 0; i < w / 2; ++i) {
             const uint8_t* g = &dst[to * 2 * w + 4 * i];
             const uint32_t s = start[row].row * (w / 2) + start[row].sample + i / 2;
             EXPECT_EQ(g[1], pic.y[row * w + 2 * i]);
             EXPECT_EQ(g[3], pic.y[row * w + 2 * i + 1]);
             EXPECT_EQ(g[0], pic.cb[s]) << row << "," << i;
             EXPECT_EQ(g[2], pic.cr[s]);
           }
         }
         return dst;
       })) {
    SUCCEED() << r.path;
  }
}

TEST(FromPlanarEngine, FieldInvertWithOddHeightWritesOneRowPastTheFrame) {
  constexpr uint32_t w = 6, h = 3, ds = 2 * w;
  const std::vector<uint8_t> src = test::RandomBytes(128, 9);
  for (uint32_t mode : {0u, 1u, 2u}) {
    test::GuardedBuffer dst(h * ds, 64);
    cycbcr_fromplanar_fieldinvert(src.data(), src.data() + 64, src.data() + 96, dst.data() + 1, dst.data(),
                                  dst.data() + 2, w, h, ds, w, mode);
    EXPECT_FALSE(dst.GuardsIntact(0)) << mode;
    EXPECT_TRUE(dst.GuardsIntact(ds)) << mode;
  }
}

// Planes -> packed with the fields exchanged -> planes with the fields exchanged
// again gives the planes back (4:2:2, chroma rows as one run).
TEST(ToPlanarEngine, FieldInvertUndoesFromPlanarFieldInvert) {
  constexpr uint32_t w = 10, h = 6;
  const std::vector<uint8_t> planes = test::RandomBytes(w * h * 2, 21);
  const uint8_t* y = planes.data();
  for (const GroupOrder o : {test::kOrderUyvy, test::kOrderYuy2, test::kOrderYvyu}) {
    for (const auto& r : test::RunEveryPath([&] {
           std::vector<uint8_t> packed(h * 2 * w), back(planes.size());
           cycbcr_fromplanar_fieldinvert(y, y + w * h, y + w * h * 3 / 2, packed.data() + o.y, packed.data() + o.cb,
                                         packed.data() + o.cr, w, h, 2 * w, w, 1);
           EXPECT_EQ(cycbcr_toplanar_fieldinvert(packed.data() + o.y, packed.data() + o.cb, packed.data() + o.cr,
                                                 back.data(), back.data() + w * h, back.data() + w * h * 3 / 2, w, h,
                                                 w, 2 * w, 1),
                     w * h * 3 / 2);
           return back;
         })) {
      EXPECT_EQ(r.bytes, planes) << r.path;
    }
  }
}

// In 4:2:0 it is the plain engine applied to the frame with its row pairs exchanged.
TEST(ToPlanarEngine, FieldInvertIsToPlanarOfTheRowSwappedFrame) {
  constexpr uint32_t w = 12, h = 8;
  const std::vector<uint8_t> packed = test::RandomBytes(h * 2 * w, 22);
  std::vector<uint8_t> swapped(packed.size());
  for (uint32_t r = 0; r < h; ++r)
    std::copy_n(packed.begin() + (r ^ 1) * 2 * w, 2 * w, swapped.begin() + r * 2 * w);
  std::vector<uint8_t> a(w * h * 3 / 2), b(a.size());
  cycbcr_toplanar_fieldinvert(packed.data() + 1, packed.data(), packed.data() + 2, a.data(), a.data() + w * h,
                              a.data() + w * h * 5 / 4, w, h, w, 2 * w, 0);
  cycbcr_toplanar(swapped.data() + 1, swapped.data(), swapped.data() + 2, b.data(), b.data() + w * h,
                  b.data() + w * h * 5 / 4, w, h, w, 2 * w, 0);
  EXPECT_EQ(a, b);
}

}  // namespace
}  // namespace zelt
