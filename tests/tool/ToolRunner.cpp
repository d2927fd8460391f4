#include "ToolRunner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

// The streams lie outside the directory that the tool works in, so that only its own files are left there.
struct Streams {
  fs::path input, output, errors;
};

std::string TextOf(const fs::path& path) {
  const std::vector<std::uint8_t> bytes = ReadFile(path);
  return {bytes.begin(), bytes.end()};
}

}  // namespace

std::vector<std::uint8_t> ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

ToolTest::ToolTest() {
  std::string name = (fs::temp_directory_path() / "zrconvert_test_XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("no directory for the test");
  mFolder = name;
  fs::create_directory(mFolder / "work");
  fs::create_directory(mFolder / "streams");
  mFolder /= "work";
}

ToolTest::~ToolTest() {
  std::error_code ignored;
  fs::remove_all(mFolder.parent_path(), ignored);
}

ToolRun ToolTest::Shell(const std::string& script, const std::string& input) const {
  const fs::path folder = mFolder.parent_path() / "streams";
  const Streams streams{folder / "in", folder / "out", folder / "err"};
  std::ofstream(streams.input, std::ios::binary) << input;
  const std::string command = "cd '" + mFolder.string() + "' && export TOOL='" ZRCONVERT "' && ( " + script +
                              "\n) <'" + streams.input.string() + "' >'" + streams.output.string() + "' 2>'" +
                              streams.errors.string() + "'";
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, TextOf(streams.output), TextOf(streams.errors)};
}

ToolRun ToolTest::Run(const std::string& words, const std::string& input, const std::string& before) const {
  return Shell(before + " \"$TOOL\" " + words, input);
}

std::string ToolTest::RunWell(const std::string& words, const std::string& input) const {
  const ToolRun run = Run(words, input);
  EXPECT_EQ(run.exitCode, 0) << words << "\n" << run.errors;
  return run.output;
}

std::vector<std::uint8_t> ToolTest::Read(const std::string& name) const {
  return ReadFile(At(name));
}

void ToolTest::Write(const std::string& name, const std::vector<std::uint8_t>& bytes) const {
  std::ofstream file(At(name), std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  ASSERT_TRUE(file.flush());
}

std::vector<std::string> ToolTest::FilesLeft() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(mFolder)) {
    names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}
