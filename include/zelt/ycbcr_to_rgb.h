/* Zelt: YCbCr to RGB converters of the transcoder. */
#ifndef ZELT_YCBCR_TO_RGB_H
#define ZELT_YCBCR_TO_RGB_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

ZELT_EXTERN_C_END

#endif
