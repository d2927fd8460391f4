#include "Smoothness.h"

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/PixelTypes.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>

namespace page {
namespace {

namespace zr = ZrConvertersLib;

constexpr std::uint32_t cBands = 4;      // looked at, spread over the frame
constexpr std::uint32_t cBandLines = 8;  // of each

constexpr std::size_t cChannels = 3;

// Sums over all bands, of one channel.
struct Sums {
  double difference = 0;
  double value = 0;
  double square = 0;
  double values = 0;
};
using ChannelSums = std::array<Sums, cChannels>;

// Lines of three 16-bit words a pixel.
class Band {
 public:
  Band(std::uint32_t width, std::uint32_t lines)
      : mWidth(width), mLines(lines), mWords(cChannels * width * lines) {}

  zr::DestinationView View() { return zr::DestinationView::Of(mWords, mWidth, mLines); }
  const std::vector<std::uint16_t>& Words() const { return mWords; }

  // Differences of pixels `step` apart, to the right and down.
  void AddTo(ChannelSums& sums, std::uint32_t step) const {
    for (std::size_t channel = 0; channel < cChannels; ++channel) {
      for (std::uint32_t y = 0; y + step < mLines; ++y) AddLine(sums[channel], channel, y, step);
    }
  }

 private:
  void AddLine(Sums& sums, std::size_t channel, std::uint32_t y, std::uint32_t step) const {
    const std::uint16_t* const line = mWords.data() + cChannels * mWidth * y + channel;
    const std::size_t right = cChannels * step, down = cChannels * mWidth * step;
    for (std::size_t at = 0; at < cChannels * (mWidth - step); at += cChannels) {
      const double here = line[at];
      sums.difference += std::abs(line[at + right] - here) + std::abs(line[at + down] - here);
      sums.value += here;
      sums.square += here * here;
    }
    sums.values += mWidth - step;
  }

  std::uint32_t mWidth;
  std::uint32_t mLines;
  std::vector<std::uint16_t> mWords;
};

// Of the frame's lines, those that the bytes hold.
std::uint32_t LinesHeld(const Geometry& geometry, const zr::FormatInfo& format, std::size_t bytes) {
  zr::FrameLayout layout;
  if (!zr::DescribeFrame(format.id, geometry.width, geometry.height, geometry.stride, layout).IsSuccess())
    return 0;
  if (layout.leastBytes <= bytes) return geometry.height;
  if (layout.planes > 1) return 0;
  const auto lines = static_cast<std::uint32_t>(bytes / layout.stride);
  return lines - lines % cBandLines;
}

// One colour stands for each tile of a mosaic, so its neighbours are a tile apart. Taken as grey, a mosaic is
// rough.
std::uint32_t StepOf(const zr::FormatInfo& format) {
  if (format.family == zr::FormatFamily::Scf1) return 4;
  return format.family == zr::FormatFamily::Bayer || format.family == zr::FormatFamily::BiColor ? 2 : 1;
}

// The bands' first lines, of which a mosaic's tiles begin with each.
std::uint32_t FirstLine(std::uint32_t height, std::uint32_t band) {
  const std::uint64_t first = std::uint64_t{height - cBandLines} * (2 * band + 1) / (2 * cBands);
  return static_cast<std::uint32_t>(first / 4 * 4);
}

// Lines of the frame as colour; empty where they cannot be had.
std::optional<Band> BandOf(const Geometry& geometry, const std::vector<std::uint8_t>& bytes,
                           zr::FrameOptions options, std::uint32_t first) {
  options.region = {0, first, geometry.width, cBandLines};
  zr::FrameConverter converter;
  const auto configured =
      converter.Configure(geometry.format, zr::PixelTypeIds::RGB16, geometry.width, geometry.height, options);
  if (!configured.IsSuccess()) return std::nullopt;
  Band band(geometry.width, cBandLines);
  if (!converter.Convert(ViewOf(geometry, bytes), band.View()).IsSuccess()) return std::nullopt;
  return band;
}

double RoughnessOf(const Sums& sums) {
  const double mean = sums.value / sums.values;
  const double deviation = std::sqrt(std::max(0.0, sums.square / sums.values - mean * mean));
  // Two 8-bit steps: little is to be seen in a picture that differs less.
  return deviation < 2 * 257 ? 1 : sums.difference / (2 * sums.values) / deviation;
}

// How far apart what the pattern takes for red and blue is, which is little where it is green.
double DifferenceOf(const Geometry& geometry, const std::vector<std::uint8_t>& bytes,
                    zr::MosaicPattern pattern) {
  zr::FrameOptions options;
  options.pattern = pattern;
  double difference = 0;
  for (std::uint32_t number = 0; number < cBands; ++number) {
    const auto band = BandOf(geometry, bytes, options, FirstLine(geometry.height, number));
    if (!band) return 0;
    for (std::size_t at = 0; at < band->Words().size(); at += cChannels)
      difference += std::abs(double(band->Words()[at]) - band->Words()[at + 2]);
  }
  return difference;
}

}  // namespace

double Roughness(const Geometry& geometry, const std::vector<std::uint8_t>& bytes) {
  const zr::FormatInfo* const format = zr::FindFormatInfo(geometry.format);
  if (format == nullptr) return -1;
  Geometry held = geometry;
  held.height = LinesHeld(geometry, *format, bytes.size());
  if (held.height < cBandLines || held.width < 4) return -1;
  ChannelSums sums;
  for (std::uint32_t number = 0; number < cBands; ++number) {
    const auto band = BandOf(held, bytes, {}, FirstLine(held.height, number));
    if (!band) return -1;
    band->AddTo(sums, StepOf(*format));
  }
  return (RoughnessOf(sums[0]) + RoughnessOf(sums[1]) + RoughnessOf(sums[2])) / cChannels;
}

zr::MosaicPattern PatternByGreens(const Geometry& geometry, const std::vector<std::uint8_t>& bytes) {
  const double outer = DifferenceOf(geometry, bytes, zr::MosaicPattern::RGGB);
  const double inner = DifferenceOf(geometry, bytes, zr::MosaicPattern::GRBG);
  return outer < inner ? zr::MosaicPattern::GRBG : zr::MosaicPattern::RGGB;
}

}  // namespace page
