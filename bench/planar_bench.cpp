// 8-bit planar <-> UYVY at HD and UHD, single thread, with libyuv's nearest
// equivalents side by side when it is installed. Compare each job with memcpy of
// the same bytes (memcpy_bench.cpp) from the same run.
#include "bench_util.h"
#include "zelt/ycbcr_planar.h"

#if ZELT_HAVE_LIBYUV
#include <libyuv.h>
#endif

namespace zelt::bench {
namespace {

Size SizeOf(const benchmark::State& state) {
  return {static_cast<uint32_t>(state.range(0)), static_cast<uint32_t>(state.range(1))};
}

// memcpy of a buffer as large as the bytes read plus written by a 4:2:0 <-> 4:2:2 job,
// so the ratio can be read off in one run.
void BM_planar_memcpy_420(benchmark::State& state) {
  const Size s = SizeOf(state);
  const size_t n = size_t{s.w} * s.h * 7 / 4;
  RunMemcpy(state, n);
}

void BM_planar_memcpy_422(benchmark::State& state) {
  const Size s = SizeOf(state);
  const size_t n = size_t{s.w} * s.h * 2;
  RunMemcpy(state, n);
}

using Fn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);

template <Fn F, bool kToPacked, bool k422>
void BM_zelt(benchmark::State& state) {
  const Size s = SizeOf(state);
  const size_t planar = size_t{s.w} * s.h * (k422 ? 2 : 3) / (k422 ? 1 : 2);
  const size_t packed = size_t{s.w} * s.h * 2;
  Buffer src(kToPacked ? planar : packed), dst(kToPacked ? packed : planar);
  const uint32_t ds = kToPacked ? 2 * s.w : s.w, ss = kToPacked ? s.w : 2 * s.w;
  for (auto _ : state) {
    F(dst.data(), src.data(), s.w, s.h, ds, ss);
    benchmark::ClobberMemory();
  }
  SetBytes(state, src.size, dst.size);
}

#define ZELT_SIZES Args({1920, 1080})->Args({3840, 2160})
BENCHMARK(BM_planar_memcpy_420)->ZELT_SIZES;
BENCHMARK(BM_planar_memcpy_422)->ZELT_SIZES;
BENCHMARK(BM_zelt<cycbcr_i420_to_uyvy, true, false>)->Name("BM_zelt_i420_to_uyvy")->ZELT_SIZES;
BENCHMARK(BM_zelt<cycbcr_uyvy_to_i420, false, false>)->Name("BM_zelt_uyvy_to_i420")->ZELT_SIZES;
BENCHMARK(BM_zelt<cycbcr_p422_to_uyvy, true, true>)->Name("BM_zelt_p422_to_uyvy")->ZELT_SIZES;
BENCHMARK(BM_zelt<cycbcr_uyvy_to_p422, false, true>)->Name("BM_zelt_uyvy_to_p422")->ZELT_SIZES;
// Field-sited and YUY2-order routes run the portable engine.
BENCHMARK(BM_zelt<cycbcr_i420_to_yuy2, true, false>)->Name("BM_zelt_i420_to_yuy2")->ZELT_SIZES;
BENCHMARK(BM_zelt<cycbcr_yuy2_to_i420, false, false>)->Name("BM_zelt_yuy2_to_i420")->ZELT_SIZES;

#if ZELT_HAVE_LIBYUV
void BM_libyuv_I420ToUYVY(benchmark::State& state) {
  const Size s = SizeOf(state);
  const size_t luma = size_t{s.w} * s.h;
  Buffer src(luma * 3 / 2), dst(luma * 2);
  const uint8_t* y = src.data();
  for (auto _ : state) {
    libyuv::I420ToUYVY(y, s.w, y + luma, s.w / 2, y + luma * 5 / 4, s.w / 2, dst.data(), 2 * s.w, s.w, s.h);
    benchmark::ClobberMemory();
  }
  SetBytes(state, src.size, dst.size);
}

void BM_libyuv_UYVYToI420(benchmark::State& state) {
  const Size s = SizeOf(state);
  const size_t luma = size_t{s.w} * s.h;
  Buffer src(luma * 2), dst(luma * 3 / 2);
  uint8_t* y = dst.data();
  for (auto _ : state) {
    libyuv::UYVYToI420(src.data(), 2 * s.w, y, s.w, y + luma, s.w / 2, y + luma * 5 / 4, s.w / 2, s.w, s.h);
    benchmark::ClobberMemory();
  }
  SetBytes(state, src.size, dst.size);
}

void BM_libyuv_I422ToUYVY(benchmark::State& state) {
  const Size s = SizeOf(state);
  const size_t luma = size_t{s.w} * s.h;
  Buffer src(luma * 2), dst(luma * 2);
  const uint8_t* y = src.data();
  for (auto _ : state) {
    libyuv::I422ToUYVY(y, s.w, y + luma, s.w / 2, y + luma * 3 / 2, s.w / 2, dst.data(), 2 * s.w, s.w, s.h);
    benchmark::ClobberMemory();
  }
  SetBytes(state, src.size, dst.size);
}

void BM_libyuv_UYVYToI422(benchmark::State& state) {
  const Size s = SizeOf(state);
  const size_t luma = size_t{s.w} * s.h;
  Buffer src(luma * 2), dst(luma * 2);
  uint8_t* y = dst.data();
  for (auto _ : state) {
    libyuv::UYVYToI422(src.data(), 2 * s.w, y, s.w, y + luma, s.w / 2, y + luma * 3 / 2, s.w / 2, s.w, s.h);
    benchmark::ClobberMemory();
  }
  SetBytes(state, src.size, dst.size);
}

BENCHMARK(BM_libyuv_I420ToUYVY)->ZELT_SIZES;
BENCHMARK(BM_libyuv_UYVYToI420)->ZELT_SIZES;
BENCHMARK(BM_libyuv_I422ToUYVY)->ZELT_SIZES;
BENCHMARK(BM_libyuv_UYVYToI422)->ZELT_SIZES;
#endif

}  // namespace
}  // namespace zelt::bench
