// Many frames: in one file, in many files, through pipes.
#include <gtest/gtest.h>

#include "ImageFiles.h"
#include "ToolRunner.h"

namespace {

using Names = std::vector<std::string>;

const std::string cFrame = " -f Mono12p -s 64x48 ";

class SequenceTest : public ToolTest {
 protected:
  SequenceTest() { RunWell("chart three.raw --frames 3" + cFrame); }

  std::vector<std::uint8_t> Frame(const std::string& number) const {
    RunWell("convert three.raw one.raw --frames 1 --skip " + number + cFrame);
    const std::vector<std::uint8_t> bytes = Read("one.raw");
    std::filesystem::remove(At("one.raw"));
    return bytes;
  }
};

TEST_F(SequenceTest, NumberedNamesTakeEveryFrame) {
  const ToolRun run = Run("convert three.raw f_%03d.pgm" + cFrame);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.errors.find("3 frames in"), std::string::npos) << run.errors;
  EXPECT_NE(run.errors.find("frames/s"), std::string::npos) << run.errors;
  EXPECT_EQ(run.errors.find('\r'), std::string::npos) << "a bar, though this is no terminal";
  EXPECT_EQ(FilesLeft(), (Names{"f_000.pgm", "f_001.pgm", "f_002.pgm", "three.raw"}));
  EXPECT_NE(Read("f_000.pgm"), Read("f_001.pgm"));
}

TEST_F(SequenceTest, TerminalShowsABar) {
  const std::string onTerminal = "sh -c 'script -qec \"$*\" /dev/null' sh";
  if (Run("--version", {}, onTerminal).exitCode != 0) GTEST_SKIP() << "no terminal can be made here";
  const ToolRun run = Run("convert three.raw f_%d.pgm" + cFrame, {}, onTerminal);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.output.find("\r\033[K[##########"), std::string::npos) << run.output;
  EXPECT_NE(run.output.find("] 3/3 frames, "), std::string::npos) << run.output;
}

TEST_F(SequenceTest, QuietSaysNothing) {
  EXPECT_EQ(Run("convert three.raw f_%d.pgm -q" + cFrame).errors, "");
}

TEST_F(SequenceTest, SkipAndFramesChooseAndKeepTheNumbers) {
  RunWell("convert three.raw f_%d.raw --skip 1 --frames 1" + cFrame);
  EXPECT_EQ(FilesLeft(), (Names{"f_1.raw", "three.raw"}));
  EXPECT_EQ(Read("f_1.raw"), Frame("1"));
}

TEST_F(SequenceTest, RawFileTakesAllFrames) {
  RunWell("convert three.raw all.raw" + cFrame);
  std::vector<std::uint8_t> frames;
  for (const char* number : {"0", "1", "2"}) {
    const auto frame = Frame(number);
    frames.insert(frames.end(), frame.begin(), frame.end());
  }
  EXPECT_EQ(Read("all.raw"), frames);
}

TEST_F(SequenceTest, SinglePictureTakesTheFirstFrameAndSaysSo) {
  const ToolRun run = Run("convert three.raw one.pgm" + cFrame);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.errors.find("of 3 frames only the first"), std::string::npos) << run.errors;
  EXPECT_EQ(ReadPnm(Read("one.pgm")).height, 48U);
}

TEST_F(SequenceTest, CutMosaicTellsItsNewPattern) {
  RunWell("chart mosaic.raw -f BayerRG12p -s 64x48");
  const std::string words = "convert mosaic.raw cut.raw -f BayerRG12p -s 64x48 -t Bayer16 --region ";
  EXPECT_NE(Run(words + "1,0,9,9").errors.find("the pattern of the mosaic is now GRBG"), std::string::npos);
  EXPECT_EQ(Run(words + "2,4,9,9").errors, "");
}

TEST_F(SequenceTest, ManyInputsAreOneSequence) {
  RunWell("chart other.raw --frames 2" + cFrame);
  RunWell("convert three.raw other.raw f_%d.raw" + cFrame);
  EXPECT_EQ(FilesLeft(),
            (Names{"f_0.raw", "f_1.raw", "f_2.raw", "f_3.raw", "f_4.raw", "other.raw", "three.raw"}));
  EXPECT_EQ(Read("f_3.raw"), Read("f_0.raw"));
}

TEST_F(SequenceTest, ShortInputAmongManyIsRefused) {
  Write("short.raw", {1, 2, 3});
  const ToolRun run = Run("convert three.raw short.raw all.raw" + cFrame);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.errors.find("'short.raw' holds 3 bytes"), std::string::npos) << run.errors;
  EXPECT_EQ(FilesLeft(), (Names{"short.raw", "three.raw"}));
}

TEST_F(SequenceTest, LeftOverBytesAreTold) {
  std::vector<std::uint8_t> bytes = Read("three.raw");
  bytes.insert(bytes.end(), 7, 0);
  Write("more.raw", bytes);
  const ToolRun run = Run("convert more.raw f_%d.raw" + cFrame);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.errors.find("7 bytes"), std::string::npos) << run.errors;
}

TEST_F(SequenceTest, PipesCarryWholeSequences) {
  const std::string frames = RunWell("chart - --frames 3" + cFrame);
  EXPECT_EQ(std::vector<std::uint8_t>(frames.begin(), frames.end()), Read("three.raw"));
  RunWell("convert three.raw all.raw" + cFrame);
  const std::string converted = RunWell("convert - - -c raw" + cFrame, frames);
  EXPECT_EQ(std::vector<std::uint8_t>(converted.begin(), converted.end()), Read("all.raw"));
}

TEST_F(SequenceTest, PicturesGoToStandardOutput) {
  const std::string frame = RunWell("chart -" + cFrame);
  for (const std::string container : {"bmp", "png", "pgm"}) {
    RunWell("convert three.raw file." + container + cFrame);
    const std::string bytes = RunWell("convert - - -c " + container + cFrame, frame);
    EXPECT_EQ(std::vector<std::uint8_t>(bytes.begin(), bytes.end()), Read("file." + container)) << container;
  }
}

TEST_F(SequenceTest, ShortPipeIsRefused) {
  const ToolRun run = Run("convert - out.pgm" + cFrame, "abc");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.errors.find("standard input holds 3 bytes"), std::string::npos) << run.errors;
  EXPECT_EQ(FilesLeft(), Names{"three.raw"});
}

TEST_F(SequenceTest, LastFrameMayLackThePaddingAfterItsLastLine) {
  RunWell("chart padded.raw --frames 2 --padding 9" + cFrame);
  std::vector<std::uint8_t> bytes = Read("padded.raw");
  bytes.resize(bytes.size() - 9);
  Write("cut.raw", bytes);
  RunWell("convert padded.raw whole.raw --src-padding 9" + cFrame);
  RunWell("convert cut.raw last.raw --src-padding 9" + cFrame);
  EXPECT_EQ(Read("last.raw"), Read("whole.raw"));
}

}  // namespace
