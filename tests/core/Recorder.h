#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include <vector>

namespace ZrTest {

using ZrConvertersLib::PixelConverter;
using ZrConvertersLib::PixelConverterContext;
using ZrUtilsLib::Result;

/// Arguments of the 15-argument Convert.
struct ConvertCall {
  const unsigned char* source;
  std::uint32_t sourceWidth;
  std::uint32_t sourceHeight;
  unsigned char* destination;
  std::uint32_t destinationWidth;
  std::uint32_t destinationHeight;
  std::uint32_t width;
  std::uint32_t height;
  std::uint32_t flags = 0;
  std::uint32_t destinationPadding = 0;
  unsigned char** pipelineBuffer = nullptr;
  std::uint32_t* pipelineBufferSize = nullptr;
  std::uint32_t sourcePadding = 0;
  bool flipVertical = false;
  const ZrConvertersLib::RGBFilter* filter = nullptr;

  Result On(const PixelConverter& converter) const {
    return converter.Convert(source, sourceWidth, sourceHeight, destination, destinationWidth,
                             destinationHeight, width, height, flags, destinationPadding, pipelineBuffer,
                             pipelineBufferSize, sourcePadding, flipVertical, filter);
  }

  friend bool operator==(const ConvertCall&, const ConvertCall&) = default;
};

/// A caller's intermediate buffer.
struct Pipeline {
  Pipeline() = default;
  explicit Pipeline(std::uint32_t capacity) : buffer(new unsigned char[capacity]), size(capacity) {}
  ~Pipeline() { delete[] buffer; }
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;

  unsigned char* buffer = nullptr;
  std::uint32_t size = 0;
};

/// What a converter under test is made of.
struct Traits {
  long source = -1000;
  long destination = -1001;
  std::uint32_t sourceBytes = 1;
  std::uint32_t destinationBytes = 1;
  std::uint32_t pipelining = 1;
  std::uint32_t lines = 1;
  std::uint32_t multiplier = 1;
};

/// A converter that is not registered.
class TestConverter : public PixelConverter {
 public:
  explicit TestConverter(const Traits& traits = Traits())
      : PixelConverter(traits.source, traits.destination, traits.sourceBytes, traits.destinationBytes,
                       traits.pipelining, traits.lines, false),
        mMultiplier(traits.multiplier) {}

  std::uint32_t GetWidthMultiplier() const override { return mMultiplier; }

 private:
  std::uint32_t mMultiplier;
};

/// Writes down how it is driven and converts nothing; fails every line.
class LineRecorder : public TestConverter {
 public:
  struct Call {
    bool last;
    PixelConverterContext context;
    std::uint32_t width;
  };

  using TestConverter::TestConverter;

  Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    calls.push_back({false, context, width});
    return 12345;
  }

  Result ConvertLastLine(const PixelConverterContext& context, std::uint32_t width) const override {
    calls.push_back({true, context, width});
    return 12345;
  }

  mutable std::vector<Call> calls;
};

/// Writes down the whole calls it gets, and answers with `result`.
class CallRecorder : public TestConverter {
 public:
  using TestConverter::TestConverter;

  using PixelConverter::Convert;
  Result Convert(const unsigned char* source, std::uint32_t sourceWidth, std::uint32_t sourceHeight,
                 unsigned char* destination, std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                 std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                 std::uint32_t destinationPadding, unsigned char** pipelineBuffer,
                 std::uint32_t* pipelineBufferSize, std::uint32_t sourcePadding, bool flipVertical,
                 const ZrConvertersLib::RGBFilter* filter) const override {
    calls.push_back({source, sourceWidth, sourceHeight, destination, destinationWidth, destinationHeight,
                     width, height, flags, destinationPadding, pipelineBuffer, pipelineBufferSize,
                     sourcePadding, flipVertical, filter});
    return result;
  }

  Result result;
  mutable std::vector<ConvertCall> calls;
};

}  // namespace ZrTest
