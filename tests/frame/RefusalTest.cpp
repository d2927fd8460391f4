#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

// Nonsense of every kind is refused with a code of its own, and nothing is written.

namespace {

using namespace ZrConvertersLib;
namespace Ids = PixelTypeIds;
using ZrUtilsLib::Result;

constexpr std::uint32_t kMost = 0xFFFFFFFF;

struct Setup {
  const char* name;
  std::uint32_t code;
  long source = Ids::Mono8;
  long destination = Ids::RGB8;
  std::uint32_t width = 8;
  std::uint32_t height = 4;
  std::function<void(FrameOptions&)> change = [](FrameOptions&) {};
};

void PrintTo(const Setup& setup, std::ostream* out) {
  *out << setup.name;
}

std::string NameOf(const testing::TestParamInfo<Setup>& info) {
  return info.param.name;
}

std::function<void(FrameOptions&)> WithRegion(const Region& region) {
  return [region](FrameOptions& options) { options.region = region; };
}

class ConfigureTest : public testing::TestWithParam<Setup> {};

TEST_P(ConfigureTest, IsRefusedAndLeavesTheConverterAsItWas) {
  FrameConverter converter;
  ASSERT_TRUE(converter.Configure(Ids::Mono8, Ids::Mono16, 5, 3).IsSuccess());
  FrameOptions options;
  GetParam().change(options);
  const Result result = converter.Configure(GetParam().source, GetParam().destination, GetParam().width,
                                            GetParam().height, options);
  EXPECT_EQ(result.GetCode(), GetParam().code) << ResultText(result);

  const std::vector<std::uint8_t> frame(15, 7);
  std::vector<std::uint8_t> picture(30);
  EXPECT_TRUE(converter.Convert(SourceView::Of(frame, 5, 3), DestinationView::Of(picture, 5, 3)).IsSuccess());
  EXPECT_EQ(picture[29], 7);
}

INSTANTIATE_TEST_SUITE_P(
    Nonsense, ConfigureTest,
    testing::Values(
        Setup{"UnknownSource", FrameError::UnknownFormat, 0x1FF},
        Setup{"UnknownDestination", FrameError::UnknownFormat, Ids::Mono8, -1},
        Setup{"FreeId", FrameError::UnknownFormat, 293},
        Setup{"NoPair", FrameError::NoConverter, Ids::Mono8, Ids::YCbCr422_8},
        Setup{"NoWidth", FrameError::ZeroSize, Ids::Mono8, Ids::RGB8, 0, 4},
        Setup{"NoHeight", FrameError::ZeroSize, Ids::Mono8, Ids::RGB8, 8, 0},
        Setup{"OddWidthOf422", FrameError::WidthNotAllowed, Ids::YCbCr422_8, Ids::RGB8, 7, 4},
        Setup{"OddWidthOfPacked422", FrameError::WidthNotAllowed, Ids::YCbCr422_10p, Ids::RGB8, 7, 4},
        Setup{"WidthOf411", FrameError::WidthNotAllowed, Ids::YCbCr411_8, Ids::RGB8, 6, 4},
        Setup{"OneLineOfMosaic", FrameError::FrameTooSmall, Ids::Bayer8, Ids::RGB8, 8, 1},
        Setup{"OneColumnOfMosaic", FrameError::FrameTooSmall, Ids::Bayer12p, Ids::RGB8, 1, 8},
        Setup{"LongestSides", FrameError::FrameTooLarge, Ids::Mono32, Ids::RGB16, kMost, kMost},
        Setup{"LongPictureOfSmallLine", FrameError::FrameTooLarge, Ids::Mono1p, Ids::RGB16, 200'000'000, 1},
        Setup{"Pattern", FrameError::InvalidPattern, Ids::Bayer8, Ids::RGB8, 8, 4,
              [](FrameOptions& options) { options.pattern = MosaicPattern::RGBG; }},
        Setup{"NoPattern", FrameError::InvalidPattern, Ids::Mono8, Ids::RGB8, 8, 4,
              [](FrameOptions& options) { options.pattern = static_cast<MosaicPattern>(12); }},
        Setup{"Demosaic", FrameError::InvalidDemosaic, Ids::Bayer8, Ids::RGB8, 8, 4,
              [](FrameOptions& options) { options.demosaic = static_cast<Demosaic>(255); }},
        Setup{"Matrix", FrameError::InvalidMatrix, Ids::YCbCr8, Ids::RGB8, 8, 4,
              [](FrameOptions& options) { options.matrix = static_cast<ColourMatrix>(3); }},
        Setup{"Packing", FrameError::InvalidPacking, Ids::Mono8, Ids::RGB8, 8, 4,
              [](FrameOptions& options) { options.packing = static_cast<PackingOrder>(3); }},
        Setup{"Csi2OfHalfAGroup", FrameError::WidthNotAllowed, Ids::Mono10p, Ids::RGB8, 7, 4,
              [](FrameOptions& options) { options.packing = PackingOrder::Csi2; }},
        Setup{"RegionRightOfFrame", FrameError::RegionOutside, Ids::Mono8, Ids::RGB8, 8, 4,
              WithRegion({8, 0, 0, 0})},
        Setup{"RegionBelowFrame", FrameError::RegionOutside, Ids::Mono8, Ids::RGB8, 8, 4,
              WithRegion({0, 4, 1, 1})},
        Setup{"RegionTooWide", FrameError::RegionOutside, Ids::Mono8, Ids::RGB8, 8, 4,
              WithRegion({4, 0, 5, 1})},
        Setup{"RegionThatWraps", FrameError::RegionOutside, Ids::Mono8, Ids::RGB8, 8, 4,
              WithRegion({1, 1, kMost, kMost})},
        Setup{"RegionCutsPairs", FrameError::RegionNotAllowed, Ids::YCbCr422_10p, Ids::YCbCr422_8, 8, 4,
              WithRegion({1, 0, 4, 4})},
        Setup{"RegionOfHalfAPair", FrameError::RegionNotAllowed, Ids::YCbCr422_12p, Ids::YCbCr422_8, 8, 4,
              WithRegion({2, 0, 3, 4})}),
    NameOf);

/// A caller's own converters may have rules of their own.
TEST(ConfigureTest, PairsOfCallersWithUnknownRulesAreRefused) {
  static const PixelConverter toPacked(Ids::Mono8, Ids::Mono12p, 1, 2, 1, 1, true);
  static const PixelConverter byTriples(Ids::Mono8, Ids::Mono32, 1, 4, 1, 3, true);
  FrameConverter converter;
  for (const PixelConverter* own : {&toPacked, &byTriples})
    EXPECT_EQ(converter.Configure(Ids::Mono8, own->GetDestinationType(), 8, 6).GetCode(),
              FrameError::NoConverter);
}

/// A call of a converter for 8 x 4 pixels of Mono8 to RGB8, all right until it is changed.
struct Call {
  std::vector<std::uint8_t> bytes = std::vector<std::uint8_t>(4096, 0x5A);
  SourceView source{bytes.data(), 32, 0, 8, 4};
  DestinationView picture{bytes.data() + 1024, 96, 0, 8, 4};
  std::uint32_t first = 0;
  std::uint32_t count = 4;
};

struct Misuse {
  const char* name;
  std::uint32_t code;
  std::function<void(Call&)> change;
};

void PrintTo(const Misuse& misuse, std::ostream* out) {
  *out << misuse.name;
}

class ConvertTest : public testing::TestWithParam<Misuse> {};

TEST_P(ConvertTest, IsRefusedAndWritesNothing) {
  FrameConverter converter;
  ASSERT_TRUE(converter.Configure(Ids::Mono8, Ids::RGB8, 8, 4).IsSuccess());
  Call call;
  GetParam().change(call);
  const Result result = converter.ConvertLines(call.first, call.count, call.source, call.picture);
  EXPECT_EQ(result.GetCode(), GetParam().code) << ResultText(result);
  EXPECT_TRUE(std::ranges::all_of(call.bytes, [](std::uint8_t byte) { return byte == 0x5A; }));
}

INSTANTIATE_TEST_SUITE_P(
    Nonsense, ConvertTest,
    testing::Values(
        Misuse{"NullSource", FrameError::NullSource, [](Call& call) { call.source.data = nullptr; }},
        Misuse{"NullDestination", FrameError::NullDestination,
               [](Call& call) { call.picture.data = nullptr; }},
        Misuse{"SourceWidth", FrameError::SourceSizeDiffers, [](Call& call) { call.source.width = 7; }},
        Misuse{"SourceHeight", FrameError::SourceSizeDiffers, [](Call& call) { call.source.height = kMost; }},
        Misuse{"PictureWidth", FrameError::DestinationSizeDiffers,
               [](Call& call) { call.picture.width = 9; }},
        Misuse{"PictureHeight", FrameError::DestinationSizeDiffers,
               [](Call& call) { call.picture.height = 0; }},
        Misuse{"SourceBytes", FrameError::SourceTooSmall, [](Call& call) { call.source.size = 31; }},
        Misuse{"PictureBytes", FrameError::DestinationTooSmall, [](Call& call) { call.picture.size = 95; }},
        Misuse{"SourceStride", FrameError::StrideTooSmall, [](Call& call) { call.source.stride = 7; }},
        Misuse{"PictureStride", FrameError::StrideTooSmall, [](Call& call) { call.picture.stride = 23; }},
        Misuse{"HugeStride", FrameError::FrameTooLarge, [](Call& call) { call.source.stride = SIZE_MAX; }},
        Misuse{"StrideBeyondBytes", FrameError::SourceTooSmall, [](Call& call) { call.source.stride = 9; }},
        Misuse{"BytesBeyondMemory", FrameError::DestinationTooSmall,
               [](Call& call) { call.picture.data = reinterpret_cast<void*>(UINTPTR_MAX - 10); }},
        Misuse{"SameBuffer", FrameError::BuffersOverlap,
               [](Call& call) { call.picture.data = call.bytes.data(); }},
        Misuse{"LastByteShared", FrameError::BuffersOverlap,
               [](Call& call) { call.source.data = call.bytes.data() + 1024 + 95; }},
        Misuse{"FirstByteShared", FrameError::BuffersOverlap,
               [](Call& call) { call.source.data = call.bytes.data() + 1024 - 31; }},
        Misuse{"LinesBelow", FrameError::LinesOutside, [](Call& call) { call.first = 1; }},
        Misuse{"LinesThatWrap", FrameError::LinesOutside,
               [](Call& call) {
                 call.first = 3;
                 call.count = kMost;
               }},
        Misuse{"NoLinesFarBelow", FrameError::LinesOutside,
               [](Call& call) {
                 call.first = 5;
                 call.count = 0;
               }}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(ConvertTest, NeighboursDoNotOverlap) {
  FrameConverter converter;
  ASSERT_TRUE(converter.Configure(Ids::Mono8, Ids::RGB8, 8, 4).IsSuccess());
  std::vector<std::uint8_t> bytes(32 + 96);
  EXPECT_TRUE(converter.Convert({bytes.data(), 32, 0, 8, 4}, {bytes.data() + 32, 96, 0, 8, 4}).IsSuccess());
}

TEST(ConvertTest, NoLinesAreRight) {
  FrameConverter converter;
  ASSERT_TRUE(converter.Configure(Ids::Mono8, Ids::RGB8, 8, 4).IsSuccess());
  Call call;
  EXPECT_TRUE(converter.ConvertLines(4, 0, call.source, call.picture).IsSuccess());
  EXPECT_TRUE(std::ranges::all_of(call.bytes, [](std::uint8_t byte) { return byte == 0x5A; }));
}

TEST(ConvertTest, NeedsAConfiguration) {
  FrameConverter converter;
  Call call;
  EXPECT_EQ(converter.Convert(call.source, call.picture).GetCode(), FrameError::NotConfigured);
  FrameConverter configured;
  ASSERT_TRUE(configured.Configure(Ids::Mono8, Ids::RGB8, 8, 4).IsSuccess());
  converter = std::move(configured);
  EXPECT_TRUE(converter.Convert(call.source, call.picture).IsSuccess());
  FrameConverter last(std::move(converter));
  // What is left behind promises to be unconfigured.
  // NOLINTNEXTLINE(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
  EXPECT_FALSE(converter.IsConfigured());
  EXPECT_EQ(converter.Convert(call.source, call.picture).GetCode(), FrameError::NotConfigured);
}

TEST(ResultTextTest, EveryCodeHasWordsOfItsOwn) {
  std::set<std::string_view> texts;
  const std::uint32_t base[] = {0, 18, 24, 26, 16384};
  for (const std::uint32_t code : base) texts.insert(ResultText(code));
  for (std::uint32_t code = FrameError::UnknownFormat; code <= FrameError::InvalidPacking; ++code) {
    texts.insert(ResultText(code));
  }
  texts.insert(ResultText(12345));
  EXPECT_EQ(texts.size(), std::size(base) + FrameError::InvalidPacking - FrameError::UnknownFormat + 2);
  EXPECT_EQ(texts.count(""), 0u);
}

}  // namespace
