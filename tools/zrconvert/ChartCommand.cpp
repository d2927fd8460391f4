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

EncodeOptions EncodeOptionsOf(const ChartOptions& options) {
  const zr::FrameOptions colour = ColourOptions(options.format, options.pattern, options.matrix);
  return {colour.pattern, colour.matrix, options.padding};
}

}  // namespace

void WriteChart(const ChartOptions& options) {
  const zr::FormatInfo& format = *options.format.info;
  DescribeOrThrow(format, options.size, options.padding);
  const EncodeOptions encode = EncodeOptionsOf(options);
  OutputFile output(options.output);
  File file(output.Path(), "wb");
  for (std::uint64_t frame = 0; frame < options.frames; ++frame) {
    const Chart chart(options.size.width, options.size.height, frame);
    file.Write(EncodeFrame(chart, format, encode));
    ThrowIfInterrupted();
  }
  file.Close();
  output.Commit();
}

}  // namespace zrconvert
