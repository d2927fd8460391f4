#include "Arguments.h"

#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameErrors.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "Error.h"
#include "Names.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

// Frames beyond this are a slip of the finger rather than a camera.
constexpr std::uint64_t cGreatestSide = 1U << 20;
constexpr std::uint64_t cGreatestPixels = 1U << 30;

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

template <typename Number>
bool Parse(const std::string& text, Number& number) {
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end && !text.empty();
}

template <typename Value, std::size_t Count>
Value Choose(const std::string& what, const std::string& text,
             const std::array<std::pair<std::string_view, Value>, Count>& choices) {
  std::vector<std::string_view> names;
  for (const auto& [name, value] : choices) {
    if (EqualsIgnoringCase(name, text)) return value;
    names.push_back(name);
  }
  throw UsageError("unknown " + what + " '" + text + "': it is one of " + Join(names, ", "));
}

std::vector<std::string_view> AllFormatNames() {
  std::vector<std::string_view> names;
  for (const zr::FormatInfo& format : zr::Formats()) names.push_back(format.name);
  for (const zr::FormatCode& code : zr::FormatCodes()) names.push_back(code.name);
  return names;
}

[[noreturn]] void ThrowUnknownFormat(const std::string& text) {
  const std::vector<std::string_view> near = NearestNames(text, AllFormatNames(), 3);
  const std::string hint =
      near.empty() ? "'zrconvert formats' lists them" : "did you mean " + Join(near, ", ") + "?";
  throw UsageError("unknown format '" + text + "': " + hint);
}

}  // namespace

Size ReadSize(const std::string& text) {
  const std::vector<std::string> parts = Split(text, 'x');
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  if (parts.size() != 2 || !Parse(parts[0], width) || !Parse(parts[1], height)) {
    throw UsageError("'" + text + "' is no size: write WIDTHxHEIGHT in pixels, 640x480 for instance");
  }
  if (width == 0 || height == 0) throw UsageError("a frame of " + text + " has no pixels");
  if (std::max(width, height) > cGreatestSide || width * height > cGreatestPixels) {
    throw UsageError("a frame of " + text +
                     " is beyond all reason (at most 2^20 pixels a side and 2^30 in all)");
  }
  return {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
}

zr::Region ReadRegion(const std::string& text) {
  const std::vector<std::string> parts = Split(text, ',');
  std::array<std::uint32_t, 4> numbers{};
  bool right = parts.size() == numbers.size();
  for (std::size_t i = 0; right && i < numbers.size(); ++i) right = Parse(parts[i], numbers[i]);
  if (!right) throw UsageError("'" + text + "' is no region: write X,Y,WIDTH,HEIGHT in pixels");
  if (numbers[2] == 0 || numbers[3] == 0) throw UsageError("the region " + text + " has no pixels");
  return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

zr::MosaicPattern ReadPattern(const std::string& text) {
  std::array<std::pair<std::string_view, zr::MosaicPattern>, 12> patterns;
  for (std::size_t i = 0; i < patterns.size(); ++i) {
    const auto pattern = static_cast<zr::MosaicPattern>(i);
    patterns[i] = {zr::PatternName(pattern), pattern};
  }
  return Choose("pattern", text, patterns);
}

zr::ColourMatrix ReadMatrix(const std::string& text) {
  using enum zr::ColourMatrix;
  return Choose("matrix", text,
                std::to_array<std::pair<std::string_view, zr::ColourMatrix>>(
                    {{"601", Bt601}, {"709", Bt709}, {"jpeg", Jpeg}}));
}

zr::Demosaic ReadDemosaic(const std::string& text) {
  using enum zr::Demosaic;
  return Choose("demosaic method", text,
                std::to_array<std::pair<std::string_view, zr::Demosaic>>(
                    {{"fast", Fast}, {"interpolate", Interpolate}}));
}

Format ReadFormat(const std::string& text) {
  zr::FormatChoice choice;
  const ZrUtilsLib::Result result = zr::ReadFormat(text, choice);
  if (result.GetCode() == zr::FrameError::UnknownFormat) ThrowUnknownFormat(text);
  if (!result.IsSuccess()) throw UsageError("format '" + text + "': " + std::string(zr::ResultText(result)));
  const zr::FormatInfo* info = zr::FindFormatInfo(choice.id);
  if (!info) ThrowUnknownFormat(text);
  return {info, choice.flags, choice.settled, text};
}

double ReadNumber(const std::string& text) {
  double number = 0;
  if (!Parse(text, number) || !std::isfinite(number)) throw UsageError("'" + text + "' is no number");
  return number;
}

std::uint64_t ReadCount(const std::string& text) {
  std::uint64_t count = 0;
  if (!Parse(text, count)) throw UsageError("'" + text + "' is no whole number");
  return count;
}

zr::ToneSettings::Channels ReadChannels(const std::string& text) {
  const std::vector<std::string> parts = Split(text, ',');
  if (parts.size() != 1 && parts.size() != 3) {
    throw UsageError("'" + text + "' is no colour: write RED,GREEN,BLUE or one number for all three");
  }
  zr::ToneSettings::Channels channels;
  channels.red = ReadNumber(parts.front());
  channels.green = ReadNumber(parts[parts.size() / 2]);
  channels.blue = ReadNumber(parts.back());
  return channels;
}

std::string ToText(Size size) {
  return std::to_string(size.width) + "x" + std::to_string(size.height);
}

}  // namespace zrconvert
