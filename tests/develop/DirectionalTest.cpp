#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "model/Directional.h"
#include "model/FullDepth.h"
#include "support/CpuLevels.h"
#include "support/Random.h"

// The directional demosaic against the model at every CPU level, whole and in parts.

namespace {

using namespace ZrConvertersLib;
namespace Ids = PixelTypeIds;
using Bytes = std::vector<std::uint8_t>;

constexpr std::array kSources = {Ids::Bayer8,   Ids::Bayer10,  Ids::Bayer10Packed, Ids::Bayer12,
                                 Ids::Bayer14p, Ids::Bayer10p, Ids::Bayer12p,      Ids::Bayer12Packed,
                                 Ids::Bayer14,  Ids::Bayer16};
constexpr std::array kDestinations = {
    Ids::RGB8,        Ids::BGR8,         Ids::RGBa8,        Ids::BGRa8,       Ids::RGB565p, Ids::RGB16,
    Ids::BGR16,       Ids::Mono8,        Ids::Mono10,       Ids::Mono12,      Ids::Mono14,  Ids::Mono16,
    Ids::RGB8_Planar, Ids::RGB10_Planar, Ids::RGB12_Planar, Ids::RGB16_Planar};

struct Frame {
  std::uint32_t width, height;
  Bytes bytes;
  FrameLayout layout;
  FrameOptions options;
};

/// Noise, or samples that are all black or white: both ends of what is limited.
Frame FrameOf(long source, std::uint32_t width, std::uint32_t height, TestSupport::Random& random) {
  Frame frame{width, height, {}, {}, {}};
  EXPECT_TRUE(DescribeFrame(source, width, height, 0, frame.layout).IsSuccess());
  frame.bytes.resize(frame.layout.frameBytes);
  const bool extremes = random.Below(3) == 0;
  for (std::uint8_t& byte : frame.bytes)
    byte = static_cast<std::uint8_t>(extremes ? 0 - random.Below(2) : random.Below(256));
  frame.options.pattern = static_cast<MosaicPattern>(random.Below(4));
  frame.options.demosaic = Demosaic::Directional;
  return frame;
}

/// The whole frame as RGB16.
Bytes ModelOf(long source, const Frame& frame) {
  Model::Memory memory(0, frame.bytes.size());
  std::ranges::copy(frame.bytes, memory.All().begin());
  const unsigned flags = frame.options.GetFlags();
  const auto stride = static_cast<std::ptrdiff_t>(frame.layout.stride);
  const auto samples = Model::ReadSamples({source, &memory, stride, frame.width, frame.height, flags});
  Bytes picture;
  for (const auto& pixel : Model::DemosaicDirectionally(samples, frame.width, frame.height, flags)) {
    for (const std::uint32_t value : {pixel.red, pixel.green, pixel.blue}) {
      picture.push_back(static_cast<std::uint8_t>(value));
      picture.push_back(static_cast<std::uint8_t>(value >> 8));
    }
  }
  return picture;
}

/// What a whole RGB16 picture is in the region, flips and destination of the options.
Bytes PartOf(const Bytes& whole, const Frame& frame, long destination) {
  FrameOptions options = frame.options;
  FrameConverter converter;
  EXPECT_TRUE(converter.Configure(Ids::RGB16, destination, frame.width, frame.height, options).IsSuccess());
  Bytes part(converter.DestinationLayout().frameBytes);
  EXPECT_TRUE(converter
                  .Convert(SourceView::Of(whole, frame.width, frame.height),
                           DestinationView::Of(part, converter.Width(), converter.Height()))
                  .IsSuccess());
  return part;
}

/// In bands of chance.
Bytes Converted(long source, long destination, const Frame& frame, TestSupport::Random& random) {
  FrameConverter converter;
  EXPECT_TRUE(converter.Configure(source, destination, frame.width, frame.height, frame.options).IsSuccess());
  Bytes picture(converter.DestinationLayout().frameBytes);
  const auto from = SourceView::Of(frame.bytes, frame.width, frame.height);
  const auto to = DestinationView::Of(picture, converter.Width(), converter.Height());
  for (std::uint32_t line = 0; line < converter.Height();) {
    const std::uint32_t count = 1 + random.Below(converter.Height() - line);
    EXPECT_TRUE(converter.ConvertLines(line, count, from, to).IsSuccess());
    line += count;
  }
  return picture;
}

void ChoosePart(Frame& frame, TestSupport::Random& random) {
  FrameOptions& options = frame.options;
  options.flipVertical = random.Below(2) == 1;
  options.flipHorizontal = random.Below(3) == 0;
  if (random.Below(2) == 0) return;
  Region& region = options.region;
  region.x = random.Below(frame.width);
  region.y = random.Below(frame.height);
  region.width = 1 + random.Below(frame.width - region.x);
  region.height = 1 + random.Below(frame.height - region.y);
}

TEST(DirectionalTest, IsTheModelBitByBit) {
  TestSupport::Random random(14);
  for (const long source : kSources) {
    for (unsigned round = 0; round < 24; ++round) {
      // The least sides, sides around a block, and one wider than a tile.
      const std::uint32_t width = round == 0 ? 4300 : 2 + random.Below(round % 2 == 0 ? 8 : 300);
      Frame frame = FrameOf(source, width, 2 + random.Below(round % 3 == 0 ? 6 : 20), random);
      ChoosePart(frame, random);
      // Half of the pictures count as large and are written past the caches.
      const TestSupport::ForcedStreaming streaming(random.Below(2) == 0);
      const long destination = kDestinations[random.Below(kDestinations.size())];
      const Bytes expected = PartOf(ModelOf(source, frame), frame, destination);
      for (const char* level : TestSupport::CpuLevels()) {
        const TestSupport::ForcedCpuLevel forced(level);
        ASSERT_EQ(Converted(source, destination, frame, random), expected)
            << source << " to " << destination << ", " << frame.width << "x" << frame.height << " at "
            << level;
      }
    }
  }
}

}  // namespace
