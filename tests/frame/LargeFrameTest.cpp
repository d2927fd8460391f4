#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <ostream>
#include <string>
#include <vector>

#include "support/GuardedBuffer.h"
#include "support/Pattern.h"

// Frames whose steps or intermediate images do not fit one raw call.

namespace {

using namespace ZrConvertersLib;
namespace Ids = PixelTypeIds;

constexpr std::size_t kLongestStride = std::size_t{1} << 29;

/// Address space of which every 64 MiB are the same memory: for results that nobody could hold.
class FoldedMemory {
 public:
  explicit FoldedMemory(std::size_t size) : mSpace(size), mFile(memfd_create("folded", 0)) {
    if (mFile < 0 || ftruncate(mFile, kPart) != 0) throw std::bad_alloc();
    for (std::size_t at = 0; at < size; at += kPart) {
      if (mmap(All().data() + at, std::min(kPart, size - at), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED,
               mFile, 0) == MAP_FAILED)
        throw std::bad_alloc();
    }
  }
  ~FoldedMemory() { close(mFile); }
  FoldedMemory(const FoldedMemory&) = delete;
  FoldedMemory& operator=(const FoldedMemory&) = delete;

  std::span<std::uint8_t> All() { return mSpace.All(); }

 private:
  static constexpr std::size_t kPart = std::size_t{1} << 26;

  TestSupport::GuardedBuffer mSpace;
  int mFile;
};

struct Wide {
  const char* name;
  long source;
  long destination;
  Demosaic demosaic = Demosaic::Fast;
  bool flip = false;
};

void PrintTo(const Wide& wide, std::ostream* out) {
  *out << wide.name;
}

class LongestStrideTest : public testing::TestWithParam<Wide> {};

TEST_P(LongestStrideTest, GivesThePictureOfATightFrame) {
  constexpr std::uint32_t kWidth = 9;
  constexpr std::uint32_t kHeight = 9;
  FrameOptions options;
  options.demosaic = GetParam().demosaic;
  options.flipVertical = GetParam().flip;
  FrameConverter converter;
  ASSERT_TRUE(
      converter.Configure(GetParam().source, GetParam().destination, kWidth, kHeight, options).IsSuccess());
  const FrameLayout in = converter.SourceLayout();
  const FrameLayout out = converter.DestinationLayout();
  std::vector<std::uint8_t> frame(in.frameBytes);
  std::vector<std::uint8_t> picture(out.frameBytes);
  TestSupport::Fill(frame, TestSupport::Content::Noise, 1);
  ASSERT_TRUE(
      converter.Convert(SourceView::Of(frame, kWidth, kHeight), DestinationView::Of(picture, kWidth, kHeight))
          .IsSuccess());

  TestSupport::GuardedBuffer frameMemory(kLongestStride * kHeight);
  TestSupport::GuardedBuffer pictureMemory(kLongestStride * kHeight * out.planes);
  const auto wideFrame = frameMemory.All(), widePicture = pictureMemory.All();
  for (std::size_t y = 0; y < kHeight; ++y) {
    std::memcpy(wideFrame.data() + y * kLongestStride, frame.data() + y * in.stride, in.stride);
  }
  ASSERT_TRUE(converter
                  .Convert({wideFrame.data(), wideFrame.size(), kLongestStride, kWidth, kHeight},
                           {widePicture.data(), widePicture.size(), kLongestStride, kWidth, kHeight})
                  .IsSuccess());
  for (std::size_t line = 0; line < std::size_t{kHeight} * out.planes; ++line) {
    ASSERT_EQ(std::memcmp(widePicture.data() + line * kLongestStride, picture.data() + line * out.stride,
                          out.stride),
              0)
        << "line " << line;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, LongestStrideTest,
    testing::Values(Wide{"Mono", Ids::Mono12p, Ids::RGB8},
                    Wide{"MonoFlipped", Ids::Mono8, Ids::BGRa8, Demosaic::Fast, true},
                    Wide{"Planes", Ids::Mono16, Ids::RGB16_Planar}, Wide{"Bayer", Ids::Bayer8, Ids::RGB8},
                    Wide{"BayerFlipped", Ids::Bayer8, Ids::RGB8, Demosaic::Fast, true},
                    Wide{"BayerInterpolated", Ids::Bayer16, Ids::RGB8, Demosaic::Interpolate},
                    Wide{"Chain", Ids::Bayer12p, Ids::RGB16},
                    Wide{"ChainFlipped", Ids::Bayer12p, Ids::RGB16, Demosaic::Fast, true},
                    Wide{"ChainInterpolated", Ids::Bayer12p, Ids::BGR8, Demosaic::Interpolate},
                    Wide{"BayerPlanes", Ids::Bayer10p, Ids::RGB8_Planar, Demosaic::Interpolate}),
    [](const auto& test) { return std::string(test.param.name); });

/// So many pixels that a chain's intermediate image is made in several calls.
TEST(LargeFrameTest, ALongChainEqualsItsBands) {
  constexpr std::uint32_t kWidth = 16384;
  constexpr std::uint32_t kHeight = 2501;
  FrameOptions options;
  options.demosaic = Demosaic::Interpolate;
  FrameConverter converter;
  ASSERT_TRUE(converter.Configure(Ids::Bayer12p, Ids::Mono8, kWidth, kHeight, options).IsSuccess());
  std::vector<std::uint8_t> frame(converter.SourceLayout().frameBytes);
  TestSupport::Fill(frame, TestSupport::Content::Noise, 2);
  std::vector<std::uint8_t> whole(converter.DestinationLayout().frameBytes);
  std::vector<std::uint8_t> bands(whole.size());
  const SourceView source = SourceView::Of(frame, kWidth, kHeight);
  const DestinationView picture = DestinationView::Of(bands, kWidth, kHeight);
  ASSERT_TRUE(converter.Convert(source, DestinationView::Of(whole, kWidth, kHeight)).IsSuccess());
  for (std::uint32_t first = 0; first < kHeight; first += 501) {
    ASSERT_TRUE(converter.ConvertLines(first, std::min(501u, kHeight - first), source, picture).IsSuccess());
  }
  EXPECT_TRUE(whole == bands);
}

/// The neighbourhood of one line has four lines, and planes of four such lines lie 2 GiB apart.
TEST(LargeFrameTest, AMosaicOfTheLongestLines) {
  constexpr std::uint32_t kWidth = kLongestStride;
  FrameOptions options;
  options.demosaic = Demosaic::Interpolate;
  FrameConverter converter;
  ASSERT_TRUE(converter.Configure(Ids::Bayer8, Ids::RGB8_Planar, kWidth, 4, options).IsSuccess());
  TestSupport::GuardedBuffer frameMemory(converter.SourceLayout().frameBytes);
  FoldedMemory pictureMemory(converter.DestinationLayout().frameBytes);
  const auto frame = frameMemory.All(), picture = pictureMemory.All();
  std::memset(picture.data(), 0x55, 4096);
  ASSERT_TRUE(converter
                  .ConvertLines(1, 1, {frame.data(), frame.size(), 0, kWidth, 4},
                                {picture.data(), picture.size(), 0, kWidth, 4})
                  .IsSuccess());
  EXPECT_TRUE(std::ranges::all_of(picture.first(4096), [](std::uint8_t byte) { return byte == 0; }));
}

/// Lines that pass through the converter's buffers piece by piece.
TEST(LargeFrameTest, LongMirroredLines) {
  constexpr std::uint32_t kWidth = 140'001;
  constexpr std::uint32_t kHeight = 5;
  for (const long source : {Ids::Bayer8, Ids::Bayer12p, Ids::Mono12p, Ids::YCbCr10p_CbYCr}) {
    FrameOptions options;
    options.demosaic = Demosaic::Interpolate;
    FrameConverter plain;
    ASSERT_TRUE(plain.Configure(source, Ids::Mono8, kWidth, kHeight, options).IsSuccess());
    options.flipHorizontal = true;
    FrameConverter mirroring;
    ASSERT_TRUE(mirroring.Configure(source, Ids::Mono8, kWidth, kHeight, options).IsSuccess());
    std::vector<std::uint8_t> frame(plain.SourceLayout().frameBytes);
    TestSupport::Fill(frame, TestSupport::Content::Noise, 3);
    std::vector<std::uint8_t> expected(plain.DestinationLayout().frameBytes);
    std::vector<std::uint8_t> mirrored(expected.size());
    const SourceView view = SourceView::Of(frame, kWidth, kHeight);
    ASSERT_TRUE(plain.Convert(view, DestinationView::Of(expected, kWidth, kHeight)).IsSuccess());
    ASSERT_TRUE(mirroring.Convert(view, DestinationView::Of(mirrored, kWidth, kHeight)).IsSuccess());
    for (std::size_t y = 0; y < kHeight; ++y) {
      const auto line = expected.begin() + static_cast<std::ptrdiff_t>(y * kWidth);
      std::reverse(line, line + kWidth);
    }
    EXPECT_TRUE(mirrored == expected) << source;
  }
}

}  // namespace
