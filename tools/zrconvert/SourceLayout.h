// What the samples of a source format stand for, as the chart's encoder needs it.
#pragma once

#include <ZrConvertersLib/Format.h>

#include <cstdint>
#include <vector>

namespace zrconvert {

enum class Component : std::uint8_t {
  Grey,
  Site,  // what the mosaic's filter at that place lets through
  Red,
  Green,
  Blue,
  Alpha,
  Luma,
  BlueDifference,
  RedDifference
};

// One sample of the pixels that lie in memory together: which component it holds and of which of them; chroma
// samples that they share have cAllPixels.
struct Slot {
  static constexpr unsigned cAllPixels = ~0U;
  Component component;
  unsigned pixel = 0;
};

// The samples of as many pixels as format.widthMultiple says, in memory order.
std::vector<Slot> SlotsOf(const ZrConvertersLib::FormatInfo& format);

}  // namespace zrconvert
