#include "Chart.h"
#include "Commands.h"
#include "Encode.h"
#include "Error.h"
#include "FrameFacts.h"
#include "OutputFile.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

EncodeOptions EncodeOptionsOf(const ChartOptions& options) {
  const zr::FrameOptions colour = ColourOptions(options.format, options.pattern, options.matrix);
  const zr::FrameLayout frame = DescribeOrThrow(*options.format.info, options.size, options.lines);
  const zr::PackingOrder packing = PackingFor(options.format, options.size, options.packing);
  return {colour.pattern, colour.matrix, packing,
          static_cast<std::size_t>(frame.stride - frame.bytesPerLine)};
}

}  // namespace

void WriteChart(const ChartOptions& options) {
  const zr::FormatInfo& format = *options.format.info;
  const EncodeOptions encode = EncodeOptionsOf(options);
  OutputFile output(options.output, options.existing);
  for (std::uint64_t frame = 0; frame < options.frames; ++frame) {
    const Chart chart(options.size.width, options.size.height, frame);
    output.Write(EncodeFrame(chart, format, encode));
  }
  output.Commit();
}

}  // namespace zrconvert
