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

// "text: No such file or directory", from the current errno.
std::string WithSystemReason(const std::string& text);

}  // namespace zrconvert
