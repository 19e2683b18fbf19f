// Reference YCbCr to RGB decoding for converter tests, written from the pixel
// rules (table lookup, truncating division, clamping, channel layouts) one pixel at
// a time with no shared code beyond the coefficient tables.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zelt::test {

struct RefRgb {
  int r, g, b;
};

// 8-bit samples, scale-10000 table.
RefRgb RefDecode8(uint32_t matrix, int y, int cb, int cr);
// 10-bit samples, the 8-bit table divided by 4.
RefRgb RefDecode10To8(uint32_t matrix, int y, int cb, int cr);

// Channel layout of one pixel for `bitsPerPixel` (15, 16, 24, 32) and `flags`:
// for 32 and 24 bits the bytes in memory ("BGRA", "ARGB", "RGB", ...; A is 255),
// for 15 and 16 bits the fields from the high bits down ("BGR" = B high, R low).
std::string RefLayout(uint32_t bitsPerPixel, uint32_t flags);
size_t RefBytesPerPixel(uint32_t bitsPerPixel);

// Writes one pixel at `at`, skipping bytes beyond the end of `buf`.
void RefPut(std::vector<uint8_t>& buf, size_t at, uint32_t bitsPerPixel, const std::string& layout, RefRgb p);

// Floating-point evaluation of a documented fast-path formula set, rounded to
// nearest and saturated: 0 = BT.601, 1 = BT.709 "CSC", 2 = BT.709 "HDTV".
RefRgb RefFastDecode(int set, int y, int cb, int cr);

}  // namespace zelt::test
