// Shared pieces of the benchmarks: frame sizes, buffers, and a counter of bytes
// moved so every job reports bytes/s next to memcpy of the same bytes.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#ifdef _WIN32
#include <malloc.h>
#endif

namespace zelt::bench {

struct Size {
  uint32_t w, h;
};
inline constexpr Size kHd{1920, 1080};
inline constexpr Size kUhd{3840, 2160};

// Page-aligned, touched buffer.
struct Buffer {
  explicit Buffer(size_t n) : size(n), ptr(Allocate(n)) {
    for (size_t i = 0; i < n; ++i) ptr.get()[i] = static_cast<uint8_t>(i * 131 + 7);
  }
  uint8_t* data() { return ptr.get(); }
  size_t size;
  struct Free {
#ifdef _WIN32
    void operator()(uint8_t* p) const { _aligned_free(p); }
#else
    void operator()(uint8_t* p) const { std::free(p); }
#endif
  };
  std::unique_ptr<uint8_t, Free> ptr;

 private:
  static uint8_t* Allocate(size_t n) {
    const size_t rounded = (n + 4095) / 4096 * 4096;
#ifdef _WIN32
    return static_cast<uint8_t*>(_aligned_malloc(rounded, 4096));
#else
    return static_cast<uint8_t*>(std::aligned_alloc(4096, rounded));
#endif
  }
};

// Reports throughput as the bytes read plus the bytes written per iteration.
inline void SetBytes(benchmark::State& state, size_t readBytes, size_t writtenBytes) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(readBytes + writtenBytes));
}

// The baseline every job is compared with: memcpy of `n` bytes between two buffers.
inline void RunMemcpy(benchmark::State& state, size_t n) {
  Buffer src(n), dst(n);
  for (auto _ : state) {
    std::memcpy(dst.data(), src.data(), n);
    benchmark::ClobberMemory();
  }
  SetBytes(state, n, n);
}

}  // namespace zelt::bench
