#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "model/Formats.h"
#include "support/Registry.h"

namespace {

using namespace ZrConvertersLib;
namespace Ids = PixelTypeIds;

/// A static object of a program: made before the first question for formats, it goes after whatever that
/// made.
struct AsksInTheEnd {
  std::vector<std::string> layouts;

  ~AsksInTheEnd() {
    for (std::size_t i = 0; i < layouts.size(); ++i) {
      if (Formats()[i].layout != layouts[i]) std::_Exit(1);
    }
  }
};

AsksInTheEnd sAsksInTheEnd;

TEST(FormatTest, OutlivesStaticObjects) {
  for (const FormatInfo& info : Formats()) sAsksInTheEnd.layouts.emplace_back(info.layout);
  EXPECT_FALSE(sAsksInTheEnd.layouts.empty());
}

std::uint64_t LineBytes(long format, std::uint64_t width) {
  FrameLayout layout;
  EXPECT_TRUE(DescribeFrame(format, width, 1, 0, layout).IsSuccess());
  return layout.bytesPerLine;
}

TEST(FormatTest, EveryFormatIsFoundByIdAndName) {
  EXPECT_EQ(Formats().size(), 92u);
  for (const FormatInfo& info : Formats()) {
    EXPECT_EQ(FindFormatInfo(info.id), &info);
    EXPECT_EQ(FindFormatInfo(info.name), &info);
    EXPECT_FALSE(info.layout.empty()) << info.name;
  }
  EXPECT_TRUE(std::ranges::is_sorted(Formats(), {}, &FormatInfo::id));
  EXPECT_EQ(FindFormatInfo(293), nullptr);
  EXPECT_EQ(FindFormatInfo(-1), nullptr);
  EXPECT_EQ(FindFormatInfo("Mono"), nullptr);
  EXPECT_EQ(FindFormatInfo(""), nullptr);
}

TEST(FormatTest, SourcesAndDestinationsAreThoseOfTheRegistry) {
  std::set<long> destinations;
  for (const auto& pair : TestSupport::RegisteredPairs()) destinations.insert(pair.second);
  for (const FormatInfo& info : Formats()) {
    EXPECT_EQ(DestinationsOf(info.id), TestSupport::DestinationsOf(info.id)) << info.name;
    EXPECT_EQ(info.isSource, !DestinationsOf(info.id).empty()) << info.name;
    EXPECT_EQ(info.isDestination, destinations.contains(info.id)) << info.name;
  }
}

TEST(FormatTest, LinesTakeTheirBitsRoundedUp) {
  EXPECT_EQ(LineBytes(Ids::Mono1p, 9), 2u);
  EXPECT_EQ(LineBytes(Ids::Mono4p, 3), 2u);
  EXPECT_EQ(LineBytes(Ids::Mono10p, 5), 7u);
  EXPECT_EQ(LineBytes(Ids::Mono12Packed, 3), 5u);
  EXPECT_EQ(LineBytes(Ids::Mono10Packed, 3), 5u);
  EXPECT_EQ(LineBytes(Ids::YCbCr10p_CbYCr, 3), 12u);
  EXPECT_EQ(LineBytes(Ids::YCbCr12p_CbYCr, 3), 14u);
  EXPECT_EQ(LineBytes(Ids::YCbCr422_10p, 6), 15u);
  EXPECT_EQ(LineBytes(Ids::YCbCr411_8, 8), 12u);
  EXPECT_EQ(LineBytes(Ids::RGB10, 3), 18u);
  EXPECT_EQ(LineBytes(Ids::BGRa14, 3), 24u);
  EXPECT_EQ(LineBytes(Ids::RGB12_Planar, 3), 6u);
}

TEST(FormatTest, FramesTakeTheirPlanes) {
  FrameLayout layout;
  ASSERT_TRUE(DescribeFrame(Ids::RGB10_Planar, 5, 7, 16, layout).IsSuccess());
  EXPECT_EQ(layout.bytesPerLine, 10u);
  EXPECT_EQ(layout.stride, 16u);
  EXPECT_EQ(layout.planes, 3u);
  EXPECT_EQ(layout.bytesPerPlane, 7 * 16u);
  EXPECT_EQ(layout.frameBytes, 3 * 7 * 16u);
  EXPECT_EQ(layout.leastBytes, 3 * 7 * 16u - 6);
}

TEST(FormatTest, LargeFramesAreCountedIn64Bits) {
  FrameLayout layout;
  ASSERT_TRUE(DescribeFrame(Ids::RGB16, 80'000'000, 4'000'000'000, 0, layout).IsSuccess());
  EXPECT_EQ(layout.frameBytes, 80'000'000ull * 6 * 4'000'000'000ull);
}

TEST(FormatTest, WhatCannotBeIsRefusedAndLeavesTheLayout) {
  FrameLayout layout;
  layout.stride = 77;
  const auto code = [&](long format, std::uint64_t width, std::uint64_t height, std::uint64_t stride) {
    return DescribeFrame(format, width, height, stride, layout).GetCode();
  };
  EXPECT_EQ(code(293, 1, 1, 0), FrameError::UnknownFormat);
  EXPECT_EQ(code(Ids::Mono8, 0, 1, 0), FrameError::ZeroSize);
  EXPECT_EQ(code(Ids::Mono8, 1, 0, 0), FrameError::ZeroSize);
  EXPECT_EQ(code(Ids::YCbCr422_12p, 3, 1, 0), FrameError::WidthNotAllowed);
  EXPECT_EQ(code(Ids::YCbCr411_8_CbYYCrYY, 6, 1, 0), FrameError::WidthNotAllowed);
  EXPECT_EQ(code(Ids::Mono12p, 3, 1, 4), FrameError::StrideTooSmall);
  EXPECT_EQ(code(Ids::Mono8, UINT64_MAX, 1, 0), FrameError::FrameTooLarge);
  EXPECT_EQ(code(Ids::Mono8, 1, UINT64_MAX, 0), FrameError::FrameTooLarge);
  EXPECT_EQ(code(Ids::Mono8, 1, 1, UINT64_MAX), FrameError::FrameTooLarge);
  EXPECT_EQ(layout.stride, 77u);
}

TEST(FormatTest, FamiliesHaveNames) {
  std::set<std::string_view> names;
  for (const FormatInfo& info : Formats()) names.insert(FamilyName(info.family));
  EXPECT_EQ(names, (std::set<std::string_view>{"BiColor", "Bayer", "Mono", "RGB", "SCF1", "YCbCr"}));
  EXPECT_EQ(FamilyName(static_cast<FormatFamily>(99)), "");
}

}  // namespace
