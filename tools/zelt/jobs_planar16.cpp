// `zelt convert` jobs of the high-bit-depth planar converters and NV12. Planar
// 16-bit files hold the luma plane then the Cb and Cr planes, little-endian
// samples, rows back to back.
#include <string>

#include "jobs.h"
#include "layouts.h"
#include "zelt/ycbcr_v210.h"

namespace zelt::tool {

namespace {

using Planar16Fn = uint32_t (*)(uint8_t*, const uint16_t*, const uint16_t*, const uint16_t*, uint32_t, uint32_t,
                                uint32_t, uint32_t);

// `chromaDiv`: 2 for 4:2:2 planes (half-width chroma rows), 1 for 4:4:4.
Job Planar16(const char* from, const char* to, const char* what, Planar16Fn fn, uint32_t chromaDiv, bool toV210) {
  Job j;
  j.from = from;
  j.to = to;
  j.description = what;
  j.prepare = [from, to, toV210](Geometry& g) {
    if (g.srcStride != 0 || g.dstStride != 0)
      Fail(std::string(from) + " -> " + to + " takes planes and rows back to back; drop --src-stride/--dst-stride");
    if (g.w % 2 != 0) Fail(std::string(from) + " -> " + to + " needs an even width");
    g.srcStride = g.w * 2;
    g.dstStride = toV210 ? NaturalStride(Kind::V210, g.w) : g.w * 2;
  };
  j.inBytes = [chromaDiv](const Geometry& g) { return uint64_t{g.w} * 2 * g.h * (chromaDiv == 2 ? 2 : 3); };
  j.outBytes = [](const Geometry& g) { return uint64_t{g.dstStride} * g.h; };
  j.run = [fn, chromaDiv](const Geometry& g, uint8_t* in, uint8_t* out) {
    const auto* y = reinterpret_cast<const uint16_t*>(in);
    const auto* cb = y + size_t{g.w} * g.h;
    const auto* cr = cb + size_t{g.w / chromaDiv} * g.h;
    fn(out, y, cb, cr, g.w, g.h, g.dstStride, g.srcStride);
  };
  return j;
}

using Nv12p16Fn = uint32_t (*)(uint16_t*, const uint16_t*, uint32_t);

Job ToNv12p16(const char* from, Nv12p16Fn fn) {
  Job j;
  j.from = from;
  j.to = "NV12p16";
  j.description = "planar 4:2:0 of 16-bit samples to 16-bit NV12, MSB-aligned";
  j.prepare = [from](Geometry& g) {
    if (g.srcStride != 0 || g.dstStride != 0) Fail(std::string(from) + " -> NV12p16 takes no strides");
    if (g.w % 2 != 0 || g.h % 2 != 0) Fail(std::string(from) + " -> NV12p16 needs an even width and height");
  };
  j.inBytes = [](const Geometry& g) { return uint64_t{g.w} * g.h * 3; };
  j.outBytes = [](const Geometry& g) { return uint64_t{g.w} * g.h * 3; };
  j.run = [fn](const Geometry& g, uint8_t* in, uint8_t* out) {
    fn(reinterpret_cast<uint16_t*>(out), reinterpret_cast<const uint16_t*>(in), g.w * g.h * 3);
  };
  return j;
}

Job Nv12ToUyvy() {
  Job j;
  j.from = "NV12";
  j.to = "UYVY";
  j.description = "8-bit NV12 to UYVY, chroma rows repeated";
  j.prepare = [](Geometry& g) {
    if (g.srcStride != 0) Fail("NV12 -> UYVY reads rows of exactly the width; drop --src-stride");
    if (g.w % 2 != 0 || g.h % 2 != 0) Fail("NV12 -> UYVY needs an even width and height");
    if (g.dstStride == 0) g.dstStride = g.w * 2;
    if (g.dstStride < g.w * 2) Fail("--dst-stride is below the UYVY row of " + std::to_string(g.w * 2) + " bytes");
  };
  j.inBytes = [](const Geometry& g) { return uint64_t{g.w} * g.h * 3 / 2; };
  j.outBytes = [](const Geometry& g) { return uint64_t{g.dstStride} * g.h; };
  j.run = [](const Geometry& g, uint8_t* in, uint8_t* out) { cycbcr_NV12_to_uyvy(out, in, g.w, g.h, g.dstStride); };
  return j;
}

const JobRegistration kJobs[] = {
    JobRegistration(Planar16("yuv422p10", "v210", "10-bit 4:2:2 planes to v210 (eight threads above 2048 pixels)",
                             cycbcr_yuv422p10_to_012v, 2, true)),
    JobRegistration(Planar16("yuv422p12", "v210", "12-bit 4:2:2 planes to v210", cycbcr_yuv422p12_to_012v, 2, true)),
    JobRegistration(Planar16("yuv422p16", "v210", "16-bit 4:2:2 planes to v210", cycbcr_yuv422p16_to_012v, 2, true)),
    JobRegistration(Planar16("yuv444p12", "v210", "12-bit 4:4:4 planes to v210", cycbcr_yuv444p12_to_012v, 1, true)),
    JobRegistration(Planar16("yuv444p10", "v210", "10-bit 4:4:4 planes to v210", cycbcr_yuv444p10_to_012v, 1, true)),
    JobRegistration(Planar16("yuv422p10", "UYVY", "10-bit 4:2:2 planes to UYVY", cycbcr_yuv422p10_to_uyvy, 2, false)),
    JobRegistration(ToNv12p16("yuv420p10", cycbcr_420p10_to_NV12p16)),
    JobRegistration(ToNv12p16("yuv420p12", cycbcr_420p12_to_NV12p16)),
    JobRegistration(ToNv12p16("yuv420p16", cycbcr_420p16_to_NV12p16)),
    JobRegistration(Nv12ToUyvy()),
};

}  // namespace

}  // namespace zelt::tool
