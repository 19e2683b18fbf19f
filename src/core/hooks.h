// State behind the test hooks. The library reads it; only testing.cpp (linked into
// the static twin, never into the shared library) writes it.
#pragma once

#include <atomic>
#include <cstdint>

namespace zelt::detail {
extern std::atomic<uint64_t> g_featureOverride;
extern std::atomic<uint64_t> g_extendedOverride;
extern std::atomic<int> g_faultCountdown;
extern std::atomic<uint64_t> g_allocCount;
}  // namespace zelt::detail
