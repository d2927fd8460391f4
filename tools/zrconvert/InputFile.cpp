#include "InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "Error.h"

namespace zrconvert {
namespace {

std::optional<int> OpenAlready(const std::string& path) {
  return path == "-" ? STDIN_FILENO : OwnDescriptor(path);
}

[[noreturn]] void ThrowUnreadable(const std::string& path) {
  throw Failure(WithSystemReason("cannot read " + NameOfInput(path)));
}

Descriptor Open(const std::string& path) {
  const auto own = OpenAlready(path);
  Descriptor descriptor(own ? fcntl(*own, F_DUPFD_CLOEXEC, 3) : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!descriptor.IsOpen()) ThrowUnreadable(path);
  return descriptor;
}

}  // namespace

InputFile::InputFile(const std::string& path) : mPath(path), mDescriptor(Open(path)) {}

std::size_t InputFile::Read(std::span<std::uint8_t> bytes) {
  std::size_t found = 0;
  while (found < bytes.size()) {
    const ssize_t count = read(mDescriptor.Get(), bytes.data() + found, bytes.size() - found);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) ThrowUnreadable(mPath);
    if (count == 0) break;
    found += static_cast<std::size_t>(count);
  }
  return found;
}

bool InputFile::Skip(std::uint64_t count) {
  std::array<std::uint8_t, 65536> passed;
  while (count > 0) {
    const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(count, passed.size()));
    if (Read({passed.data(), part}) != part) return false;
    count -= part;
  }
  return true;
}

std::optional<std::uint64_t> BytesIn(const std::string& path) {
  const auto own = OpenAlready(path);
  struct stat status {};
  const int result = own ? fstat(*own, &status) : stat(path.c_str(), &status);
  if (result != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  const off_t offset = own ? std::max<off_t>(0, lseek(*own, 0, SEEK_CUR)) : 0;
  return static_cast<std::uint64_t>(std::max<off_t>(0, status.st_size - offset));
}

std::string NameOfInput(const std::string& path) {
  return path == "-" ? "standard input" : "'" + path + "'";
}

}  // namespace zrconvert
