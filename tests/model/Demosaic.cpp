#include "Demosaic.h"

#include <algorithm>

namespace Model {
namespace {

/// The colour filter repeats every two lines and columns.
Site SiteAt(const SourceLine& mosaic, std::uint32_t lineOfPair, std::uint32_t x) {
  return FirstTile(mosaic.flags)[(mosaic.line + lineOfPair) % 2 * 2 + x % 2];
}

std::uint32_t SampleAt(const SourceLine& mosaic, std::ptrdiff_t lineOfPair, std::uint32_t x) {
  return EightBitSample(*mosaic.source, *mosaic.memory, mosaic.start + lineOfPair * mosaic.stride, x);
}

struct Tile {
  std::uint32_t red = 0, greenSum = 0, blue = 0;
};

Tile ReadTile(const SourceLine& mosaic, std::uint32_t x) {
  Tile tile;
  for (std::uint32_t line = 0; line < 2; ++line) {
    for (std::uint32_t column = x; column < x + 2; ++column) {
      const std::uint32_t sample = SampleAt(mosaic, line, column);
      switch (SiteAt(mosaic, line, column)) {
        case Site::Red:
          tile.red = sample;
          break;
        case Site::Green:
          tile.greenSum += sample;
          break;
        case Site::Blue:
          tile.blue = sample;
          break;
      }
    }
  }
  return tile;
}

/// Blue at the top left and red at the bottom right.
bool StartsBlueGreen(const SourceLine& mosaic, std::uint32_t x) {
  return SiteAt(mosaic, 0, x) == Site::Blue;
}

/// The line to read for a neighbour in line `line`: outside the image it is mirrored about the edge line.
/// A pair always owns two lines, also in an image of one.
std::ptrdiff_t NeighbourLine(const SourceLine& mosaic, std::ptrdiff_t line) {
  const bool real = line < 0 ? LinesAboveAreReal(mosaic.flags) : LinesBelowAreReal(mosaic.flags);
  return real ? line : Mirrored(line, std::max<std::ptrdiff_t>(mosaic.height, 2));
}

/// The samples around one site.
class Neighbours {
 public:
  Neighbours(const SourceLine& mosaic, std::uint32_t lineOfPair, std::uint32_t x)
      : mMosaic(mosaic), mLineOfPair(lineOfPair), mX(x) {}

  std::uint32_t Horizontal() const { return At(0, -1) + At(0, 1); }
  std::uint32_t Vertical() const { return At(-1, 0) + At(1, 0); }
  std::uint32_t Diagonal() const { return At(-1, -1) + At(-1, 1) + At(1, -1) + At(1, 1); }

 private:
  /// Lines are counted in the image to mirror them, and from the pair's first line to read them.
  std::uint32_t At(std::ptrdiff_t down, std::ptrdiff_t right) const {
    const std::ptrdiff_t centre = std::ptrdiff_t{mMosaic.line} + mLineOfPair;
    const std::ptrdiff_t line = down == 0 ? centre : NeighbourLine(mMosaic, centre + down);
    return SampleAt(mMosaic, line - std::ptrdiff_t{mMosaic.line},
                    static_cast<std::uint32_t>(Mirrored(std::ptrdiff_t{mX} + right, mMosaic.width)));
  }

  const SourceLine& mMosaic;
  std::uint32_t mLineOfPair, mX;
};

// Means on the 16-bit scale, not rounded.
std::uint32_t MeanOfTwo(std::uint32_t sum) {
  return sum << 7;
}
std::uint32_t MeanOfFour(std::uint32_t sum) {
  return sum << 6;
}

/// A line with a green site next to red ones has blue above and below it, and the other way round.
Value AtGreen(std::uint32_t centre, const Neighbours& around, bool redInLine) {
  const std::uint32_t inLine = MeanOfTwo(around.Horizontal()), across = MeanOfTwo(around.Vertical());
  return redInLine ? Value{inLine, centre << 8, across} : Value{across, centre << 8, inLine};
}

}  // namespace

std::array<Site, 4> FirstTile(unsigned flags) {
  using enum Site;
  if (flags & kBggr) return {Blue, Green, Green, Red};
  if (flags & kRggb) return {Red, Green, Green, Blue};
  if (flags & kGbrg) return {Green, Blue, Red, Green};
  return {Green, Red, Blue, Green};
}

bool LinesAboveAreReal(unsigned flags) {
  return (flags & 0x02000000) || (flags & 0x05000000) == 0x04000000;
}
bool LinesBelowAreReal(unsigned flags) {
  return (flags & 0x02000000) || (flags & 0x05000000) == 0x01000000;
}

std::ptrdiff_t Mirrored(std::ptrdiff_t index, std::ptrdiff_t count) {
  if (index < 0) return -index;
  return index >= count ? 2 * (count - 1) - index : index;
}

Value FastTile(const SourceLine& mosaic, std::uint32_t x) {
  const Tile tile = ReadTile(mosaic, x);
  return {tile.red << 8, tile.greenSum << 7, tile.blue << 8};
}

/// Deliberately uneven: a tile that starts blue-green loses its green scale here, and only here.
Value LastColumn(const SourceLine& mosaic) {
  const std::uint32_t x = mosaic.width - 2;
  const Tile tile = ReadTile(mosaic, x);
  const std::uint32_t green = StartsBlueGreen(mosaic, x) ? tile.greenSum >> 7 : tile.greenSum << 7;
  return {tile.red << 8, green, tile.blue << 8};
}

Value Interpolated(const SourceLine& mosaic, std::uint32_t lineOfPair, std::uint32_t x) {
  const Neighbours around(mosaic, lineOfPair, x);
  const std::uint32_t centre = SampleAt(mosaic, lineOfPair, x);
  const std::uint32_t cross = MeanOfFour(around.Horizontal() + around.Vertical());
  switch (SiteAt(mosaic, lineOfPair, x)) {
    case Site::Red:
      return {centre << 8, cross, MeanOfFour(around.Diagonal())};
    case Site::Blue:
      return {MeanOfFour(around.Diagonal()), cross, centre << 8};
    default:
      return AtGreen(centre, around, SiteAt(mosaic, lineOfPair, x + 1) == Site::Red);
  }
}

}  // namespace Model
