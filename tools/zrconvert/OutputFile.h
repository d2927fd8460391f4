// An output that appears whole or not at all.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ByteSink.h"
#include "Descriptor.h"
#include "TemporaryFile.h"

namespace zrconvert {

enum class Existing { Replace, Keep };

// The bytes go to a temporary file in the target's directory, which Commit renames to the target; without
// Commit it is removed. Outputs that cannot be replaced (standard output as "-", descriptors as /dev/stdout,
// devices, pipes) receive the bytes at once.
class OutputFile : public ByteSink {
 public:
  // Throws Failure when the target cannot be written, or exists and is to be kept.
  OutputFile(const std::string& target, Existing existing);

  std::string Name() const override;

  using ByteSink::Write;
  void Write(std::span<const std::uint8_t> bytes) override;

  // Writes the buffered bytes, so that the reader of a pipe gets them.
  void Flush();

  // Throws Failure when the target cannot be written; what stood there before then stays.
  void Commit();

 private:
  void OpenOwn(int descriptor);
  void OpenAsItIs();
  void CreateBeside();
  void WriteOut(std::span<const std::uint8_t> bytes);
  [[noreturn]] void Fail() const;

  std::string mTarget;  // as the user wrote it
  Existing mExisting;
  int mDescriptor = -1;
  Descriptor mOpened;
  std::optional<TemporaryFile> mTemporary;
  std::vector<std::uint8_t> mBuffer;
};

// Throws Failure when the target is a file that exists.
void RefuseExisting(const std::string& target);

}  // namespace zrconvert
