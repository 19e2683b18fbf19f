// Running a conversion at every processor level that has a path of its own, and
// catching what the library writes to its error log.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "support/paths.h"

namespace zelt::test {

struct Level {
  std::string name;       // "portable", "sse41", "avx2", "avx512"
  uint32_t mask;          // feature mask to force with ScopedFeatures
  uint32_t extended = 0;  // extended features to force with it
};

// Levels whose converters may take different paths: SSE2 only (no 128-bit SSE4.1
// blocks) always; SSE4.1 (level 4), AVX2 (level 5) and AVX-512 (level 5) when the
// host has them.
std::vector<Level> HostLevels();

// Like RunEveryPath, once per level of HostLevels().
std::vector<PathResult> RunEveryLevel(const std::function<std::vector<uint8_t>()>& convert);

// While alive, the library's error messages (and their flags) are collected here
// instead of going to standard error.
class ErrorLogCapture {
 public:
  ErrorLogCapture();
  ~ErrorLogCapture();
  ErrorLogCapture(const ErrorLogCapture&) = delete;
  ErrorLogCapture& operator=(const ErrorLogCapture&) = delete;
  std::vector<std::string> messages;
  std::vector<uint32_t> flags;
};

}  // namespace zelt::test
