#pragma once

#include <ZrConvertersLib/Export.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/ToneSettings.h>
#include <ZrUtilsLib/Result.h>

#include <array>
#include <cstdint>
#include <span>
#include <vector>

/// @file
/// What the samples of a frame are like, and the settings that follow from it.
///
/// All functions here may be called from any thread at any time.

namespace ZrConvertersLib {

/// The samples of one channel.
struct ChannelStatistics {
  std::uint64_t count = 0;               ///< samples counted
  std::uint32_t minimum = 0;             ///< of the samples; 0 without any
  std::uint32_t maximum = 0;             ///< likewise
  double mean = 0.0;                     ///< likewise
  std::vector<std::uint64_t> histogram;  ///< how often each sample from 0 to full scale occurs
};

/// A frame's channels: one of grey sources, else red, green and blue.
struct FrameStatistics {
  unsigned depth = 0;     ///< bits of the samples; a histogram has 2^depth entries
  unsigned channels = 0;  ///< 1 or 3
  std::array<ChannelStatistics, 3> channel;

  /// The channels that there are.
  std::span<const ChannelStatistics> All() const noexcept { return {channel.data(), channels}; }
};

/// What of a frame is measured, and how its samples are to be read.
struct MeasureOptions {
  MosaicPattern pattern = MosaicPattern::GRBG;  ///< mosaics: pattern of the whole frame
  ColourMatrix matrix = ColourMatrix::Bt601;    ///< YCbCr sources
  PackingOrder packing = PackingOrder::Type;    ///< packed sources that have such an order
  Region region;                                ///< the part that is measured
  std::uint32_t lineStep = 1;                   ///< every n-th line from the region's first on; not 0
};

/// Measures a frame. Mosaics of Bayer are measured by their sites, each in its colour; BiColor, SCF1 and
/// YCbCr as red, green and blue after their conversion. Samples of more than 16 bits count by their upper 16.
/// Takes memory where `statistics` has none of an earlier frame of the same kind.
/// @return success or UnknownFormat, NoConverter, ZeroSize, WidthNotAllowed, FrameTooSmall, FrameTooLarge,
///         InvalidPattern, InvalidMatrix, InvalidPacking, RegionOutside, RegionNotAllowed, StrideTooSmall,
///         NullSource, SourceTooSmall, LinesOutside (a line step of 0), OutOfMemory; without success
///         `statistics` means nothing
ZR_EXPORT ZrUtilsLib::Result MeasureFrame(long format, const SourceView& source,
                                          const MeasureOptions& options, FrameStatistics& statistics);

/// Black and white level, in counts of samples.
struct Levels {
  double black = 0.0;
  double white = 0.0;
};

/// The sample that a share of all samples is below, in the channel where that is least, and the sample that a
/// share is above, in the channel where that is most. White is one above black at least. Shares are from 0 to
/// 1; 0.001 and 0.999 leave a thousandth on either side.
ZR_EXPORT Levels LevelsOf(const FrameStatistics& statistics, double blackShare, double whiteShare) noexcept;

/// Gains that make the means of red and blue, less the black level, that of green: a scene is grey on the
/// whole. The least is 1, so that what is white stays white. All 1 for grey sources and for channels at
/// black.
ZR_EXPORT ToneSettings::Channels GreyWorldGains(const FrameStatistics& statistics, double black) noexcept;

/// The share of samples at the largest value that the depth allows, from 0 to 1, over all channels.
ZR_EXPORT double SaturatedShare(const FrameStatistics& statistics) noexcept;

}  // namespace ZrConvertersLib
