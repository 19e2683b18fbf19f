// Every processor level a host can take, for converters whose paths depend on more
// than AVX2 (SSE4.1 block loops as well as 256-bit ones).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zelt::test {

struct Level {
  std::string name;  // "portable", "sse41", "avx2"
  uint32_t mask;     // feature mask to force with ScopedFeatures
};

// The portable level (SSE2 only) always; SSE4.1 and AVX2 when the host has them.
std::vector<Level> HostLevels();

}  // namespace zelt::test
