// Dispatcher routes between the 8-bit layouts and 012v.
#include "transcode/routes.h"
#include "zelt/ycbcr_v210.h"

namespace zelt::transcode {

namespace {
constexpr Route kList[] = {
    {Layout::UYVY, Layout::V012, PlainRoute<cycbcr_uyvy_to_012v>},
    {Layout::YUY2, Layout::V012, PlainRoute<cycbcr_yuy2_to_012v>},
    {Layout::YVYU, Layout::V012, PlainRoute<cycbcr_yvyu_to_012v>},
    {Layout::CYUV, Layout::V012, PlainRoute<cycbcr_cyuv_to_012v>},
    {Layout::I420, Layout::V012, PlainRoute<cycbcr_i420_to_012v>},
    {Layout::YV12, Layout::V012, PlainRoute<cycbcr_yv12_to_012v>},
    {Layout::P422, Layout::V012, PlainRoute<cycbcr_p422_to_012v>},
    {Layout::V012, Layout::UYVY, PlainRoute<cycbcr_012v_to_uyvy>},
    {Layout::V012, Layout::YUY2, PlainRoute<cycbcr_012v_to_yuy2>},
    {Layout::V012, Layout::YVYU, PlainRoute<cycbcr_012v_to_yvyu>},
    {Layout::V012, Layout::CYUV, PlainRoute<cycbcr_012v_to_cyuv>},
    {Layout::V012, Layout::I420, PlainRoute<cycbcr_012v_to_i420>},
    {Layout::V012, Layout::YV12, PlainRoute<cycbcr_012v_to_yv12>},
    {Layout::V012, Layout::P422, PlainRoute<cycbcr_012v_to_p422>},
};
}  // namespace

const std::span<const Route> kV210Routes{kList};

}  // namespace zelt::transcode
