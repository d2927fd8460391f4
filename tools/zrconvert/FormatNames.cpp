#include "FormatNames.h"

#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/V4l2Formats.h>

#include <algorithm>

#include "Error.h"
#include "Names.h"
#include "common/Words.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

[[noreturn]] void ThrowUnknownFormat(const std::string& text) {
  const std::vector<std::string_view> near = NearestNames(text, AllFormatNames(), 3);
  const std::string hint =
      near.empty() ? "'zrconvert formats' lists them" : "did you mean " + Join(near, ", ") + "?";
  throw UsageError("unknown format '" + text + "': " + hint);
}

// The name that differs from the text by nothing but case, or the text itself.
std::string RightSpelling(const std::string& text) {
  const std::vector<std::string_view> names = AllFormatNames();
  const auto found =
      std::ranges::find_if(names, [&](std::string_view name) { return EqualsIgnoringCase(name, text); });
  return found == names.end() ? text : std::string(*found);
}

ZrUtilsLib::Result Read(const std::string& text, zr::FormatChoice& choice) {
  const ZrUtilsLib::Result result = zr::ReadFormat(text, choice);
  if (result.GetCode() != zr::FrameError::UnknownFormat) return result;
  return zr::ReadFormat(RightSpelling(text), choice);
}

}  // namespace

Format ReadFormat(const std::string& text) {
  zr::FormatChoice choice;
  const ZrUtilsLib::Result result = Read(text, choice);
  if (result.GetCode() == zr::FrameError::UnknownFormat) ThrowUnknownFormat(text);
  if (!result.IsSuccess()) throw UsageError("format '" + text + "': " + std::string(zr::ResultText(result)));
  const zr::FormatInfo* info = zr::FindFormatInfo(choice.id);
  if (!info) ThrowUnknownFormat(text);
  return {info, choice.flags, choice.settled, text};
}

std::vector<std::string_view> AllFormatNames() {
  std::vector<std::string_view> names;
  const auto add = [&names](std::string_view name) {
    if (std::ranges::count(names, name) == 0) names.push_back(name);
  };
  for (const zr::FormatInfo& format : zr::Formats()) add(format.name);
  for (const zr::FormatCode& code : zr::FormatCodes()) add(code.name);
  for (const zr::V4l2Format& format : zr::V4l2Formats()) add(format.name);
  return names;
}

std::string FourccText(std::uint32_t fourcc) {
  std::string text;
  for (unsigned shift = 0; shift < 32; shift += 8) text += static_cast<char>(fourcc >> shift & 0xFFU);
  return text;
}

std::string_view PackingName(zr::PackingOrder order) {
  return std::ranges::find(zrcommon::kPackings, order, &zrcommon::Word<zr::PackingOrder>::value)->text;
}

zr::PackingOrder PackingOfFlags(unsigned flags) {
  zr::FrameOptions options;
  options.SetFlags(flags);
  return options.packing;
}

}  // namespace zrconvert
