#include "Chart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace zrconvert {
namespace {

// Where the parts of the chart begin, as fractions of its height.
constexpr double cRampTop = 0.28;
constexpr double cStepsTop = 0.40;
constexpr double cFieldTop = 0.52;
constexpr unsigned cSteps = 16;
constexpr std::array<Colour, 8> cBars{
    {{1, 1, 1}, {1, 1, 0}, {0, 1, 1}, {0, 1, 0}, {1, 0, 1}, {1, 0, 0}, {0, 0, 1}, {0, 0, 0}}};

Colour Grey(double value) {
  return {value, value, value};
}

unsigned RowAt(double fraction, unsigned height) {
  return static_cast<unsigned>(std::lround(fraction * height));
}

// 0 at the left edge, 1 at the right one.
double Across(unsigned x, unsigned width) {
  return width > 1 ? double(x) / double(width - 1) : 0.5;
}

// A fully saturated colour; the hue counts once around the circle from 0 to 1.
double HueChannel(double hue, double offset) {
  const double sector = std::fmod(hue * 6 + offset, 6.0);
  return std::clamp(std::abs(sector - 3) - 1, 0.0, 1.0);
}

}  // namespace

double Luma(const Colour& colour) {
  return 0.299 * colour.red + 0.587 * colour.green + 0.114 * colour.blue;
}

Chart::Chart(unsigned width, unsigned height, std::uint64_t frame)
    : mWidth(width), mHeight(height), mFrame(frame), mFieldTop(RowAt(cFieldTop, height)) {}

Colour Chart::ColourBar(unsigned x) const {
  const auto bar = static_cast<std::size_t>(std::uint64_t{x} * cBars.size() / mWidth);
  return cBars[bar];
}

Colour Chart::ZonePlate(unsigned x, unsigned y) const {
  const double radius = std::max(1.0, mWidth / 4.0);
  const double dx = x + 0.5 - mWidth / 4.0;
  const double dy = y + 0.5 - (mFieldTop + mHeight) / 2.0;
  // The phase pi r^2 / (2 R) changes by half a cycle per pixel where r = R.
  const double phase = std::numbers::pi * (dx * dx + dy * dy) / (2 * radius) - double(mFrame) * 0.5;
  return Grey(0.5 + 0.5 * std::cos(phase));
}

Colour Chart::HueField(unsigned x, unsigned y) const {
  const double hue = Across(x - mWidth / 2, mWidth - mWidth / 2) + double(mFrame) / 24;
  const double down = Across(y - mFieldTop, mHeight - mFieldTop);
  // From white at the top through the full colour in the middle to black at the bottom.
  const double white = std::clamp(1 - 2 * down, 0.0, 1.0);
  const double light = std::clamp(2 - 2 * down, 0.0, 1.0);
  const auto mix = [&](double channel) { return light * (white + (1 - white) * channel); };
  return {mix(HueChannel(hue, 0)), mix(HueChannel(hue, 4)), mix(HueChannel(hue, 2))};
}

Colour Chart::Field(unsigned x, unsigned y) const {
  return x < mWidth / 2 ? ZonePlate(x, y) : HueField(x, y);
}

Colour Chart::At(unsigned x, unsigned y) const {
  const unsigned marker = std::max(2U, std::min(mWidth, mHeight) / 8);
  if (std::uint64_t{x} + y < marker) return {1, 0, 0};
  if (std::uint64_t{x} + y < marker + marker / 4) return {0, 0, 0};
  if (y < RowAt(cRampTop, mHeight)) return ColourBar(x);
  if (y < RowAt(cStepsTop, mHeight)) return Grey(Across(x, mWidth));
  const std::uint64_t step = std::uint64_t{x} * cSteps / mWidth;
  return y < mFieldTop ? Grey(double(step) / (cSteps - 1)) : Field(x, y);
}

}  // namespace zrconvert
