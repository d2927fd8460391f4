#include "simd/CpuLevel.h"

#include <ZrConvertersLib/CpuLevel.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <string_view>

#if defined(__x86_64__)
#include "simd/CpuFeatures.h"
#endif

namespace ZrConvertersLib::simd {

/// Declares what the kernel files export at one level.
#define ZR_DECLARE_LEVEL(level)                         \
  extern const FamilyKernels kMonoKernels##level;       \
  extern const FamilyKernels kBayerKernels##level;      \
  extern const FamilyKernels kRGBKernels##level;        \
  extern const FamilyKernels kYCbCrKernels##level;      \
  extern const FamilyKernels kBiColorKernels##level;    \
  extern const KernelRow kHalvesKernels##level;         \
  extern const StreamFunction kStream##level;           \
  extern const MirrorFunction kMirror##level;           \
  extern const Scf1Kernels kScf1Kernels##level;         \
  extern const DemosaicKernels kDemosaicKernels##level; \
  extern const GradeKernels kGradeKernels##level;       \
  extern const YCbCrDepthKernels kYCbCrDepthKernels##level;

#define ZR_LEVEL_ROW(level, name, runs, block, computesTables)                                    \
  Level {                                                                                         \
    name, runs, block, computesTables,                                                            \
        {&kMonoKernels##level, &kBayerKernels##level, &kRGBKernels##level, &kYCbCrKernels##level, \
         &kBiColorKernels##level},                                                                \
        &kStream##level, &kMirror##level, &kScf1Kernels##level, &kHalvesKernels##level,           \
        &kDemosaicKernels##level, &kGradeKernels##level, &kYCbCrDepthKernels##level               \
  }

namespace {
bool Always() {
  return true;
}
}  // namespace

#if defined(__x86_64__)

ZR_DECLARE_LEVEL(Baseline)
ZR_DECLARE_LEVEL(V2)
ZR_DECLARE_LEVEL(V3)
ZR_DECLARE_LEVEL(V4)

namespace {

std::uint32_t SavedRegisters() {
  std::uint32_t low = 0;
  std::uint32_t high = 0;
  asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return low;
}

/// What this machine has; a leaf that it does not know counts as all zeros.
CpuFeatures ReadFeatures() {
  CpuFeatures found{};
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  if (__get_cpuid(1, &a, &b, &c, &d) != 0) found[kLeaf1Ecx] = c;
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) != 0) {
    found[kLeaf7Ebx] = b;
    found[kLeaf7Ecx] = c;
  }
  if (__get_cpuid(0x80000001, &a, &b, &c, &d) != 0) found[kExtended1Ecx] = c;
  if ((found[kLeaf1Ecx] & bit_OSXSAVE) != 0) found[kXcr0] = SavedRegisters();
  return found;
}

[[maybe_unused]] const CpuFeatures& Features() {
  static const CpuFeatures sFeatures = ReadFeatures();
  return sFeatures;
}

template <const CpuFeatures& needed>
[[maybe_unused]] bool Has() {
  return HasAll(Features(), needed);
}

constinit const std::array kLevels = {
    ZR_LEVEL_ROW(Baseline, "x86-64", Always, 16, false),
#if defined(ZR_LEVEL_V2)
    ZR_LEVEL_ROW(V2, "x86-64-v2", Has<kNeededByV2>, 16, true),
#endif
#if defined(ZR_LEVEL_V3)
    ZR_LEVEL_ROW(V3, "x86-64-v3", Has<kNeededByV3>, 32, true),
#endif
#if defined(ZR_LEVEL_V4)
    ZR_LEVEL_ROW(V4, "x86-64-v4", Has<kNeededByV4>, 64, false),
#endif
};

}  // namespace

#elif defined(__aarch64__)

ZR_DECLARE_LEVEL(Neon)

namespace {
constinit const std::array kLevels = {ZR_LEVEL_ROW(Neon, "neon", Always, 16, false)};
}

#elif defined(__wasm_simd128__)

ZR_DECLARE_LEVEL(Wasm)

namespace {
constinit const std::array kLevels = {ZR_LEVEL_ROW(Wasm, "wasm-simd128", Always, 16, true)};
}

#endif

namespace {

/// How many of the levels, which build on one another, this machine runs.
std::size_t CountRunning() {
  std::size_t count = 0;
  while (count < kLevels.size() && kLevels[count].runs()) ++count;
  return count;
}

const Level* Highest() {
  return &kLevels[CountRunning() - 1];
}

constinit std::atomic<const Level*> sLevel = nullptr;

}  // namespace

const Level& CurrentLevel() {
  const Level* level = sLevel.load(std::memory_order_relaxed);
  if (level == nullptr) {
    level = Highest();
    const Level* none = nullptr;
    sLevel.compare_exchange_strong(none, level, std::memory_order_relaxed);
    if (none != nullptr) level = none;
  }
  return *level;
}

KernelFunction Level::Find(SourceReader reader, PixelWriter writer) const {
  for (const FamilyKernels* family : families) {
    const std::size_t row =
        static_cast<std::size_t>(reader) - static_cast<std::size_t>(family->rows[0].reader);
    if (row < family->count) return family->rows[row].with[static_cast<std::size_t>(writer)];
  }
  return nullptr;
}

}  // namespace ZrConvertersLib::simd

namespace ZrConvertersLib {

using namespace simd;

std::span<const char* const> GetCpuLevels() noexcept {
  static const auto names = [] {
    std::array<const char*, kLevels.size()> all{};
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = kLevels[i].name;
    return all;
  }();
  return {names.data(), CountRunning()};
}

const char* GetCpuLevel() noexcept {
  return CurrentLevel().name;
}

bool ForceCpuLevel(const char* name) noexcept {
  if (name == nullptr) {
    sLevel.store(Highest(), std::memory_order_relaxed);
    return true;
  }
  const auto level = std::find_if(kLevels.begin(), kLevels.end(), [&](const Level& l) {
    return std::string_view(l.name) == name && l.runs();
  });
  if (level == kLevels.end()) return false;
  sLevel.store(level, std::memory_order_relaxed);
  return true;
}

}  // namespace ZrConvertersLib
