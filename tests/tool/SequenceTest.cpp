// Many frames: in one file, in many files, through pipes.
#include <gtest/gtest.h>

#include <sstream>

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
  EXPECT_NE(run.output.find(", 0:00 left"), std::string::npos) << run.output;
}

TEST_F(SequenceTest, BarFitsIntoNarrowTerminals) {
  const std::string onTerminal = "sh -c 'script -qec \"stty cols 24; $*\" /dev/null' sh";
  if (Run("--version", {}, onTerminal).exitCode != 0) GTEST_SKIP() << "no terminal can be made here";
  std::istringstream draws(Run("convert three.raw f_%d.pgm" + cFrame, {}, onTerminal).output);
  for (std::string line; std::getline(draws, line, '\r');) {
    const bool isDraw = line.starts_with("\033[K") && line.find("conversion") == std::string::npos;
    EXPECT_TRUE(!isDraw || line.size() < 3 + 24) << line;
  }
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

TEST_F(SequenceTest, RestOfAFrameIsRefusedUnlessIgnored) {
  std::vector<std::uint8_t> bytes = Read("three.raw");
  bytes.insert(bytes.end(), 7, 0);
  Write("more.raw", bytes);
  for (const std::string words : {"convert more.raw f_%d.raw", "convert - all.raw <more.raw",
                                  "convert - all.raw <pipe", "convert more.raw one.png"}) {
    const ToolRun run = Run(words + cFrame, {}, "mkfifo pipe; cat more.raw >pipe &");
    std::filesystem::remove(At("pipe"));
    EXPECT_EQ(run.exitCode, 1) << words;
    for (const char* figure : {"13831 bytes", "3 frames", "4608 bytes", "7 bytes more", "--ignore-rest"})
      EXPECT_NE(run.errors.find(figure), std::string::npos) << words << run.errors;
    EXPECT_EQ(FilesLeft(), (Names{"more.raw", "three.raw"})) << words;
  }
  EXPECT_NE(Run("convert more.raw f_%d.raw --ignore-rest" + cFrame).errors.find("7 bytes"),
            std::string::npos);
  EXPECT_EQ(FilesLeft(), (Names{"f_0.raw", "f_1.raw", "f_2.raw", "more.raw", "three.raw"}));
}

TEST_F(SequenceTest, WrongSizeIsAnsweredWithSizesThatFit) {
  RunWell("chart frame.raw -f Mono12p -s 1280x1024");
  const ToolRun run = Run("convert frame.raw x.png -f Mono12p -s 1280x720");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.errors.find("1280x1024 (1 frame)"), std::string::npos) << run.errors;
}

// A sanitizer takes the memory that it wants.
TEST_F(SequenceTest, MemoryIsTakenAsBytesCome) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(__has_feature)
  GTEST_SKIP() << "memory cannot be limited here";
#endif
  const ToolRun run =
      Shell("head -c 100 three.raw | (ulimit -v 400000; $TOOL convert - x.raw -f Mono8 -s 40000x20000)");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.errors.find("standard input holds 100 bytes"), std::string::npos) << run.errors;
}

TEST_F(SequenceTest, StandardInputIsReadFromWhereItStandsAndNoFurther) {
  for (const std::string input : {"-", "/dev/stdin"}) {
    const std::string one = "$TOOL convert " + input + " - -c raw --frames 1" + cFrame + "; ";
    const std::string frames = Shell("(" + one + one + one + ") <three.raw").output;
    RunWell("convert three.raw all.raw" + cFrame);
    EXPECT_EQ(std::vector<std::uint8_t>(frames.begin(), frames.end()), Read("all.raw")) << input;
  }
}

TEST_F(SequenceTest, HeadersBeforeTheFramesAreSkipped) {
  std::vector<std::uint8_t> bytes = Read("three.raw");
  bytes.insert(bytes.begin(), 13, 0xAB);
  Write("header.raw", bytes);
  RunWell("convert three.raw three.raw plain.raw" + cFrame);
  RunWell("convert header.raw header.raw skipped.raw --header-bytes 13" + cFrame);
  EXPECT_EQ(Read("skipped.raw"), Read("plain.raw"));
  EXPECT_EQ(Run("convert header.raw x.raw" + cFrame).exitCode, 1);
  EXPECT_EQ(Run("convert - x.raw --header-bytes 13" + cFrame, "abc").exitCode, 1);
}

TEST_F(SequenceTest, StrideSaysWhatPaddingSays) {
  RunWell("chart padded.raw --padding 9" + cFrame);
  RunWell("chart strided.raw --stride 105" + cFrame);
  EXPECT_EQ(Read("strided.raw"), Read("padded.raw"));
  RunWell("convert padded.raw a.raw --src-padding 9" + cFrame);
  RunWell("convert padded.raw b.raw --stride 105" + cFrame);
  EXPECT_EQ(Read("a.raw"), Read("b.raw"));
}

TEST_F(SequenceTest, ThreadsWriteTheSamePictures) {
  RunWell("chart many.raw --frames 20" + cFrame);
  RunWell("convert many.raw one_%02d.png" + cFrame);
  RunWell("convert many.raw four_%02d.png -j 4" + cFrame);
  for (int i = 0; i < 20; ++i) {
    const std::string end = (i < 10 ? "_0" : "_") + std::to_string(i) + ".png";
    EXPECT_EQ(Read("one" + end), Read("four" + end)) << i;
  }
  EXPECT_EQ(Run("convert many.raw none/%d.png -j 4" + cFrame).exitCode, 1);
}

TEST_F(SequenceTest, NotesSayWhatTheToolTookUponItself) {
  RunWell("chart site.raw -f Bayer8 -s 64x48");
  RunWell("chart ycc.raw -f YCbCr422_8 -s 64x48");
  RunWell("chart grey.raw -f Mono12 -s 64x48");
  const auto errors = [this](const std::string& words) {
    return Run("convert " + words + " -s 64x48").errors;
  };
  const std::string pattern = "zrconvert: note: the pattern GRBG is assumed; --pattern says another\n";
  EXPECT_EQ(errors("site.raw a.png -f Bayer8"), pattern);
  EXPECT_EQ(errors("site.raw a.png -f Bayer8 -p GRBG"), "");
  EXPECT_EQ(errors("site.raw a.png -f BayerGR8"), "");
  EXPECT_EQ(errors("site.raw a.png -f Bayer8 -q"), "");
  EXPECT_NE(errors("ycc.raw a.png -f YCbCr422_8").find("matrix 601 is assumed"), std::string::npos);
  EXPECT_NE(errors("grey.raw a.png -f Mono12 --offset 2")
                .find("the picture is RGB8, without it it would be Mono12"),
            std::string::npos);
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
