/* Zelt: direct converters: field and frame operations, channel-order swaps, alpha and key planes, 8-bit resampling. */
#ifndef ZELT_DIRECT_H
#define ZELT_DIRECT_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

ZELT_EXTERN_C_END

#endif
