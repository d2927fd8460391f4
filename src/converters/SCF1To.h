#pragma once

#include "converters/SCF1Mosaic.h"
#include "converters/WholeFrameConverter.h"

namespace ZrConvertersLib {

/// Converts an SCF1 mosaic, one line at a time. Exactly the bytes of the lines are read, packed ones too.
template <class Out, simd::SourceReader reader>
class SCF1To : public WholeFrameConverter<SCF1To<Out, reader>> {
 public:
  explicit SCF1To(const FormatRow& source)
      : WholeFrameConverter<SCF1To>(source, Out{}), mShift(16u - source.depth) {}

  using PixelConverter::GetSourceByteSize;
  std::uint32_t GetSourceByteSize(std::uint32_t width) const override {
    constexpr simd::ReaderGroup group = simd::FactsOf(reader).group;
    return static_cast<std::uint32_t>((std::uint64_t{width} * group.bytes + group.pixels - 1) / group.pixels);
  }

  ZrUtilsLib::Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    ConvertSCF1(context, Recipe(), {ImageLines(context), width, 1, 0});
    return {};
  }

  void ConvertFrame(const FrameCall& call) const {
    const LineDriver driver(*this, call);
    ConvertSCF1(driver.Context(), Recipe(),
                {driver.Source(), driver.Width(), driver.Height(), driver.BlockSteps().destination});
  }

 private:
  SCF1Recipe Recipe() const {
    return {Out::kWriter,
            {.reader = reader, .writer = simd::PixelWriter::Mono16, .shift = mShift, .throughCaches = true}};
  }

  std::uint32_t mShift;
};

template <class Out>
using SCF1BytesTo = SCF1To<Out, simd::SourceReader::Mono8>;
template <class Out>
using SCF1WordsTo = SCF1To<Out, simd::SourceReader::Mono16>;
template <class Out>
using SCF110pTo = SCF1To<Out, simd::SourceReader::Mono10p>;
template <class Out>
using SCF112pTo = SCF1To<Out, simd::SourceReader::Mono12p>;

}  // namespace ZrConvertersLib
