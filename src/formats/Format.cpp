#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/PixelTypeFactory.h>

#include <algorithm>
#include <array>

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

constexpr auto kLayouts = [] {
  std::array<FormatWords::Phrase, kCount> words;
  for (std::size_t i = 0; i < kCount; ++i) words[i] = LayoutInWords(*kRows[i]);
  return words;
}();

constexpr bool TakesFilter(long id) {
  return std::any_of(kDestinations.begin(), kDestinations.end(),
                     [id](const DestinationRow& row) { return row.id == id && row.filtered; });
}

constexpr FormatInfo InfoOf(const FormatRow& row, std::string_view layout) {
  return {.id = row.id,
          .name = row.name,
          .family = FamilyOf(row.family),
          .order = row.order,
          .packing = row.packing,
          .bitsPerPixel = BitsInMemory(row),
          .depth = row.depth,
          .sampleBits = row.container,
          .isSigned = (row.traits & kSigned) != 0,
          .groupPixels = row.group.pixels,
          .groupBytes = row.group.bytes,
          .planes = row.planes,
          .widthMultiple = UnitOf(row.order).pixels,
          .layout = layout,
          .takesFilter = TakesFilter(row.id)};
}

/// Has no destructor, so that destructors of a program's static objects may still ask for formats.
constinit auto sInfos = [] {
  std::array<FormatInfo, kCount> infos;
  for (std::size_t i = 0; i < kCount; ++i) infos[i] = InfoOf(*kRows[i], kLayouts[i]);
  return infos;
}();

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

/// Only the registry knows what converts to what.
bool AskRegistry() {
  for (FormatInfo& info : sInfos) {
    info.isSource = ConvertsToAnything(info.id);
    info.isDestination = ComesFromAnything(info.id);
  }
  return true;
}

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
  [[maybe_unused]] static const bool asked = AskRegistry();
  return sInfos;
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
