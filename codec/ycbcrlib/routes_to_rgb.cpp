// Dispatcher routes of this family; filled in as its converters land.
#include "ycbcrlib/routes.h"

namespace zelt::ycbcr {

const std::span<const Route> kToRgbRoutes{};

}  // namespace zelt::ycbcr
