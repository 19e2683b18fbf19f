// What the tool knows of the transcoder's formats: names, codes and frame sizes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zelt::tool {

enum class Kind { Rgb32, Packed422, Planar420, Planar422, V210 };

struct Layout {
  const char* name;       // canonical name: RGB32 UYVY YUY2 YVYU cyuv I420 YV12 P422 012v
  Kind kind;
  std::vector<const char*> aliases;  // codes accepted for it, in memory order
  const char* description;
};

const std::vector<Layout>& Layouts();

struct Format {
  const Layout* layout;
  uint32_t code;  // the code handed to the library
  std::string spelled;
};

// Parses a code: a four-character code ("UYVY", "v210"), "RGB32" / "0", or a
// number (0x8800001E). Empty when it is not one the transcoder knows.
std::optional<Format> ParseFormat(const std::string& text);

// Natural row stride in bytes for a width.
uint32_t NaturalStride(Kind kind, uint32_t width);
// Bytes of one frame with the given row stride (planar: stride of the luma plane).
uint64_t FrameBytes(Kind kind, uint32_t height, uint32_t stride);

constexpr uint32_t FourCC(const char* s) {
  return uint32_t(uint8_t(s[0])) | uint32_t(uint8_t(s[1])) << 8 | uint32_t(uint8_t(s[2])) << 16 |
         uint32_t(uint8_t(s[3])) << 24;
}

}  // namespace zelt::tool
