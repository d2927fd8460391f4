#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/PixelTypeFactory.h>

#include <algorithm>
#include <array>
#include <string>

#include "core/FormatTable.h"
#include "formats/FormatWords.h"
#include "formats/Limits.h"

namespace ZrConvertersLib {

namespace {

constexpr std::size_t kCount = kFormats.size() + kUntypedFormats.size();

/// All rows in the order of their IDs.
constexpr auto kRows = [] {
  std::array<const FormatRow*, kCount> rows{};
  std::size_t n = 0;
  for (const FormatRow& row : kFormats) rows[n++] = &row;
  for (const FormatRow& row : kUntypedFormats) rows[n++] = &row;
  std::sort(rows.begin(), rows.end(), [](const FormatRow* a, const FormatRow* b) { return a->id < b->id; });
  return rows;
}();

constexpr FormatFamily FamilyOf(Family family) {
  switch (family) {
    case Family::Rgb:
      return FormatFamily::Rgb;
    case Family::Mono:
      return FormatFamily::Mono;
    case Family::YCbCr:
      return FormatFamily::YCbCr;
    case Family::Bayer:
      return FormatFamily::Bayer;
    case Family::Scf1:
      return FormatFamily::Scf1;
    case Family::BiColor:
      break;
  }
  return FormatFamily::BiColor;
}

bool ConvertsToAnything(long source) {
  return std::any_of(kRows.begin(), kRows.end(), [source](const FormatRow* row) {
    return PixelTypeFactory::HasConverter(source, row->id);
  });
}

bool ComesFromAnything(long destination) {
  return std::any_of(kRows.begin(), kRows.end(), [destination](const FormatRow* row) {
    return PixelTypeFactory::HasConverter(row->id, destination);
  });
}

struct Catalogue {
  std::array<std::string, kCount> words;
  std::array<FormatInfo, kCount> infos;

  Catalogue() {
    for (std::size_t i = 0; i < kCount; ++i) {
      const FormatRow& row = *kRows[i];
      words[i] = LayoutInWords(row);
      infos[i] = {row.id,
                  row.name,
                  FamilyOf(row.family),
                  BitsInMemory(row),
                  row.depth,
                  row.planes,
                  UnitOf(row.order).pixels,
                  1,
                  ConvertsToAnything(row.id),
                  ComesFromAnything(row.id),
                  words[i]};
    }
  }
};

}  // namespace

std::string_view FamilyName(FormatFamily family) noexcept {
  switch (family) {
    case FormatFamily::Rgb:
      return "RGB";
    case FormatFamily::Mono:
      return "Mono";
    case FormatFamily::YCbCr:
      return "YCbCr";
    case FormatFamily::Bayer:
      return "Bayer";
    case FormatFamily::Scf1:
      return "SCF1";
    case FormatFamily::BiColor:
      return "BiColor";
  }
  return {};
}

std::span<const FormatInfo> Formats() {
  static const Catalogue catalogue;
  return catalogue.infos;
}

const FormatInfo* FindFormatInfo(long id) {
  const auto formats = Formats();
  const auto found = std::lower_bound(formats.begin(), formats.end(), id,
                                      [](const FormatInfo& info, long wanted) { return info.id < wanted; });
  return found != formats.end() && found->id == id ? &*found : nullptr;
}

const FormatInfo* FindFormatInfo(std::string_view name) {
  const auto formats = Formats();
  const auto found = std::find_if(formats.begin(), formats.end(),
                                  [name](const FormatInfo& info) { return info.name == name; });
  return found != formats.end() ? &*found : nullptr;
}

std::vector<long> DestinationsOf(long source) {
  std::vector<long> ids;
  for (const FormatRow* row : kRows) {
    if (PixelTypeFactory::HasConverter(source, row->id)) ids.push_back(row->id);
  }
  return ids;
}

ZrUtilsLib::Result DescribeFrame(long id, std::uint64_t width, std::uint64_t height, std::uint64_t stride,
                                 FrameLayout& layout) {
  const FormatRow* row = FindFormat(id);
  if (row == nullptr) return FrameError::UnknownFormat;
  if (width == 0 || height == 0) return FrameError::ZeroSize;
  if (width > kMostPixels || height > kMostPixels) return FrameError::FrameTooLarge;
  if (width % UnitOf(row->order).pixels != 0) return FrameError::WidthNotAllowed;
  const std::uint64_t bytes = LineBytes(*row, static_cast<std::uint32_t>(width));
  if (stride != 0 && stride < bytes) return FrameError::StrideTooSmall;
  if (std::max(stride, bytes) > kMostLineBytes) return FrameError::FrameTooLarge;

  // At most 2^29 x 2^32 x 3: nothing overflows from here on.
  const std::uint64_t step = stride != 0 ? stride : bytes;
  const std::uint64_t frame = step * height * row->planes;
  layout = {bytes, step, row->planes, step * height, frame, frame - step + bytes};
  return {};
}

}  // namespace ZrConvertersLib
