#include "OverwriteGuard.h"

#include <unistd.h>

#include "Error.h"
#include "InputFile.h"

namespace zrconvert {

OverwriteGuard::OverwriteGuard(const std::vector<std::string>& inputs, Existing existing)
    : mExisting(existing) {
  for (const std::string& input : inputs) {
    if (const auto identity = IdentityOf(input, STDIN_FILENO)) mInputs.push_back({input, *identity});
  }
}

void OverwriteGuard::Check(const std::string& output) const {
  const auto identity = IdentityOf(output, STDOUT_FILENO);
  if (!identity) return;
  for (const Input& input : mInputs) {
    if (input.identity != *identity) continue;
    const std::string name = output == "-" ? "standard output" : "'" + output + "'";
    throw UsageError(name + " is the same file as the input " + NameOfInput(input.path));
  }
  if (mExisting == Existing::Keep) RefuseExisting(output);
}

}  // namespace zrconvert
