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

// Hard links, symbolic links, other paths and standard streams are the same file. Pictures of a sequence are
// looked at before the first of them is written.
TEST_F(OutputTest, OutputThatIsAnInputIsRefused) {
  const std::vector<std::uint8_t> before = Read("in.raw");
  fs::create_hard_link(At("in.raw"), At("hard.raw"));
  fs::create_symlink("in.raw", At("soft.raw"));
  fs::copy_file(At("in.raw"), At("f_0.raw"));
  fs::create_hard_link(At("in.raw"), At("f_1.raw"));
  const Names files = FilesLeft();
  for (const std::string words :
       {"convert in.raw in.raw", "convert in.raw ./../work/in.raw", "convert in.raw hard.raw",
        "convert in.raw soft.raw", "convert in.raw in.raw in.raw f_%d.raw", "convert - in.raw <in.raw",
        "convert in.raw - -c raw --frames 1 >> in.raw"}) {
    const ToolRun run = Run(words + " -f Mono8 -s 64x48 -t Mono16");
    EXPECT_EQ(run.exitCode, 2) << words;
    EXPECT_NE(run.errors.find("the same file as the input"), std::string::npos) << words << run.errors;
    EXPECT_EQ(Read("in.raw"), before) << words;
    EXPECT_EQ(Read("f_0.raw"), before) << words;
    EXPECT_EQ(FilesLeft(), files);
  }
}

TEST_F(OutputTest, NoClobberKeepsWhatThereIs) {
  Write("f_1.pgm", {1, 2, 3});
  for (const std::string words :
       {"convert in.raw in.raw f_%d.pgm -f Mono8 -s 64x48", "chart f_1.pgm -f Mono8 -s 64x48"}) {
    const ToolRun run = Run(words + " --no-clobber");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.errors.find("'f_1.pgm' exists"), std::string::npos) << run.errors;
  }
  EXPECT_EQ(Read("f_1.pgm"), (std::vector<std::uint8_t>{1, 2, 3}));
  EXPECT_EQ(FilesLeft(), (Names{"f_1.pgm", "in.raw"}));
  RunWell(cConvert + "new.pgm --no-clobber");
}

TEST_F(OutputTest, MissingFileBehindALinkIsMade) {
  fs::create_symlink("real.pgm", At("link.pgm"));
  RunWell(cConvert + "link.pgm");
  EXPECT_TRUE(fs::is_symlink(At("link.pgm")));
  EXPECT_GT(Read("real.pgm").size(), 64U * 48U);
}

TEST_F(OutputTest, StandardOutputIsAppendedTo) {
  for (const std::string output : {"-", "/dev/stdout", "/dev/fd/1"}) {
    Write("all.raw", {1, 2, 3});
    Shell("$TOOL " + cConvert + output + " -c raw >> all.raw");
    EXPECT_EQ(Read("all.raw").size(), 3U + 64 * 48) << output;
    EXPECT_EQ(Read("all.raw").front(), 1) << output;
  }
}

TEST_F(OutputTest, StandardStreamsNeedNoTemporaryDirectory) {
  EXPECT_EQ(Run(cConvert + "- -c pgm", {}, "TMPDIR=/none").exitCode, 0);
}

TEST_F(OutputTest, NamesMayBeAsLongAsTheSystemAllows) {
  const std::string name = std::string(251, 'n') + ".pgm";
  RunWell(cConvert + name);
  EXPECT_EQ(FilesLeft(), (Names{"in.raw", name}));
}

TEST_F(OutputTest, SignalsEndTheToolAndLeaveNoFile) {
  for (const auto& [signal, code] : {std::pair{"HUP", 129}, {"INT", 130}, {"TERM", 143}}) {
    const std::string end = std::string("timeout --preserve-status -s ") + signal + " 0.3";
    EXPECT_EQ(Run("chart out.raw -f Mono8 -s 64x48 --frames 1000000", {}, end).exitCode, code) << signal;
    EXPECT_EQ(FilesLeft(), Names{"in.raw"});
  }
}

// The reader of the pipe takes nothing.
TEST_F(OutputTest, SignalEndsTheToolInAWrite) {
  EXPECT_EQ(Run("chart pipe -f Mono8 -s 1000x1000", {},
                "mkfifo pipe; sleep 2 < pipe & timeout --preserve-status -k 1 -s TERM 0.3")
                .exitCode,
            143);
}

TEST_F(OutputTest, ClosedPipeEndsTheToolQuietly) {
  EXPECT_EQ(Shell("(sleep 0.2; $TOOL formats; echo $? >&2) | true").errors, "141\n");
  EXPECT_EQ(Shell("(sleep 0.2; $TOOL " + cConvert + "- -c raw; echo $? >&2) | true").errors, "141\n");
}

}  // namespace
