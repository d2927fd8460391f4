#include "Descriptor.h"

#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>

namespace zrconvert {
namespace {

namespace fs = std::filesystem;

constexpr int cMostLinks = 40;  // as many as the system follows

fs::path FolderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

std::optional<int> NumberIn(const std::string& name) {
  int number = 0;
  const auto [rest, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  if (error != std::errc() || rest != name.data() + name.size() || number < 0) return std::nullopt;
  return number;
}

}  // namespace

Descriptor::~Descriptor() {
  Close();
}

bool Descriptor::Close() {
  const int number = std::exchange(mNumber, -1);
  return number < 0 || close(number) == 0;
}

std::optional<int> OwnDescriptor(const std::string& path) {
  std::error_code error;
  const fs::path own = fs::canonical("/proc/self/fd", error);
  fs::path at = path;
  for (int links = 0; links < cMostLinks && !error; ++links) {
    if (fs::canonical(FolderOf(at), error) == own && !error) return NumberIn(at.filename().string());
    const fs::path next = fs::read_symlink(at, error);
    at = FolderOf(at) / next;
  }
  return std::nullopt;
}

std::optional<FileIdentity> IdentityOf(const std::string& path, int dash) {
  struct stat status {};
  if ((path == "-" ? fstat(dash, &status) : stat(path.c_str(), &status)) != 0) return std::nullopt;
  if (!S_ISREG(status.st_mode) && !S_ISBLK(status.st_mode)) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

}  // namespace zrconvert
