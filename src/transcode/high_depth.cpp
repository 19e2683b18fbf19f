// 10- and 12-bit planar to 012v and UYVY, with the eight-band threaded split for
// wide frames.
#include <algorithm>
#include <cstring>

#include "core/paths.h"
#include "transcode/v210_kernels.h"
#include "core/formats.h"
#include "core/platform.h"
#include "core/simd_level.h"
#include "zelt/ycbcr_v210.h"

namespace zelt::transcode {

namespace {

template <unsigned kShift, bool kFull>
inline uint32_t Luma(const uint16_t* y, size_t i) {
  return (y[i] >> kShift) & 0x3FF;
}
template <unsigned kShift, bool kFull>
inline uint32_t Chroma(const uint16_t* c, size_t k) {
  return (c[kFull ? 2 * k : k] >> kShift) & 0x3FF;
}

inline void Store32(uint8_t* p, uint32_t v) { std::memcpy(p, &v, 4); }
inline uint32_t Word(uint32_t a, uint32_t b, uint32_t c) { return a | (b << 10) | (c << 20); }

template <unsigned kShift, bool kFull>
void Row(uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr, uint32_t width, uint32_t first,
         size_t pitch) {
  constexpr auto L = Luma<kShift, kFull>;
  constexpr auto C = Chroma<kShift, kFull>;
  const uint32_t groups = (width + 5) / 6;
  for (uint32_t g = first; g < groups; ++g) {
    const size_t k = size_t{g} * 3, i = size_t{g} * 6;
    uint8_t* d = dst + size_t{g} * 16;
    Store32(d, Word(C(cb, k), L(y, i), C(cr, k)));
    Store32(d + 4, Word(L(y, i + 1), C(cb, k + 1), L(y, i + 2)));
    Store32(d + 8, Word(C(cr, k + 1), L(y, i + 3), C(cb, k + 2)));
    Store32(d + 12, Word(L(y, i + 4), C(cr, k + 2), L(y, i + 5)));
  }
  // A width that is not a multiple of 6 also writes words 0 and 1 of the next
  // group, from the samples that follow, into the row padding. Where the row has
  // no padding left (widths 43..47 past a multiple of 48 at the minimum pitch) the
  // words would land on the next row, which overwrites them anyway, or past the
  // frame on the last row, or on another band's row under the threaded split:
  // they are left out there.
  if (width % 6 != 0 && size_t{groups} * 16 + 8 <= pitch) {
    const size_t k = size_t{groups} * 3, i = size_t{groups} * 6;
    uint8_t* d = dst + size_t{groups} * 16;
    Store32(d, Word(C(cb, k), L(y, i), C(cr, k)));
    Store32(d + 4, Word(L(y, i + 1), C(cb, k + 1), L(y, i + 2)));
  }
}

template <typename T>
const T* Advance(const T* p, size_t bytes) {
  return reinterpret_cast<const T*>(reinterpret_cast<const uint8_t*>(p) + bytes);
}

}  // namespace

void HbdTo012vRowShift(unsigned shift, bool full, uint8_t* dst, const uint16_t* y, const uint16_t* cb,
                       const uint16_t* cr, uint32_t width, uint32_t first, size_t pitch) {
  using RowFn = void (*)(uint8_t*, const uint16_t*, const uint16_t*, const uint16_t*, uint32_t, uint32_t, size_t);
  static constexpr RowFn kRows[7][2] = {{Row<0, false>, Row<0, true>}, {Row<1, false>, Row<1, true>},
                                        {Row<2, false>, Row<2, true>}, {Row<3, false>, Row<3, true>},
                                        {Row<4, false>, Row<4, true>}, {Row<5, false>, Row<5, true>},
                                        {Row<6, false>, Row<6, true>}};
  kRows[std::min(shift, 6u)][full ? 1 : 0](dst, y, cb, cr, width, first, pitch);
}

void HbdTo012vRow(HbdSource s, uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr,
                  uint32_t width, uint32_t first, size_t pitch) {
  HbdTo012vRowShift(HbdShift(s), HbdFullChroma(s), dst, y, cb, cr, width, first, pitch);
}

uint32_t HbdTo012vFrame(HbdSource s, const HbdFrame& f) {
  const size_t pitch = std::max(f.dst_stride, V012MinPitch(f.width));
  for (uint32_t r = 0; r < f.height; ++r) {
    const size_t c = HbdBandChroma(s, f, r);
    HbdTo012vRow(s, f.dst + r * pitch, Advance(f.y, size_t{r} * f.src_stride), Advance(f.cb, c), Advance(f.cr, c),
                 f.width, 0, pitch);
  }
  return f.height * static_cast<uint32_t>(pitch);
}

void HbdToUyvyRow(unsigned shift, uint8_t* dst, const uint16_t* y, const uint16_t* cb, const uint16_t* cr,
                  uint32_t width, uint32_t first) {
  for (size_t k = first; k < (size_t{width} + 1) / 2; ++k) {
    dst[4 * k] = static_cast<uint8_t>(cb[k] >> shift);
    dst[4 * k + 1] = static_cast<uint8_t>(y[2 * k] >> shift);
    dst[4 * k + 2] = static_cast<uint8_t>(cr[k] >> shift);
    dst[4 * k + 3] = static_cast<uint8_t>(y[2 * k + 1] >> shift);
  }
}

uint32_t HbdToUyvyFrame(HbdSource s, const HbdFrame& f) {
  const unsigned shift = HbdShift(s) + 2;
  for (uint32_t r = 0; r < f.height; ++r) {
    const size_t c = HbdBandChroma(s, f, r);
    HbdToUyvyRow(shift, f.dst + size_t{r} * f.dst_stride, Advance(f.y, size_t{r} * f.src_stride), Advance(f.cb, c),
                 Advance(f.cr, c), f.width, 0);
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
// The rest of the family follows the same pattern at the 2048-pixel threshold.
constexpr Converter k422p16To012v{Target::k012v, HbdSource::k422p16, 2048, "cycbcr_yuv422p16_to_012v", "ycbcr422p16"};
constexpr Converter k444p10To012v{Target::k012v, HbdSource::k444p10, 2048, "cycbcr_yuv444p10_to_012v", "yuv444p10"};
constexpr Converter k420p10To012v{Target::k012v, HbdSource::k420p10, 2048, "cycbcr_yuv420p10_to_012v", "ycbcr420p10"};
constexpr Converter k420p16To012v{Target::k012v, HbdSource::k420p16, 2048, "cycbcr_yuv420p16_to_012v", "ycbcr420p16"};
constexpr Converter k420p10ToUyvy{Target::kUyvy, HbdSource::k420p10, 2048, "cycbcr_yuv420p10_to_uyvy", "ycbcr420p10"};
constexpr Converter k420p16ToUyvy{Target::kUyvy, HbdSource::k420p16, 2048, "cycbcr_yuv420p16_to_uyvy", "ycbcr420p16"};

uint32_t RunKernel(const Converter& c, const HbdFrame& f, bool avx2) {
#if ZELT_X86
  if (avx2) return c.target == Target::kUyvy ? HbdToUyvyFrameAvx2(c.source, f) : HbdTo012vFrameAvx2(c.source, f);
#else
  (void)avx2;
#endif
  return c.target == Target::kUyvy ? HbdToUyvyFrame(c.source, f) : HbdTo012vFrame(c.source, f);
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
  if (CurrentPaths().avx2) return RunKernel(c, f, true);
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
    band.first_row = first;
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

}  // namespace zelt::transcode

using namespace zelt;
using namespace zelt::transcode;

#define ZELT_HBD_ARGS                                                                                          \
  uint8_t *dst, const uint16_t *y, const uint16_t *cb, const uint16_t *cr, uint32_t width, uint32_t height, \
      uint32_t dst_stride, uint32_t src_stride
#define ZELT_HBD_FRAME HbdFrame{dst, y, cb, cr, width, height, dst_stride, src_stride}

extern "C" {

ZELT_API uint32_t cycbcr_yuv422p10_to_012v(ZELT_HBD_ARGS) { return Convert(k422p10To012v, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv422p12_to_012v(ZELT_HBD_ARGS) { return Convert(k422p12To012v, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv444p12_to_012v(ZELT_HBD_ARGS) { return Convert(k444p12To012v, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv422p10_to_uyvy(ZELT_HBD_ARGS) { return Convert(k422p10ToUyvy, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv422p16_to_012v(ZELT_HBD_ARGS) { return Convert(k422p16To012v, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv444p10_to_012v(ZELT_HBD_ARGS) { return Convert(k444p10To012v, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv420p10_to_012v(ZELT_HBD_ARGS) { return Convert(k420p10To012v, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv420p16_to_012v(ZELT_HBD_ARGS) { return Convert(k420p16To012v, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv420p10_to_uyvy(ZELT_HBD_ARGS) { return Convert(k420p10ToUyvy, ZELT_HBD_FRAME); }
ZELT_API uint32_t cycbcr_yuv420p16_to_uyvy(ZELT_HBD_ARGS) { return Convert(k420p16ToUyvy, ZELT_HBD_FRAME); }

ZELT_API uint32_t cycbcr_planar_16_to_012v(ZELT_HBD_ARGS, uint32_t bits) {
  switch (bits) {
    case 12: return Convert(k422p12To012v, ZELT_HBD_FRAME);
    case 16: return Convert(k422p16To012v, ZELT_HBD_FRAME);
    default: break;
  }
  if (bits <= 10) return Convert(k422p10To012v, ZELT_HBD_FRAME);
  // 11, 13, 14, 15 bits: one portable pass on the calling thread.
  SimdGuard();
  const size_t pitch = std::max(dst_stride, V012MinPitch(width));
  const unsigned shift = std::min(bits, 16u) - 10;
  for (uint32_t r = 0; r < height; ++r) {
    const size_t c = size_t{r} * src_stride / 2;
    HbdTo012vRowShift(shift, false, dst + r * pitch, Advance(y, size_t{r} * src_stride), Advance(cb, c),
                      Advance(cr, c), width, 0, pitch);
  }
  return height * static_cast<uint32_t>(pitch);
}

}  // extern "C"
