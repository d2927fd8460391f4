#include "TemporaryFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <mutex>

namespace zrconvert {
namespace {

// Which temporary files there are. Never destroyed: a signal may end the process at any time.
struct Registry {
  std::mutex mutex;
  std::list<TemporaryFile*> files;
  unsigned long created = 0;
};

Registry& TheRegistry() {
  static auto& registry = *new Registry;
  return registry;
}

// Not every file system knows the rename that replaces nothing; a look beforehand is the next best.
bool RenameToNewName(int folder, const char* from, const char* to) {
  if (renameat2(folder, from, folder, to, RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  if (faccessat(folder, to, F_OK, AT_SYMLINK_NOFOLLOW) == 0) {
    errno = EEXIST;
    return false;
  }
  return renameat(folder, from, folder, to) == 0;
}

}  // namespace

TemporaryFile::~TemporaryFile() {
  const std::scoped_lock lock(TheRegistry().mutex);
  Remove();
}

bool TemporaryFile::Create(const std::string& target, mode_t mode) {
  const std::filesystem::path path(target);
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  mTargetName = path.filename().string();
  mFolder = Descriptor(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  const std::scoped_lock lock(TheRegistry().mutex);
  return mFolder.IsOpen() && OpenNew(mode);
}

// A file of that name may be left from a process that was killed.
bool TemporaryFile::OpenNew(mode_t mode) {
  Registry& registry = TheRegistry();
  do {
    mName = ".zrconvert." + std::to_string(getpid()) + "." + std::to_string(registry.created++);
    mFile = Descriptor(openat(mFolder.Get(), mName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
  } while (!mFile.IsOpen() && errno == EEXIST);
  mExists = mFile.IsOpen();
  if (mExists) mEntry = registry.files.insert(registry.files.end(), this);
  return mExists;
}

bool TemporaryFile::Rename(bool replace) {
  Registry& registry = TheRegistry();
  const std::scoped_lock lock(registry.mutex);
  const bool renamed = replace
                           ? renameat(mFolder.Get(), mName.c_str(), mFolder.Get(), mTargetName.c_str()) == 0
                           : RenameToNewName(mFolder.Get(), mName.c_str(), mTargetName.c_str());
  if (renamed) {
    mExists = false;
    registry.files.erase(mEntry);
  }
  return renamed;
}

void TemporaryFile::Remove() {
  if (!mExists) return;
  unlinkat(mFolder.Get(), mName.c_str(), 0);
  TheRegistry().files.erase(mEntry);
  mExists = false;
}

void RemoveTemporaryFiles() {
  Registry& registry = TheRegistry();
  registry.mutex.lock();
  while (!registry.files.empty()) registry.files.front()->Remove();
}

}  // namespace zrconvert
