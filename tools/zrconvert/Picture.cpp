#include "Picture.h"

#include <ZrConvertersLib/Format.h>

#include <algorithm>

namespace zrconvert {
namespace {

using enum Storage;
namespace zr = ZrConvertersLib;

unsigned ChannelsOf(zr::ChannelOrder order) {
  if (order == zr::ChannelOrder::Mono) return 1;
  return order == zr::ChannelOrder::RgbA || order == zr::ChannelOrder::BgrA ? 4 : 3;
}

PictureLayout LayoutOf(const zr::FormatInfo& format) {
  const bool blueFirst = format.order == zr::ChannelOrder::Bgr || format.order == zr::ChannelOrder::BgrA;
  const bool packed = format.packing == zr::Packing::Word;
  return {.name = format.name,
          .channels = ChannelsOf(format.order),
          .depth = packed ? 8 : format.depth,
          .storage = packed                   ? Packed565
                     : format.sampleBits == 8 ? Bytes
                                              : Words,
          .blueFirst = blueFirst,
          .planar = format.packing == zr::Packing::Planar};
}

// Mosaics and YCbCr, which some packed sources are unpacked to, are no pictures that a file can show.
std::vector<PictureLayout> AllLayouts() {
  std::vector<PictureLayout> layouts;
  for (const zr::FormatInfo& format : zr::Formats()) {
    const bool shows = format.family == zr::FormatFamily::Mono || format.family == zr::FormatFamily::Rgb;
    if (format.isDestination && shows) layouts.push_back(LayoutOf(format));
  }
  return layouts;
}

}  // namespace

const PictureLayout* FindPictureLayout(std::string_view name) {
  static const std::vector<PictureLayout> layouts = AllLayouts();
  const auto found = std::ranges::find(layouts, name, &PictureLayout::name);
  return found == layouts.end() ? nullptr : &*found;
}

}  // namespace zrconvert
