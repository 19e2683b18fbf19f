// Buffers with guard zones and seeded random content for converter tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace zelt::test {

// A byte buffer with `guard` canary bytes on each side. The canaries follow a
// pattern, so a stray write shows up as a mismatch in GuardsIntact().
class GuardedBuffer {
 public:
  explicit GuardedBuffer(size_t size, size_t guard = 64, uint8_t fill = 0);
  uint8_t* data() { return bytes_.data() + guard_; }
  const uint8_t* data() const { return bytes_.data() + guard_; }
  size_t size() const { return size_; }
  // Bytes [size, size + allowance) count as part of the buffer (documented over-writes).
  bool GuardsIntact(size_t allowance = 0) const;
  std::vector<uint8_t> Bytes() const { return {data(), data() + size_}; }
  void FillRandom(uint32_t seed);
  void Fill(uint8_t value);

 private:
  size_t size_;
  size_t guard_;
  std::vector<uint8_t> bytes_;
};

// Deterministic random bytes.
std::vector<uint8_t> RandomBytes(size_t n, uint32_t seed);

// Hex dump of the first difference between two byte ranges, for failure messages.
std::string FirstDifference(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b);

}  // namespace zelt::test
