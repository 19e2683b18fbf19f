// The coefficient tables. The derived tables are spelled out as used and checked
// against their derivation at compile time.
#include "core/matrices.h"

namespace zelt {
namespace {

// Ids 2/4 and 3/5 are identical when decoding. The id-1 value 6979 (not 6980) is
// the one in use and stays.
constexpr YcbcrToRgbMatrix k10000[kDecodeMatrixCount] = {
    {16, 11640, 15960, 3920, 8129, 20170},  // BT.601 video
    {0, 10000, 13710, 3360, 6979, 17320},   // BT.601 full
    {16, 11640, 17930, 2130, 5340, 21150},  // BT.709 (3 decimals) video
    {0, 10000, 15400, 1830, 4590, 18160},   // BT.709 (3 decimals) full
    {16, 11640, 17930, 2130, 5340, 21150},  // BT.709 (6 decimals) video
    {0, 10000, 15400, 1830, 4590, 18160},   // BT.709 exact, full
    {16, 11640, 16786, 1873, 6504, 21417},  // BT.2020 video
    {0, 10000, 14746, 1646, 5714, 18814},   // BT.2020 full
};

constexpr YcbcrToRgbMatrix k10240[kDecodeMatrixCount] = {
    {64, 11919, 16343, 4014, 8325, 20654}, {0, 10240, 14039, 3440, 7147, 17735},
    {64, 11919, 18360, 2181, 5468, 21657}, {0, 10240, 15769, 1873, 4700, 18595},
    {64, 11919, 18360, 2181, 5468, 21657}, {0, 10240, 15769, 1873, 4700, 18595},
    {64, 11919, 17189, 1918, 6660, 21931}, {0, 10240, 15100, 1685, 5851, 19265},
};

// Id 4 is scaled by exactly 256 where the others use 256.39: the one place where
// ids 2 and 4 decode differently. These are the entries as used: a few of them
// (crToG of ids 0 and 1, the chroma weights of ids 6 and 7) come from slightly
// different base weights than the scale-10000 row and stay as they are.
constexpr YcbcrToRgbMatrix k16[kDecodeMatrixCount] = {
    {16, 2984379, 4091984, 1005048, 2084450, 5171386}, {0, 2563900, 3515106, 861470, 1789602, 4440674},
    {16, 2984379, 4597072, 546110, 1369122, 5422648}, {0, 2563900, 3948406, 469193, 1176830, 4656042},
    {16, 2979840, 4590080, 545280, 1367040, 5414400}, {0, 2563900, 3948406, 469193, 1176830, 4656042},
    {16, 2984379, 4303954, 480280, 1667624, 5491291}, {0, 2563900, 3780983, 422017, 1465012, 4823721},
};

constexpr YcbcrToRgbMatrix k10Bit8[kDecodeMatrixCount] = {
    {64, 2910, 3990, 980, 2032, 5042}, {0, 2500, 3427, 840, 1744, 4330},
    {64, 2910, 4482, 532, 1335, 5287}, {0, 2500, 3850, 457, 1147, 4540},
    {64, 2910, 4482, 532, 1335, 5287}, {0, 2500, 3850, 457, 1147, 4540},
    {64, 2910, 4196, 468, 1626, 5354}, {0, 2500, 3686, 411, 1428, 4703},
};

constexpr RgbToYcbcr40000 k40000[kEncodeMatrixCount] = {
    {16, 10280, 20160, 3920, -5920, -11640, 17560, 17560, -14720, -2840},
    {0, 11960, 23480, 4559, -6903, -13553, 20456, 20456, -17130, -3326},
    {16, 7320, 24560, 2480, -4040, -13520, 17560, 17560, -15960, -1600},
    {0, 8520, 28600, 2880, -4680, -15760, 20440, 20440, -18560, -1880},
    {16, 7282, 24497, 2473, -4013, -13503, 17517, 17517, -15910, -1606},
    {0, 8504, 28608, 2888, -4582, -15417, 20000, 20000, -18166, -1833},
    {16, 9024, 23291, 2037, -4906, -12662, 17568, 17568, -16155, -1412},
    {0, 10508, 27120, 2372, -5585, -14414, 20000, 20000, -18391, -1608},
    {16, 8880, 25240, 19840, -10800, -30720, 41200, 18760, -17440, -1360},
    {0, 10360, 29520, 23200, -12320, -35120, 47440, 21480, -19920, -1560},
    {0, 11960, 23480, 4559, -8000, -8000, 16000, 22400, -18400, -4000},
};

constexpr bool Derived(const YcbcrToRgbMatrix& base, const YcbcrToRgbMatrix& d, int64_t num, int64_t den,
                       int32_t offsetScale) {
  auto f = [&](int32_t v) { return static_cast<int32_t>(int64_t{v} * num / den); };
  return d.yOffset == base.yOffset * offsetScale && d.yScale == f(base.yScale) && d.crToR == f(base.crToR) &&
         d.cbToG == f(base.cbToG) && d.crToG == f(base.crToG) && d.cbToB == f(base.cbToB);
}

constexpr bool Check10Bit8() {
  for (uint32_t i = 0; i < kDecodeMatrixCount; ++i)
    if (!Derived(k10000[i], k10Bit8[i], 1, 4, 4)) return false;
  return true;
}

static_assert(Derived(k10000[4], k16[4], 256, 1, 1), "id 4 of the 16-bit table is the 8-bit row times 256");
static_assert(Check10Bit8(), "10-bit input table must be the scale-10000 table divided by 4");

}  // namespace

const YcbcrToRgbMatrix& YcbcrToRgb10000(uint32_t id) { return k10000[DecodeMatrixIndex(id)]; }
const YcbcrToRgbMatrix& YcbcrToRgb10240(uint32_t id) { return k10240[DecodeMatrixIndex(id)]; }
const YcbcrToRgbMatrix& YcbcrToRgb16(uint32_t id) { return k16[DecodeMatrixIndex(id)]; }
const YcbcrToRgbMatrix& YcbcrToRgb10Bit8(uint32_t id) { return k10Bit8[DecodeMatrixIndex(id)]; }
const RgbToYcbcr40000& RgbToYcbcrScale40000(uint32_t id) { return k40000[EncodeMatrixIndex(id)]; }

}  // namespace zelt
