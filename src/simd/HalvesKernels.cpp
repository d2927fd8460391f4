#include "simd/DevelopKernels.h"
#include "simd/Line.h"

/// The reader of what the stages of developing make.

namespace ZrConvertersLib::simd {
namespace {

/// A line of three planes in halves. Two neighbours' upper bytes already lie as a line of bytes has them, in
/// the two words of the same place.
struct HalvesReader {
  static constexpr int kGroupPixels = 2, kGroupBytes = 2, kOverread = 0;

  explicit ZR_INLINE HalvesReader(const KernelArgs&) {}

  template <class Channel>
  ZR_INLINE Colour<Channel> Read(const std::uint8_t* p) const {
    return {Plane<Channel>(p), Plane<Channel>(p + kPlaneBytes), Plane<Channel>(p + 2 * kPlaneBytes)};
  }

 private:
  template <class Channel>
  static ZR_INLINE Channel Plane(const std::uint8_t* p) {
    const U16 even = As<U16>(Load(p)), odd = As<U16>(Load(p + kHalfBytes));
    if constexpr (sizeof(Channel) == sizeof(U8))
      return Select(As<U8>(Splat16(0xFF)), As<U8>(even >> 8), As<U8>(odd));
    else
      return InterleaveWords(even, odd);
  }
};

#define ZR_WITH(name, ...) &Lines<HalvesReader>::Run<name##Writer<false>>,
#define ZR_WITH_FILTER(name) &Lines<HalvesReader>::Run<name##Writer<true>>,
constexpr KernelRow kRow = {SourceReader::None,
                            {ZR_DESTINATIONS(ZR_WITH) ZR_FILTERED_DESTINATIONS(ZR_WITH_FILTER)}};
#undef ZR_WITH
#undef ZR_WITH_FILTER

}  // namespace

extern const KernelRow ZR_AT_LEVEL(kHalvesKernels);
constinit const KernelRow ZR_AT_LEVEL(kHalvesKernels) = kRow;

}  // namespace ZrConvertersLib::simd
