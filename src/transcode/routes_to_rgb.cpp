// Dispatcher routes from every YCbCr layout to RGB32; matrix and flags pass through.
#include "transcode/routes.h"
#include "zelt/ycbcr_to_rgb.h"

namespace zelt::transcode {
namespace {

constexpr Route kRoutes[] = {
    {Layout::UYVY, Layout::RGB32, RgbRoute<cycbcr_uyvy_to_rgb32>},
    {Layout::YUY2, Layout::RGB32, RgbRoute<cycbcr_yuy2_to_rgb32>},
    {Layout::YVYU, Layout::RGB32, RgbRoute<cycbcr_yvyu_to_rgb32>},
    {Layout::CYUV, Layout::RGB32, RgbRoute<cycbcr_cyuv_to_rgb32>},
    {Layout::I420, Layout::RGB32, RgbRoute<cycbcr_i420_to_rgb32>},
    {Layout::YV12, Layout::RGB32, RgbRoute<cycbcr_yv12_to_rgb32>},
    {Layout::P422, Layout::RGB32, RgbRoute<cycbcr_p422_to_rgb32>},
    {Layout::V012, Layout::RGB32, RgbRoute<cycbcr_012v_to_rgb32>},
};

}  // namespace

const std::span<const Route> kToRgbRoutes{kRoutes};

}  // namespace zelt::transcode
