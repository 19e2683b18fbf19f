// A byte buffer whose data() is aligned to 64 bytes, for the paths that switch to
// streaming stores on large aligned frames.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace zelt::test {

class AlignedBytes {
 public:
  explicit AlignedBytes(size_t n) : n_(n), raw_(n + 64) {
    const uintptr_t p = reinterpret_cast<uintptr_t>(raw_.data());
    offset_ = static_cast<size_t>((64 - (p & 63)) & 63);
  }
  uint8_t* data() { return raw_.data() + offset_; }
  size_t size() const { return n_; }
  std::vector<uint8_t> Bytes() const { return {raw_.data() + offset_, raw_.data() + offset_ + n_}; }
  void Assign(const std::vector<uint8_t>& v) { std::memcpy(data(), v.data(), n_); }

 private:
  size_t n_;
  size_t offset_ = 0;
  std::vector<uint8_t> raw_;
};

}  // namespace zelt::test
