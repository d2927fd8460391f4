#pragma once

#include <ZrConvertersLib/PixelConverterContext.h>

#include <cstddef>
#include <cstdint>

#include "core/FormatTable.h"
#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

/// What a converter asks of its kernel; the same for every line it ever converts.
struct LineRecipe {
  simd::Reading reading;
  Group group;               ///< pixels and bytes of the reading's smallest whole group
  std::uint8_t destination;  ///< place in kDestinations
  std::uint32_t shift = 0;
  std::uint8_t flip = 0;
  const YCbCrMatrix* matrix = nullptr;
  bool throughCaches = false;  ///< never written past the caches: small, or read again at once
};

/// What one kernel call needs of the image: pointers to the first pixel of its lines.
struct Strip {
  const std::uint8_t* source[6];
  std::uint8_t* destination[2];
  std::size_t pixels;  ///< a whole number of groups
};

/// Everything about a conversion that does not vary from line to line, found once per frame: the kernel for
/// this machine and filter, the distance of planes, whether to write past the caches.
class LinePlan {
 public:
  LinePlan(const PixelConverterContext& context, const LineRecipe& recipe);

  void Run(const Strip& strip) const;

  /// Bytes of a whole number of groups.
  std::size_t SourceBytes(std::size_t pixels) const { return pixels / mGroup.pixels * mGroup.bytes; }
  std::size_t DestinationBytes(std::size_t pixels) const { return pixels * mPixelBytes; }

  simd::LineJob& Job() { return mJob; }

  /// Makes what was written past the caches visible to other threads in order. Call once after the last line.
  void Finish() const;

 private:
  void RunWhole(const Strip& strip) const;
  void RunPadded(const Strip& strip) const;
  void RunStaged(const Strip& strip) const;
  void CopyOut(const std::uint8_t* staged, std::ptrdiff_t stagedPlane, std::uint8_t* destination,
               std::size_t pixels) const;
  bool PlanesOverlap(std::size_t pixels) const;

  simd::LineJob mJob;
  simd::LineFunction mFunction;
  simd::StreamFunction mStream;  ///< null when the frame is written through the caches
  std::size_t mBlock;
  Group mGroup;
  std::uint8_t mPixelBytes, mPlanes;
  std::uint8_t mSources, mDestinations, mMargin;
};

}  // namespace ZrConvertersLib
