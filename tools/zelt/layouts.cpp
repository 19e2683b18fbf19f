#include "layouts.h"

#include <cstdlib>
#include <cstring>

namespace zelt::tool {

const std::vector<Layout>& Layouts() {
  static const std::vector<Layout> layouts = {
      {"RGB32", Kind::Rgb32, {}, "4 bytes a pixel; channel order and matrix chosen by --flags and --matrix"},
      {"UYVY", Kind::Packed422, {"UYVY", "UYNV", "2vuy", "2Vuy", "yuv2", "yuV2", "AJYU"}, "Cb Y0 Cr Y1, top-down"},
      {"YUY2", Kind::Packed422, {"YUY2", "YUNV"}, "Y0 Cb Y1 Cr"},
      {"YVYU", Kind::Packed422, {"YVYU"}, "Y0 Cr Y1 Cb"},
      {"cyuv", Kind::Packed422, {"cyuv"}, "Cb Y0 Cr Y1, bottom row first"},
      {"I420", Kind::Planar420, {"I420", "IYUV"}, "planes Y, Cb, Cr; chroma w/2 x h/2"},
      {"YV12", Kind::Planar420, {"YV12"}, "planes Y, Cr, Cb; chroma w/2 x h/2"},
      {"P422", Kind::Planar422, {"P422"}, "planes Y, Cb, Cr; chroma w/2 x h (422P accepted as a source)"},
      {"012v", Kind::V210, {"012v", "v210"}, "10-bit 4:2:2, 6 pixels in 16 bytes, rows of 128 bytes per 48 pixels"},
  };
  return layouts;
}

std::optional<Format> ParseFormat(const std::string& text) {
  const auto& ls = Layouts();
  if (text == "RGB32" || text == "rgb32" || text == "0") return Format{&ls[0], 0, "RGB32"};
  if (text == "422P") return Format{&ls[7], FourCC("422P"), "422P"};
  if (text.size() == 4) {
    for (const Layout& l : ls) {
      for (const char* a : l.aliases) {
        if (text == a) return Format{&l, FourCC(a), a};
      }
    }
  }
  // Numeric codes of the host system's own numbering stand for UYVY.
  char* end = nullptr;
  const unsigned long v = std::strtoul(text.c_str(), &end, 0);
  if (!text.empty() && end && *end == '\0' && (v == 0x8800001Eul || v == 0x8810001Eul)) {
    return Format{&ls[1], static_cast<uint32_t>(v), text};
  }
  return std::nullopt;
}

uint32_t NaturalStride(Kind kind, uint32_t width) {
  switch (kind) {
    case Kind::Rgb32: return width * 4;
    case Kind::Packed422: return width * 2;
    case Kind::Planar420:
    case Kind::Planar422: return width;
    case Kind::V210: return (width + 47) / 48 * 128;
  }
  return 0;
}

uint64_t FrameBytes(Kind kind, uint32_t height, uint32_t stride) {
  const uint64_t plane = uint64_t{height} * stride;
  switch (kind) {
    case Kind::Planar420: return plane + 2 * (uint64_t{stride / 2} * (height / 2));
    case Kind::Planar422: return plane * 2;
    default: return plane;
  }
}

}  // namespace zelt::tool
