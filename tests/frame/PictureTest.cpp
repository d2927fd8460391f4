#include <ZrConvertersLib/FrameConverter.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "FrameCase.h"
#include "model/Formats.h"
#include "support/CpuLevels.h"
#include "support/GuardedBuffer.h"
#include "support/Random.h"
#include "support/Registry.h"
#include "support/Thinning.h"

// Every registered pair through the checked interface: whatever the size, region, flips, strides and split
// into bands, the picture holds the pixels of the model's whole frame, and no byte beside them is read or
// written.

namespace {

using namespace ZrConvertersLib;
using FrameTest::Case;

constexpr std::size_t kCapacity = 1 << 20;

unsigned CasesPerPair() {
  return 24 / std::min(TestSupport::Thinning(), 3u);
}

class PictureTest : public testing::TestWithParam<Model::Source> {
 protected:
  void CheckCase(const Case& frame) {
    const auto levels = TestSupport::CpuLevels();
    const TestSupport::ForcedCpuLevel forced(levels[frame.seed % levels.size()]);
    FrameConverter converter;
    const auto configured =
        converter.Configure(frame.source, frame.destination, frame.width, frame.height, frame.options);
    ASSERT_TRUE(configured.IsSuccess()) << ResultText(configured) << ": " << Describe(frame);
    const auto from = mSource.Place(FrameTest::SourceOf(frame), frame.sourcePlace);
    const std::vector<std::uint8_t> expected = FrameTest::ExpectedOf(frame);

    CheckPicture(
        frame, expected, "whole",
        [&](const SourceView& source, const DestinationView& to) { return converter.Convert(source, to); },
        from);
    CheckPicture(
        frame, expected, "in bands",
        [&](const SourceView& source, const DestinationView& to) {
          return ConvertInBands(converter, frame.seed, source, to);
        },
        from);
  }

 private:
  template <typename Conversion>
  void CheckPicture(const Case& frame, const std::vector<std::uint8_t>& expected, const char* way,
                    Conversion convert, std::span<const std::uint8_t> from) {
    const auto to = mDestination.Place(FrameTest::BlankOf(frame), frame.destinationPlace);
    const auto result = convert(FrameTest::ViewOf(frame, from), FrameTest::ViewOf(frame, to));
    ASSERT_TRUE(result.IsSuccess()) << ResultText(result) << ": " << Describe(frame);
    const auto differs = std::mismatch(to.begin(), to.end(), expected.begin());
    ASSERT_EQ(differs.first - to.begin(), static_cast<std::ptrdiff_t>(expected.size()))
        << "first wrong byte, " << way << ": " << Describe(frame);
    ASSERT_FALSE(mDestination.FirstDamage()) << "beside the picture, " << way << ": " << Describe(frame);
  }

  /// Cuts the picture by chance and converts the last band first.
  static ZrUtilsLib::Result ConvertInBands(FrameConverter& converter, std::uint64_t seed,
                                           const SourceView& source, const DestinationView& to) {
    TestSupport::Random random(seed);
    std::uint32_t end = converter.Height();
    while (end > 0) {
      const std::uint32_t count = std::min(end, 1 + random.Below(1 + converter.Height() / 2));
      const auto result = converter.ConvertLines(end - count, count, source, to);
      if (!result.IsSuccess()) return result;
      end -= count;
    }
    return {};
  }

  TestSupport::GuardedBuffer mSource{kCapacity};
  TestSupport::GuardedBuffer mDestination{kCapacity};
};

TEST_P(PictureTest, EveryPictureHoldsThePixelsOfTheWholeFrame) {
  for (const long destination : TestSupport::DestinationsOf(GetParam().id)) {
    for (unsigned number = 0; number < CasesPerPair() && !HasFatalFailure(); ++number) {
      CheckCase(FrameTest::CaseOf(GetParam().id, destination, number));
    }
    if (HasFatalFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(AllSources, PictureTest, testing::ValuesIn(Model::AllSources()),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
