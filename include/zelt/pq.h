/* Zelt: SMPTE ST 2084 (PQ) tables and converters. */
#ifndef ZELT_PQ_H
#define ZELT_PQ_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

ZELT_EXTERN_C_END

#endif
