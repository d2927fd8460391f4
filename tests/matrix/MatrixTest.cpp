#include <ZrConvertersLib/PixelTypeFactory.h>
#include <gtest/gtest.h>

#include <string>

#include "Cases.h"
#include "Checker.h"
#include "Expectation.h"
#include "model/Formats.h"
#include "support/CpuLevels.h"
#include "support/Registry.h"

// Every registered converter gives the bytes of the scalar model, at every CPU level of the machine, and
// touches nothing else. One test per source format, since a converter is tested because it is registered.

namespace {

class MatrixTest : public testing::TestWithParam<Model::Source> {
 protected:
  /// Faults of one pair tell little after the first few.
  static constexpr int kFaultsPerPair = 3;

  void CheckCase(const ZrConvertersLib::PixelConverter& converter, const Model::Pair& pair,
                 const Matrix::Case& conversion) {
    const Matrix::Expectation expected = Matrix::Expect(pair, conversion);
    const TestSupport::ForcedStreaming streaming(conversion.streaming);
    for (const char* level : TestSupport::CpuLevels()) {
      const TestSupport::ForcedCpuLevel forced(level);
      const std::string fault = mChecker.Check(converter, conversion, expected);
      if (!fault.empty()) {
        ADD_FAILURE() << "level " << level << ": " << fault;
        ++mFaults;
      }
    }
  }

  void CheckPair(long source, long destination) {
    const auto pair = Model::FindPair(source, destination);
    ASSERT_TRUE(pair) << source << " to " << destination << " is registered and unknown to the model";
    const auto* converter = ZrConvertersLib::PixelTypeFactory::GetConverter(source, destination);
    mFaults = 0;
    for (const Matrix::Case& conversion : Matrix::CasesOf(*pair)) {
      CheckCase(*converter, *pair, conversion);
      if (mFaults >= kFaultsPerPair) break;
    }
  }

  Matrix::Checker mChecker;
  int mFaults = 0;
};

TEST_P(MatrixTest, EveryDestinationEqualsTheModelAtEveryLevel) {
  for (const long destination : TestSupport::DestinationsOf(GetParam().id))
    CheckPair(GetParam().id, destination);
}

INSTANTIATE_TEST_SUITE_P(AllSources, MatrixTest, testing::ValuesIn(Model::AllSources()),
                         [](const auto& source) { return std::string(source.param.name); });

}  // namespace
