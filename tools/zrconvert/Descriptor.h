// A file descriptor that closes itself, and what tells one file from another.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>

namespace zrconvert {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : mNumber(number) {}
  Descriptor(Descriptor&& other) noexcept : mNumber(std::exchange(other.mNumber, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(mNumber, other.mNumber);
    return *this;
  }
  ~Descriptor();

  bool IsOpen() const { return mNumber >= 0; }
  int Get() const { return mNumber; }

  // False, with errno, when the system reports a write that failed only now.
  bool Close();

 private:
  int mNumber = -1;
};

// The process's own descriptor that a path names, as /dev/stdout, /dev/fd/3 and links to them do. Opening
// such a path anew would lose the offset and the append mode, and fails for sockets.
std::optional<int> OwnDescriptor(const std::string& path);

// What hard links, symbolic links and different paths to one file have in common.
struct FileIdentity {
  dev_t device;
  ino_t number;
  bool operator==(const FileIdentity&) const = default;
};

// The identity of a file whose content can be overwritten, that is of a regular file or a block device;
// nothing for other files and for those that do not exist. "-" is the descriptor `dash`.
std::optional<FileIdentity> IdentityOf(const std::string& path, int dash);

}  // namespace zrconvert
