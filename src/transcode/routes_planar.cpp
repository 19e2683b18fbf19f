// Dispatcher routes of the 8-bit planar family: every pair of I420, YV12 and P422
// with the packed 4:2:2 layouts and with each other.
#include "transcode/routes.h"
#include "zelt/ycbcr_planar.h"

namespace zelt::transcode {

// planar.cpp: YV12 to P422, reached only through the dispatcher.
uint32_t Yv12ToP422(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t ds, uint32_t ss);

namespace {
constexpr Route kList[] = {
    {Layout::I420, Layout::UYVY, PlainRoute<cycbcr_i420_to_uyvy>},
    {Layout::I420, Layout::YUY2, PlainRoute<cycbcr_i420_to_yuy2>},
    {Layout::I420, Layout::YVYU, PlainRoute<cycbcr_i420_to_yvyu>},
    {Layout::I420, Layout::CYUV, PlainRoute<cycbcr_i420_to_cyuv>},
    {Layout::YV12, Layout::UYVY, PlainRoute<cycbcr_yv12_to_uyvy>},
    {Layout::YV12, Layout::YUY2, PlainRoute<cycbcr_yv12_to_yuy2>},
    {Layout::YV12, Layout::YVYU, PlainRoute<cycbcr_yv12_to_yvyu>},
    {Layout::YV12, Layout::CYUV, PlainRoute<cycbcr_yv12_to_cyuv>},
    {Layout::P422, Layout::UYVY, PlainRoute<cycbcr_p422_to_uyvy>},
    {Layout::P422, Layout::YUY2, PlainRoute<cycbcr_p422_to_yuy2>},
    {Layout::P422, Layout::YVYU, PlainRoute<cycbcr_p422_to_yvyu>},
    {Layout::P422, Layout::CYUV, PlainRoute<cycbcr_p422_to_cyuv>},

    {Layout::UYVY, Layout::I420, PlainRoute<cycbcr_uyvy_to_i420>},
    {Layout::UYVY, Layout::YV12, PlainRoute<cycbcr_uyvy_to_yv12>},
    {Layout::UYVY, Layout::P422, PlainRoute<cycbcr_uyvy_to_p422>},
    {Layout::YUY2, Layout::I420, PlainRoute<cycbcr_yuy2_to_i420>},
    {Layout::YUY2, Layout::YV12, PlainRoute<cycbcr_yuy2_to_yv12>},
    {Layout::YUY2, Layout::P422, PlainRoute<cycbcr_yuy2_to_p422>},
    {Layout::YVYU, Layout::I420, PlainRoute<cycbcr_yvyu_to_i420>},
    {Layout::YVYU, Layout::YV12, PlainRoute<cycbcr_yvyu_to_yv12>},
    {Layout::YVYU, Layout::P422, PlainRoute<cycbcr_yvyu_to_p422>},
    {Layout::CYUV, Layout::I420, PlainRoute<cycbcr_cyuv_to_i420>},
    {Layout::CYUV, Layout::YV12, PlainRoute<cycbcr_cyuv_to_yv12>},
    {Layout::CYUV, Layout::P422, PlainRoute<cycbcr_cyuv_to_p422>},

    {Layout::I420, Layout::I420, PlainRoute<cycbcr_i420_to_i420>},
    {Layout::I420, Layout::YV12, PlainRoute<cycbcr_i420_to_yv12>},
    {Layout::I420, Layout::P422, PlainRoute<cycbcr_i420_to_p422>},
    {Layout::YV12, Layout::I420, PlainRoute<cycbcr_yv12_to_i420>},
    {Layout::YV12, Layout::YV12, PlainRoute<cycbcr_yv12_to_yv12>},
    {Layout::YV12, Layout::P422, PlainRoute<Yv12ToP422>},
    {Layout::P422, Layout::I420, PlainRoute<cycbcr_p422_to_i420>},
    {Layout::P422, Layout::YV12, PlainRoute<cycbcr_p422_to_yv12>},
    {Layout::P422, Layout::P422, PlainRoute<cycbcr_p422_to_p422>},
};
}  // namespace

const std::span<const Route> kPlanarRoutes{kList};

}  // namespace zelt::transcode
