// Dispatcher routes of the RGB to YCbCr converters: RGB32 to every YCbCr layout,
// 012v included.
#include "transcode/routes.h"
#include "zelt/ycbcr_from_rgb.h"

namespace zelt::transcode {

namespace {
const Route kRoutes[] = {
    {Layout::RGB32, Layout::UYVY, RgbRoute<cycbcr_RGB32_to_uyvy>},
    {Layout::RGB32, Layout::YUY2, RgbRoute<cycbcr_RGB32_to_yuy2>},
    {Layout::RGB32, Layout::YVYU, RgbRoute<cycbcr_RGB32_to_yvyu>},
    {Layout::RGB32, Layout::CYUV, RgbRoute<cycbcr_RGB32_to_cyuv>},
    {Layout::RGB32, Layout::I420, RgbRoute<cycbcr_RGB32_to_i420>},
    {Layout::RGB32, Layout::YV12, RgbRoute<cycbcr_RGB32_to_yv12>},
    {Layout::RGB32, Layout::P422, RgbRoute<cycbcr_RGB32_to_p422>},
    {Layout::RGB32, Layout::V012, RgbRoute<cycbcr_RGB32_to_012v>},
};
}  // namespace

const std::span<const Route> kFromRgbRoutes{kRoutes};

}  // namespace zelt::transcode
