#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

// A mosaic that is flipped or cut begins with another site, and the converter says which.

namespace {

using namespace ZrConvertersLib;

constexpr std::uint32_t kWidth = 6;
constexpr std::uint32_t kHeight = 5;

std::string SitesOf(MosaicPattern pattern) {
  constexpr const char* kSites[] = {"GRBG", "GBRG", "RGGB", "BGGR"};
  return kSites[static_cast<unsigned>(pattern)];
}

/// Samples of 12 bits without gaps, each the letter of its site.
std::vector<std::uint8_t> LettersOf(const std::string& sites) {
  std::vector<std::uint8_t> bytes;
  for (std::uint32_t y = 0; y < kHeight; ++y) {
    const auto letter = [&](std::uint32_t x) { return static_cast<unsigned>(sites[y % 2 * 2 + x % 2]); };
    for (std::uint32_t x = 0; x < kWidth; x += 2) {
      const unsigned pair = letter(x) | letter(x + 1) << 12;
      for (const unsigned shift : {0u, 8u, 16u}) bytes.push_back(static_cast<std::uint8_t>(pair >> shift));
    }
  }
  return bytes;
}

/// The letters of a picture's first four sites, each in the upper 12 bits of a word.
std::string FirstSites(const std::vector<std::uint8_t>& picture, std::uint32_t width) {
  std::string sites;
  for (const std::size_t at : {0u, 1u, width, width + 1})
    sites += static_cast<char>(picture[2 * at] >> 4 | picture[2 * at + 1] << 4);
  return sites;
}

TEST(MosaicPatternTest, FollowsFlipsAndRegions) {
  for (unsigned which = 0; which < 4 * 4 * 16; ++which) {
    FrameOptions options;
    options.pattern = static_cast<MosaicPattern>(which % 4);
    options.flipHorizontal = (which & 4) != 0;
    options.flipVertical = (which & 8) != 0;
    options.region = {which >> 4 & 1, which >> 5 & 1, 3 + (which >> 6 & 1), 3 + (which >> 7 & 1)};
    FrameConverter converter;
    ASSERT_TRUE(converter.Configure(PixelTypeIds::Bayer12p, PixelTypeIds::Bayer16, kWidth, kHeight, options)
                    .IsSuccess());
    const std::vector<std::uint8_t> frame = LettersOf(SitesOf(options.pattern));
    std::vector<std::uint8_t> picture(converter.DestinationLayout().frameBytes);
    const std::uint32_t width = converter.Width();
    ASSERT_TRUE(converter
                    .Convert(SourceView::Of(frame, kWidth, kHeight),
                             DestinationView::Of(picture, width, converter.Height()))
                    .IsSuccess());
    EXPECT_EQ(SitesOf(converter.DestinationPattern()), FirstSites(picture, width)) << which;
  }
  EXPECT_EQ(FrameConverter().DestinationPattern(), MosaicPattern::GRBG);
}

}  // namespace
