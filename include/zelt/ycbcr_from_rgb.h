/* Zelt: RGB to YCbCr converters of the transcoder. */
#ifndef ZELT_YCBCR_FROM_RGB_H
#define ZELT_YCBCR_FROM_RGB_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

ZELT_EXTERN_C_END

#endif
