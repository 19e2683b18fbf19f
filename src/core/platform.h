// Process-wide services every family uses: processor features, copies, scratch
// memory, threads, events and atomic counters.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelt {

// Bits of the CPUFeatureFlags() mask. Only these five are ever set.
//   bit 5  SSE2    the x86-64 baseline vector set (also sets HasBaselineVector)
//   bit 7  SSE3
//   bit 13 SSSE3
//   bit 14 SSE4.1  (some direct converters test it for their 128-bit paths)
//   bit 23 AVX2, and the OS saves the YMM state (XCR0 bits 1 and 2)
inline constexpr uint32_t kFeatSse2 = 1u << 5;
inline constexpr uint32_t kFeatSse3 = 1u << 7;
inline constexpr uint32_t kFeatSsse3 = 1u << 13;
inline constexpr uint32_t kFeatSse41 = 1u << 14;
inline constexpr uint32_t kFeatAvx2 = 1u << 23;

// Feature mask of the running processor (0 on other architectures). The processor
// is probed once; later calls cost a load and a compare.
uint32_t CPUFeatureFlags();

// Features outside that mask, read only inside the level-5 path: a wider kernel may
// run there when the processor offers it, giving the same bytes as the 256-bit one.
//   kExtAvx512  AVX-512 F, BW, VL and DQ, and the OS saves the opmask and ZMM state
inline constexpr uint32_t kExtAvx512 = 1u << 0;
uint32_t ExtendedFeatures();

// Copies of at least this many bytes use non-temporal (streaming) stores. Measured
// here: below it (source and destination still fit the 32 MiB last-level cache
// together) memcpy is faster; above it streaming stores win by 1.3-1.7x, as they
// skip the read-for-ownership of every destination line.
inline constexpr size_t kStreamingThreshold = size_t{10} << 20;

// Non-overlapping copy; streaming stores from kStreamingThreshold bytes on.
void CopyMemoryFast(void* dst, const void* src, size_t bytes);

// The same copy with non-temporal stores whatever the size, for the rows of a frame
// too large for the last-level cache. It does not fence: call StreamingFence()
// once after the last row, before the frame is handed back.
void CopyMemoryStreaming(void* dst, const void* src, size_t bytes);
void StreamingFence();

// Copies `count` 16-bit words, swapping the two bytes of each. dst == src is allowed.
void EndianConvertWord(void* dst, const void* src, size_t count);

// Scratch memory, 64-byte aligned. QrFree(nullptr) does nothing.
void* QrAlloc(size_t bytes);
void QrFree(void* p);

// Threads: created running, released with qrOSCloseThread (which detaches: the
// thread runs on to its end). The name shows in debuggers and /proc.
using QrThreadProc = void (*)(void* arg);
struct QrThread;
QrThread* qrOSCreateThread(QrThreadProc proc, void* arg, const char* name);
void qrOSCloseThread(QrThread* thread);

// Manual-reset events. qrOSWaitForEvent waits up to `timeoutMs` milliseconds and
// returns true when the event is set.
struct QrEvent;
QrEvent* qrOSCreateEvent(const char* name);
void qrOSSetEvent(QrEvent* event);
bool qrOSWaitForEvent(QrEvent* event, uint32_t timeoutMs);
void qrOSCloseEvent(QrEvent* event);

// Atomic counters on a plain aligned int32_t; return the new value.
int32_t qrOSInterlockedIncrement(int32_t* counter);
int32_t qrOSInterlockedDecrement(int32_t* counter);
// Plain read of such a counter, for polling loops (atomic, relaxed).
int32_t qrOSReadCounter(const int32_t* counter);

// Gives up the processor for about `ms` milliseconds.
void qrOSSleep(uint32_t ms);

}  // namespace zelt
