#include "FrameReader.h"

#include <algorithm>
#include <span>

#include "Error.h"

namespace zrconvert {
namespace {

constexpr std::size_t cFirstPart = 1U << 20;

}  // namespace

FrameReader::FrameReader(std::vector<std::string> inputs, const FrameFit& fit, FrameRange range)
    : mInputs(std::move(inputs)), mFit(fit), mRange(range) {}

void FrameReader::RequireWholeFrames() const {
  for (const std::string& input : mInputs) {
    if (const auto bytes = BytesIn(input)) mFit.Require(NameOfInput(input), *bytes);
  }
}

std::optional<std::uint64_t> FrameReader::FrameCount() const {
  std::uint64_t frames = 0;
  for (const std::string& input : mInputs) {
    const auto bytes = BytesIn(input);
    if (!bytes) return std::nullopt;
    frames += mFit.FramesIn(*bytes);
  }
  const std::uint64_t after = frames - std::min(frames, mRange.first);
  return mRange.count ? std::min(after, *mRange.count) : after;
}

std::uint64_t FrameReader::LeftOver() const {
  std::uint64_t rest = 0;
  for (const std::string& input : mInputs) rest += mFit.RestOf(BytesIn(input).value_or(0));
  return rest;
}

bool FrameReader::OpenNext() {
  if (mNextInput == mInputs.size()) return false;
  const std::string& input = mInputs[mNextInput++];
  mFile.emplace(input);
  mBytesOfInput = 0;
  if (!mFile->Skip(mFit.headerBytes)) throw Failure(NameOfInput(input) + " is shorter than its header");
  mBytesOfInput = mFit.headerBytes;
  return true;
}

// Memory is taken as the bytes come: a pipe may hold far less than the frame that is expected.
std::size_t FrameReader::Fill(std::vector<std::uint8_t>& frame) {
  const auto wanted = static_cast<std::size_t>(mFit.layout.frameBytes);
  std::size_t found = 0;
  for (std::size_t asked = 0; found == asked && found < wanted;) {
    asked = std::min(wanted, std::max({cFirstPart, 2 * found, frame.capacity()}));
    frame.resize(asked);
    found += mFile->Read(std::span(frame).subspan(found));
  }
  return found;
}

// One frame of the open input; false at its end.
bool FrameReader::ReadFrame(std::vector<std::uint8_t>& frame) {
  const std::size_t found = Fill(frame);
  mBytesOfInput += found;
  if (found >= mFit.layout.leastBytes) {
    frame.resize(static_cast<std::size_t>(mFit.layout.frameBytes));
    return true;
  }
  mFit.Require(NameOfInput(mInputs[mNextInput - 1]), mBytesOfInput);
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
