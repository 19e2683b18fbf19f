#include "core/arch.h"
#include "core/platform.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "core/fault.h"
#include "core/hooks.h"
#include "zelt/zelt_api.h"

#if defined(__x86_64__) || defined(_M_X64) || defined(__i386__) || defined(_M_IX86)
#define ZELT_ON_X86 1
#include <emmintrin.h>
#if defined(_MSC_VER)
#include <intrin.h>
#else
#include <cpuid.h>
#endif
#else
#define ZELT_ON_X86 0
#endif

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <process.h>
#else
#include <pthread.h>
#endif

namespace zelt {

// ---------------------------------------------------------------- processor features

namespace {

uint32_t ProbeFeatures() {
#if ZELT_ON_X86
  unsigned a = 0, b = 0, c = 0, d = 0;
#if defined(_MSC_VER)
  int r[4];
  __cpuid(r, 0);
  const unsigned maxLeaf = static_cast<unsigned>(r[0]);
  __cpuid(r, 1);
  c = static_cast<unsigned>(r[2]);
  d = static_cast<unsigned>(r[3]);
#else
  const unsigned maxLeaf = __get_cpuid_max(0, nullptr);
  if (maxLeaf < 1) return 0;
  __get_cpuid(1, &a, &b, &c, &d);
#endif
  uint32_t f = 0;
  if (d & (1u << 26)) f |= kFeatSse2;
  if (c & (1u << 0)) f |= kFeatSse3;
  if (c & (1u << 9)) f |= kFeatSsse3;
  if (c & (1u << 19)) f |= kFeatSse41;
  const bool osxsave = (c & (1u << 27)) != 0;
  const bool avx = (c & (1u << 28)) != 0;
  if (osxsave && avx && maxLeaf >= 7) {
    uint32_t xcr0;
#if defined(_MSC_VER)
    xcr0 = static_cast<uint32_t>(_xgetbv(0));
    __cpuidex(r, 7, 0);
    b = static_cast<unsigned>(r[1]);
#else
    uint32_t hi;
    __asm__ volatile("xgetbv" : "=a"(xcr0), "=d"(hi) : "c"(0));
    __cpuid_count(7, 0, a, b, c, d);
#endif
    if ((xcr0 & 6u) == 6u && (b & (1u << 5))) f |= kFeatAvx2;
  }
  return f;
#else
  return 0;
#endif
}

uint32_t ProbeExtendedFeatures() {
#if ZELT_ON_X86
  if ((ProbeFeatures() & kFeatAvx2) == 0) return 0;
  unsigned a = 0, b = 0, c = 0, d = 0;
  uint32_t xcr0;
#if defined(_MSC_VER)
  int r[4];
  __cpuidex(r, 7, 0);
  b = static_cast<unsigned>(r[1]);
  xcr0 = static_cast<uint32_t>(_xgetbv(0));
#else
  uint32_t hi;
  __asm__ volatile("xgetbv" : "=a"(xcr0), "=d"(hi) : "c"(0));
  __cpuid_count(7, 0, a, b, c, d);
#endif
  // F (16), DQ (17), BW (30), VL (31); XCR0 bits 5-7: opmask and both ZMM halves.
  constexpr unsigned kAvx512Bits = (1u << 16) | (1u << 17) | (1u << 30) | (1u << 31);
  if ((b & kAvx512Bits) == kAvx512Bits && (xcr0 & 0xE6u) == 0xE6u) return kExtAvx512;
  return 0;
#else
  return 0;
#endif
}

uint32_t DetectedFeatures() {
  static const uint32_t features = ProbeFeatures();
  return features;
}

uint32_t DetectedExtendedFeatures() {
  static const uint32_t features = ProbeExtendedFeatures();
  return features;
}

}  // namespace

namespace detail {
std::atomic<uint64_t> g_featureOverride{0};  // bit 32 set: the low half replaces the probe
std::atomic<uint64_t> g_extendedOverride{0};  // the same for ExtendedFeatures()
std::atomic<const char*> g_faultSite{nullptr};
std::atomic<int> g_faultCountdown{0};
std::atomic<uint64_t> g_allocCount{0};

bool FaultSiteMatches(const char* site) {
  const char* armed = g_faultSite.load(std::memory_order_relaxed);
  if (armed == nullptr || std::strcmp(armed, site) != 0) return false;
  // Countdown: let that many passes through the site go by before throwing.
  return g_faultCountdown.fetch_sub(1, std::memory_order_relaxed) <= 0;
}

void ThrowInjectedFault() { throw std::runtime_error("injected fault"); }
}  // namespace detail

uint32_t CPUFeatureFlags() {
  const uint64_t o = detail::g_featureOverride.load(std::memory_order_relaxed);
  if (o >> 32) return static_cast<uint32_t>(o);
  return DetectedFeatures();
}

uint32_t ExtendedFeatures() {
  const uint64_t o = detail::g_extendedOverride.load(std::memory_order_relaxed);
  if (o >> 32) return static_cast<uint32_t>(o);
  return DetectedExtendedFeatures();
}

// ---------------------------------------------------------------- copies

namespace {

#if ZELT_ON_X86
void StreamCopyNoFence(uint8_t* d, const uint8_t* s, size_t n) {
  // Bring the destination to 16-byte alignment with a short ordinary copy.
  const size_t head = (16 - (reinterpret_cast<uintptr_t>(d) & 15)) & 15;
  std::memcpy(d, s, head);
  d += head;
  s += head;
  n -= head;
  size_t i = 0;
  for (; i + 64 <= n; i += 64) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 16));
    const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 32));
    const __m128i e = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 48));
    _mm_stream_si128(reinterpret_cast<__m128i*>(d + i), a);
    _mm_stream_si128(reinterpret_cast<__m128i*>(d + i + 16), b);
    _mm_stream_si128(reinterpret_cast<__m128i*>(d + i + 32), c);
    _mm_stream_si128(reinterpret_cast<__m128i*>(d + i + 48), e);
  }
  std::memcpy(d + i, s + i, n - i);
}
#endif

}  // namespace

void CopyMemoryFast(void* dst, const void* src, size_t bytes) {
#if ZELT_ON_X86
  if (bytes >= kStreamingThreshold) {
    StreamCopyNoFence(static_cast<uint8_t*>(dst), static_cast<const uint8_t*>(src), bytes);
    _mm_sfence();
    return;
  }
#endif
  if (bytes != 0) std::memcpy(dst, src, bytes);
}

void StreamingFence() {
#if ZELT_ON_X86
  _mm_sfence();
#endif
}

void CopyMemoryStreaming(void* dst, const void* src, size_t bytes) {
#if ZELT_ON_X86
  if (bytes >= 64) {
    StreamCopyNoFence(static_cast<uint8_t*>(dst), static_cast<const uint8_t*>(src), bytes);
    return;
  }
#endif
  if (bytes != 0) std::memcpy(dst, src, bytes);
}

void EndianConvertWord(void* dst, const void* src, size_t count) {
  auto* d = static_cast<uint8_t*>(dst);
  const auto* s = static_cast<const uint8_t*>(src);
  for (size_t i = 0; i < count; ++i) {
    uint16_t w;
    std::memcpy(&w, s + 2 * i, 2);
    w = static_cast<uint16_t>((w << 8) | (w >> 8));
    std::memcpy(d + 2 * i, &w, 2);
  }
}

// ---------------------------------------------------------------- scratch memory

void* QrAlloc(size_t bytes) {
  detail::g_allocCount.fetch_add(1, std::memory_order_relaxed);
  if (bytes == 0) bytes = 1;
#if defined(_WIN32)
  return _aligned_malloc(bytes, 64);
#else
  void* p = nullptr;
  if (posix_memalign(&p, 64, bytes) != 0) return nullptr;
  return p;
#endif
}

void QrFree(void* p) {
#if defined(_WIN32)
  _aligned_free(p);
#else
  std::free(p);
#endif
}

// ---------------------------------------------------------------- threads and events

#if defined(_WIN32)

// Native threads on Windows: a handle may be closed while its thread has not yet
// started, which the MinGW std::thread (over winpthreads) does not survive when
// detached at once.
struct QrThread {
  HANDLE handle;
};

namespace {
struct ThreadStart {
  QrThreadProc proc;
  void* arg;
};

unsigned __stdcall RunThread(void* p) {
  const ThreadStart start = *static_cast<ThreadStart*>(p);
  delete static_cast<ThreadStart*>(p);
  start.proc(start.arg);
  return 0;
}
}  // namespace

QrThread* qrOSCreateThread(QrThreadProc proc, void* arg, const char* /*name*/) {
  auto* start = new ThreadStart{proc, arg};
  const uintptr_t h = _beginthreadex(nullptr, 0, RunThread, start, 0, nullptr);
  if (h == 0) {
    // As std::thread does elsewhere.
    const int err = errno;
    delete start;
    throw std::system_error(err, std::generic_category(), "qrOSCreateThread");
  }
  return new QrThread{reinterpret_cast<HANDLE>(h)};
}

void qrOSCloseThread(QrThread* thread) {
  if (thread == nullptr) return;
  CloseHandle(thread->handle);
  delete thread;
}

#else

struct QrThread {
  std::thread thread;
};

QrThread* qrOSCreateThread(QrThreadProc proc, void* arg, const char* name) {
  std::string label = name ? name : "";
  auto* t = new QrThread;
  t->thread = std::thread([proc, arg, label] {
#if defined(__linux__)
    if (!label.empty()) {
      // The kernel keeps 15 characters of a thread name.
      pthread_setname_np(pthread_self(), label.substr(0, 15).c_str());
    }
#endif
    proc(arg);
  });
  return t;
}

void qrOSCloseThread(QrThread* thread) {
  if (thread == nullptr) return;
  if (thread->thread.joinable()) thread->thread.detach();
  delete thread;
}

#endif

struct QrEvent {
  std::mutex mutex;
  std::condition_variable cv;
  bool set = false;
};

QrEvent* qrOSCreateEvent(const char*) { return new QrEvent; }

void qrOSSetEvent(QrEvent* event) {
  // Notify while holding the lock: a waiter that wakes may close the event at
  // once, and must not find this thread still touching the condition variable.
  std::lock_guard<std::mutex> lock(event->mutex);
  event->set = true;
  event->cv.notify_all();
}

bool qrOSWaitForEvent(QrEvent* event, uint32_t timeoutMs) {
  std::unique_lock<std::mutex> lock(event->mutex);
  return event->cv.wait_for(lock, std::chrono::milliseconds(timeoutMs), [event] { return event->set; });
}

void qrOSCloseEvent(QrEvent* event) { delete event; }

int32_t qrOSInterlockedIncrement(int32_t* counter) {
  return std::atomic_ref<int32_t>(*counter).fetch_add(1, std::memory_order_acq_rel) + 1;
}

int32_t qrOSInterlockedDecrement(int32_t* counter) {
  return std::atomic_ref<int32_t>(*counter).fetch_sub(1, std::memory_order_acq_rel) - 1;
}

int32_t qrOSReadCounter(const int32_t* counter) {
  return std::atomic_ref<int32_t>(*const_cast<int32_t*>(counter)).load(std::memory_order_acquire);
}

void qrOSSleep(uint32_t ms) {
#if defined(_WIN32)
  Sleep(ms);
#else
  std::this_thread::sleep_for(std::chrono::milliseconds(ms));
#endif
}

}  // namespace zelt
