#include "Directional.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "Demosaic.h"

namespace Model {
namespace {

constexpr int kFull = 65535;

/// Reflected about the edges as often as need be.
int Reflected(int at, int count) {
  while (at < 0 || at >= count) at = at < 0 ? -at : 2 * (count - 1) - at;
  return at;
}

/// Green as the samples of one direction have it, and how much they change there.
struct Estimate {
  int green, change;
};

class DirectionalMosaic {
 public:
  DirectionalMosaic(std::span<const std::uint32_t> samples, int width, int height, unsigned flags)
      : mSamples(samples), mWidth(width), mHeight(height), mTile(FirstTile(flags)) {}

  Value At(int x, int y) const {
    return {Channel(Site::Red, x, y), static_cast<std::uint32_t>(Green(x, y)), Channel(Site::Blue, x, y)};
  }

 private:
  /// Reflection keeps the parity of a position and with it its colour.
  Site SiteAt(int x, int y) const { return mTile[static_cast<std::size_t>((y & 1) * 2 + (x & 1))]; }

  int Sample(int x, int y) const {
    const int at = Reflected(y, mHeight) * mWidth + Reflected(x, mWidth);
    return static_cast<int>(mSamples[static_cast<std::size_t>(at)]);
  }

  /// Along a line (right 1, down 0) or a column.
  Estimate Along(int x, int y, int right, int down) const {
    const int before = Sample(x - right, y - down), after = Sample(x + right, y + down);
    const int bend =
        2 * Sample(x, y) - Sample(x - 2 * right, y - 2 * down) - Sample(x + 2 * right, y + 2 * down);
    const int green = (2 * (before + after) + bend) >> 2;
    return {std::clamp(green, 0, kFull), std::abs(before - after) + std::abs(bend)};
  }

  int Green(int x, int y) const {
    if (SiteAt(x, y) == Site::Green) return Sample(x, y);
    const Estimate h = Along(x, y, 1, 0), v = Along(x, y, 0, 1);
    if (2 * h.change < v.change) return h.green;
    if (2 * v.change < h.change) return v.green;
    if (h.change < v.change) return (3 * h.green + v.green) >> 2;
    if (v.change < h.change) return (h.green + 3 * v.green) >> 2;
    return (h.green + v.green) >> 1;
  }

  int Difference(int x, int y) const {
    return Sample(x, y) - Green(Reflected(x, mWidth), Reflected(y, mHeight));
  }

  int MeanDifference(Site colour, int x, int y) const {
    if (SiteAt(x + 1, y) == colour) return (Difference(x - 1, y) + Difference(x + 1, y)) >> 1;
    if (SiteAt(x, y + 1) == colour) return (Difference(x, y - 1) + Difference(x, y + 1)) >> 1;
    return (Difference(x - 1, y - 1) + Difference(x + 1, y - 1) + Difference(x - 1, y + 1) +
            Difference(x + 1, y + 1)) >>
           2;
  }

  /// Red or blue.
  std::uint32_t Channel(Site colour, int x, int y) const {
    if (SiteAt(x, y) == colour) return static_cast<std::uint32_t>(Sample(x, y));
    return static_cast<std::uint32_t>(std::clamp(Green(x, y) + MeanDifference(colour, x, y), 0, kFull));
  }

  std::span<const std::uint32_t> mSamples;
  int mWidth, mHeight;
  std::array<Site, 4> mTile;
};

}  // namespace

std::vector<Value> DemosaicDirectionally(std::span<const std::uint32_t> samples, std::uint32_t width,
                                         std::uint32_t height, unsigned flags) {
  const int columns = static_cast<int>(width), lines = static_cast<int>(height);
  const DirectionalMosaic mosaic(samples, columns, lines, flags);
  std::vector<Value> pixels;
  for (int y = 0; y < lines; ++y)
    for (int x = 0; x < columns; ++x) pixels.push_back(mosaic.At(x, y));
  return pixels;
}

}  // namespace Model
