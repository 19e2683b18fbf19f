// `zelt convert` jobs of the direct converters: RFC 4175 packed lines and packets,
// Y210, ST 2084 (PQ), channel orders and flips.
#include <string>

#include "jobs.h"
#include "layouts.h"
#include "zelt/direct.h"
#include "zelt/pq.h"
#include "zelt/rfc4175.h"

namespace zelt::tool {

namespace {

using RowBytes = uint64_t (*)(uint32_t w);
using Runner = void (*)(const Geometry& g, uint8_t* in, uint8_t* out);

uint64_t V210Row(uint32_t w) { return NaturalStride(Kind::V210, w); }
uint64_t Rgb32Row(uint32_t w) { return uint64_t{w} * 4; }
uint64_t UyvyRow(uint32_t w) { return uint64_t{w} * 2; }
uint64_t PackedRow(uint32_t w) { return uint64_t{w} * 20 / 8; }
uint64_t Y210Row(uint32_t w) { return uint64_t{w} * 4; }

// A job over frames of natural rows (no stride options).
Job Simple(const char* from, const char* to, const char* what, RowBytes inRow, RowBytes outRow, Runner run,
           uint32_t widthMultiple = 1) {
  Job j;
  j.from = from;
  j.to = to;
  j.description = what;
  j.prepare = [inRow, outRow, widthMultiple, from, to](Geometry& g) {
    if (g.srcStride != 0 && g.srcStride != inRow(g.w))
      Fail(std::string(from) + " -> " + to + " reads rows of exactly " + std::to_string(inRow(g.w)) + " bytes; --src-stride cannot change that");
    if (g.dstStride != 0 && g.dstStride != outRow(g.w))
      Fail(std::string(from) + " -> " + to + " writes rows of exactly " + std::to_string(outRow(g.w)) + " bytes; --dst-stride cannot change that");
    if (g.w % widthMultiple != 0)
      Fail(std::string(from) + " -> " + to + " needs a width that is a multiple of " + std::to_string(widthMultiple));
    g.srcStride = static_cast<uint32_t>(inRow(g.w));
    g.dstStride = static_cast<uint32_t>(outRow(g.w));
  };
  j.inBytes = [inRow](const Geometry& g) { return inRow(g.w) * g.h; };
  j.outBytes = [outRow](const Geometry& g) { return outRow(g.w) * g.h; };
  j.run = run;
  return j;
}

// RFC 4175 packets of 1280 bytes, 480 pixels each.
uint64_t PacketBytes(const Geometry& g) { return uint64_t{g.w} * g.h * 20 / 9600 * 1280; }

template <uint32_t (*Swap)(uint32_t*, const uint32_t*, uint64_t)>
void SwapFrame(const Geometry& g, uint8_t* in, uint8_t* out) {
  Swap(reinterpret_cast<uint32_t*>(out), reinterpret_cast<const uint32_t*>(in), uint64_t{g.w} * g.h);
}

const JobRegistration kJobs[] = {
    JobRegistration(Simple("v210", "rfc4175", "v210 frame to RFC 4175 pgroup lines (5 bytes per 2 pixels)", V210Row,
                           PackedRow,
                           [](const Geometry& g, uint8_t* in, uint8_t* out) {
                             zlt_v210_to_YCbCr10Packed(out, in, g.w, g.srcStride, g.h, 0);
                           },
                           2)),
    JobRegistration(Simple("rfc4175", "v210", "RFC 4175 pgroup lines to a v210 frame", PackedRow, V210Row,
                           [](const Geometry& g, uint8_t* in, uint8_t* out) {
                             zlt_YCbCr10Packed_to_v210(out, in, g.w, g.h, 0);
                           },
                           2)),
    JobRegistration(Simple("Y210", "v210", "Y210 (16-bit Y0 Cb Y1 Cr) to v210", Y210Row, V210Row,
                           [](const Geometry& g, uint8_t* in, uint8_t* out) {
                             zlt_Y210_to_v210(out, in, g.dstStride, g.srcStride, g.w, g.h);
                           },
                           2)),
    JobRegistration(Simple("RGB32", "RGB32-PQ", "every byte through the 8-bit linear-to-PQ table", Rgb32Row, Rgb32Row,
                           [](const Geometry& g, uint8_t* in, uint8_t* out) {
                             zlt_rgb_to_st2084(out, in, g.dstStride, g.srcStride, g.h);
                           })),
    JobRegistration(Simple("RGB32-PQ", "RGB32", "every byte through the 8-bit PQ-to-linear table", Rgb32Row, Rgb32Row,
                           [](const Geometry& g, uint8_t* in, uint8_t* out) {
                             zlt_st2084_to_rgb(out, in, g.dstStride, g.srcStride, g.h);
                           })),
    JobRegistration(Simple("2vuy", "2vuy-PQ", "2vuy luma through the 8-bit linear-to-PQ table", UyvyRow, UyvyRow,
                           [](const Geometry& g, uint8_t* in, uint8_t* out) {
                             zlt_yuv2_to_st2084(out, in, g.dstStride, g.srcStride, g.h);
                           })),
    JobRegistration(Simple("2vuy-PQ", "2vuy", "2vuy luma through the 8-bit PQ-to-linear table", UyvyRow, UyvyRow,
                           [](const Geometry& g, uint8_t* in, uint8_t* out) {
                             zlt_st2084_to_yuv2(out, in, g.dstStride, g.srcStride, g.h);
                           })),
    JobRegistration(Simple("RGB32", "RGB32-hflip", "32-bit pixels mirrored left to right", Rgb32Row, Rgb32Row,
                           [](const Geometry& g, uint8_t* in, uint8_t* out) {
                             zlt_flip_horz(out, in, g.w, static_cast<int32_t>(g.h), static_cast<int32_t>(g.srcStride));
                           })),
    JobRegistration(Simple("RGB32", "RGB32-vflip", "32-bit picture turned upside down", Rgb32Row, Rgb32Row,
                           [](const Geometry& g, uint8_t* in, uint8_t* out) {
                             zlt_flip_vert(out, in, g.w, static_cast<int32_t>(g.h), g.srcStride);
                           })),
    JobRegistration(Simple("ABGR", "ARGB", "abgr2argb", Rgb32Row, Rgb32Row, SwapFrame<abgr2argb>)),
    JobRegistration(Simple("ARGB", "ABGR", "argb2abgr", Rgb32Row, Rgb32Row, SwapFrame<argb2abgr>)),
    JobRegistration(Simple("BGRA", "RGBA", "bgra2rgba", Rgb32Row, Rgb32Row, SwapFrame<bgra2rgba>)),
    JobRegistration(Simple("ARGB", "RGBA", "argb2rgba", Rgb32Row, Rgb32Row, SwapFrame<argb2rgba>)),
    JobRegistration(Simple("ARGB", "BGRA", "argb2bgra", Rgb32Row, Rgb32Row, SwapFrame<argb2bgra>)),
    JobRegistration(Simple("BGRA", "ARGB", "bgra2argb", Rgb32Row, Rgb32Row, SwapFrame<bgra2argb>)),
    JobRegistration(Simple("ABGR", "BGRA", "abgr2bgra", Rgb32Row, Rgb32Row, SwapFrame<abgr2bgra>)),
    JobRegistration(Simple("BGRA", "ABGR", "bgra2abgr", Rgb32Row, Rgb32Row, SwapFrame<bgra2abgr>)),
    JobRegistration(Simple("RGBA", "ARGB", "rgba2argb", Rgb32Row, Rgb32Row, SwapFrame<rgba2argb>)),
};

// Packets: the frame size is not a whole number of rows, so this job sizes itself.
Job Packets() {
  Job j = Simple("v210", "rfc4175-packets", "v210 frame to 1280-byte packets of 480 pixels", V210Row, V210Row,
                 [](const Geometry& g, uint8_t* in, uint8_t* out) {
                   zlt_v210_to_YCbCr10PackedToPacket(out, reinterpret_cast<const uint32_t*>(in), g.w, g.h, g.srcStride,
                                                     1280, 0, 0, 0, 0);
                 },
                 480);
  j.outBytes = PacketBytes;
  return j;
}
const JobRegistration kPackets(Packets());

}  // namespace

}  // namespace zelt::tool
