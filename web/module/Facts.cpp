#include "Facts.h"

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/PixelTypes.h>

#include <algorithm>

#include "Json.h"
#include "SizeGuess.h"
#include "Tone.h"
#include "common/Words.h"

namespace page {
namespace {

namespace zr = ZrConvertersLib;

bool CanBeShown(const zr::FormatInfo& format) {
  const std::vector<long> destinations = zr::DestinationsOf(format.id);
  return std::find(destinations.begin(), destinations.end(), zr::PixelTypeIds::RGBa8) != destinations.end();
}

std::string CodesOf(const zr::FormatInfo& format) {
  std::vector<std::string> codes;
  for (const zr::FormatCode& code : zr::FormatCodes()) {
    if (code.id == format.id) codes.push_back(Quoted(code.name));
  }
  return Array(codes);
}

bool IsMosaic(const zr::FormatInfo& format) {
  using Family = zr::FormatFamily;
  return format.family == Family::Bayer || format.family == Family::BiColor || format.family == Family::Scf1;
}

bool Takes(const zr::FormatInfo& format, const zr::FrameOptions& options) {
  constexpr std::uint32_t cSide = 16;
  zr::FrameConverter converter;
  return converter.Configure(format.id, zr::PixelTypeIds::RGBa8, cSide, cSide, options).IsSuccess();
}

// GRBG also stands for the first pattern of the other families, so there it is not offered twice.
std::string PatternsOf(const zr::FormatInfo& format) {
  std::vector<std::string> patterns;
  for (unsigned value = format.family == zr::FormatFamily::Bayer ? 0 : 1; IsMosaic(format); ++value) {
    zr::FrameOptions options;
    options.pattern = static_cast<zr::MosaicPattern>(value);
    const std::string_view name = zr::PatternName(options.pattern);
    if (name.empty()) break;
    if (Takes(format, options))
      patterns.push_back(Object({{"value", std::to_string(value)}, {"name", Quoted(name)}}));
  }
  return Array(patterns);
}

// The ways to make colour of the mosaic, from the first on.
unsigned CountDemosaics(const zr::FormatInfo& format) {
  constexpr unsigned cMost = 8;
  unsigned count = 0;
  zr::FrameOptions options;
  while (IsMosaic(format) && count < cMost && Takes(format, options))
    options.demosaic = static_cast<zr::Demosaic>(++count);
  return count;
}

// Orders of packed samples, where there are several; what the format's name means comes first.
std::string PackingsOf(const zr::FormatInfo& format) {
  zr::FormatChoice choice;
  zr::FrameOptions meant;
  if (zr::ReadFormat(format.name, choice).IsSuccess()) meant.SetFlags(choice.flags);
  std::vector<std::string> packings;
  for (const auto& [name, order, meaning] : zrcommon::kPackings) {
    const std::string_view layout = zr::PackingLayout(format.id, order);
    if (layout.empty()) continue;
    const std::string packing = Object({{"value", std::to_string(static_cast<unsigned>(order))},
                                        {"name", Quoted(name)},
                                        {"layout", Quoted(layout)}});
    packings.insert(order == meant.packing ? packings.begin() : packings.end(), packing);
  }
  return Array(packings.size() > 1 ? packings : std::vector<std::string>());
}

std::string ToJson(const zr::FormatInfo& format) {
  return Object({{"id", std::to_string(format.id)},
                 {"name", Quoted(format.name)},
                 {"family", Quoted(zr::FamilyName(format.family))},
                 {"bitsPerPixel", std::to_string(format.bitsPerPixel)},
                 {"depth", std::to_string(format.depth)},
                 {"isSigned", format.isSigned ? "true" : "false"},
                 {"widthMultiple", std::to_string(format.widthMultiple)},
                 {"patterns", PatternsOf(format)},
                 {"demosaics", std::to_string(CountDemosaics(format))},
                 {"packings", PackingsOf(format)},
                 {"layout", Quoted(format.layout)},
                 {"codes", CodesOf(format)}});
}

std::string ToJson(const zr::FormatInfo& format, const zrconvert::SizeGuess& guess) {
  return Object({{"format", std::to_string(format.id)},
                 {"width", std::to_string(guess.size.width)},
                 {"height", std::to_string(guess.size.height)},
                 {"frames", std::to_string(guess.frames)}});
}

}  // namespace

std::string FormatsAsJson() {
  std::vector<std::string> formats;
  for (const zr::FormatInfo& format : zr::Formats()) {
    if (CanBeShown(format)) formats.push_back(ToJson(format));
  }
  return Array(formats);
}

std::string GuessesAsJson(std::uint64_t bytes) {
  std::vector<std::string> guesses;
  for (const zr::FormatInfo& format : zr::Formats()) {
    if (!CanBeShown(format)) continue;
    for (const auto& guess : zrconvert::GuessSizes(bytes, format)) guesses.push_back(ToJson(format, guess));
  }
  return Array(guesses);
}

std::string LayoutAsJson(long format, std::uint32_t width, std::uint32_t height, std::uint32_t stride) {
  zr::FrameLayout layout;
  const auto result = zr::DescribeFrame(format, width, height, stride, layout);
  if (!result.IsSuccess()) return Object({{"error", Quoted(zr::ResultText(result))}});
  return Object({{"bytesPerLine", std::to_string(layout.bytesPerLine)},
                 {"stride", std::to_string(layout.stride)},
                 {"frameBytes", std::to_string(layout.frameBytes)},
                 {"leastBytes", std::to_string(layout.leastBytes)}});
}

std::string AutomaticToneAsJson(const Geometry& geometry, const zr::MeasureOptions& options,
                                const Frame& frame) {
  zr::FrameStatistics statistics;
  const auto result = zr::MeasureFrame(geometry.format, ViewOf(geometry, frame.Bytes()), options, statistics);
  if (!result.IsSuccess()) return Object({{"error", Quoted(zr::ResultText(result))}});
  zrconvert::ToneOptions tone;
  zrconvert::ChooseTone(tone, statistics);
  const auto& [red, green, blue] = *tone.balance;
  return Object({{"black", std::to_string(*tone.black)},
                 {"white", std::to_string(*tone.white)},
                 {"balance", Array({std::to_string(red), std::to_string(green), std::to_string(blue)})}});
}

}  // namespace page
