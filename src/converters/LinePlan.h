#pragma once

#include <ZrConvertersLib/PixelConverterContext.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "core/FormatTable.h"
#include "core/LineDriver.h"
#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

class RGBFilter;

/// How samples that stand in words or are packed become the bytes that a kernel reads: by the kernel that
/// would convert them to Mono8.
struct SampleRecipe {
  simd::SourceReader reader;
  Group group;          ///< samples and bytes of the smallest whole group
  std::uint32_t shift;  ///< of the reader
};

/// What a converter asks of its kernel; the same for every line it ever converts.
struct LineRecipe {
  simd::SourceReader reader;
  Group group;               ///< pixels and bytes of the reader's smallest whole group
  std::uint8_t destination;  ///< place in kDestinations
  std::uint32_t shift = 0;
  std::uint8_t flip = 0;
  const YCbCrMatrix* matrix = nullptr;
  bool throughCaches = false;                ///< never written past the caches: small, or read again at once
  std::optional<SampleRecipe> samples = {};  ///< when the source's samples are not the bytes that are read
};

/// Turns a recipe that reads bytes into one that reads `samples` itself, where a kernel for the two exists.
bool ReadSamplesDirectly(LineRecipe& recipe, const SampleRecipe& samples);

/// What one kernel call needs of the image: pointers to the first pixel of its lines.
struct LineBlock {
  const std::uint8_t* source[6];
  std::uint8_t* destination[2];
  std::size_t pixels;  ///< a whole number of groups
  std::size_t lines = 1;
  std::ptrdiff_t sourceStep = 0, destinationStep = 0;

  /// One of its lines, or pairs of them.
  LineBlock Line(std::size_t line) const;
};

/// Everything about a conversion that does not vary from line to line, found once per frame: the kernel for
/// this machine and filter, the distance of planes, whether to write past the caches.
class LinePlan {
 public:
  LinePlan(const PixelConverterContext& context, const LineRecipe& recipe);

  /// The plan that makes bytes of samples.
  LinePlan(const PixelConverterContext& context, const SampleRecipe& recipe);

  void Run(const LineBlock& block) const;

  /// Bytes of a whole number of groups.
  std::size_t SourceBytes(std::size_t pixels) const {
    return (pixels >> std::countr_zero(mGroup.pixels)) * mGroup.bytes;
  }
  std::size_t DestinationBytes(std::size_t pixels) const { return pixels * mPixelBytes; }

  const Group& GroupOfSource() const { return mGroup; }

  /// Whether planes of so many pixels lie beside one another. Where they overlap, lines are to be stored in
  /// turn.
  bool PlanesApart(std::size_t pixels) const;

  simd::KernelArgs& Args() { return mArgs; }
  const simd::KernelArgs& Args() const { return mArgs; }

  /// Makes what was written past the caches visible to other threads in order. Call once after the last line.
  void Finish() const;

 private:
  void SetTables(const RGBFilter& filter);
  void RunWhole(const LineBlock& block) const;
  void RunLine(const LineBlock& block) const;
  void RunPadded(const LineBlock& block) const;
  void RunStaged(const LineBlock& block) const;
  void CopyOut(const std::uint8_t* staged, std::ptrdiff_t stagedPlane, std::uint8_t* destination,
               std::size_t pixels) const;
  bool BlockPlanesOverlap(std::size_t pixels) const;

  simd::KernelArgs mArgs;
  simd::LineFunction mFunction;
  simd::StreamFunction mStream;  ///< null when the frame is written through the caches
  std::size_t mBlock;
  Group mGroup;
  std::uint8_t mPixelBytes, mPlanes;
  std::uint8_t mSources, mDestinations, mMargin;
};

}  // namespace ZrConvertersLib
