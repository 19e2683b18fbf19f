// Fuzz target: cycbcr_transcode over every pair of codes (aliases, the source-only
// 422P and an unknown code included) with random sizes, strides, matrix ids and
// flags. Frames are allocated exactly as large as their layout needs (FrameBytes,
// plus any documented allowance), so the address sanitizer reports the first byte
// read or written beyond. On a processor with AVX2 every input runs on both paths
// at level 5, with and without the AVX2 feature bit, and the outputs, return values
// and (rewritten-in-place) sources must agree (within the documented tolerance of a
// few routes).
//
// Input bytes: 0 source code, 1 destination code, 2-3 width, 4 height,
// 5 source stride mode, 6-7 source stride, 8 destination stride mode,
// 9-10 destination stride, 11 matrix, 12-15 flags, the rest seeds the pixels.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "support/frame_rules.h"
#include "transcode/routes.h"
#include "core/formats.h"
#include "core/platform.h"
#include "core/simd_level.h"
#include "core/testing.h"
#include "zelt/ycbcr.h"

namespace {

using namespace zelt;

class Reader {
 public:
  Reader(const uint8_t* p, size_t n) : p_(p), n_(n) {}
  uint8_t U8() { return pos_ < n_ ? p_[pos_++] : 0; }
  uint16_t U16() { return static_cast<uint16_t>(U8() | (U8() << 8)); }
  uint32_t U32() { return U16() | (static_cast<uint32_t>(U16()) << 16); }
  const uint8_t* rest() const { return p_ + pos_; }
  size_t left() const { return n_ - pos_; }

 private:
  const uint8_t* p_;
  size_t n_;
  size_t pos_ = 0;
};

constexpr size_t kCodeCount = 20 + std::size(test::kFuzzExtraCodes);

uint32_t PickCode(uint8_t b) {
  const size_t i = b % kCodeCount;
  return i < 20 ? kFormatAliases[i].code : test::kFuzzExtraCodes[i - 20];
}

uint32_t NaturalStride(Layout layout, uint32_t width) {
  switch (layout) {
    case Layout::RGB32: return width * 4;
    case Layout::V012: return V012MinPitch(width);
    case Layout::I420:
    case Layout::YV12:
    case Layout::P422: return width;
    default: return width * 2;
  }
}

uint32_t PickStride(Layout layout, uint32_t width, uint8_t mode, uint16_t raw) {
  const uint32_t natural = NaturalStride(layout, width);
  switch (mode % 4) {
    case 0: return natural;
    case 1: return 0;
    case 2: return natural + raw % 256;
    default: return raw;
  }
}

void FillPixels(std::vector<uint8_t>& v, const uint8_t* seed, size_t n) {
  uint32_t x = 0x9E3779B9u;
  for (size_t i = 0; i < n && i < 64; ++i) x = (x ^ seed[i]) * 16777619u;
  for (size_t i = 0; i < v.size(); ++i) {
    if (i < n) {
      v[i] = seed[i];
      continue;
    }
    x ^= x << 13;
    x ^= x >> 17;
    x ^= x << 5;
    v[i] = static_cast<uint8_t>(x);
  }
}

[[noreturn]] void Fail(const char* what, uint32_t srcCode, uint32_t dstCode, uint32_t w, uint32_t h) {
  std::fprintf(stderr, "%s: src 0x%08X dst 0x%08X %ux%u\n", what, srcCode, dstCode, w, h);
  std::abort();
}

struct Run {
  uint32_t result;
  std::vector<uint8_t> src, dst;
};

constexpr uint32_t kMaskSse41 = 1u << 5 | 1u << 7 | 1u << 13 | 1u << 14;
constexpr uint32_t kMaskAvx2 = kMaskSse41 | 1u << 23;

// One conversion at the level chosen from `levelMask`, with `callMask` as what a
// fresh CPUFeatureFlags() reports during the call. The buffers are allocated at
// exactly their size (never null, even when empty) and copied out afterwards.
Run Convert(uint32_t levelMask, uint32_t callMask, const std::vector<uint8_t>& src, size_t dstBytes, uint32_t w,
            uint32_t h, uint32_t ds, uint32_t ss, uint32_t matrix, uint32_t flags, uint32_t dstCode,
            uint32_t srcCode) {
  zelt::testing::ForceFeatureMask(levelMask);
  zelt::testing::ResetSimdLevel();
  SimdGuard();
  zelt::testing::ForceFeatureMask(callMask);
  std::unique_ptr<uint8_t[]> s(new uint8_t[src.size()]), d(new uint8_t[dstBytes]);
  if (!src.empty()) std::memcpy(s.get(), src.data(), src.size());
  std::memset(d.get(), 0xA5, dstBytes);
  Run r{cycbcr_transcode(d.get(), s.get(), w, h, ds, ss, matrix, flags, dstCode, srcCode),
        std::vector<uint8_t>(s.get(), s.get() + src.size()), std::vector<uint8_t>(d.get(), d.get() + dstBytes)};
  zelt::testing::ClearFeatureMask();
  return r;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Reader in(data, size);
  const uint32_t srcCode = PickCode(in.U8());
  const uint32_t dstCode = PickCode(in.U8());
  const uint32_t w = in.U16() % 1540;
  const uint32_t h = in.U8() % 24;
  const uint8_t srcMode = in.U8();
  const uint16_t srcRaw = in.U16();
  const uint8_t dstMode = in.U8();
  const uint16_t dstRaw = in.U16();
  const uint8_t matrixByte = in.U8();
  const uint32_t flags = in.U32();
  // Mostly the defined matrix ids, sometimes anything at all.
  const uint32_t matrix = matrixByte < 0xF0 ? matrixByte % 8 : 0xFFFFFF00u | matrixByte;

  const uint8_t srcLayout = srcCode == kCode422P ? static_cast<uint8_t>(Layout::P422) : LayoutOfCode(srcCode);
  const uint8_t dstLayout = LayoutOfCode(dstCode);
  const bool routed = srcLayout != kNoLayout && dstLayout != kNoLayout &&
                      transcode::FindRoute(static_cast<Layout>(srcLayout), static_cast<Layout>(dstLayout)) != nullptr;
  if (!routed) {
    // No route: 0, and neither buffer touched.
    uint8_t s[16], d[16];
    std::memset(s, 0x3C, sizeof s);
    std::memset(d, 0xC3, sizeof d);
    const uint32_t r = cycbcr_transcode(d, s, w, h, dstRaw, srcRaw, matrix, flags, dstCode, srcCode);
    for (size_t i = 0; i < 16; ++i) {
      if (s[i] != 0x3C || d[i] != 0xC3) Fail("unrouted pair touched a buffer", srcCode, dstCode, w, h);
    }
    if (r != 0) Fail("unrouted pair returned non-zero", srcCode, dstCode, w, h);
    return 0;
  }

  const Layout sl = static_cast<Layout>(srcLayout), dl = static_cast<Layout>(dstLayout);
  const uint32_t ss = PickStride(sl, w, srcMode, srcRaw);
  const uint32_t ds = PickStride(dl, w, dstMode, dstRaw);
  uint32_t nss = ss, nds = ds;
  NormalizeStride(srcCode, w, &nss);
  NormalizeStride(dstCode, w, &nds);
  const size_t srcBytes = test::FrameBytes(sl, w, h, nss);
  const size_t dstBytes = test::FrameBytes(dl, w, h, nds);
  if (srcBytes > (8u << 20) || dstBytes > (8u << 20)) return 0;
  const test::Allowance extra = test::RouteAllowance(sl, dl, w, h, nss, nds);

  std::vector<uint8_t> src(srcBytes + extra.src);
  FillPixels(src, in.rest(), in.left());
  const size_t dstAlloc = dstBytes + extra.dst;

  // The caller's strides go in; the dispatcher normalises them itself. Level 4 is
  // the baseline most processors run (IPP-equivalent paths included); it is only
  // checked for bounds. The 256-bit variant of a route is compared with what the
  // same level 5 does when the fresh feature test lacks AVX2.
  Convert(kMaskSse41, kMaskSse41, src, dstAlloc, w, h, ds, ss, matrix, flags, dstCode, srcCode);
  static const bool hostAvx2 = (CPUFeatureFlags() & kFeatAvx2) != 0;
  // Rows that overlap (an RGB32 or planar stride below the row size, which the
  // dispatcher leaves alone) make the bytes depend on the order of the writes, so
  // only frames whose rows stand apart are compared.
  // Likewise the chroma planes of a 4:2:0 frame with an odd height, whose last
  // chroma row runs past its quarter plane into the next.
  auto overlaps = [w, h](Layout l, uint32_t stride) {
    if ((l == Layout::I420 || l == Layout::YV12) && (h & 1) != 0) return true;
    return (l == Layout::RGB32 || test::IsPlanar(l)) && stride < NaturalStride(l, w);
  };
  const int tolerance = test::PathTolerance(sl, dl);
  if (hostAvx2 && tolerance >= 0 && !overlaps(sl, nss) && !overlaps(dl, nds)) {
    const Run base = Convert(kMaskAvx2, kMaskSse41, src, dstAlloc, w, h, ds, ss, matrix, flags, dstCode, srcCode);
    const Run wide = Convert(kMaskAvx2, kMaskAvx2, src, dstAlloc, w, h, ds, ss, matrix, flags, dstCode, srcCode);
    if (wide.result != base.result) Fail("paths return different counts", srcCode, dstCode, w, h);
    if (!test::PathsAgree(wide.dst.data(), base.dst.data(), dstAlloc, tolerance)) {
      Fail("paths write different bytes", srcCode, dstCode, w, h);
    }
    if (wide.src != base.src) Fail("paths leave different sources", srcCode, dstCode, w, h);
  }
  return 0;
}
