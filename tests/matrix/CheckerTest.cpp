#include "Checker.h"

#include <gtest/gtest.h>

#include <algorithm>

// A converter that is wrong in one way at a time: the checker must see each of them, and nothing when there
// is none.

namespace {

using ZrConvertersLib::PixelConverter;
using ZrConvertersLib::PixelConverterContext;
using ZrUtilsLib::Result;

enum class Fault {
  None,
  WrongPixel,
  WritesBefore,
  WritesAfter,
  WritesPadding,
  SkipsLastPixel,
  ReadsBefore,
  ReadsAfter,
  WritesSource
};

/// Copies Mono8.
class FaultyCopy : public PixelConverter {
 public:
  explicit FaultyCopy(Fault fault) : PixelConverter(512, 512, 1, 1, 1, 1, false), mFault(fault) {}

  Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    const bool last = context.mLine + 1 == context.mDestinationHeight;
    unsigned char* to = context.mDestination;
    std::copy_n(context.mSource, mFault == Fault::SkipsLastPixel && last ? width - 1 : width, to);
    if (mFault == Fault::WrongPixel && last) to[width / 2] ^= 1;
    if (mFault == Fault::WritesBefore && context.mLine == 0) to[-1] ^= 0x55;
    if (mFault == Fault::WritesAfter && last) to[width] ^= 0x55;
    if (mFault == Fault::WritesPadding && !last) to[width] ^= 0x55;
    if (mFault == Fault::ReadsBefore && context.mLine == 0) mRead = context.mSource[-1];
    if (mFault == Fault::ReadsAfter && last) mRead = context.mSource[width];
    if (mFault == Fault::WritesSource) const_cast<unsigned char*>(context.mSource)[0] ^= 0x55;
    return {};
  }

 private:
  Fault mFault;
  mutable volatile unsigned char mRead = 0;
};

class CheckerTest : public testing::Test {
 protected:
  CheckerTest() {
    mCase = Matrix::PlainCase(21, 3);
    mCase.call.destinationPadding = mCase.call.sourcePadding = 3;
    PlaceAt(TestSupport::Placement::At::Middle);
  }

  void PlaceAt(TestSupport::Placement::At at) { mCase.source.at = mCase.destination.at = at; }

  std::string FindFault(Fault fault) {
    const auto pair = Model::FindPair(512, 512);
    return mChecker.Check(FaultyCopy(fault), mCase, Matrix::Expect(*pair, mCase));
  }

  Matrix::Case mCase;
  Matrix::Checker mChecker;
};

TEST_F(CheckerTest, FindsNothingWhereNothingIsWrong) {
  EXPECT_EQ(FindFault(Fault::None), "");
}

TEST_F(CheckerTest, TellsTheFirstWrongByte) {
  EXPECT_NE(FindFault(Fault::WrongPixel).find("byte 58 (line 2, byte 10 of it)"), std::string::npos);
  EXPECT_NE(FindFault(Fault::SkipsLastPixel).find("byte 68 (line 2, byte 20 of it)"), std::string::npos);
  EXPECT_NE(FindFault(Fault::WritesPadding).find("byte 21 (line 0, byte 21 of it)"), std::string::npos);
}

TEST_F(CheckerTest, TellsWritesAroundTheImage) {
  EXPECT_NE(FindFault(Fault::WritesBefore).find("wrote outside the owed bytes, at -1"), std::string::npos);
  EXPECT_NE(FindFault(Fault::WritesAfter).find("wrote outside the owed bytes, at 69"), std::string::npos);
  EXPECT_NE(FindFault(Fault::WritesSource).find("wrote to the source"), std::string::npos);
}

TEST_F(CheckerTest, CrashesBeyondTheUnmappedPages) {
  PlaceAt(TestSupport::Placement::At::End);
  EXPECT_DEATH(FindFault(Fault::ReadsAfter), "crashed in 512 to 512: 21x3");
  EXPECT_DEATH(FindFault(Fault::WritesAfter), "crashed in 512 to 512: 21x3");
  EXPECT_EQ(FindFault(Fault::ReadsBefore), "");
  EXPECT_NE(FindFault(Fault::WritesBefore).find("at -1"), std::string::npos);
  PlaceAt(TestSupport::Placement::At::Begin);
  EXPECT_DEATH(FindFault(Fault::ReadsBefore), "crashed in 512 to 512: 21x3");
  EXPECT_DEATH(FindFault(Fault::WritesBefore), "crashed in 512 to 512: 21x3");
  EXPECT_EQ(FindFault(Fault::ReadsAfter), "");
  EXPECT_NE(FindFault(Fault::WritesAfter).find("at 69"), std::string::npos);
}

}  // namespace
