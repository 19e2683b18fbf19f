// Small helpers shared by the row-pipeline tests.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "support/buffers.h"

namespace zelt::test {

// A GuardedBuffer seen as `n` elements of T, with room in the guards for allowances.
template <typename T>
class Guarded {
 public:
  explicit Guarded(size_t n, uint8_t fill = 0xEE) : buf_(n * sizeof(T), 512, fill), n_(n) {}
  T* data() { return reinterpret_cast<T*>(buf_.data()); }
  T& operator[](size_t i) { return data()[i]; }
  size_t size() const { return n_; }
  // `extra` elements past the end may have been written.
  bool Intact(size_t extra = 0) const { return buf_.GuardsIntact(extra * sizeof(T)); }
  std::vector<T> Values(size_t count) {
    std::vector<T> v(count);
    std::memcpy(v.data(), data(), count * sizeof(T));
    return v;
  }
  void FillRandom(uint32_t seed) { buf_.FillRandom(seed); }

 private:
  GuardedBuffer buf_;
  size_t n_;
};

}  // namespace zelt::test
