// An output that appears whole or not at all.
#pragma once

#include <string>

namespace zrconvert {

// Everything is written to a file beside the target, which Commit then gives the target's name; a file that
// is not committed is removed. What is no regular file (standard output as "-", a device, a pipe) cannot be
// replaced, so it receives the bytes on Commit.
class OutputFile {
 public:
  explicit OutputFile(const std::string& target);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // The empty file to write to.
  const std::string& Path() const { return mTemporary; }

  // Throws Failure when the target cannot be written; what stood there before then stays.
  void Commit();

 private:
  std::string mTarget;
  std::string mTemporary;
  bool mReplace;
};

// From now on SIGINT and SIGTERM are only noted, so that a started output can be removed; the next call of
// ThrowIfInterrupted ends the work. A closed pipe and a
// file that reaches the limit of sizes are reported as failed writes.
void CatchSignals();
void ThrowIfInterrupted();

}  // namespace zrconvert
