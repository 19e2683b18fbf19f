// Forcing the processor level, and running a conversion once per code path.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zelt::test {

// While alive: CPUFeatureFlags() returns `mask`, ExtendedFeatures() returns
// `extended` (none by default, so kMaskAvx2 means the 256-bit kernels even on an
// AVX-512 host), and SimdLevel starts again at -2, so the next conversion chooses
// its level from `mask`. Restores the real features and -2 when it ends.
class ScopedFeatures {
 public:
  explicit ScopedFeatures(uint32_t mask, uint32_t extended = 0);
  ~ScopedFeatures();
  ScopedFeatures(const ScopedFeatures&) = delete;
  ScopedFeatures& operator=(const ScopedFeatures&) = delete;
};

// Feature masks of typical processors.
inline constexpr uint32_t kMaskNone = 0;
inline constexpr uint32_t kMaskSse2 = 1u << 5;
inline constexpr uint32_t kMaskSse41 = (1u << 5) | (1u << 7) | (1u << 13) | (1u << 14);
inline constexpr uint32_t kMaskAvx2 = kMaskSse41 | (1u << 23);

// The real processor's mask (before any override).
uint32_t RealFeatureMask();
bool HostHasAvx2();
bool HostHasAvx512();

struct PathResult {
  std::string path;  // "baseline", "avx2" or "avx512"
  std::vector<uint8_t> bytes;
};

// Runs `convert` once with the level forced to the baseline (mask kMaskSse41,
// level 4), once at level 5 with AVX2 (when the host has AVX2) and once more with
// AVX-512 on top (when the host has it); each run returns the bytes it produced.
std::vector<PathResult> RunEveryPath(const std::function<std::vector<uint8_t>()>& convert);

// Widths worth trying: tiny, odd, around every block size (6, 8, 16, 32, 48, 64)
// and a few realistic ones.
std::vector<uint32_t> InterestingWidths();

}  // namespace zelt::test
