#include "FullDepth.h"

namespace Model {
namespace {

SourceLine LineOf(const Frame& frame, const Source& source, std::uint32_t y) {
  return {&source, frame.memory, y * frame.stride, frame.stride, y, frame.height, frame.width, frame.flags};
}

template <typename Item, typename Read>
std::vector<Item> ReadAll(const Frame& frame, Read read) {
  const Source source = FindSource(frame.source).value();
  std::vector<Item> items;
  for (std::uint32_t y = 0; y < frame.height; ++y)
    for (std::uint32_t x = 0; x < frame.width; ++x) items.push_back(read(LineOf(frame, source, y), x));
  return items;
}

Value ReadYCbCr(const SourceLine& line, std::uint32_t x) {
  const ChromaGroup& group = line.source->chroma;
  const auto sample = [&](unsigned i) {
    return NormalisedSample(line, x / group.pixels * group.samples + i);
  };
  return YCbCrToRgbAtFullDepth(sample(group.luma[x % group.pixels]), sample(group.cb), sample(group.cr),
                               line.flags);
}

}  // namespace

std::vector<Value> ReadPicture(const Frame& frame) {
  return ReadAll<Value>(frame, [](const SourceLine& line, std::uint32_t x) {
    const bool deep = line.source->meaning == Meaning::YCbCr && line.source->bits > 8;
    return deep ? ReadYCbCr(line, x) : ReadPixel(line, x);
  });
}

std::vector<std::uint32_t> ReadSamples(const Frame& frame) {
  return ReadAll<std::uint32_t>(frame, NormalisedSample);
}

}  // namespace Model
