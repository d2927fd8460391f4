// Outputs appear whole or not at all.
#include <gtest/gtest.h>

#include <filesystem>

#include "ToolRunner.h"

namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

class OutputTest : public ToolTest {
 protected:
  OutputTest() { RunWell("chart in.raw -f Mono8 -s 64x48"); }
};

const std::string cConvert = "convert in.raw -f Mono8 -s 64x48 ";

TEST_F(OutputTest, FullDiskIsToldForEveryContainer) {
  for (const char* container : {"bmp", "png", "pgm", "raw"}) {
    const ToolRun run = Run(cConvert + "/dev/full -c " + container);
    EXPECT_EQ(run.exitCode, 1) << container;
    EXPECT_NE(run.errors.find("No space left on device"), std::string::npos) << run.errors;
  }
  EXPECT_EQ(Run("chart /dev/full -f Mono8 -s 64x48").exitCode, 1);
  EXPECT_EQ(FilesLeft(), Names{"in.raw"});
}

// Files may have 1024 bytes and not one more. Counts of executed lines would be cut too, so they go
// elsewhere.
const std::string cLimit = "ulimit -f 2 && GCOV_PREFIX=../streams";

TEST_F(OutputTest, TruncatedWriteLeavesNoFile) {
  for (const char* container : {"bmp", "png", "pgm", "raw"}) {
    const ToolRun run = Run(cConvert + "out." + container, {}, cLimit);
    EXPECT_EQ(run.exitCode, 1) << container;
    EXPECT_NE(run.errors.find("cannot write"), std::string::npos) << run.errors;
    EXPECT_EQ(FilesLeft(), Names{"in.raw"}) << container;
  }
}

TEST_F(OutputTest, FailureLeavesTheEarlierFile) {
  Write("out.pgm", {1, 2, 3});
  EXPECT_EQ(Run(cConvert + "out.pgm", {}, cLimit).exitCode, 1);
  EXPECT_EQ(Read("out.pgm"), (std::vector<std::uint8_t>{1, 2, 3}));
  EXPECT_EQ(FilesLeft(), (Names{"in.raw", "out.pgm"}));
}

TEST_F(OutputTest, LinkStaysAndItsFileIsReplaced) {
  Write("real.pgm", {1, 2, 3});
  fs::create_symlink("real.pgm", At("link.pgm"));
  RunWell(cConvert + "link.pgm");
  EXPECT_TRUE(fs::is_symlink(At("link.pgm")));
  EXPECT_GT(Read("real.pgm").size(), 64U * 48U);
  EXPECT_EQ(FilesLeft(), (Names{"in.raw", "link.pgm", "real.pgm"}));
}

TEST_F(OutputTest, RightsAreThoseOfANewFileOrStay) {
  EXPECT_EQ(Run(cConvert + "new.pgm", {}, "umask 027 &&").exitCode, 0);
  EXPECT_EQ(fs::status(At("new.pgm")).permissions(), fs::perms{0640});
  fs::permissions(At("new.pgm"), fs::perms{0604});
  RunWell(cConvert + "new.pgm");
  EXPECT_EQ(fs::status(At("new.pgm")).permissions(), fs::perms{0604});
}

TEST_F(OutputTest, InputMayBeOutput) {
  const std::vector<std::uint8_t> before = Read("in.raw");
  EXPECT_EQ(Run(cConvert + "in.raw -t Mono16").errors, "");
  EXPECT_EQ(Read("in.raw").size(), 2 * before.size());
}

TEST_F(OutputTest, InterruptionLeavesNoFile) {
  const ToolRun run = Run("chart out.raw -f Mono8 -s 64x48 --frames 1000000", {}, "timeout -s INT 0.2");
  EXPECT_EQ(run.exitCode, 124) << "the code of timeout when it had to end the program";
  EXPECT_NE(run.errors.find("interrupted"), std::string::npos) << run.errors;
  EXPECT_EQ(FilesLeft(), Names{"in.raw"});
}

}  // namespace
