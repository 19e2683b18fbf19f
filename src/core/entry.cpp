// Module entry. On Windows the loader calls DllMain; elsewhere an ELF constructor
// does the same work when the library is loaded.
#include "core/simd_level.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    DisableThreadLibraryCalls(module);
    zelt::HasBaselineVector.store((zelt::CPUFeatureFlags() & zelt::kFeatSse2) ? 1u : 0u,
                                  std::memory_order_relaxed);
  }
  return TRUE;
}

#else

// There are no thread notifications to switch off on ELF platforms.
__attribute__((constructor)) static void ZeltModuleEntry() {
  zelt::HasBaselineVector.store((zelt::CPUFeatureFlags() & zelt::kFeatSse2) ? 1u : 0u,
                                std::memory_order_relaxed);
}

#endif
