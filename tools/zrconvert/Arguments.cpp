#include "Arguments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <vector>

#include "Error.h"
#include "FormatNames.h"
#include "Names.h"
#include "common/Words.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

// Larger frames are a typing error rather than a camera's.
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

// Index of the name that the text is, whatever its case.
std::size_t Choose(const std::string& what, const std::string& text,
                   const std::vector<std::string_view>& names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (EqualsIgnoringCase(names[i], text)) return i;
  }
  throw UsageError("unknown " + what + " '" + text + "': it is one of " + Join(names, ", "));
}

template <typename Value, std::size_t Count>
Value Choose(const std::string& what, const std::string& text,
             const std::array<zrcommon::Word<Value>, Count>& choices) {
  std::vector<std::string_view> names;
  for (const auto& choice : choices) names.emplace_back(choice.text);
  return choices[Choose(what, text, names)].value;
}

bool ReadFinite(const std::string& text, double& number) {
  return Parse(text, number) && std::isfinite(number);
}

bool ReadShare(const std::string& text, double& number) {
  return Parse(text, number) && number >= 0 && number <= 1;
}

bool IsIn(NumberRange range, double number) {
  return range == NumberRange::Any || number > 0 || (number == 0 && range == NumberRange::NotNegative);
}

std::string Words(NumberRange range) {
  if (range == NumberRange::Any) return {};
  return range == NumberRange::Positive ? " above 0" : " of 0 or more";
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
  return zr::MosaicPattern(Choose("pattern", text, zrcommon::PatternNames()));
}

zr::ColourMatrix ReadMatrix(const std::string& text) {
  return Choose("matrix", text, zrcommon::kMatrices);
}

zr::Demosaic ReadDemosaic(const std::string& text) {
  return Choose("demosaic method", text, zrcommon::kDemosaics);
}

zr::PackingOrder ReadPacking(const std::string& text) {
  return Choose("packing", text, zrcommon::kPackings);
}

std::uint64_t ReadCount(const std::string& option, const std::string& text, CountRange range) {
  std::uint64_t count = 0;
  if (Parse(text, count) && count >= range.least && count <= range.most) return count;
  const std::string least = std::to_string(range.least);
  const std::string words = range.most == CountRange::cNoLimit
                                ? " of " + least + " or more"
                                : " from " + least + " to " + std::to_string(range.most);
  throw UsageError(option + " takes a whole number" + words + ", not '" + text + "'");
}

double ReadNumber(const std::string& option, const std::string& text, NumberRange range) {
  double number = 0;
  if (ReadFinite(text, number) && IsIn(range, number)) return number;
  throw UsageError(option + " takes a number" + Words(range) + ", not '" + text + "'");
}

zr::ToneSettings::Channels ReadChannels(const std::string& option, const std::string& text,
                                        NumberRange range) {
  const std::vector<std::string> parts = Split(text, ',');
  std::array<double, 3> numbers{};
  bool right = parts.size() == 1 || parts.size() == 3;
  for (std::size_t i = 0; right && i < numbers.size(); ++i) {
    right = ReadFinite(parts[i % parts.size()], numbers[i]) && IsIn(range, numbers[i]);
  }
  if (right) return {numbers[0], numbers[1], numbers[2]};
  throw UsageError(option + " takes RED,GREEN,BLUE or one number for all three, each" +
                   (range == NumberRange::Any ? " a number" : Words(range)) + ", not '" + text + "'");
}

std::array<double, 9> ReadColorMatrix(const std::string& text) {
  const std::vector<std::string> parts = Split(text, ',');
  std::array<double, 9> factors{};
  bool right = parts.size() == factors.size();
  for (std::size_t i = 0; right && i < factors.size(); ++i) right = ReadFinite(parts[i], factors[i]);
  if (right) return factors;
  throw UsageError("--color-matrix takes nine numbers, row by row, not '" + text + "'");
}

Curve ReadCurve(const std::string& text) {
  using enum zr::ToneCurve;
  if (EqualsIgnoringCase(text, "linear")) return {Linear, {}};
  if (EqualsIgnoringCase(text, "srgb")) return {Srgb, {}};
  Curve curve{Points, {}};
  bool right = true;
  for (const std::string& part : Split(text, ',')) {
    const std::vector<std::string> sides = Split(part, ':');
    zr::CurvePoint point;
    right = right && sides.size() == 2 && ReadShare(sides[0], point.input) &&
            ReadShare(sides[1], point.output) &&
            (curve.points.empty() || point.input > curve.points.back().input);
    curve.points.push_back(point);
  }
  if (right) return curve;
  throw UsageError(
      "--curve takes srgb, linear or points INPUT:OUTPUT,... from 0 to 1 with rising inputs, not '" + text +
      "'");
}

std::string ToText(Size size) {
  return std::to_string(size.width) + "x" + std::to_string(size.height);
}

}  // namespace zrconvert
