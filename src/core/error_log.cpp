#include "core/error_log.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>

#include "zelt/zelt_api.h"

namespace zelt {

namespace {
std::mutex g_logMutex;
ZeltErrorLogFn g_logFn = nullptr;
void* g_logUser = nullptr;
}  // namespace

void ErrFmtOut(uint32_t flags, uint32_t, uint32_t, const char* format, ...) {
  char small[512];
  std::string text;
  va_list ap;
  va_start(ap, format);
  va_list ap2;
  va_copy(ap2, ap);
  const int n = std::vsnprintf(small, sizeof small, format, ap);
  va_end(ap);
  if (n < 0) {
    va_end(ap2);
    return;
  }
  if (static_cast<size_t>(n) < sizeof small) {
    text.assign(small, static_cast<size_t>(n));
  } else {
    text.resize(static_cast<size_t>(n) + 1);
    std::vsnprintf(text.data(), text.size(), format, ap2);
    text.resize(static_cast<size_t>(n));
  }
  va_end(ap2);

  std::lock_guard<std::mutex> lock(g_logMutex);
  if (g_logFn != nullptr) {
    g_logFn(g_logUser, flags, text.c_str());
  } else {
    std::fputs(text.c_str(), stderr);
    std::fflush(stderr);
  }
}

}  // namespace zelt

extern "C" ZELT_API void zeltSetErrorLog(ZeltErrorLogFn fn, void* user) {
  std::lock_guard<std::mutex> lock(zelt::g_logMutex);
  zelt::g_logFn = fn;
  zelt::g_logUser = user;
}
