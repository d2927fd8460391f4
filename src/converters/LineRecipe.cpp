#include "converters/LineRecipe.h"

#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

using simd::SourceReader;

namespace {

constexpr std::size_t kReaders = static_cast<std::size_t>(SourceReader::None);

/// The reader that takes packed samples itself, by the reader of unpacked samples and by the unpacker that it
/// replaces. To search the list in each call would take longer than all else that prepares a frame.
struct FusedReaders {
  SourceReader with[kReaders][kReaders];

  constexpr void Enter(SourceReader second, SourceReader unpacker, SourceReader fused) {
    if (second != SourceReader::None)
      with[static_cast<std::size_t>(second)][static_cast<std::size_t>(unpacker)] = fused;
  }
};

constexpr FusedReaders kFused = [] {
  FusedReaders fused{};
  for (auto& row : fused.with)
    for (SourceReader& reader : row) reader = SourceReader::None;
  for (std::size_t i = 0; i < kReaders; ++i) {
    const auto reader = static_cast<SourceReader>(i);
    const simd::ReaderFacts& facts = simd::FactsOf(reader);
    fused.Enter(facts.of, facts.unpacker, reader);
    fused.Enter(facts.deeper, facts.unpacker, reader);
  }
  return fused;
}();

}  // namespace

bool ReadSamplesDirectly(LineRecipe& recipe, const SampleRecipe& samples) {
  const SourceReader fused =
      kFused.with[static_cast<std::size_t>(recipe.reader)][static_cast<std::size_t>(samples.reader)];
  if (fused == SourceReader::None) return false;
  recipe.reader = fused;
  recipe.shift = samples.shift;
  return true;
}

void ReadSamples(LineRecipe& recipe, const SampleRecipe& samples) {
  LineRecipe direct = recipe;
  if (ReadSamplesDirectly(direct, samples) &&
      simd::CurrentLevel().Find(direct.reader, direct.writer) != nullptr)
    recipe = direct;
  else
    recipe.samples = samples;
}

}  // namespace ZrConvertersLib
