/* Zelt: pixel-format and colour conversions for professional video.
   Umbrella header: includes every family. Declarations use <stdint.h> types and C
   linkage; every export is one plain function, synchronous and stateless. */
#ifndef ZELT_ZELT_H
#define ZELT_ZELT_H

#include "zelt_api.h"
#include "ycbcr.h"
#include "ycbcr_planar.h"
#include "ycbcr_v210.h"
#include "ycbcr_to_rgb.h"
#include "ycbcr_from_rgb.h"
#include "rows.h"
#include "rfc4175.h"
#include "pq.h"
#include "direct.h"

#endif
