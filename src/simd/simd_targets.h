#pragma once

/// The processors that the kernels are built for. Include it before any header of Highway.
///
/// SSSE3 is the oldest x86 with a table look-up of 16 bytes and AVX2 doubles the width. AVX3_DL (Ice Lake, Zen 4 and
/// later) adds look-ups of 128 bytes and the packing of kept bytes, the main work of these kernels. SSE4 and AVX3 add
/// nothing for bytes, so they would only cost time to compile. Vectors of a size unknown to the compiler (SVE, RVV) do
/// not fit blocks of 64 bytes, and the others have not been tried: all of these run the scalar reference.
#define HWY_WANT_AVX3_DL
#define HWY_DISABLED_TARGETS                                                                                 \
    (HWY_SSE4 | HWY_AVX3 | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV | HWY_PPC8 | HWY_WASM | \
     HWY_WASM_EMU256)
