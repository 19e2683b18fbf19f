// Packed 10-bit transport and PQ converters on 1920x1080 frames. Each job runs
// at the baseline level (/0) and at the natural level (/1, AVX2 where present);
// compare bytes/s with BM_memcpy of the v210 frame (5120 * 1080 bytes).
#include <cstring>

#include "bench_util.h"
#include "core/testing.h"
#include "zelt/pq.h"
#include "zelt/rfc4175.h"

namespace zelt::bench {
namespace {

constexpr uint32_t kW = 1920, kH = 1080;
constexpr uint32_t kV210Stride = 5120, kPackedLine = kW * 20 / 8;
constexpr size_t kV210Frame = size_t{kV210Stride} * kH, kPackedFrame = size_t{kPackedLine} * kH;

// Forces the baseline for range(0) == 0; the next call chooses the level again.
struct Level {
  explicit Level(benchmark::State& state) {
    if (state.range(0) == 0) zelt::testing::ForceFeatureMask((1u << 5) | (1u << 7) | (1u << 13) | (1u << 14));
    zelt::testing::ResetSimdLevel();
  }
  ~Level() {
    zelt::testing::ClearFeatureMask();
    zelt::testing::ResetSimdLevel();
  }
};

void BM_Packed_to_v210(benchmark::State& state) {
  Level level(state);
  Buffer src(kPackedFrame), dst(kV210Frame);
  for (auto _ : state) {
    zlt_YCbCr10Packed_to_v210(dst.data(), src.data(), kW, kH, 0);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kPackedFrame, kV210Frame);
}

void BM_v210_to_Packed(benchmark::State& state) {
  Level level(state);
  Buffer src(kV210Frame), dst(kPackedFrame);
  for (auto _ : state) {
    zlt_v210_to_YCbCr10Packed(dst.data(), src.data(), kW, kV210Stride, kH, 0);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kV210Frame, kPackedFrame);
}

// range(1): 0 line writer, 1 bit writer.
void BM_v210_to_Packets(benchmark::State& state) {
  Level level(state);
  const size_t packets = size_t{kW} * kH * 20 / 9600;
  Buffer src(kV210Frame), dst(packets * 1280);
  for (auto _ : state) {
    zlt_v210_to_YCbCr10PackedToPacket(dst.data(), reinterpret_cast<const uint32_t*>(src.data()), kW, kH, kV210Stride,
                                      1280, 0, 0, 0, static_cast<uint8_t>(state.range(1)));
    benchmark::ClobberMemory();
  }
  SetBytes(state, kV210Frame, packets * 1200);
}

// A frame's RFC 4175 payloads, one line (960 pgroups) per call; range(1) is the start phase.
void BM_4175_to_v210(benchmark::State& state) {
  Level level(state);
  Buffer src(kPackedFrame), dst(kV210Frame);
  const uint32_t phase = static_cast<uint32_t>(state.range(1));
  // A line starting at pixel `phase` holds 960 - phase / 2 pairs; those that complete
  // the first group come on top of `pgroups`, which leaves 957 at phase 2 or 4.
  const int32_t pairs = phase == 0 ? 960 : 957;
  for (auto _ : state) {
    for (uint32_t y = 0; y < kH; ++y)
      zlt_4175_to_v210(reinterpret_cast<uint32_t*>(dst.data() + size_t{y} * kV210Stride), src.data() + size_t{y} * kPackedLine,
                       static_cast<int32_t>(kPackedLine), pairs, phase);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kPackedFrame, kV210Frame);
}

void BM_Y210_to_v210(benchmark::State& state) {
  Level level(state);
  Buffer src(size_t{kW} * 4 * kH), dst(kV210Frame);
  for (auto _ : state) {
    zlt_Y210_to_v210(dst.data(), src.data(), kV210Stride, kW * 4, kW, kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, size_t{kW} * 4 * kH, kV210Frame);
}

void BM_Y210_to_uyvy(benchmark::State& state) {
  Level level(state);
  Buffer src(size_t{kW} * 4 * kH), dst(size_t{kW} * 2 * kH);
  for (auto _ : state) {
    zlt_Y210_to_uyvy(dst.data(), src.data(), kW * 2, kW * 4, kW, kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, size_t{kW} * 4 * kH, size_t{kW} * 2 * kH);
}

// PQ converters; range(1) picks the export, the frame is 5120 * 1080 bytes either way.
void BM_PQ(benchmark::State& state) {
  using Fn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t);
  static const Fn fns[] = {zlt_rgb_to_st2084, zlt_st2084_to_rgb, zlt_yuv2_to_st2084,
                           zlt_st2084_to_yuv2, zlt_v210_to_st2084, zlt_st2084_to_v210};
  static const char* names[] = {"rgb_to_st2084", "st2084_to_rgb", "yuv2_to_st2084",
                                "st2084_to_yuv2", "v210_to_st2084", "st2084_to_v210"};
  Level level(state);
  const Fn fn = fns[state.range(1)];
  state.SetLabel(names[state.range(1)]);
  Buffer src(kV210Frame + 64), dst(kV210Frame + 64);
  for (auto _ : state) {
    fn(dst.data(), src.data(), kV210Stride, kV210Stride, kH);
    benchmark::ClobberMemory();
  }
  SetBytes(state, kV210Frame, kV210Frame);
}

BENCHMARK(BM_Packed_to_v210)->Arg(0)->Arg(1);
BENCHMARK(BM_v210_to_Packed)->Arg(0)->Arg(1);
BENCHMARK(BM_v210_to_Packets)->Args({0, 0})->Args({1, 0})->Args({1, 1});
BENCHMARK(BM_4175_to_v210)->Args({0, 0})->Args({1, 0})->Args({1, 2});
BENCHMARK(BM_Y210_to_v210)->Arg(0)->Arg(1);
BENCHMARK(BM_Y210_to_uyvy)->Arg(0)->Arg(1);
BENCHMARK(BM_PQ)->ArgsProduct({{1}, {0, 1, 2, 3, 4, 5}});

}  // namespace
}  // namespace zelt::bench
