#include "OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>

#include "Error.h"
#include "File.h"

namespace zrconvert {
namespace {

namespace fs = std::filesystem;

volatile std::sig_atomic_t sInterrupted = 0;

void OnSignal(int) {
  sInterrupted = 1;
}

bool IsReplaceable(const std::string& target) {
  std::error_code ignored;
  const fs::file_status status = fs::status(target, ignored);
  return target != "-" && (!fs::exists(status) || fs::is_regular_file(status));
}

// A link stays: the file that it names is replaced.
std::string ResolveLink(const std::string& target) {
  std::error_code error;
  const fs::path resolved = fs::canonical(target, error);
  return error ? target : resolved.string();
}

// The rights that the file had, or those that a new file gets.
mode_t ModeFor(const std::string& target) {
  struct stat status {};
  if (stat(target.c_str(), &status) == 0) return status.st_mode & 07777U;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666U & ~mask;
}

std::string CreateBeside(const std::string& target, bool replace) {
  const fs::path path(target);
  const fs::path folder = replace ? path.parent_path() : fs::temp_directory_path();
  std::string name = (folder / std::string(".").append(path.filename().string()).append(".XXXXXX")).string();
  const int descriptor = mkstemp(name.data());
  if (descriptor < 0) throw Failure(WithSystemReason("cannot write '" + target + "'"));
  if (replace) fchmod(descriptor, ModeFor(target));
  close(descriptor);
  return name;
}

void RefuseFolder(const std::string& target) {
  if (fs::is_directory(target)) throw Failure("cannot write '" + target + "': it is a directory");
}

void RefuseReadOnly(const std::string& target) {
  if (fs::exists(target) && access(target.c_str(), W_OK) != 0) {
    throw Failure(WithSystemReason("cannot write '" + target + "'"));
  }
}

std::string QuoteOutput(const std::string& target) {
  if (target == "-") return "standard output";
  return std::string("'").append(target).append("'");
}

class Descriptor {
 public:
  explicit Descriptor(const std::string& target)
      : mTarget(target), mDescriptor(target == "-" ? dup(STDOUT_FILENO) : open(target.c_str(), O_WRONLY)) {
    if (mDescriptor < 0) Fail();
  }
  ~Descriptor() {
    if (mDescriptor >= 0) close(mDescriptor);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  void Write(const char* bytes, std::size_t count) {
    while (count > 0) {
      const ssize_t written = write(mDescriptor, bytes, count);
      if (written < 0 && errno == EINTR) continue;
      if (written <= 0) Fail();
      bytes += written;
      count -= static_cast<std::size_t>(written);
    }
  }

 private:
  [[noreturn]] void Fail() const { throw Failure(WithSystemReason("cannot write " + QuoteOutput(mTarget))); }

  const std::string& mTarget;
  int mDescriptor;
};

void Copy(const std::string& from, const std::string& target) {
  Descriptor output(target);
  const File input(from, "rb");
  std::array<char, 65536> buffer;
  std::size_t count = 0;
  while ((count = std::fread(buffer.data(), 1, buffer.size(), input.Get())) > 0)
    output.Write(buffer.data(), count);
}

}  // namespace

OutputFile::OutputFile(const std::string& target) : mTarget(target), mReplace(IsReplaceable(target)) {
  if (mReplace) mTarget = ResolveLink(target);
  if (target != "-") RefuseFolder(target);
  if (mReplace) RefuseReadOnly(mTarget);
  mTemporary = CreateBeside(mTarget, mReplace);
}

OutputFile::~OutputFile() {
  if (!mTemporary.empty()) unlink(mTemporary.c_str());
}

void OutputFile::Commit() {
  ThrowIfInterrupted();
  if (!mReplace) {
    Copy(mTemporary, mTarget);
    return;
  }
  if (std::rename(mTemporary.c_str(), mTarget.c_str()) != 0) {
    throw Failure(WithSystemReason("cannot write '" + mTarget + "'"));
  }
  mTemporary.clear();
}

void CatchSignals() {
  struct sigaction action {};
  action.sa_handler = OnSignal;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  action.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &action, nullptr);
  sigaction(SIGXFSZ, &action, nullptr);
}

void ThrowIfInterrupted() {
  if (sInterrupted) throw Failure("interrupted");
}

}  // namespace zrconvert
