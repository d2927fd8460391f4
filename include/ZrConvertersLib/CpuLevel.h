#pragma once

#include <ZrConvertersLib/Export.h>

#include <span>

/// @file
/// The instruction-set level the conversion kernels run at.
///
/// Every kernel is built once per level; the highest level that the machine can run is chosen at the first
/// conversion. All levels give the same bytes. Programs need not call any of this; it is for tests,
/// benchmarks and bug reports.

namespace ZrConvertersLib {

/// Names of the levels this machine can run, lowest first: "x86-64", "x86-64-v2", "x86-64-v3" (AVX2),
/// "x86-64-v4" (AVX-512 with byte permutes) on x86-64; "neon" on aarch64; "wasm-simd128" in WebAssembly.
/// Static storage.
ZR_EXPORT std::span<const char* const> GetCpuLevels() noexcept;

/// Name of the level in use.
ZR_EXPORT const char* GetCpuLevel() noexcept;

/// Makes all later conversions use the named level; null selects the highest one again. Returns false and
/// changes nothing when this machine cannot run it. May be called from any thread.
ZR_EXPORT bool ForceCpuLevel(const char* name) noexcept;

}  // namespace ZrConvertersLib
