#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Cases.h"
#include "Expectation.h"
#include "Filters.h"
#include "model/Demosaic.h"
#include "model/Scf1.h"
#include "support/CpuLevels.h"
#include "support/GuardedBuffer.h"
#include "support/Registry.h"

// A mosaic or an SCF1 frame that is converted band by band, each band told which lines around it are real,
// must equal the frame that is converted at once.

namespace {

using ZrConvertersLib::PixelConverter;

constexpr std::uint32_t kWidth = 71;

class BandTest : public testing::TestWithParam<Model::Source> {
 protected:
  /// Even heights need no flag; odd ones end with a single line.
  static Matrix::Case WholeFrame(std::uint32_t height, unsigned flags) {
    Matrix::Case frame = Matrix::PlainCase(kWidth, height);
    frame.call.flags = flags | (height % 2 ? Model::kSingleLastLine | Model::kRealBelow : 0);
    frame.call.sourcePadding = 3;
    frame.call.destinationPadding = 5;
    frame.filter = Matrix::kNoiseFilter;
    return frame;
  }

  static unsigned BandFlags(std::uint32_t first, std::uint32_t lines, std::uint32_t height) {
    if (first == 0) return Model::kRealBelow;
    return first + lines == height ? Model::kSingleLastLine : Model::kRealAround;
  }

  static bool HasTiles() { return GetParam().meaning == Model::Meaning::Scf1; }

  /// A last band of fewer lines than a pattern has could not be converted, so it joins the one before.
  static std::uint32_t BandLines(std::uint32_t first, std::uint32_t lines, std::uint32_t height) {
    return height - first < lines + (HasTiles() ? 4 : 2) ? height - first : lines;
  }

  static std::vector<unsigned> Flags() {
    using namespace Model;
    if (HasTiles()) return {kWgwr, kWgwb | kInterpolate, kWrwg | kInterpolate};
    return {kGrbg, kBggr | kInterpolate, kRggb | kInterpolate};
  }

  static std::vector<std::uint32_t> LinesOfBands() {
    return HasTiles() ? std::vector{4u, 12u, 16u} : std::vector{2u, 10u, 16u};
  }

  void ConvertBands(const PixelConverter& converter, const Model::Pair& pair, const Matrix::Case& frame,
                    std::uint32_t bandLines, const std::uint8_t* source, std::uint8_t* destination) {
    const Model::Call& call = frame.call;
    const unsigned flags = call.flags & ~0x07000000u;
    for (std::uint32_t first = 0; first < call.height;) {
      const std::uint32_t lines = BandLines(first, bandLines, call.height);
      converter.Convert(source + first * Model::SourceStride(pair, call), kWidth, lines,
                        destination + first * Model::DestinationStride(pair, call), kWidth, call.height,
                        kWidth, lines, flags | BandFlags(first, lines, call.height), call.destinationPadding,
                        nullptr, nullptr, call.sourcePadding, false,
                        Matrix::GetFilter(frame.filter).object.get());
      first += lines;
    }
  }

  void CheckBands(const Model::Pair& pair, const Matrix::Case& frame, std::uint32_t bandLines) {
    const Matrix::Expectation whole = Matrix::Expect(pair, frame);
    const auto* converter =
        ZrConvertersLib::PixelTypeFactory::GetConverter(pair.front().source.id, pair.back().destination.id);
    const auto source = mSource.Place(whole.source, {TestSupport::Placement::At::End});
    const auto destination = mDestination.Place(whole.before, {TestSupport::Placement::At::End});
    ConvertBands(*converter, pair, frame, bandLines, source.data(), destination.data());
    EXPECT_FALSE(mDestination.FirstDamage());
    EXPECT_TRUE(std::ranges::equal(destination, whole.after))
        << pair.back().destination.name << " in bands of " << bandLines << ": " << Describe(frame);
  }

  TestSupport::GuardedBuffer mSource{1 << 20}, mDestination{1 << 20};
};

TEST_P(BandTest, BandsEqualTheWhole) {
  for (const char* level : TestSupport::CpuLevels()) {
    SCOPED_TRACE(level);
    const TestSupport::ForcedCpuLevel forced(level);
    for (const long destination : {258L, 519L, 261L, 290L})
      for (const unsigned flags : Flags())
        for (const std::uint32_t height : {36u, 37u, 39u})
          for (const std::uint32_t bandLines : LinesOfBands())
            CheckBands(*Model::FindPair(GetParam().id, destination), WholeFrame(height, flags), bandLines);
  }
}

/// Bayer and SCF1.
std::vector<Model::Source> MosaicSources() {
  std::vector<Model::Source> sources = Model::AllSources();
  std::erase_if(sources, [](const Model::Source& source) {
    return (source.id >> 8 != 4 && source.id >> 8 != 5) || TestSupport::DestinationsOf(source.id).empty();
  });
  return sources;
}

INSTANTIATE_TEST_SUITE_P(Mosaics, BandTest, testing::ValuesIn(MosaicSources()),
                         [](const auto& source) { return std::string(source.param.name); });

}  // namespace
