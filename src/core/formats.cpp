#include "core/formats.h"

namespace zelt {

const FormatAlias kFormatAliases[20] = {
    {kCodeRGB32, Layout::RGB32, "RGB32 (0)"},
    {kCodeUYVY, Layout::UYVY, "UYVY"},
    {FourCC('U', 'Y', 'N', 'V'), Layout::UYVY, "UYNV"},
    {FourCC('2', 'v', 'u', 'y'), Layout::UYVY, "2vuy"},
    {FourCC('2', 'V', 'u', 'y'), Layout::UYVY, "2Vuy"},
    {FourCC('y', 'u', 'v', '2'), Layout::UYVY, "yuv2"},
    {FourCC('y', 'u', 'V', '2'), Layout::UYVY, "yuV2"},
    {FourCC('A', 'J', 'Y', 'U'), Layout::UYVY, "AJYU"},
    {0x8800001Eu, Layout::UYVY, "host code 0x8800001E"},
    {0x8810001Eu, Layout::UYVY, "host code 0x8810001E"},
    {kCodeYUY2, Layout::YUY2, "YUY2"},
    {FourCC('Y', 'U', 'N', 'V'), Layout::YUY2, "YUNV"},
    {kCodeYVYU, Layout::YVYU, "YVYU"},
    {kCodeCYUV, Layout::CYUV, "cyuv"},
    {kCodeI420, Layout::I420, "I420"},
    {FourCC('I', 'Y', 'U', 'V'), Layout::I420, "IYUV"},
    {kCodeYV12, Layout::YV12, "YV12"},
    {kCodeP422, Layout::P422, "P422"},
    {kCode012v, Layout::V012, "012v"},
    {kCodeV210, Layout::V012, "v210"},
};

uint8_t LayoutOfCode(uint32_t code) {
  for (const FormatAlias& a : kFormatAliases) {
    if (a.code == code) return static_cast<uint8_t>(a.layout);
  }
  return kNoLayout;
}

const char* LayoutName(Layout layout) {
  static const char* const names[kLayoutCount] = {"RGB32", "UYVY", "YUY2", "YVYU", "cyuv",
                                                  "I420",  "YV12", "P422", "012v"};
  return names[static_cast<int>(layout)];
}

void NormalizeStride(uint32_t code, uint32_t width, uint32_t* stride) {
  if (code == kCode422P) return;  // accepted as a source, but its stride is left alone
  const uint8_t layout = LayoutOfCode(code);
  if (layout == kNoLayout) return;
  switch (static_cast<Layout>(layout)) {
    case Layout::UYVY:
    case Layout::YUY2:
    case Layout::YVYU:
    case Layout::CYUV:
      if (*stride < 2 * width) *stride = 2 * width;
      break;
    case Layout::I420:
    case Layout::YV12:
    case Layout::P422:
      if (*stride > (width + 127) / 128 * 128) *stride = width;
      break;
    case Layout::V012: {
      const uint32_t natural = width / 6 * 16;
      if (*stride == 0) break;
      if (*stride % 16 == 0 && *stride >= natural) break;
      *stride = natural;
      break;
    }
    case Layout::RGB32:
      break;
  }
}

}  // namespace zelt
