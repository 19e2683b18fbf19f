// Direct converters at 3840x2160: channel swaps, flips, field flip, line average
// and chroma strip, next to memcpy of the same bytes and, where installed, libyuv.
#include <cstring>

#include "bench_util.h"
#include "zelt/direct.h"

#if ZELT_HAVE_LIBYUV
#include <libyuv.h>
#endif

namespace zelt::bench {
namespace {

constexpr uint32_t kW = kUhd.w, kH = kUhd.h;
constexpr size_t kRgbBytes = size_t{kW} * kH * 4;
constexpr size_t kYuvBytes = size_t{kW} * kH * 2;

// The yardsticks: one frame copied, read once and written once.
void BM_Direct_memcpy_Rgb32(benchmark::State& state) {
  RunMemcpy(state, kRgbBytes);
}
BENCHMARK(BM_Direct_memcpy_Rgb32)->Unit(benchmark::kMillisecond);

void BM_Direct_memcpy_2vuy(benchmark::State& state) {
  RunMemcpy(state, kYuvBytes);
}
BENCHMARK(BM_Direct_memcpy_2vuy)->Unit(benchmark::kMillisecond);

template <uint32_t (*Fn)(uint32_t*, const uint32_t*, uint64_t)>
void BM_Direct_Swap(benchmark::State& state) {
  Buffer src(kRgbBytes), dst(kRgbBytes);
  for (auto _ : state) {
    Fn(reinterpret_cast<uint32_t*>(dst.data()), reinterpret_cast<const uint32_t*>(src.data()), uint64_t{kW} * kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kRgbBytes, kRgbBytes);
}
BENCHMARK(BM_Direct_Swap<argb2bgra>)->Name("BM_Direct_argb2bgra")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Direct_Swap<bgra2rgba>)->Name("BM_Direct_bgra2rgba")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Direct_Swap<abgr2bgra>)->Name("BM_Direct_abgr2bgra")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Direct_Swap<argb2rgba>)->Name("BM_Direct_argb2rgba")->Unit(benchmark::kMillisecond);

void BM_Direct_FlipHorz(benchmark::State& state) {
  Buffer src(kRgbBytes), dst(kRgbBytes);
  for (auto _ : state) {
    zlt_flip_horz(dst.data(), src.data(), kW, kH, kW * 4);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kRgbBytes, kRgbBytes);
}
BENCHMARK(BM_Direct_FlipHorz)->Unit(benchmark::kMillisecond);

void BM_Direct_FlipVert(benchmark::State& state) {
  Buffer src(kRgbBytes), dst(kRgbBytes);
  for (auto _ : state) {
    zlt_flip_vert(dst.data(), src.data(), kW, kH, kW * 4);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kRgbBytes, kRgbBytes);
}
BENCHMARK(BM_Direct_FlipVert)->Unit(benchmark::kMillisecond);

void BM_Direct_FlipVertInPlace(benchmark::State& state) {
  Buffer pic(kRgbBytes);
  for (auto _ : state) {
    zlt_flip_vert(pic.data(), pic.data(), kW, kH, kW * 4);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kRgbBytes, kRgbBytes);
}
BENCHMARK(BM_Direct_FlipVertInPlace)->Unit(benchmark::kMillisecond);

void BM_Direct_FieldFlip(benchmark::State& state) {
  Buffer pic(kRgbBytes);
  for (auto _ : state) {
    zlt_change_field_rgb(pic.data(), 3, kW, kH, kW * 4, nullptr, 0);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kRgbBytes, kRgbBytes);
}
BENCHMARK(BM_Direct_FieldFlip)->Unit(benchmark::kMillisecond);

// Line n averaged with the line n steps in; a step of twice the stride keeps the
// two ranges apart (the buffer holds two frames). Reads two frames, writes one.
void BM_Direct_LineAverage(benchmark::State& state) {
  Buffer pic(2 * kRgbBytes);
  for (auto _ : state) {
    zlt_change_field_rgb(pic.data(), 4, kW, kH, kW * 4, nullptr, 2 * kW * 4);
    benchmark::ClobberMemory();
  }
  SetBytes(state, 2 * kRgbBytes, kRgbBytes);
}
BENCHMARK(BM_Direct_LineAverage)->Unit(benchmark::kMillisecond);

void BM_Direct_StripChroma(benchmark::State& state) {
  Buffer src(kYuvBytes), dst(kYuvBytes);
  for (auto _ : state) {
    zlt_2yuv_strip_chroma(dst.data(), kW * 2, src.data(), kW * 2, kW, kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kYuvBytes, kYuvBytes);
}
BENCHMARK(BM_Direct_StripChroma)->Unit(benchmark::kMillisecond);

#if ZELT_HAVE_LIBYUV
// libyuv's nearest jobs: ARGBShuffle with a byte-reversing mask, ARGBToABGR
// (bytes 0 and 2), ARGBMirror and a bottom-up ARGBCopy (vertical flip).
void BM_Libyuv_ARGBShuffleReverse(benchmark::State& state) {
  static const uint8_t kReverse[16] = {3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12};
  Buffer src(kRgbBytes), dst(kRgbBytes);
  for (auto _ : state) {
    libyuv::ARGBShuffle(src.data(), kW * 4, dst.data(), kW * 4, kReverse, kW, kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kRgbBytes, kRgbBytes);
}
BENCHMARK(BM_Libyuv_ARGBShuffleReverse)->Unit(benchmark::kMillisecond);

void BM_Libyuv_ARGBToABGR(benchmark::State& state) {
  Buffer src(kRgbBytes), dst(kRgbBytes);
  for (auto _ : state) {
    libyuv::ARGBToABGR(src.data(), kW * 4, dst.data(), kW * 4, kW, kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kRgbBytes, kRgbBytes);
}
BENCHMARK(BM_Libyuv_ARGBToABGR)->Unit(benchmark::kMillisecond);

void BM_Libyuv_ARGBMirror(benchmark::State& state) {
  Buffer src(kRgbBytes), dst(kRgbBytes);
  for (auto _ : state) {
    libyuv::ARGBMirror(src.data(), kW * 4, dst.data(), kW * 4, kW, kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kRgbBytes, kRgbBytes);
}
BENCHMARK(BM_Libyuv_ARGBMirror)->Unit(benchmark::kMillisecond);

void BM_Libyuv_ARGBCopyFlipped(benchmark::State& state) {
  Buffer src(kRgbBytes), dst(kRgbBytes);
  for (auto _ : state) {
    libyuv::ARGBCopy(src.data(), kW * 4, dst.data(), kW * 4, kW, -static_cast<int>(kH));
    benchmark::ClobberMemory();
  }
  SetBytes(state, kRgbBytes, kRgbBytes);
}
BENCHMARK(BM_Libyuv_ARGBCopyFlipped)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
}  // namespace zelt::bench
