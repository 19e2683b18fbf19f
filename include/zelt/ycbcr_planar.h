/* Zelt: 8-bit planar (I420, YV12, P422) conversions and their packed counterparts. */
#ifndef ZELT_YCBCR_PLANAR_H
#define ZELT_YCBCR_PLANAR_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

ZELT_EXTERN_C_END

#endif
