#include "stress/jobs.h"

#include <cstring>

#include "support/frame_rules.h"
#include "transcode/routes.h"
#include "core/formats.h"
#include "zelt/zelt.h"

namespace zelt::stress {

namespace {

std::vector<uint8_t> Bytes(size_t n, uint32_t seed) {
  // xorshift: cheap, and independent of <random> so every thread gets the same bytes.
  std::vector<uint8_t> v(n);
  uint32_t x = seed * 2654435761u + 1u;
  for (auto& b : v) {
    x ^= x << 13;
    x ^= x >> 17;
    x ^= x << 5;
    b = static_cast<uint8_t>(x >> 24);
  }
  return v;
}

// A frame that is not a multiple of any block size, with padded strides.
constexpr uint32_t kWidth = 725;
constexpr uint32_t kHeight = 7;

uint32_t NaturalStride(Layout layout, uint32_t width) {
  switch (layout) {
    case Layout::RGB32: return width * 4 + 12;
    case Layout::UYVY:
    case Layout::YUY2:
    case Layout::YVYU:
    case Layout::CYUV: return width * 2 + 6;
    case Layout::V012: return V012MinPitch(width) + 32;
    case Layout::I420:
    case Layout::YV12:
    case Layout::P422: return width;
  }
  return 0;
}

uint32_t CodeOf(Layout layout) {
  for (const FormatAlias& a : kFormatAliases) {
    if (a.layout == layout) return a.code;
  }
  return 0;
}

void AddDispatcherJobs(std::vector<Job>& jobs) {
  for (int s = 0; s < kLayoutCount; ++s) {
    for (int d = 0; d < kLayoutCount; ++d) {
      const Layout src = static_cast<Layout>(s), dst = static_cast<Layout>(d);
      if (transcode::FindRoute(src, dst) == nullptr) continue;
      uint32_t ss = NaturalStride(src, kWidth), ds = NaturalStride(dst, kWidth);
      const uint32_t srcCode = CodeOf(src), dstCode = CodeOf(dst);
      NormalizeStride(srcCode, kWidth, &ss);
      NormalizeStride(dstCode, kWidth, &ds);
      const size_t srcBytes = test::FrameBytes(src, kWidth, kHeight, ss);
      const size_t dstBytes = test::FrameBytes(dst, kWidth, kHeight, ds);
      if (srcBytes == 0 || dstBytes == 0) continue;
      const test::Allowance extra = test::RouteAllowance(src, dst, kWidth, kHeight, ss, ds);
      jobs.push_back({std::string("transcode ") + LayoutName(src) + "->" + LayoutName(dst),
                      [=](uint32_t seed) {
                        std::vector<uint8_t> in = Bytes(srcBytes + extra.src, seed);
                        std::vector<uint8_t> out(dstBytes + extra.dst, 0xA5);
                        const uint32_t n = cycbcr_transcode(out.data(), in.data(), kWidth, kHeight, ds, ss,
                                                            seed % 3, seed & 1, dstCode, srcCode);
                        out.resize(out.size() + 4);
                        std::memcpy(out.data() + out.size() - 4, &n, 4);
                        return out;
                      }});
    }
  }
}

using PlainFn = uint32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t);

// A plain (dst, src, width, height, dst_stride, src_stride) export over whole frames
// of `bytesPerRow`-wide rows, with unequal strides so the per-row paths run.
void AddPlain(std::vector<Job>& jobs, const char* name, PlainFn fn, uint32_t bytesPerRow) {
  jobs.push_back({name, [=](uint32_t seed) {
                    const uint32_t ss = bytesPerRow + 10, ds = bytesPerRow + 2;
                    std::vector<uint8_t> in = Bytes(size_t{ss} * kHeight, seed);
                    std::vector<uint8_t> out(size_t{ds} * kHeight, 0x5A);
                    fn(out.data(), in.data(), kWidth, kHeight, ds, ss);
                    return out;
                  }});
}

// The high-bit-depth planar converters cut frames wider than 2048 pixels into
// bands converted on worker threads of their own (on processors without AVX2, or
// with the level forced below 5): several such calls at once must not mix bands.
using PlanarFn = uint32_t (*)(uint8_t*, const uint16_t*, const uint16_t*, const uint16_t*, uint32_t, uint32_t,
                              uint32_t, uint32_t);

[[maybe_unused]] void AddThreadedPlanar(std::vector<Job>& jobs, const char* name, PlanarFn fn, bool chroma444,
                                        uint32_t dstPitch) {
  jobs.push_back({name, [=](uint32_t seed) {
                    constexpr uint32_t w = 2100, h = 19, srcStride = 2 * w + 8;
                    const size_t chromaBytes = chroma444 ? size_t{h} * srcStride : size_t{h} * srcStride / 2 + w;
                    std::vector<uint8_t> y = Bytes(size_t{h} * srcStride, seed);
                    std::vector<uint8_t> cb = Bytes(chromaBytes, seed + 100);
                    std::vector<uint8_t> cr = Bytes(chromaBytes, seed + 200);
                    std::vector<uint8_t> out(size_t{h} * dstPitch + 128, 0x5A);
                    const uint32_t n = fn(out.data(), reinterpret_cast<const uint16_t*>(y.data()),
                                          reinterpret_cast<const uint16_t*>(cb.data()),
                                          reinterpret_cast<const uint16_t*>(cr.data()), w, h, dstPitch, srcStride);
                    out.resize(out.size() + 4);
                    std::memcpy(out.data() + out.size() - 4, &n, 4);
                    return out;
                  }});
}


// Appends a 32-bit result to a job's output bytes.
void AppendResult(std::vector<uint8_t>& out, uint64_t n) {
  const uint32_t v = static_cast<uint32_t>(n);
  out.resize(out.size() + 4);
  std::memcpy(out.data() + out.size() - 4, &v, 4);
}

// Channel swaps, flips and chroma stripping: the 128- and 256-bit block paths with
// their streaming stores, over frames whose rows are not a whole number of blocks.
void AddDirectJobs(std::vector<Job>& jobs) {
  using SwapFn = uint32_t (*)(uint32_t*, const uint32_t*, uint64_t);
  const struct {
    const char* name;
    SwapFn fn;
  } swaps[] = {{"bgra2rgba", bgra2rgba}, {"argb2abgr", argb2abgr}, {"abgr2bgraMMX", abgr2bgraMMX}};
  for (const auto& sw : swaps) {
    jobs.push_back({sw.name, [fn = sw.fn](uint32_t seed) {
                      const size_t count = size_t{kWidth} * kHeight;
                      std::vector<uint8_t> in = Bytes(4 * count, seed);
                      std::vector<uint8_t> out(4 * count, 0x5A);
                      fn(reinterpret_cast<uint32_t*>(out.data()), reinterpret_cast<const uint32_t*>(in.data()), count);
                      return out;
                    }});
  }
  jobs.push_back({"zlt_flip_horz + zlt_flip_vert", [](uint32_t seed) {
                    const uint32_t stride = 4 * kWidth + 16;
                    std::vector<uint8_t> in = Bytes(size_t{stride} * kHeight, seed);
                    std::vector<uint8_t> out(in.size(), 0x5A);
                    zlt_flip_horz(out.data(), in.data(), kWidth, kHeight, int32_t(stride));
                    zlt_flip_vert(out.data(), out.data(), kWidth, kHeight, stride);
                    return out;
                  }});
  jobs.push_back({"zlt_2yuv_strip_chroma", [](uint32_t seed) {
                    const int32_t ss = 2 * kWidth + 6, ds = 2 * kWidth + 2;
                    std::vector<uint8_t> in = Bytes(size_t(ss) * kHeight, seed);
                    std::vector<uint8_t> out(size_t(ds) * kHeight, 0x5A);
                    AppendResult(out, zlt_2yuv_strip_chroma(out.data(), ds, in.data(), ss, kWidth, kHeight));
                    return out;
                  }});
}

// The 10-bit transport: packed lines to and from v210, RFC 4175 payloads, and PQ.
void AddTransportJobs(std::vector<Job>& jobs) {
  const uint32_t v210Line = V012MinPitch(kWidth), packedLine = kWidth * 20 / 8;
  jobs.push_back({"zlt_YCbCr10Packed_to_v210 + back", [=](uint32_t seed) {
                    std::vector<uint8_t> packed = Bytes(size_t{packedLine} * kHeight, seed);
                    std::vector<uint8_t> v210(size_t{v210Line} * kHeight, 0x5A);
                    zlt_YCbCr10Packed_to_v210(v210.data(), packed.data(), kWidth, kHeight, seed & 1);
                    std::vector<uint8_t> again(packed.size(), 0xA5);
                    zlt_v210_to_YCbCr10Packed(again.data(), v210.data(), kWidth, v210Line, kHeight, seed & 1);
                    v210.insert(v210.end(), again.begin(), again.end());
                    return v210;
                  }});
  jobs.push_back({"zlt_4175_to_v210", [=](uint32_t seed) {
                    const int32_t pgroups = int32_t(kWidth / 2);
                    std::vector<uint8_t> payload = Bytes(size_t(pgroups) * 5, seed);
                    std::vector<uint8_t> out(v210Line, 0x5A);
                    zlt_4175_to_v210(reinterpret_cast<uint32_t*>(out.data()), payload.data(), int32_t(payload.size()),
                                     pgroups, 0);
                    return out;
                  }});
  jobs.push_back({"zlt_v210_to_st2084 + zlt_rgb_to_st2084", [=](uint32_t seed) {
                    // The v210 steps reach 16 bytes past the pitch of the last line.
                    std::vector<uint8_t> in = Bytes(size_t{v210Line} * kHeight + 16, seed);
                    std::vector<uint8_t> out(in.size(), 0x5A);
                    zlt_v210_to_st2084(out.data(), in.data(), v210Line, v210Line, kHeight);
                    const std::vector<uint8_t> linear = Bytes(size_t{kWidth} * 4 * kHeight, seed + 1);
                    std::vector<uint8_t> rgb(linear.size(), 0xA5);
                    zlt_rgb_to_st2084(rgb.data(), linear.data(), kWidth * 4, kWidth * 4, kHeight);
                    out.insert(out.end(), rgb.begin(), rgb.end());
                    return out;
                  }});
}

// Row pipeline: the SSE4.1 and AVX2 block loops of the unpackers, the matrix packer
// and the range mapping (none of them draws rand()).
void AddRowJobs(std::vector<Job>& jobs) {
  jobs.push_back({"zeltV210RowToPlanar16s + zeltV210RowToYUV16", [](uint32_t seed) {
                    const size_t groups = (kWidth + 5) / 6;
                    std::vector<uint8_t> src = Bytes(16 * groups, seed);
                    std::vector<int16_t> y(kWidth + 1), cr(kWidth), cb(kWidth);
                    zeltV210RowToPlanar16s(src.data(), kWidth, y.data(), cr.data(), cb.data());
                    std::vector<uint16_t> y16(kWidth), cb16(kWidth), cr16(kWidth);
                    zeltV210RowToYUV16(src.data(), y16.data(), cb16.data(), cr16.data(), kWidth);
                    std::vector<uint8_t> out;
                    for (const auto* v : {&y, &cr, &cb}) {
                      const auto* p = reinterpret_cast<const uint8_t*>(v->data());
                      out.insert(out.end(), p, p + 2 * v->size());
                    }
                    for (const auto* v : {&y16, &cb16, &cr16}) {
                      const auto* p = reinterpret_cast<const uint8_t*>(v->data());
                      out.insert(out.end(), p, p + 2 * v->size());
                    }
                    return out;
                  }});
  jobs.push_back({"zeltUnpackYUVRow16s + zeltUnpacked16sRowToRGB32", [](uint32_t seed) {
                    std::vector<uint8_t> src = Bytes(2 * (kWidth + 1), seed);
                    std::vector<int16_t> y(kWidth + 1), cr(kWidth / 2 + 1), cb(kWidth / 2 + 1);
                    ZeltPlanes planes = {{y.data(), cr.data(), cb.data()}};
                    zeltUnpackYUVRow16s(src.data(), kWidth, &planes);
                    std::vector<uint8_t> out(4 * size_t{kWidth + 1}, 0x5A);
                    zeltUnpacked16sRowToRGB32(&planes, nullptr, out.data(), kWidth, 0, 8, seed % 8, 0xFF);
                    return out;
                  }});
  jobs.push_back({"zeltCGRGBtoVSRGB", [](uint32_t seed) {
                    std::vector<uint8_t> samples = Bytes(6 * size_t{kWidth}, seed);
                    zeltCGRGBtoVSRGB(reinterpret_cast<uint16_t*>(samples.data()), kWidth, 10 + int32_t(seed % 7));
                    return samples;
                  }});
}

}  // namespace

std::vector<Job> AllJobs() {
  std::vector<Job> jobs;
  AddDispatcherJobs(jobs);

  // Packed 4:2:2 reorders and copies.
  const uint32_t packedRow = kWidth * 2;
  AddPlain(jobs, "cycbcr_uyvy_to_yuy2", cycbcr_uyvy_to_yuy2, packedRow);
  AddPlain(jobs, "cycbcr_uyvy_to_yvyu", cycbcr_uyvy_to_yvyu, packedRow);
  AddPlain(jobs, "cycbcr_yuy2_to_yvyu", cycbcr_yuy2_to_yvyu, packedRow);
  AddPlain(jobs, "cycbcr_yuy2_to_cyuv", cycbcr_yuy2_to_cyuv, packedRow);
  AddPlain(jobs, "cycbcr_uyvy_to_cyuv", cycbcr_uyvy_to_cyuv, packedRow);
  AddPlain(jobs, "cycbcr_interleaved_copy", cycbcr_interleaved_copy, packedRow);
  jobs.push_back({"cycbcr_invert", [](uint32_t seed) {
                    std::vector<uint8_t> frame = Bytes(size_t{kWidth} * 2 * kHeight, seed);
                    cycbcr_invert(frame.data(), kWidth * 2, kHeight);
                    return frame;
                  }});

  // Threaded high-bit-depth planar converters (present once their family is in).
#if defined(ZELT_HAS_cycbcr_yuv422p10_to_012v)
  AddThreadedPlanar(jobs, "cycbcr_yuv422p10_to_012v", cycbcr_yuv422p10_to_012v, false, V012MinPitch(2100));
#endif
#if defined(ZELT_HAS_cycbcr_yuv422p12_to_012v)
  AddThreadedPlanar(jobs, "cycbcr_yuv422p12_to_012v", cycbcr_yuv422p12_to_012v, false, V012MinPitch(2100));
#endif
#if defined(ZELT_HAS_cycbcr_yuv444p12_to_012v)
  AddThreadedPlanar(jobs, "cycbcr_yuv444p12_to_012v", cycbcr_yuv444p12_to_012v, true, V012MinPitch(2100));
#endif
#if defined(ZELT_HAS_cycbcr_yuv422p10_to_uyvy)
  AddThreadedPlanar(jobs, "cycbcr_yuv422p10_to_uyvy", cycbcr_yuv422p10_to_uyvy, false, 2 * 2100);
#endif

  AddDirectJobs(jobs);
  AddTransportJobs(jobs);
  AddRowJobs(jobs);

  // Other families add their exports here as they land, one line each, under
  // #if defined(ZELT_HAS_<export>) (defined for every declared export).
  return jobs;
}

}  // namespace zelt::stress
