#pragma once

#include <cstddef>
#include <cstdint>

#include "core/FormatTable.h"
#include "simd/LineKernel.h"

namespace ZrConvertersLib {

/// Where lines of a source frame lie.
struct SourceLines {
  const std::uint8_t* data = nullptr;  ///< first byte of the frame
  std::ptrdiff_t stride = 0;           ///< bytes from a line to the next
};

/// Reads a format's samples, whatever they mean, as words of the 16-bit scale: bit 15 is a sample's highest
/// bit.
class SampleLines {
 public:
  /// Samples a read begins and ends at a multiple of, unless the line ends before.
  static constexpr std::int64_t kStep = 8;

  /// Samples that the kernels may write beyond those asked for.
  static constexpr std::int64_t kSlack = 64;

  /// `flags` of the raw call say how a packed format's samples lie.
  SampleLines(const FormatRow& format, unsigned flags);

  /// Samples [first, end) of `count` lines from line `y` on, at `wordStride` bytes from a line of words to
  /// the next. Both ends are multiples of kStep or the end of the line.
  void Read(const SourceLines& source, std::int64_t y, std::int64_t count, std::int64_t first,
            std::int64_t end, std::uint8_t* words, std::ptrdiff_t wordStride) const;

 private:
  void ReadCopied(const std::uint8_t* line, std::int64_t samples, std::uint8_t* words) const;
  std::int64_t Bytes(std::int64_t samples) const { return (samples * mBitsPerSample + 7) / 8; }

  simd::KernelFunction mFunction;
  std::int64_t mBlock, mBitsPerSample;
  simd::KernelArgs mArgs;
};

}  // namespace ZrConvertersLib
