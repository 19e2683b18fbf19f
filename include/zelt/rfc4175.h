/* Zelt: RFC 4175 pgroups, packed 10-bit transport and RTP headers. */
#ifndef ZELT_RFC4175_H
#define ZELT_RFC4175_H

#include "zelt_api.h"

ZELT_EXTERN_C_BEGIN

ZELT_EXTERN_C_END

#endif
