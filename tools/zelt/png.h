// A small PNG writer (8-bit RGB, no compression) so the tool needs no image library.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zelt::tool {

// Writes `rgb` (width * height * 3 bytes, R G B, top row first) as a PNG file.
// Returns an empty string on success, else what went wrong.
std::string WritePng(const std::string& path, uint32_t width, uint32_t height, const std::vector<uint8_t>& rgb);

// The PNG file bytes themselves.
std::vector<uint8_t> EncodePng(uint32_t width, uint32_t height, const std::vector<uint8_t>& rgb);

}  // namespace zelt::tool
