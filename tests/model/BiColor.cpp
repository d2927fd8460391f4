#include "BiColor.h"

#include "Demosaic.h"

namespace Model {
namespace {

struct Pattern {
  std::uint32_t green;  ///< position of a pixel's green sample
  bool redFirst;        ///< even pixels have red, odd ones blue
};

Pattern PatternOf(unsigned flags) {
  if (flags & kGbgr) return {0, false};
  if (flags & kGrgb) return {0, true};
  if (flags & kBgrg) return {1, false};
  return {1, true};
}

class Pixels {
 public:
  explicit Pixels(const SourceLine& line) : mLine(line), mPattern(PatternOf(line.flags)) {}

  std::uint32_t Green(std::uint32_t x) const { return NormalisedSample(mLine, 2 * x + mPattern.green); }
  /// Red or blue.
  std::uint32_t Other(std::uint32_t x) const { return NormalisedSample(mLine, 2 * x + 1 - mPattern.green); }
  std::uint32_t OtherMirrored(std::ptrdiff_t x) const {
    return Other(static_cast<std::uint32_t>(Mirrored(x, mLine.width)));
  }

  /// The colour of a pixel at x whose own and whose missing channel are these.
  Value Colour(std::uint32_t x, std::uint32_t own, std::uint32_t green, std::uint32_t missing) const {
    const bool red = mPattern.redFirst == (x % 2 == 0);
    return red ? Value{own, green, missing} : Value{missing, green, own};
  }

 private:
  const SourceLine& mLine;
  Pattern mPattern;
};

/// Pixels 2k and 2k + 1 share a colour; a last pixel without a right neighbour pairs with its left one.
Value Fast(const Pixels& pixels, std::uint32_t x, std::uint32_t width) {
  const std::uint32_t partner = x % 2 == 0 && x + 1 < width ? x + 1 : x - 1;
  const std::uint32_t green = (pixels.Green(x) + pixels.Green(partner)) >> 1;
  return pixels.Colour(x, pixels.Other(x), green, pixels.Other(partner));
}

Value Interpolated(const Pixels& pixels, std::uint32_t x) {
  const std::ptrdiff_t centre = x;
  const std::uint32_t missing = (pixels.OtherMirrored(centre - 1) + pixels.OtherMirrored(centre + 1)) >> 1;
  return pixels.Colour(x, pixels.Other(x), pixels.Green(x), missing);
}

}  // namespace

Value BiColorPixel(const SourceLine& line, std::uint32_t x) {
  const Pixels pixels(line);
  return line.flags & kInterpolateBiColor ? Interpolated(pixels, x) : Fast(pixels, x, line.width);
}

}  // namespace Model
