// Format codes of the transcoder, their memory layouts and the stride rules.
#pragma once

#include <cstdint>

namespace zelt {

constexpr uint32_t FourCC(char a, char b, char c, char d) {
  return static_cast<uint32_t>(static_cast<uint8_t>(a)) | (static_cast<uint32_t>(static_cast<uint8_t>(b)) << 8) |
         (static_cast<uint32_t>(static_cast<uint8_t>(c)) << 16) | (static_cast<uint32_t>(static_cast<uint8_t>(d)) << 24);
}

// The nine layouts the dispatcher moves frames between.
enum class Layout : uint8_t { RGB32, UYVY, YUY2, YVYU, CYUV, I420, YV12, P422, V012 };
inline constexpr int kLayoutCount = 9;
inline constexpr uint8_t kNoLayout = 0xFF;

inline constexpr uint32_t kCodeRGB32 = 0;
inline constexpr uint32_t kCodeUYVY = FourCC('U', 'Y', 'V', 'Y');
inline constexpr uint32_t kCodeYUY2 = FourCC('Y', 'U', 'Y', '2');
inline constexpr uint32_t kCodeYVYU = FourCC('Y', 'V', 'Y', 'U');
inline constexpr uint32_t kCodeCYUV = FourCC('c', 'y', 'u', 'v');
inline constexpr uint32_t kCodeI420 = FourCC('I', '4', '2', '0');
inline constexpr uint32_t kCodeYV12 = FourCC('Y', 'V', '1', '2');
inline constexpr uint32_t kCodeP422 = FourCC('P', '4', '2', '2');
inline constexpr uint32_t kCode422P = FourCC('4', '2', '2', 'P');  // source-only alias of P422
inline constexpr uint32_t kCode012v = FourCC('0', '1', '2', 'v');
inline constexpr uint32_t kCodeV210 = FourCC('v', '2', '1', '0');

struct FormatAlias {
  uint32_t code;
  Layout layout;
  const char* name;  // the four characters in memory order, or a description
};

// The twenty codes the transcoder knows (422P is not among them).
extern const FormatAlias kFormatAliases[20];

// Layout of one of the twenty codes; kNoLayout for anything else (422P included).
uint8_t LayoutOfCode(uint32_t code);

const char* LayoutName(Layout layout);

// Stride correction applied by the dispatcher to both strides before routing.
//   packed 4:2:2 codes: raised to 2 * width when below it;
//   I420/IYUV/YV12/P422: becomes width when above width rounded up to 128;
//   012v/v210: 0 stays, a multiple of 16 of at least (width/6)*16 stays, else (width/6)*16;
//   RGB32, 422P and anything else: unchanged.
void NormalizeStride(uint32_t code, uint32_t width, uint32_t* stride);

// Helpers defined in this header have internal linkage: it is also compiled into
// the AVX2 objects, and one shared inline copy could be handed to a baseline caller.
// Smallest 012v row pitch: width rounded up to 48 pixels, 128 bytes per 48.
static constexpr uint32_t V012MinPitch(uint32_t width) { return (width + 47) / 48 * 128; }

// 012v pitch in use for a caller's pitch: raised to the minimum (0 is kept: it
// means rows follow one another with no padding).
static constexpr uint32_t V012Pitch(uint32_t width, uint32_t pitch) {
  return (pitch != 0 && pitch < V012MinPitch(width)) ? V012MinPitch(width) : pitch;
}

// 8-bit <-> 10-bit at the 012v boundary.
constexpr uint32_t EightToTen(uint32_t v) { return v * 4; }
constexpr uint8_t TenToEight(uint32_t v) { return static_cast<uint8_t>(v < 1021 ? (v + 2) >> 2 : v >> 2); }

}  // namespace zelt
