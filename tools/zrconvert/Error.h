// How a command says that it cannot go on: one sentence and an exit code.
#pragma once

#include <stdexcept>
#include <string>

namespace zrconvert {

enum ExitCode : int { ExitSuccess = 0, ExitFailure = 1, ExitUsage = 2 };

// The arguments ask for something that can never work.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The arguments are fine, but the work could not be done (files, memory, the input's content).
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The one who reads the output has closed the pipe. Programs end quietly by a signal then.
struct BrokenPipe : Failure {
  using Failure::Failure;
};

// Throws BrokenPipe or Failure for a write that failed, with the reason in errno. `output` is what the user
// calls the output: "'out.png'" or "standard output".
[[noreturn]] void ThrowUnwritable(const std::string& output);

// "text: No such file or directory", from the current errno.
std::string WithSystemReason(const std::string& text);

}  // namespace zrconvert
