/* Zelt: the row pipeline: unpackers to 16-bit rows, packers to RGB, range mapping. */
#ifndef ZELT_ROWS_H
#define ZELT_ROWS_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

ZELT_EXTERN_C_END

#endif
