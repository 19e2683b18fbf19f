// YCbCr to RGB32 at 1920x1080, next to memcpy of the destination frame and, when
// installed, libyuv doing the same job.
#include <cstring>

#include "bench_util.h"
#include "zelt/ycbcr_to_rgb.h"

#if ZELT_HAVE_LIBYUV
#include <libyuv.h>
#endif

namespace zelt::bench {
namespace {

constexpr uint32_t kW = kHd.w, kH = kHd.h;

void BM_ToRgb_memcpy_rgb32(benchmark::State& state) {
  const size_t n = size_t{kW} * kH * 4;
  RunMemcpy(state, n);
}

using PackedFn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t);

template <PackedFn F>
void Packed(benchmark::State& state, size_t srcBytes, uint32_t srcStride) {
  Buffer src(srcBytes), dst(size_t{kW} * kH * 4);
  const uint32_t matrix = static_cast<uint32_t>(state.range(0)), flags = static_cast<uint32_t>(state.range(1));
  for (auto _ : state) {
    F(dst.data(), src.data(), kW, kH, kW * 4, srcStride, matrix, flags);
    benchmark::ClobberMemory();
  }
  SetBytes(state, srcBytes, dst.size);
}

void BM_uyvy_to_rgb32(benchmark::State& s) { Packed<cycbcr_uyvy_to_rgb32>(s, size_t{kW} * kH * 2, kW * 2); }
void BM_yuy2_to_rgb32(benchmark::State& s) { Packed<cycbcr_yuy2_to_rgb32>(s, size_t{kW} * kH * 2, kW * 2); }
void BM_yv12_to_rgb32(benchmark::State& s) { Packed<cycbcr_yv12_to_rgb32>(s, size_t{kW} * kH * 3 / 2, kW); }
void BM_012v_to_rgb32(benchmark::State& s) { Packed<cycbcr_012v_to_rgb32>(s, size_t{5120} * kH, 5120); }

// (matrix, flags): id 0 in B,G,R,A order (the rounded path for YV12), id 1 at
// order 2 (the general path everywhere).
BENCHMARK(BM_ToRgb_memcpy_rgb32);
BENCHMARK(BM_uyvy_to_rgb32)->Args({0, 0})->Args({1, 2});
BENCHMARK(BM_yuy2_to_rgb32)->Args({0, 0});
BENCHMARK(BM_yv12_to_rgb32)->Args({0, 0})->Args({0, 2});
BENCHMARK(BM_012v_to_rgb32)->Args({0, 0});

#if ZELT_HAVE_LIBYUV
void BM_libyuv_UYVYToARGB(benchmark::State& state) {
  Buffer src(size_t{kW} * kH * 2), dst(size_t{kW} * kH * 4);
  for (auto _ : state) {
    libyuv::UYVYToARGB(src.data(), kW * 2, dst.data(), kW * 4, kW, kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, src.size, dst.size);
}
void BM_libyuv_YUY2ToARGB(benchmark::State& state) {
  Buffer src(size_t{kW} * kH * 2), dst(size_t{kW} * kH * 4);
  for (auto _ : state) {
    libyuv::YUY2ToARGB(src.data(), kW * 2, dst.data(), kW * 4, kW, kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, src.size, dst.size);
}
void BM_libyuv_I420ToARGB(benchmark::State& state) {
  Buffer src(size_t{kW} * kH * 3 / 2), dst(size_t{kW} * kH * 4);
  const uint8_t* y = src.data();
  const uint8_t* u = y + size_t{kW} * kH;
  const uint8_t* v = u + size_t{kW} * kH / 4;
  for (auto _ : state) {
    libyuv::I420ToARGB(y, kW, u, kW / 2, v, kW / 2, dst.data(), kW * 4, kW, kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, src.size, dst.size);
}
BENCHMARK(BM_libyuv_UYVYToARGB);
BENCHMARK(BM_libyuv_YUY2ToARGB);
BENCHMARK(BM_libyuv_I420ToARGB);
#endif

}  // namespace
}  // namespace zelt::bench
