#include "OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "Error.h"

namespace zrconvert {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t cBufferSize = 65536;
constexpr int cMostLinks = 40;  // as many as the system follows

bool IsRegular(const std::string& target) {
  std::error_code ignored;
  return fs::is_regular_file(target, ignored);
}

bool IsReplaceable(const std::string& target) {
  std::error_code ignored;
  return !fs::exists(target, ignored) || IsRegular(target);
}

// A link stays: the file that it names is replaced, or made when it is missing.
std::string FollowLinks(const std::string& target) {
  fs::path path(target);
  std::error_code error;
  for (int links = 0; links < cMostLinks; ++links) {
    const fs::path next = fs::read_symlink(path, error);
    if (error) return path.string();
    path = path.parent_path() / next;
  }
  return target;
}

}  // namespace

OutputFile::OutputFile(const std::string& target, Existing existing) : mTarget(target), mExisting(existing) {
  mBuffer.reserve(cBufferSize);
  const auto own = target == "-" ? STDOUT_FILENO : OwnDescriptor(target);
  if (own) {
    OpenOwn(*own);
  } else if (IsReplaceable(target)) {
    if (existing == Existing::Keep) RefuseExisting(target);
    CreateBeside();
  } else {
    OpenAsItIs();
  }
}

void OutputFile::OpenOwn(int descriptor) {
  mOpened = Descriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, 3));
  mDescriptor = mOpened.Get();
  if (!mOpened.IsOpen()) Fail();
}

void OutputFile::OpenAsItIs() {
  mOpened = Descriptor(open(mTarget.c_str(), O_WRONLY | O_CLOEXEC));
  mDescriptor = mOpened.Get();
  if (!mOpened.IsOpen()) Fail();
}

// A file that is replaced keeps its rights.
void OutputFile::CreateBeside() {
  const std::string target = FollowLinks(mTarget);
  struct stat before {};
  const bool exists = stat(target.c_str(), &before) == 0;
  if (exists && access(target.c_str(), W_OK) != 0) Fail();
  mTemporary.emplace();
  if (!mTemporary->Create(target, exists ? 0600 : 0666)) Fail();
  mDescriptor = mTemporary->Get();
  if (exists) fchmod(mDescriptor, before.st_mode & 07777U);
}

std::string OutputFile::Name() const {
  return mTarget == "-" ? "standard output" : "'" + mTarget + "'";
}

void OutputFile::Write(std::span<const std::uint8_t> bytes) {
  if (mBuffer.size() + bytes.size() > cBufferSize) Flush();
  if (bytes.size() >= cBufferSize) {
    WriteOut(bytes);
  } else {
    mBuffer.insert(mBuffer.end(), bytes.begin(), bytes.end());
  }
}

void OutputFile::Flush() {
  WriteOut(mBuffer);
  mBuffer.clear();
}

void OutputFile::WriteOut(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(mDescriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) Fail();
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
}

void OutputFile::Commit() {
  Flush();
  if (!(mTemporary ? mTemporary->Close() : mOpened.Close())) Fail();
  if (mTemporary && !mTemporary->Rename(mExisting == Existing::Replace)) Fail();
}

void OutputFile::Fail() const {
  ThrowUnwritable(Name());
}

void RefuseExisting(const std::string& target) {
  if (target != "-" && IsRegular(target)) {
    throw Failure("'" + target + "' exists, and --no-clobber leaves files as they are");
  }
}

}  // namespace zrconvert
