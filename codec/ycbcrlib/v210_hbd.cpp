// 10- and 12-bit planar to 012v and UYVY, with the eight-band threaded split for
// wide frames.
#include <algorithm>
#include <cstring>

#include "ycbcrlib/v210_kernels.h"
#include "zelt/frame/formats.h"
#include "zelt/frame/qrutil.h"
#include "zelt/frame/simd_level.h"
#include "zelt/ycbcr_v210.h"

namespace zelt::ycbcr {

namespace {

inline uint32_t Luma(HbdSource s, const uint16_t* y, size_t i) {
  return (s == HbdSource::k422p10 ? y[i] : y[i] >> 2) & 0x3FF;
}
inline uint32_t Chroma(HbdSource s, const uint16_t* c, size_t k) {
  switch (s) {
    case HbdSource::k422p10: return c[k] & 0x3FF;
    case HbdSource::k422p12: return (c[k] >> 2) & 0x3FF;
    case HbdSource::k444p12: return (c[2 * k] >> 2) & 0x3FF;
  }
  return 0;
}

inline void Store32(uint8_t* p, uint32_t v) { std::memcpy(p, &v, 4); }

}  // namespace

void HbdTo012vRow(HbdSource s, uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr,
                  uint32_t width, uint32_t first, size_t pitch) {
  const uint32_t groups = (width + 5) / 6;
  // Sample i of group g's stream Cb Y Cr Y ...
  auto sample = [&](uint32_t g, uint32_t i) {
    const size_t pair = size_t{g} * 3 + i / 4;
    switch (i % 4) {
      case 0: return Chroma(s, cb, pair);
      case 1: return Luma(s, y, 2 * pair);
      case 2: return Chroma(s, cr, pair);
      default: return Luma(s, y, 2 * pair + 1);
    }
  };
  auto word = [&](uint32_t g, uint32_t w) {
    return sample(g, 3 * w) | (sample(g, 3 * w + 1) << 10) | (sample(g, 3 * w + 2) << 20);
  };
  for (uint32_t g = first; g < groups; ++g) {
    for (uint32_t w = 0; w < 4; ++w) Store32(dst + size_t{g} * 16 + 4 * w, word(g, w));
  }
  // A width that is not a multiple of 6 also writes words 0 and 1 of the next
  // group, from the samples that follow, into the row padding. Where the row has
  // no padding left (widths 43..47 past a multiple of 48 at the minimum pitch) the
  // words would land on the next row, which overwrites them anyway, or past the
  // frame on the last row, or on another band's row under the threaded split:
  // they are left out there.
  if (width % 6 != 0 && size_t{groups} * 16 + 8 <= pitch) {
    Store32(dst + size_t{groups} * 16, word(groups, 0));
    Store32(dst + size_t{groups} * 16 + 4, word(groups, 1));
  }
}

uint32_t HbdTo012vFrame(HbdSource s, const HbdFrame& f) {
  const size_t pitch = std::max(f.dst_stride, V012MinPitch(f.width));
  for (uint32_t r = 0; r < f.height; ++r) {
    const size_t c = HbdChromaOffset(s, r, f.src_stride);
    const auto* base = reinterpret_cast<const uint8_t*>(f.y);
    HbdTo012vRow(s, f.dst + r * pitch, reinterpret_cast<const uint16_t*>(base + size_t{r} * f.src_stride),
                 reinterpret_cast<const uint16_t*>(reinterpret_cast<const uint8_t*>(f.cb) + c),
                 reinterpret_cast<const uint16_t*>(reinterpret_cast<const uint8_t*>(f.cr) + c), f.width, 0, pitch);
  }
  return f.height * static_cast<uint32_t>(pitch);
}

void P10ToUyvyRow(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width,
                  uint32_t first) {
  for (size_t k = first; k < (size_t{width} + 1) / 2; ++k) {
    dst[4 * k] = static_cast<uint8_t>(cb[k] >> 2);
    dst[4 * k + 1] = static_cast<uint8_t>(y[2 * k] >> 2);
    dst[4 * k + 2] = static_cast<uint8_t>(cr[k] >> 2);
    dst[4 * k + 3] = static_cast<uint8_t>(y[2 * k + 1] >> 2);
  }
}

uint32_t P10ToUyvyFrame(const HbdFrame& f) {
  for (uint32_t r = 0; r < f.height; ++r) {
    const size_t c = HbdChromaOffset(HbdSource::k422p10, r, f.src_stride);
    const auto* base = reinterpret_cast<const uint8_t*>(f.y);
    P10ToUyvyRow(f.dst + size_t{r} * f.dst_stride, reinterpret_cast<const uint16_t*>(base + size_t{r} * f.src_stride),
                 reinterpret_cast<const uint16_t*>(reinterpret_cast<const uint8_t*>(f.cb) + c),
                 reinterpret_cast<const uint16_t*>(reinterpret_cast<const uint8_t*>(f.cr) + c), f.width, 0);
  }
  return f.height * f.dst_stride;
}

namespace {

enum class Target : uint8_t { k012v, kUyvy };

struct Converter {
  Target target;
  HbdSource source;
  uint32_t threshold;      // wider frames are split across eight threads
  const char* eventName;
  const char* threadName;
};

constexpr Converter k422p10To012v{Target::k012v, HbdSource::k422p10, 2048, "cycbcr_yuv422p10_to_012v", "ycbcr422p10"};
constexpr Converter k422p12To012v{Target::k012v, HbdSource::k422p12, 1920, "cycbcr_yuv422p12_to_012v", "ycbcr422p12"};
constexpr Converter k444p12To012v{Target::k012v, HbdSource::k444p12, 2048, "cycbcr_yuv444p12_to_012v", "yuv444p12"};
// The UYVY converter shares the 10-bit 012v converter's event name.
constexpr Converter k422p10ToUyvy{Target::kUyvy, HbdSource::k422p10, 2048, "cycbcr_yuv422p10_to_012v", "ycbcr422p10"};

uint32_t RunKernel(const Converter& c, const HbdFrame& f, bool avx2) {
#if defined(__x86_64__) || defined(_M_X64)
  if (avx2) return c.target == Target::kUyvy ? P10ToUyvyFrameAvx2(f) : HbdTo012vFrameAvx2(c.source, f);
#else
  (void)avx2;
#endif
  return c.target == Target::kUyvy ? P10ToUyvyFrame(f) : HbdTo012vFrame(c.source, f);
}

// One band's work order. Lives on the caller's stack: the caller returns only
// after every worker has passed its last touch of it (`exited`).
struct Job {
  const Converter* conv;
  HbdFrame band;
  int32_t* pending;  // unfinished work; the worker that brings it to 0 sets `done`
  QrEvent* done;
  int32_t* exited;   // workers yet to finish with the caller's memory
};

void FinishJob(Job* job) {
  int32_t* exited = job->exited;
  if (qrOSInterlockedDecrement(job->pending) == 0) qrOSSetEvent(job->done);
  qrOSInterlockedDecrement(exited);
}

void Worker(void* arg) {
  auto* job = static_cast<Job*>(arg);
  RunKernel(*job->conv, job->band, false);
  FinishJob(job);
}

uint32_t Convert(const Converter& c, const HbdFrame& f) {
  SimdGuard();
  if (UseAvx2()) return RunKernel(c, f, true);
  if (f.width <= c.threshold) return RunKernel(c, f, false);

  int32_t pending = 1;
  int32_t exited = 0;
  QrEvent* done = qrOSCreateEvent(c.eventName);
  Job jobs[8];
  const uint32_t rows = f.height / 8;
  for (uint32_t k = 0; k < 8; ++k) {
    const uint32_t first = k * rows;
    const size_t lumaOffset = size_t{first} * f.src_stride;
    const size_t chromaOffset = HbdChromaOffset(c.source, first, f.src_stride);
    HbdFrame band = f;
    band.dst = f.dst + size_t{first} * f.dst_stride;
    band.y = reinterpret_cast<const uint16_t*>(reinterpret_cast<const uint8_t*>(f.y) + lumaOffset);
    band.cb = reinterpret_cast<const uint16_t*>(reinterpret_cast<const uint8_t*>(f.cb) + chromaOffset);
    band.cr = reinterpret_cast<const uint16_t*>(reinterpret_cast<const uint8_t*>(f.cr) + chromaOffset);
    band.height = k < 7 ? rows : f.height - 7 * rows;
    jobs[k] = Job{&c, band, &pending, done, &exited};
    qrOSInterlockedIncrement(&pending);
    qrOSInterlockedIncrement(&exited);
    QrThread* thread = nullptr;
    try {
      thread = qrOSCreateThread(Worker, &jobs[k], c.threadName);
    } catch (...) {
      thread = nullptr;
    }
    if (thread != nullptr) {
      qrOSCloseThread(thread);
    } else {
      Worker(&jobs[k]);  // no thread to be had: the band runs here
    }
  }
  if (qrOSInterlockedDecrement(&pending) != 0) qrOSWaitForEvent(done, 30);
  while (qrOSReadCounter(&pending) > 0) qrOSSleep(1);
  // The last worker may still be inside qrOSSetEvent.
  while (qrOSReadCounter(&exited) > 0) qrOSSleep(0);
  qrOSCloseEvent(done);
  return f.height * f.dst_stride;
}

}  // namespace

}  // namespace zelt::ycbcr

using namespace zelt;
using namespace zelt::ycbcr;

#define ZELT_HBD_ARGS                                                                                          \
  uint8_t *dst, const uint16_t *y, const uint16_t *cb, const uint16_t *cr, uint32_t width, uint32_t height, \
      uint32_t dst_stride, uint32_t src_stride
#define ZELT_HBD_FRAME HbdFrame{dst, y, cb, cr, width, height, dst_stride, src_stride}

extern "C" {

ZELT_API uint32_t cycbcr_yuv422p10_to_012v(ZELT_HBD_ARGS) { return Convert(k422p10To012v, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv422p12_to_012v(ZELT_HBD_ARGS) { return Convert(k422p12To012v, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv444p12_to_012v(ZELT_HBD_ARGS) { return Convert(k444p12To012v, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv422p10_to_uyvy(ZELT_HBD_ARGS) { return Convert(k422p10ToUyvy, ZELT_HBD_FRAME); }

}  // extern "C"
