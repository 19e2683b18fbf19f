// A picture model for the planar tests: three planes with known contents, laid
// out as the frame formats, and a reader for packed 4:2:2 rows.
#pragma once

#include <cstdint>
#include <vector>

namespace zelt::test {

// Byte offsets of luma, Cb and Cr within a packed 4:2:2 group.
struct GroupOrder {
  uint32_t y, cb, cr;
};
inline constexpr GroupOrder kOrderUyvy{1, 0, 2};
inline constexpr GroupOrder kOrderYuy2{0, 1, 3};
inline constexpr GroupOrder kOrderYvyu{0, 3, 1};

// Planes whose samples say where they come from: luma (x, r) = 7r + x (mod 256),
// Cb (i, k) = 0x20 + 4k + i and Cr (i, k) = 0xA0 + 4k + i for small frames (the
// chroma tags stay unique while 4k + i < 96).
struct Picture {
  uint32_t w, h, cw, ch;  // luma and chroma sizes
  std::vector<uint8_t> y, cb, cr;

  Picture(uint32_t width, uint32_t height, uint32_t chromaRows)
      : w(width), h(height), cw(width / 2), ch(chromaRows), y(size_t{width} * height), cb(size_t{cw} * ch),
        cr(size_t{cw} * ch) {
    for (uint32_t r = 0; r < h; ++r)
      for (uint32_t x = 0; x < w; ++x) y[size_t{r} * w + x] = static_cast<uint8_t>(7 * r + x);
    for (uint32_t k = 0; k < ch; ++k)
      for (uint32_t i = 0; i < cw; ++i) {
        cb[size_t{k} * cw + i] = static_cast<uint8_t>(0x20 + 4 * k + i);
        cr[size_t{k} * cw + i] = static_cast<uint8_t>(0xA0 + 4 * k + i);
      }
  }

  // The frame: luma plane, then the two chroma planes in the given order, natural strides.
  std::vector<uint8_t> Frame(bool crFirst) const {
    std::vector<uint8_t> f = y;
    const auto& first = crFirst ? cr : cb;
    const auto& second = crFirst ? cb : cr;
    f.insert(f.end(), first.begin(), first.end());
    f.insert(f.end(), second.begin(), second.end());
    return f;
  }

  // Packed 4:2:2 frame of this picture, taking chroma row chromaRow[r] for row r.
  std::vector<uint8_t> Packed(GroupOrder o, const std::vector<uint32_t>& chromaRow) const {
    std::vector<uint8_t> p(size_t{w} * h * 2);
    for (uint32_t r = 0; r < h; ++r)
      for (uint32_t i = 0; i < w / 2; ++i) {
        uint8_t* g = &p[size_t{r} * w * 2 + 4 * i];
        g[o.y] = y[size_t{r} * w + 2 * i];
        g[o.y + 2] = y[size_t{r} * w + 2 * i + 1];
        g[o.cb] = cb[size_t{chromaRow[r]} * cw + i];
        g[o.cr] = cr[size_t{chromaRow[r]} * cw + i];
      }
    return p;
  }
};

// Rows of a frame in reverse order (cyuv is stored bottom-up).
inline std::vector<uint8_t> FlipRows(const std::vector<uint8_t>& f, uint32_t rowBytes, uint32_t rows) {
  std::vector<uint8_t> out(f.size());
  for (uint32_t r = 0; r < rows; ++r)
    for (uint32_t b = 0; b < rowBytes; ++b) out[size_t{r} * rowBytes + b] = f[size_t{rows - 1 - r} * rowBytes + b];
  return out;
}

}  // namespace zelt::test
