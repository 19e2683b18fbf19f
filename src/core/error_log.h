// The error log: where converters report the faults they caught.
#pragma once

#include <cstdint>

namespace zelt {

// printf-style report to the error log (standard error unless the host installed a
// hook with zeltSetErrorLog). The library always passes 0xC0000000, 0, 0.
void ErrFmtOut(uint32_t flags, uint32_t reserved0, uint32_t reserved1, const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 4, 5)))
#endif
    ;

}  // namespace zelt
