#include "PictureWriter.h"

#include <algorithm>
#include <cctype>

#include "Error.h"

namespace zrconvert {
namespace {

constexpr std::size_t cMostDigits = 19;

// The digits between % and d, "04" for instance; throws for anything else. `at` ends behind the d.
std::size_t ReadDigits(const std::string& name, std::size_t& at) {
  const std::size_t begin = at;
  while (at < name.size() && std::isdigit(static_cast<unsigned char>(name[at]))) ++at;
  if (at == name.size() || name[at] != 'd' || at - begin > 2) {
    throw UsageError("'" + name +
                     "': a % stands before a number's place, as in frame_%04d.png, or is written %%");
  }
  const std::size_t digits = at == begin ? 0 : std::stoul(name.substr(begin, at - begin));
  ++at;
  return std::min(digits, cMostDigits);
}

}  // namespace

OutputName::OutputName(const std::string& name) {
  for (std::size_t at = 0; at < name.size();) {
    std::string& part = mHasNumber ? mAfter : mBefore;
    const char c = name[at++];
    if (c != '%') {
      part += c;
    } else if (at < name.size() && name[at] == '%') {
      part += name[at++];
    } else if (mHasNumber) {
      throw UsageError("'" + name + "' has more than one place for a number");
    } else {
      mDigits = ReadDigits(name, at);
      mHasNumber = true;
    }
  }
}

std::string OutputName::At(std::uint64_t number) const {
  if (!mHasNumber) return mBefore;
  const std::string digits = std::to_string(number);
  const std::size_t zeros = mDigits > digits.size() ? mDigits - digits.size() : 0;
  return mBefore + std::string(zeros, '0') + digits + mAfter;
}

PictureWriter::PictureWriter(const std::string& output, Container container, const EncoderOptions& options,
                             const OverwriteGuard& guard)
    : mName(output),
      mContainer(container),
      mOptions(options),
      mGuard(guard),
      mIsStream(output == "-" || OwnDescriptor(output)) {}

bool PictureWriter::TakesSequence() const {
  return mName.HasNumber() || mContainer == Container::Raw || (mIsStream && HoldsSequences(mContainer));
}

void PictureWriter::CheckOutputs(std::uint64_t first, std::optional<std::uint64_t> count) const {
  const std::uint64_t files = mName.HasNumber() ? count.value_or(1) : 1;
  for (std::uint64_t i = 0; i < files; ++i) mGuard.Check(mName.At(first + i));
}

std::unique_ptr<OutputFile> PictureWriter::Open(std::uint64_t number) const {
  const std::string name = mName.At(number);
  mGuard.Check(name);
  return std::make_unique<OutputFile>(name, mGuard.ForExisting());
}

void PictureWriter::Write(const Picture& picture, std::uint64_t number) {
  if (mName.HasNumber()) {
    const auto file = Open(number);
    WritePicture(*file, mContainer, picture, mOptions);
    file->Commit();
    return;
  }
  if (!mFile) mFile = Open(number);
  WritePicture(*mFile, mContainer, picture, mOptions);
  if (mIsStream) mFile->Flush();
}

void PictureWriter::Finish() {
  if (mFile) mFile->Commit();
  mFile.reset();
}

}  // namespace zrconvert
