#include "FrameFacts.h"

#include <ZrConvertersLib/FrameErrors.h>

#include "Error.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

[[noreturn]] void RefuseWidth(const std::string& frames, unsigned multiple, Size size) {
  throw UsageError(frames + " frames have a width that is a multiple of " + std::to_string(multiple) +
                   ", not " + std::to_string(size.width));
}

[[noreturn]] void Refuse(const zr::FormatInfo& format, Size size, ZrUtilsLib::Result result) {
  const std::string name(format.name);
  if (result.GetCode() == zr::FrameError::WidthNotAllowed) RefuseWidth(name, format.widthMultiple, size);
  throw UsageError(ToText(size) + " " + name + ": " + std::string(zr::ResultText(result)));
}

zr::FrameLayout Layout(const zr::FormatInfo& format, Size size, std::uint64_t stride) {
  zr::FrameLayout layout;
  const auto result = zr::DescribeFrame(format.id, size.width, size.height, stride, layout);
  if (!result.IsSuccess()) Refuse(format, size, result);
  return layout;
}

// The pattern of a mosaic when neither the format's name nor an option states one.
zr::MosaicPattern FirstPatternOf(zr::FormatFamily family) {
  if (family == zr::FormatFamily::BiColor) return zr::MosaicPattern::RGBG;
  return family == zr::FormatFamily::Scf1 ? zr::MosaicPattern::WGWR : zr::MosaicPattern::GRBG;
}

std::string Bytes(std::uint64_t count) {
  return std::to_string(count) + " bytes";
}

std::uint64_t StrideOf(const zr::FormatInfo& format, const zr::FrameLayout& tight, LineSpacing lines) {
  if (lines.stride == 0) return tight.bytesPerLine + lines.padding;
  if (lines.padding > 0) throw UsageError("--stride and a padding say the same thing: give one of them");
  if (lines.stride >= tight.bytesPerLine) return lines.stride;
  throw UsageError("--stride of " + Bytes(lines.stride) + " is too small: a line of " +
                   std::string(format.name) + " takes " + Bytes(tight.bytesPerLine));
}

// An option beside the format's name: it must apply to the format and not contradict the name.
template <typename Value>
void RequireOption(const Format& format, const std::optional<Value>& option, bool hasMeaning, Value settled,
                   const std::string& name) {
  if (!option) return;
  if (!hasMeaning) {
    throw UsageError("--" + name + " has no meaning for " + std::string(format.info->name));
  }
  if (format.settled && *option != settled) {
    throw UsageError("'" + format.word + "' already says another " + name + " than --" + name);
  }
}

}  // namespace

zr::FrameLayout DescribeOrThrow(const zr::FormatInfo& format, Size size, LineSpacing lines) {
  const zr::FrameLayout tight = Layout(format, size, 0);
  return Layout(format, size, StrideOf(format, tight, lines));
}

bool IsMosaic(const zr::FormatInfo& format) {
  using enum zr::FormatFamily;
  return format.family == Bayer || format.family == BiColor || format.family == Scf1;
}

zr::FrameOptions ColourOptions(const Format& format, const std::optional<zr::MosaicPattern>& pattern,
                               const std::optional<zr::ColourMatrix>& matrix) {
  zr::FrameOptions options;
  options.SetFlags(format.flags);
  if (!format.settled) options.pattern = FirstPatternOf(format.info->family);
  RequireOption(format, pattern, IsMosaic(*format.info), options.pattern, "pattern");
  const bool hasMatrix = format.info->family == zr::FormatFamily::YCbCr;
  RequireOption(format, matrix, hasMatrix, options.matrix, "matrix");
  options.pattern = pattern.value_or(options.pattern);
  options.matrix = matrix.value_or(options.matrix);
  return options;
}

zr::PackingOrder PackingFor(const Format& format, Size size, const std::optional<zr::PackingOrder>& option) {
  const zr::FormatInfo& info = *format.info;
  const zr::PackingOrder order = option.value_or(PackingOfFlags(format.flags));
  if (zr::PackingLayout(info.id, order).empty()) {
    throw UsageError("--packing " + std::string(PackingName(order)) + " has no meaning for " +
                     std::string(info.name));
  }
  if (order == zr::PackingOrder::Csi2 && size.width % info.groupPixels != 0)
    RefuseWidth(std::string(info.name) + " csi2", info.groupPixels, size);
  return order;
}

}  // namespace zrconvert
