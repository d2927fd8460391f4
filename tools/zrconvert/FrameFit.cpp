#include "FrameFit.h"

#include <algorithm>
#include <vector>

#include "Error.h"
#include "SizeGuess.h"

namespace zrconvert {
namespace {

constexpr std::size_t cMostGuesses = 4;

std::string Counted(std::uint64_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

}  // namespace

std::uint64_t FrameFit::BytesOfFrames(std::uint64_t fileBytes) const {
  return fileBytes - std::min(fileBytes, headerBytes);
}

std::uint64_t FrameFit::FramesIn(std::uint64_t fileBytes) const {
  const std::uint64_t bytes = BytesOfFrames(fileBytes);
  return bytes / layout.frameBytes + (bytes % layout.frameBytes >= layout.leastBytes ? 1 : 0);
}

std::uint64_t FrameFit::RestOf(std::uint64_t fileBytes) const {
  const std::uint64_t rest = BytesOfFrames(fileBytes) % layout.frameBytes;
  return rest >= layout.leastBytes ? 0 : rest;
}

// Fewest frames first.
std::string FrameFit::SizesThatFit(std::uint64_t fileBytes) const {
  std::vector<SizeGuess> guesses = GuessSizes(BytesOfFrames(fileBytes), *format);
  std::ranges::stable_sort(guesses, {}, &SizeGuess::frames);
  std::vector<std::string> sizes;
  for (const SizeGuess& guess : guesses) {
    const std::string text = ToText(guess.size) + " (" + Counted(guess.frames, "frame") + ")";
    if (std::ranges::count(sizes, text) == 0) sizes.push_back(text);
  }
  if (sizes.empty()) return "no common size fits";
  sizes.resize(std::min(sizes.size(), cMostGuesses));
  std::string text = "sizes that fit:";
  for (const std::string& one : sizes) text += (&one == &sizes.front() ? " " : ", ") + one;
  return text;
}

void FrameFit::Require(const std::string& name, std::uint64_t fileBytes) const {
  const std::string held = name + " holds " + Counted(fileBytes, "byte") +
                           (headerBytes > 0 ? " with its header of " + std::to_string(headerBytes) : "");
  const std::string frame = ToText(size) + " " + std::string(format->name);
  if (FramesIn(fileBytes) == 0) {
    throw Failure(held + ", but one frame of " + frame + " needs " + std::to_string(layout.leastBytes) +
                  "; " + SizesThatFit(fileBytes));
  }
  if (ignoreRest || RestOf(fileBytes) == 0) return;
  throw Failure(held + ": " + Counted(FramesIn(fileBytes), "frame") + " of " + frame + " (" +
                std::to_string(layout.frameBytes) + " bytes each) and " + Counted(RestOf(fileBytes), "byte") +
                " more; " + SizesThatFit(fileBytes) + "; --ignore-rest converts the whole frames");
}

}  // namespace zrconvert
