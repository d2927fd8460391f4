#pragma once

#include <ZrConvertersLib/FrameConverter.h>

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "support/GuardedBuffer.h"

namespace FrameTest {

/// One conversion through the checked interface, described by numbers alone.
struct Case {
  long source = 0;
  long destination = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  ZrConvertersLib::FrameOptions options;
  unsigned filter = 0;  ///< index of Matrix::GetFilter
  std::uint32_t sourcePadding = 0;
  std::uint32_t destinationPadding = 0;
  TestSupport::Placement sourcePlace;
  TestSupport::Placement destinationPlace;
  std::uint64_t seed = 0;
};

std::string Describe(const Case& frame);

/// The case of that number for a pair: odd sizes, regions, flips, paddings and placements by chance, but
/// always the same chance.
Case CaseOf(long source, long destination, unsigned number);

/// The case's frame as it lies in memory, with noise in its padding.
std::vector<std::uint8_t> SourceOf(const Case& frame);

/// What lies in the destination before the conversion.
std::vector<std::uint8_t> BlankOf(const Case& frame);

/// What must lie there afterwards: each pixel taken from the scalar model's conversion of the whole frame,
/// and not one byte else changed.
std::vector<std::uint8_t> ExpectedOf(const Case& frame);

ZrConvertersLib::SourceView ViewOf(const Case& frame, std::span<const std::uint8_t> bytes);
ZrConvertersLib::DestinationView ViewOf(const Case& frame, std::span<std::uint8_t> bytes);

}  // namespace FrameTest
