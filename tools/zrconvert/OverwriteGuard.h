// Prevents outputs from overwriting the inputs and, with --no-clobber, any existing file.
#pragma once

#include <string>
#include <vector>

#include "Descriptor.h"
#include "OutputFile.h"

namespace zrconvert {

class OverwriteGuard {
 public:
  OverwriteGuard(const std::vector<std::string>& inputs, Existing existing);

  Existing ForExisting() const { return mExisting; }

  // Throws UsageError when the output is one of the inputs, by whatever path or link, and Failure when it
  // exists and is to be kept. May be called from several threads.
  void Check(const std::string& output) const;

 private:
  struct Input {
    std::string path;
    FileIdentity identity;
  };
  std::vector<Input> mInputs;
  Existing mExisting;
};

}  // namespace zrconvert
