/* Zelt: export macro, C linkage and the error-log hook shared by every family. */
#ifndef ZELT_ZELT_API_H
#define ZELT_ZELT_API_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#  if defined(ZELT_BUILDING)
#    define ZELT_API __declspec(dllexport)
#  elif defined(ZELT_STATIC_TWIN)
#    define ZELT_API
#  else
#    define ZELT_API __declspec(dllimport)
#  endif
#else
#  define ZELT_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#  define ZELT_EXTERN_C_BEGIN extern "C" {
#  define ZELT_EXTERN_C_END }
#else
#  define ZELT_EXTERN_C_BEGIN
#  define ZELT_EXTERN_C_END
#endif

ZELT_EXTERN_C_BEGIN

/* Receives every message the library reports about a fault it caught. `flags` is
   always 0xC0000000; `message` is the formatted text, ending in a newline. */
typedef void (*ZeltErrorLogFn)(void* user, uint32_t flags, const char* message);

/* Routes the library's error messages to `fn` (with `user` passed back); NULL
   restores the default, which writes them to standard error. Process-wide. */
ZELT_API void zeltSetErrorLog(ZeltErrorLogFn fn, void* user);

ZELT_EXTERN_C_END

#endif
