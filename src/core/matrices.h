// Colour matrices of the transcoder's YCbCr <-> RGB converters, and the per-pixel
// decoding rules they share.
//
// A caller picks a matrix by id (0..7 when decoding; 0..10 when encoding). Any id
// outside a direction's range behaves exactly like id 0. Chroma is always centred
// (128 for 8-bit samples, 512 for 10-bit); video-range luma carries the offset
// 16/64. Results are clamped only to the full code range of the output sample.
#pragma once

#include <cstdint>

namespace zelt {

// One decoding set (YCbCr -> RGB). All weights positive; cbToG and crToG are
// subtracted in G.
struct YcbcrToRgbMatrix {
  int32_t yOffset;
  int32_t yScale;
  int32_t crToR;
  int32_t cbToG;
  int32_t crToG;
  int32_t cbToB;
};

// One encoding set at scale 40000 (8-bit RGB in, 10-bit YCbCr out), weights signed
// as applied.
struct RgbToYcbcr40000 {
  int32_t yOffset;
  int32_t yR, yG, yB;
  int32_t cbR, cbG, cbB;
  int32_t crR, crG, crB;
};

inline constexpr uint32_t kDecodeMatrixCount = 8;
inline constexpr uint32_t kEncodeMatrixCount = 11;

// The set an id selects in each direction: unknown ids fall back to 0.
constexpr uint32_t DecodeMatrixIndex(uint32_t id) { return id < kDecodeMatrixCount ? id : 0; }
constexpr uint32_t EncodeMatrixIndex(uint32_t id) { return id < kEncodeMatrixCount ? id : 0; }

// 8-bit YCbCr to 8-bit RGB, scale 10000.
const YcbcrToRgbMatrix& YcbcrToRgb10000(uint32_t id);
// 10-bit YCbCr (centre 512), scale 10240: divided by 160 it gives RGB at 16-bit scale.
const YcbcrToRgbMatrix& YcbcrToRgb10240(uint32_t id);
// 8-bit YCbCr to 16-bit RGB: the scale-10000 weights times 256.39, truncated, except
// id 4, whose weights are times exactly 256. Offsets as the scale-10000 table.
const YcbcrToRgbMatrix& YcbcrToRgb16(uint32_t id);
// 10-bit YCbCr to 8-bit RGB: the scale-10000 weights divided by 4 and truncated;
// yOffset is the 10-bit offset (64 or 0).
const YcbcrToRgbMatrix& YcbcrToRgb10Bit8(uint32_t id);
// 8-bit RGB to 10-bit YCbCr: the scale-1000000 encoding weights times 0.04,
// truncated toward zero.
const RgbToYcbcr40000& RgbToYcbcrScale40000(uint32_t id);

// Chroma products of one pixel pair, computed once and shared by both pixels.
struct ChromaTerms {
  int32_t r;  // v * crToR
  int32_t g;  // u * cbToG + v * crToG (subtracted)
  int32_t b;  // u * cbToB
};

constexpr ChromaTerms MakeChromaTerms(const YcbcrToRgbMatrix& m, int32_t u, int32_t v) {
  return {v * m.crToR, u * m.cbToG + v * m.crToG, u * m.cbToB};
}

struct Rgb8 {
  uint8_t r, g, b;
};
struct Rgb16 {
  uint16_t r, g, b;
};

constexpr uint8_t ClampTo8(int32_t v) { return static_cast<uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v)); }
constexpr uint16_t ClampTo16(int32_t v) { return static_cast<uint16_t>(v < 0 ? 0 : (v > 65535 ? 65535 : v)); }

// Decoding, 8-bit in and out: (y + chroma) / 10000 truncated toward zero (C++
// division), then clamped. No rounding offset. `luma` is the raw sample.
constexpr Rgb8 DecodePixel8(const YcbcrToRgbMatrix& m, int32_t luma, const ChromaTerms& c) {
  const int32_t y = (luma - m.yOffset) * m.yScale;
  return {ClampTo8((y + c.r) / 10000), ClampTo8((y - c.g) / 10000), ClampTo8((y + c.b) / 10000)};
}

// Decoding for 16-bit output with the YcbcrToRgb16 table: 5000 is added to the luma
// term and to each chroma term before they are combined, so R and B carry a bias
// of one whole unit and G none.
constexpr Rgb16 DecodePixel16(const YcbcrToRgbMatrix& m, int32_t luma, const ChromaTerms& c) {
  const int32_t y = (luma - m.yOffset) * m.yScale + 5000;
  return {ClampTo16((y + c.r + 5000) / 10000), ClampTo16((y - (c.g + 5000)) / 10000),
          ClampTo16((y + c.b + 5000) / 10000)};
}

// Decoding at scale 10240 (10-bit in, centre 512): divided by 160, so the result is
// the 10-bit value times 64; truncated and clamped to 0..65535.
constexpr Rgb16 DecodePixel10240(const YcbcrToRgbMatrix& m, int32_t luma, const ChromaTerms& c) {
  const int32_t y = (luma - m.yOffset) * m.yScale;
  return {ClampTo16((y + c.r) / 160), ClampTo16((y - c.g) / 160), ClampTo16((y + c.b) / 160)};
}

}  // namespace zelt
