// Runs the built program in a directory of its own and looks at what it leaves there.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

struct ToolRun {
  int exitCode = -1;
  std::string output;
  std::string errors;
};

class ToolTest : public testing::Test {
 protected:
  ToolTest();
  ~ToolTest() override;

  // What a shell makes of the script, in which $TOOL is the program. `input` is what standard input holds.
  ToolRun Shell(const std::string& script, const std::string& input = {}) const;

  // The program's words without its name, as a shell takes them; `before` stands before the program's
  // name.
  ToolRun Run(const std::string& words, const std::string& input = {}, const std::string& before = {}) const;

  // Fails the test unless the program succeeds; gives its standard output.
  std::string RunWell(const std::string& words, const std::string& input = {}) const;

  std::filesystem::path At(const std::string& name) const { return mFolder / name; }
  std::vector<std::uint8_t> Read(const std::string& name) const;
  void Write(const std::string& name, const std::vector<std::uint8_t>& bytes) const;
  std::vector<std::string> FilesLeft() const;  // sorted names

 private:
  std::filesystem::path mFolder;
};

std::vector<std::uint8_t> ReadFile(const std::filesystem::path& path);
