#pragma once

#include <ZrConvertersLib/ComplexConverter.h>

#include "converters/LineRecipe.h"
#include "core/ChainFrame.h"
#include "core/LineDriver.h"

namespace ZrConvertersLib {

/// A chain of the library's own stages, an unpacker and a converter of what it unpacks. It gives the same
/// bytes as the two stages with an intermediate image, but in one pass, in which unpacked samples never leave
/// the first-level cache. Where the intermediate image affects the result (a line's last group overwrites the
/// beginning of the next line, lines are read past the frame) the chain runs in two stages.
class OnePassConverter : public ComplexConverter, public OnePassChain {
 public:
  using ComplexConverter::ComplexConverter;
  using ComplexConverter::Convert;

  ZrUtilsLib::Result Convert(const unsigned char* source, std::uint32_t sourceWidth,
                             std::uint32_t sourceHeight, unsigned char* destination,
                             std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                             std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                             std::uint32_t destinationPadding, unsigned char** pipelineBuffer,
                             std::uint32_t* pipelineBufferSize, std::uint32_t sourcePadding,
                             bool flipVertical, const RGBFilter* filter) const override;

 private:
  /// How the unpacker reads samples under these flags.
  virtual SampleRecipe Samples(std::uint32_t flags) const = 0;

  /// What the second stage makes of `samples` of `lines`.
  virtual void ConvertSamples(const FrameCall& call, const SourceLines& lines,
                              const SampleRecipe& samples) const = 0;
};

template <class First, class Second>
class FusedChain final : public OnePassConverter {
 public:
  FusedChain(First* first, Second* second)
      : OnePassConverter(first, second), mUnpacker(first), mReader(second) {}

 private:
  SampleRecipe Samples(std::uint32_t flags) const override { return mUnpacker->Samples(flags); }
  void ConvertSamples(const FrameCall& call, const SourceLines& lines,
                      const SampleRecipe& samples) const override {
    mReader->ConvertSamples(call, lines, samples);
  }

  const First* mUnpacker;
  const Second* mReader;
};

}  // namespace ZrConvertersLib
