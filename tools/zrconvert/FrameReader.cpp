#include "FrameReader.h"

#include <algorithm>
#include <filesystem>

#include "Error.h"

namespace zrconvert {
namespace {

namespace fs = std::filesystem;

std::string Quoted(const std::string& input) {
  return input == "-" ? "standard input" : "'" + input + "'";
}

std::unique_ptr<File> Open(const std::string& input) {
  if (input == "-") return std::make_unique<File>("/dev/stdin", "rb");
  if (fs::is_directory(input)) throw Failure("cannot read '" + input + "': it is a directory");
  return std::make_unique<File>(input, "rb");
}

std::optional<std::uint64_t> SizeOf(const std::string& input) {
  std::error_code error;
  if (input == "-" || !fs::is_regular_file(input, error)) return std::nullopt;
  const std::uintmax_t size = fs::file_size(input, error);
  if (error) return std::nullopt;
  return size;
}

}  // namespace

FrameReader::FrameReader(std::vector<std::string> inputs, std::size_t frameBytes, std::size_t neededBytes,
                         FrameRange range)
    : mInputs(std::move(inputs)), mFrameBytes(frameBytes), mNeededBytes(neededBytes), mRange(range) {}

std::optional<std::uint64_t> FrameReader::FrameCount() const {
  std::uint64_t frames = 0;
  for (const std::string& input : mInputs) {
    const auto size = SizeOf(input);
    if (!size) return std::nullopt;
    frames += *size / mFrameBytes + (*size % mFrameBytes >= mNeededBytes ? 1 : 0);
  }
  const std::uint64_t after = frames - std::min(frames, mRange.first);
  return mRange.count ? std::min(after, *mRange.count) : after;
}

std::uint64_t FrameReader::LeftOver() const {
  std::uint64_t bytes = 0;
  for (const std::string& input : mInputs) {
    const std::uint64_t rest = SizeOf(input).value_or(0) % mFrameBytes;
    if (rest < mNeededBytes) bytes += rest;
  }
  return bytes;
}

// The size is looked at before memory for a frame is taken: a mistaken size shall not take all of it.
bool FrameReader::OpenNext() {
  mFile.reset();
  if (mNextInput == mInputs.size()) return false;
  const std::string& input = mInputs[mNextInput++];
  mFile = Open(input);
  mFramesOfInput = 0;
  if (const auto size = SizeOf(input); size && *size < mNeededBytes) ThrowTooShort(*size);
  return true;
}

void FrameReader::ThrowTooShort(std::uint64_t found) const {
  throw Failure(Quoted(mInputs[mNextInput - 1]) + " holds " + std::to_string(found) +
                " bytes, but one frame needs " + std::to_string(mNeededBytes));
}

// One frame of the open input; false at its end.
bool FrameReader::ReadFrame(std::vector<std::uint8_t>& frame) {
  frame.resize(mFrameBytes);
  const std::size_t found = std::fread(frame.data(), 1, frame.size(), mFile->Get());
  if (std::ferror(mFile->Get()))
    throw Failure(WithSystemReason("cannot read " + Quoted(mInputs[mNextInput - 1])));
  if (found >= mNeededBytes) {
    ++mFramesOfInput;
    return true;
  }
  if (mFramesOfInput == 0) ThrowTooShort(found);
  return false;
}

bool FrameReader::Next(std::vector<std::uint8_t>& frame) {
  if (mRange.count && mFramesRead >= mRange.first && mFramesRead - mRange.first >= *mRange.count)
    return false;
  while (mFile || OpenNext()) {
    if (!ReadFrame(frame)) {
      mFile.reset();
    } else if (mFramesRead++ >= mRange.first) {
      return true;
    }
  }
  return false;
}

}  // namespace zrconvert
