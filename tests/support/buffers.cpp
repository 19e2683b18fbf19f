#include "support/buffers.h"

#include <cstdio>
#include <cstring>

namespace zelt::test {

namespace {
uint8_t Canary(size_t i) { return static_cast<uint8_t>(0xA5 ^ (i * 37)); }
}  // namespace

GuardedBuffer::GuardedBuffer(size_t size, size_t guard, uint8_t fill)
    : size_(size), guard_(guard), bytes_(size + 2 * guard) {
  for (size_t i = 0; i < bytes_.size(); ++i) bytes_[i] = Canary(i);
  std::memset(data(), fill, size_);
}

bool GuardsIntact(const std::vector<uint8_t>& bytes, size_t from, size_t to) {
  for (size_t i = from; i < to; ++i) {
    if (bytes[i] != Canary(i)) return false;
  }
  return true;
}

bool GuardedBuffer::GuardsIntact(size_t allowance) const {
  return zelt::test::GuardsIntact(bytes_, 0, guard_) &&
         zelt::test::GuardsIntact(bytes_, guard_ + size_ + allowance, bytes_.size());
}

void GuardedBuffer::FillRandom(uint32_t seed) {
  const std::vector<uint8_t> r = RandomBytes(size_, seed);
  if (size_ != 0) std::memcpy(data(), r.data(), size_);
}

void GuardedBuffer::Fill(uint8_t value) { std::memset(data(), value, size_); }

std::vector<uint8_t> RandomBytes(size_t n, uint32_t seed) {
  std::mt19937 gen(seed);
  std::vector<uint8_t> v(n);
  for (auto& b : v) b = static_cast<uint8_t>(gen() >> 24);
  return v;
}

std::string FirstDifference(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b) {
  if (a.size() != b.size()) return "sizes differ: " + std::to_string(a.size()) + " vs " + std::to_string(b.size());
  for (size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i]) {
      char buf[96];
      std::snprintf(buf, sizeof buf, "first difference at byte %zu: %02x vs %02x", i, a[i], b[i]);
      return buf;
    }
  }
  return "identical";
}

}  // namespace zelt::test
