// A new file that is gone when the process ends, unless it was given its target's name.
#pragma once

#include <list>
#include <string>

#include "Descriptor.h"

namespace zrconvert {

// Lies beside its target, so that it can be renamed, under a short name: the target's own may be as long as
// the system allows. Each function returns false, with errno, when the system refuses.
class TemporaryFile {
 public:
  TemporaryFile() = default;
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool Create(const std::string& target, mode_t mode);
  int Get() const { return mFile.Get(); }
  bool Close() { return mFile.Close(); }

  // Gives the file the name of its target. Without `replace` a target that exists is left alone (EEXIST).
  bool Rename(bool replace);

 private:
  friend void RemoveTemporaryFiles();
  bool OpenNew(mode_t mode);
  void Remove();

  Descriptor mFolder;
  Descriptor mFile;
  std::string mName;
  std::string mTargetName;
  std::list<TemporaryFile*>::iterator mEntry;
  bool mExists = false;
};

// Removes every temporary file of the process and lets no further one come: the process must end now. May be
// called from any thread, not from a signal handler.
void RemoveTemporaryFiles();

}  // namespace zrconvert
