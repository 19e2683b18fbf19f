/* Zelt: 012v (v210) packing, high-bit-depth planar converters and NV12. */
#ifndef ZELT_YCBCR_V210_H
#define ZELT_YCBCR_V210_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

ZELT_EXTERN_C_END

#endif
