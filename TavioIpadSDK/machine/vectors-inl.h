// The vector library as the kernels use it: headers only. Which form of a kernel runs is decided in
// instruction_set.cpp, so nothing of the vector library is linked: its shared object would spend
// two milliseconds at the start of every program on measuring the clock.
//
// A kernel's file begins with
//
//   #include "TavioIpadSDK/machine/instruction_set.h"
//   #undef HWY_TARGET_INCLUDE
//   #define HWY_TARGET_INCLUDE "TavioIpadSDK/stretch/blend_rows.cpp"
//   #include "TavioIpadSDK/machine/vectors-inl.h"
//
// and is then compiled once for each instruction set. Without vectors (TAVIO_VECTORS is 0) it is
// compiled once, as for a processor that has none, and every kernel has its plain form only.
//
// No include guard: each pass over the file reads it again.

#include <array>
#include <cstddef>

#if TAVIO_VECTORS

// The instruction sets of instruction_set.h and no others.
#ifndef HWY_DISABLED_TARGETS
#define HWY_DISABLED_TARGETS \
    (HWY_SSSE3 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)
#endif
// The vector library's own assertions would call into its shared object.
#ifndef HWY_IS_DEBUG_BUILD
#define HWY_IS_DEBUG_BUILD 0
#endif

#ifdef HWY_TARGET_INCLUDE
#include <hwy/foreach_target.h>
#endif
// Must follow foreach_target.h.
#include <hwy/cache_control.h>
#include <hwy/highway.h>

// The form of a kernel for the instruction set in use: a pointer to the function. At kPlain it is
// the form for a processor without vectors, which does nothing.
#undef TAVIO_CHOSEN_FORM
#define TAVIO_CHOSEN_FORM(kernel)                                                       \
    (std::array<decltype(&HWY_STATIC_DISPATCH(kernel)), 5>{                             \
        &HWY_STATIC_DISPATCH(kernel), HWY_CHOOSE_SSE4(kernel), HWY_CHOOSE_AVX2(kernel), \
        HWY_CHOOSE_AVX3(kernel),                                                        \
        HWY_CHOOSE_NEON(kernel)}[static_cast<std::size_t>(tavio::machine::instructionSet())])

#elif !defined(HWY_NAMESPACE)

#define HWY_SCALAR 1
#define HWY_EMU128 2
#define HWY_TARGET HWY_SCALAR
#define HWY_NAMESPACE N_SCALAR
#define HWY_BEFORE_NAMESPACE() static_assert(true)
#define HWY_AFTER_NAMESPACE() static_assert(true)
#define HWY_ONCE 1
#define TAVIO_CHOSEN_FORM(kernel) (&N_SCALAR::kernel)

#endif
