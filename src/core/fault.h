// Fault injection for guarded stretches. A guarded converter calls FaultPoint(site)
// inside its try block; normally that is one relaxed load. The test hooks (linked
// into the static twin only) arm a site so that the call throws, which drives the
// converter's real catch-all and error report.
#pragma once

#include <atomic>

namespace zelt {

namespace detail {
extern std::atomic<const char*> g_faultSite;
[[noreturn]] void ThrowInjectedFault();
bool FaultSiteMatches(const char* site);
}  // namespace detail

inline void FaultPoint(const char* site) {
  if (detail::g_faultSite.load(std::memory_order_relaxed) != nullptr) [[unlikely]] {
    if (detail::FaultSiteMatches(site)) detail::ThrowInjectedFault();
  }
}

}  // namespace zelt
