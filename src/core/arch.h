// The one test for x86-64 code. Vector kernels (the x86/ folders) wrap their whole
// body in `#if ZELT_X86`; other architectures build the portable kernels alone.
#pragma once

#if defined(__x86_64__) || defined(_M_X64)
#define ZELT_X86 1
#else
#define ZELT_X86 0
#endif

// A vector kernel's name where it exists, nullptr where it does not: kernel sets are
// written once, `{Foo, nullptr, ZELT_X86_ONLY(FooAvx2)}`, for every architecture.
#if ZELT_X86
#define ZELT_X86_ONLY(fn) (fn)
#else
#define ZELT_X86_ONLY(fn) nullptr
#endif
