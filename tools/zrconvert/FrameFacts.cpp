#include "FrameFacts.h"

#include <ZrConvertersLib/FrameErrors.h>

#include "Error.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

[[noreturn]] void Refuse(const zr::FormatInfo& format, Size size, ZrUtilsLib::Result result) {
  const std::string name(format.name);
  if (result.GetCode() == zr::FrameError::WidthNotAllowed) {
    throw UsageError(name + " frames have a width that is a multiple of " +
                     std::to_string(format.widthMultiple) + ", not " + std::to_string(size.width));
  }
  throw UsageError(ToText(size) + " " + name + ": " + std::string(zr::ResultText(result)));
}

zr::FrameLayout Layout(const zr::FormatInfo& format, Size size, std::uint64_t stride) {
  zr::FrameLayout layout;
  const auto result = zr::DescribeFrame(format.id, size.width, size.height, stride, layout);
  if (!result.IsSuccess()) Refuse(format, size, result);
  return layout;
}

template <typename Value>
void RefuseContradiction(const Format& format, const std::optional<Value>& option, Value settled,
                         const std::string& name) {
  if (option && format.settled && *option != settled) {
    throw UsageError("'" + format.word + "' already says another " + name + " than --" + name);
  }
}

}  // namespace

zr::FrameLayout DescribeOrThrow(const zr::FormatInfo& format, Size size, std::size_t padding) {
  const zr::FrameLayout layout = Layout(format, size, 0);
  return padding == 0 ? layout : Layout(format, size, layout.bytesPerLine + padding);
}

zr::FrameOptions ColourOptions(const Format& format, const std::optional<zr::MosaicPattern>& pattern,
                               const std::optional<zr::ColourMatrix>& matrix) {
  zr::FrameOptions options;
  options.SetFlags(format.flags);
  const zr::FormatFamily family = format.info->family;
  if (family == zr::FormatFamily::Bayer || family == zr::FormatFamily::BiColor ||
      family == zr::FormatFamily::Scf1)
    RefuseContradiction(format, pattern, options.pattern, "pattern");
  if (family == zr::FormatFamily::YCbCr) RefuseContradiction(format, matrix, options.matrix, "matrix");
  options.pattern = pattern.value_or(options.pattern);
  options.matrix = matrix.value_or(options.matrix);
  return options;
}

}  // namespace zrconvert
