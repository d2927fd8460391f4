#include "Chart.h"
#include "Commands.h"
#include "Encode.h"
#include "Error.h"
#include "File.h"
#include "FrameFacts.h"
#include "OutputFile.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

const SourceLayout& LayoutOrThrow(const zr::FormatInfo& format) {
  const SourceLayout* layout = FindLayout(format.name);
  if (!layout || !format.isSource) {
    throw UsageError("no chart can be written as " + std::string(format.name) +
                     ": the library does not convert from it");
  }
  return *layout;
}

EncodeOptions EncodeOptionsOf(const ChartOptions& options) {
  const zr::FrameOptions colour = ColourOptions(options.format, options.pattern, options.matrix);
  return {colour.pattern, colour.matrix, options.padding};
}

}  // namespace

void WriteChart(const ChartOptions& options) {
  const zr::FormatInfo& format = *options.format.info;
  const SourceLayout& layout = LayoutOrThrow(format);
  DescribeOrThrow(format, options.size, options.padding);
  const EncodeOptions encode = EncodeOptionsOf(options);
  OutputFile output(options.output);
  File file(output.Path(), "wb");
  for (std::uint64_t frame = 0; frame < options.frames; ++frame) {
    const Chart chart(options.size.width, options.size.height, frame);
    file.Write(EncodeFrame(chart, layout, format.depth, encode));
    ThrowIfInterrupted();
  }
  file.Close();
  output.Commit();
}

}  // namespace zrconvert
