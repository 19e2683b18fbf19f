// The path selector: the one place where the processor level turns into a choice of
// kernels. A converter opens with SimdGuard(), reads CurrentPaths() once, and either
// picks a kernel from its family's KernelSet with Select(), or asks AtLevels() whether
// one of the fast 8-bit primitive paths applies at this level.
//
// The rules (pinned by tests/core/paths_test.cpp):
//  - the 256-bit kernels run when SimdLevel is 5 and a fresh CPUFeatureFlags() still
//    has bit 23 (both read on every call);
//  - inside that path, a 512-bit kernel of the same family runs instead when the
//    processor has AVX-512 (ExtendedFeatures()); it gives the same bytes;
//  - the 128-bit SSE4.1 block loops (row pipeline, channel swaps) test bit 14 of the
//    processor directly, whatever the level, when no wider kernel is taken;
//  - the fast 8-bit primitive paths are taken at the levels their LevelSet names;
//  - everything else runs the portable kernel.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "core/arch.h"
#include "core/platform.h"
#include "core/simd_level.h"

namespace zelt {

struct Paths {
  int32_t level = -2;   // SimdLevel
  bool avx2 = false;    // level 5 and bit 23
  bool avx512 = false;  // avx2, and the processor has AVX-512
  bool sse41 = false;   // bit 14, whatever the level
};

inline Paths CurrentPaths() {
  Paths p;
  p.level = CurrentSimdLevel();
  const uint32_t f = CPUFeatureFlags();
  p.avx2 = p.level == 5 && (f & kFeatAvx2) != 0;
  p.avx512 = p.avx2 && (ExtendedFeatures() & kExtAvx512) != 0;
#if ZELT_X86
  p.sse41 = (f & kFeatSse41) != 0;
#endif
  return p;
}

// A family's kernels for one job: the portable one, and the vector variants it has
// (nullptr where it has none). Variants are named after the portable kernel: Foo,
// FooSse41, FooAvx2, FooAvx512.
template <class Fn>
struct KernelSet {
  Fn portable;
  Fn sse41 = nullptr;
  Fn avx2 = nullptr;
  Fn avx512 = nullptr;
};

// The widest variant the rules allow and the family has.
template <class Fn>
Fn Select(const KernelSet<Fn>& k, const Paths& p) {
  if (p.avx512 && k.avx512 != nullptr) return k.avx512;
  if (p.avx2 && k.avx2 != nullptr) return k.avx2;
  if (p.sse41 && k.sse41 != nullptr) return k.sse41;
  return k.portable;
}

// Levels at which a fast 8-bit primitive path is taken: bit i stands for level i.
using LevelSet = uint8_t;

constexpr LevelSet LevelsOf(std::initializer_list<int> levels) {
  LevelSet s = 0;
  for (int l : levels) s = static_cast<LevelSet>(s | (1u << l));
  return s;
}

// Packed 4:2:2 to planar 4:2:2 through the planar reorder primitive.
inline constexpr LevelSet kPlanarReorderLevels = LevelsOf({4, 5, 6});
// UYVY to RGB32 through the fixed-point fast decoders (odd matrix ids only).
inline constexpr LevelSet kPackedDecodeLevels = LevelsOf({1, 2, 3, 4, 6});

inline bool AtLevels(LevelSet set, const Paths& p) {
  return p.level >= 0 && p.level < 8 && ((set >> p.level) & 1u) != 0;
}

}  // namespace zelt
