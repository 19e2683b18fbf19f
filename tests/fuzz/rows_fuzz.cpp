// fuzz-requires: zeltUnpackRowYUV16s zeltUnpackYUVRow16s zeltV210RowToPlanar16s zeltUnpacked16sRowToRGB32 zeltCGRGBtoVSRGB
//
// Fuzz target: the row unpackers and packers that have vector block loops. Every
// buffer is exactly as large as the row needs plus the allowance the header states
// (an odd width's extra pixel, the whole last v210 group, the 32-pixel block of a
// short 8-bit row), so the address sanitizer reports the first byte beyond. Each
// input runs on the portable loops (no SSE4.1), with SSE4.1, and with AVX2 when the
// host has it; the bytes written must be the same on every path.
//
// Input bytes: 0 mode, 1-2 width, 3 height or count, 4-7 parameters (component,
// shift, matrix, format...), the rest seeds the samples.
//   mode 0: zeltV210RowToPlanar16s, zeltV210RowToYUV, zeltV210RowToYUV16, zeltV210ToYR16
//   mode 1: zeltUnpackRowYUV16s, both the scalar and the vector path argument
//   mode 2: zeltUnpackYUVRow16s
//   mode 3: zeltUnpacked16sRowToRGB24 / RGB32
//   mode 4: zeltUnpacked16sRowToRGB48 / RGB30
//   mode 5: zeltCGRGBtoVSRGB / zeltCGRGBAtoVSRGBA in place
//   mode 6: zeltPlanarRGB16uToPackedRGB24 with the same rand() seed on every path
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/platform.h"
#include "core/testing.h"
#include "zelt/rows.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kPortable = 1u << 5;                                  // SSE2 only
constexpr uint32_t kSse41 = 1u << 5 | 1u << 7 | 1u << 13 | 1u << 14;    // level 4 with SSE4.1
constexpr uint32_t kAvx2 = kSse41 | 1u << 23;

struct Input {
  uint8_t mode;
  uint32_t width, height;
  uint8_t p[4];
  const uint8_t* seed;
  size_t seedSize;
};

// Deterministic sample bytes from the input's tail.
Bytes Fill(size_t n, const Input& in, uint32_t salt) {
  Bytes v(n);
  uint32_t x = 0x811C9DC5u ^ salt;
  for (size_t i = 0; i < n; ++i) {
    if (in.seedSize != 0 && i < in.seedSize * 4) {
      v[i] = static_cast<uint8_t>(in.seed[i % in.seedSize] + i / in.seedSize * 97);
    } else {
      x = x * 1664525u + 1013904223u;
      v[i] = static_cast<uint8_t>(x >> 24);
    }
  }
  return v;
}

template <class T>
std::vector<T> FillAs(size_t count, const Input& in, uint32_t salt) {
  const Bytes b = Fill(count * sizeof(T), in, salt);
  std::vector<T> v(count);
  if (count != 0) std::memcpy(v.data(), b.data(), b.size());
  return v;
}

template <class T>
void Append(Bytes& out, const std::vector<T>& v) {
  const auto* p = reinterpret_cast<const uint8_t*>(v.data());
  out.insert(out.end(), p, p + v.size() * sizeof(T));
}

// Runs `run` on every path; returns the bytes they agree on.
template <class F>
Bytes OnEveryPath(F run) {
  static const bool hostAvx2 = [] {
    zelt::testing::ClearFeatureMask();
    return (zelt::CPUFeatureFlags() & zelt::kFeatAvx2) != 0;
  }();
  const uint32_t masks[] = {kPortable, kSse41, kAvx2};
  Bytes first;
  for (size_t i = 0; i < (hostAvx2 ? 3u : 2u); ++i) {
    zelt::testing::ForceFeatureMask(masks[i]);
    zelt::testing::ResetSimdLevel();
    Bytes got = run();
    if (i == 0) {
      first = std::move(got);
    } else if (got != first) {
      std::fprintf(stderr, "path %zu gives other bytes than the portable loops\n", i);
      std::abort();
    }
  }
  zelt::testing::ClearFeatureMask();
  zelt::testing::ResetSimdLevel();
  return first;
}

void V210Rows(const Input& in) {
  const uint32_t w = in.width % 1600;
  const uint32_t h = 1 + in.height % 4;
  const size_t ceil6 = (w + 5) / 6, whole = w / 6;
  const uint32_t srcPitch = static_cast<uint32_t>(whole * 16 + (in.p[0] % 4) * 16);
  OnEveryPath([&] {
    Bytes out;
    // Row readers take the whole last group.
    const Bytes row = Fill(ceil6 * 16, in, 1);
    std::vector<int16_t> y(w + (w & 1)), cr((w + 1) / 2), cb((w + 1) / 2), packed(12 * ceil6);
    zeltV210RowToPlanar16s(row.data(), static_cast<int32_t>(w), y.data(), cr.data(), cb.data());
    zeltV210RowToYUV(row.data(), packed.data(), static_cast<int32_t>(w));
    Append(out, y), Append(out, cr), Append(out, cb), Append(out, packed);
    // Whole groups only.
    const Bytes wholeRow(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(whole * 16));
    std::vector<uint16_t> y16(6 * whole), cb16(3 * whole), cr16(3 * whole);
    zeltV210RowToYUV16(wholeRow.data(), y16.data(), cb16.data(), cr16.data(), static_cast<int32_t>(w));
    Append(out, y16), Append(out, cb16), Append(out, cr16);
    // A frame: the last row ends with its last whole group; YR16 rows are 2 * width samples.
    const Bytes frame = Fill(size_t{srcPitch} * (h - 1) + whole * 16, in, 2);
    const int32_t dstPitch = static_cast<int32_t>(4 * w + (in.p[1] % 3) * 2);
    std::vector<uint16_t> yr(size_t(dstPitch) * (h - 1) / 2 + 2 * size_t{w}, 0x5A5A);
    zeltV210ToYR16(frame.data(), static_cast<int32_t>(w), static_cast<int32_t>(h), static_cast<int32_t>(srcPitch),
                   yr.data(), dstPitch);
    Append(out, yr);
    return out;
  });
}

void ComponentRows(const Input& in) {
  const int32_t count = static_cast<int32_t>(in.width % 3000);
  const int32_t component = in.p[0] % 3;
  const int32_t shift = (in.p[1] & 1) ? 2 : in.p[1] % 9;
  const int32_t fullRange = in.p[2] & 1, matrix = (in.p[2] >> 1) & 1;
  // Luma reads a group per two samples (an odd count its last group whole), chroma a
  // group per sample; an odd luma count writes one sample more.
  const size_t groups = component == 0 ? (size_t(count) + 1) / 2 : size_t(count);
  const size_t outCount = size_t(count) + (component == 0 ? (count & 1) : 0);
  const Bytes src = Fill(4 * groups, in, 3);
  Bytes results[2];
  for (int32_t path : {0, 2}) {
    results[path / 2] = OnEveryPath([&] {
      std::vector<int16_t> dst(outCount, 0x1234);
      const uint32_t used = zeltUnpackRowYUV16s(src.data(), dst.data(), count, component, path, shift, fullRange, matrix);
      Bytes out;
      Append(out, dst);
      Append(out, std::vector<uint32_t>{used});
      return out;
    });
  }
  if (results[0] != results[1]) {
    std::fprintf(stderr, "the vector path argument gives other samples than the scalar one\n");
    std::abort();
  }
}

void Yuy2Rows(const Input& in) {
  const int32_t w = static_cast<int32_t>(1 + in.width % 2500);
  // Rows under 32 pixels are one whole 32-pixel block; an odd width finishes its pair.
  const size_t luma = w < 32 ? 32 : size_t(w) + (w & 1);
  const Bytes src = Fill(2 * luma, in, 4);
  OnEveryPath([&] {
    std::vector<int16_t> y(luma, 0x7777), cr(luma / 2, 0x7777), cb(luma / 2, 0x7777);
    ZeltPlanes planes = {{y.data(), cr.data(), cb.data()}};
    const uint32_t used = zeltUnpackYUVRow16s(src.data(), w, &planes);
    Bytes out;
    Append(out, y), Append(out, cr), Append(out, cb), Append(out, std::vector<uint32_t>{used});
    return out;
  });
}

void MatrixPackers(const Input& in) {
  const int32_t w = static_cast<int32_t>(in.width % 2500);
  const int32_t shift = in.p[0] % 9;
  const int32_t matrix = in.p[1];
  const uint8_t alpha = in.p[2];
  // An odd width reads and writes one pixel more. Samples stay below 256 << shift,
  // as an unpacker writes them: bits above would be the caller's mistake.
  const size_t pixels = size_t(w) + (w & 1);
  auto row = [&](uint32_t salt, size_t n) {
    std::vector<int16_t> v = FillAs<int16_t>(n, in, salt);
    for (auto& s : v) s = static_cast<int16_t>(static_cast<uint16_t>(s) & ((256u << shift) - 1));
    return v;
  };
  const std::vector<int16_t> y = row(5, pixels), cr = row(6, pixels / 2), cb = row(7, pixels / 2);
  OnEveryPath([&] {
    ZeltPlanes planes = {{const_cast<int16_t*>(y.data()), const_cast<int16_t*>(cr.data()),
                          const_cast<int16_t*>(cb.data())}};
    Bytes rgb24(3 * pixels, 0x33), rgb32(4 * pixels, 0x44);
    zeltUnpacked16sRowToRGB24(&planes, nullptr, rgb24.data(), w, shift, 7, matrix);
    zeltUnpacked16sRowToRGB32(&planes, nullptr, rgb32.data(), w, shift, 8, matrix, alpha);
    rgb24.insert(rgb24.end(), rgb32.begin(), rgb32.end());
    return rgb24;
  });
}

void WidePackers(const Input& in) {
  const int32_t w = static_cast<int32_t>(in.width % 2500);
  const int32_t bits = 8 + in.p[0] % 9;
  const int32_t extra = in.p[1] % 5;
  const int32_t formats[] = {122, 123, 124, 125, 128, 126};
  const int32_t format = formats[in.p[2] % 6];
  const std::vector<int16_t> g = FillAs<int16_t>(size_t(w), in, 8), r = FillAs<int16_t>(size_t(w), in, 9),
                             b = FillAs<int16_t>(size_t(w), in, 10);
  OnEveryPath([&] {
    ZeltPlanes planes = {{const_cast<int16_t*>(g.data()), const_cast<int16_t*>(r.data()), const_cast<int16_t*>(b.data())}};
    std::vector<uint16_t> rgb48(3 * size_t(w), 0x4848);
    std::vector<uint32_t> rgb30(size_t(w), 0x30303030u);
    zeltUnpacked16sRowToRGB48(&planes, nullptr, rgb48.data(), w, bits, extra);
    zeltUnpacked16sRowToRGB30(&planes, nullptr, rgb30.data(), w, bits, extra, format);
    Bytes out;
    Append(out, rgb48), Append(out, rgb30);
    return out;
  });
}

void RangeMapping(const Input& in) {
  const uint32_t pixels = in.width % 3000;
  const int32_t bits = 8 + in.p[0] % 9;
  const std::vector<uint16_t> rgb = FillAs<uint16_t>(3 * size_t{pixels}, in, 11);
  const std::vector<uint16_t> rgba = FillAs<uint16_t>(4 * size_t{pixels}, in, 12);
  OnEveryPath([&] {
    std::vector<uint16_t> a = rgb, b = rgba;
    zeltCGRGBtoVSRGB(a.data(), pixels, bits);
    zeltCGRGBAtoVSRGBA(b.data(), pixels, bits);
    Bytes out;
    Append(out, a), Append(out, b);
    return out;
  });
}

void PlanarDither(const Input& in) {
  const int32_t w = static_cast<int32_t>(in.width % 1200);
  const int32_t h = static_cast<int32_t>(1 + in.height % 3);
  const int32_t shift = 1 + in.p[0] % 16;
  const int32_t pad = in.p[1] % 5;
  const int32_t dstWidth = w + in.p[2] % 4;
  const int32_t srcPitch = 2 * (w + pad), dstPitch = 3 * dstWidth + in.p[3] % 4;
  const size_t planeSamples = size_t(srcPitch / 2) * size_t(h - 1) + size_t(w);
  const std::vector<uint16_t> g = FillAs<uint16_t>(planeSamples, in, 13), r = FillAs<uint16_t>(planeSamples, in, 14),
                              b = FillAs<uint16_t>(planeSamples, in, 15);
  const unsigned seed = in.p[3];
  OnEveryPath([&] {
    ZeltPlanes planes = {{const_cast<uint16_t*>(g.data()), const_cast<uint16_t*>(r.data()), const_cast<uint16_t*>(b.data())}};
    const int32_t pitches[3] = {srcPitch, srcPitch, srcPitch};
    Bytes dst(size_t(dstPitch) * size_t(h - 1) + 3 * size_t(dstWidth), 0x66);
    std::srand(seed);
    zeltPlanarRGB16uToPackedRGB24(&planes, pitches, ZeltSize{w, h}, dst.data(), dstPitch, dstWidth, shift);
    return dst;
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 8) return 0;
  const Input in{data[0], static_cast<uint32_t>(data[1] | data[2] << 8), data[3], {data[4], data[5], data[6], data[7]},
                 data + 8, size - 8};
  switch (in.mode % 7) {
    case 0: V210Rows(in); break;
    case 1: ComponentRows(in); break;
    case 2: Yuy2Rows(in); break;
    case 3: MatrixPackers(in); break;
    case 4: WidePackers(in); break;
    case 5: RangeMapping(in); break;
    default: PlanarDither(in); break;
  }
  return 0;
}
