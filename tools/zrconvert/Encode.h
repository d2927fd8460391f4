// Writes the chart as the bytes that a camera would send.
#pragma once

#include <ZrConvertersLib/FrameConverter.h>

#include <cstdint>
#include <vector>

#include "Chart.h"
#include "SourceLayout.h"

namespace zrconvert {

struct EncodeOptions {
  ZrConvertersLib::MosaicPattern pattern = ZrConvertersLib::MosaicPattern::GRBG;
  ZrConvertersLib::ColourMatrix matrix = ZrConvertersLib::ColourMatrix::Bt601;
  std::size_t linePadding = 0;  // bytes of zeros after every line
};

// One frame in samples of `depth` bits; the chart's width must be a whole number of the layout's groups.
std::vector<std::uint8_t> EncodeFrame(const Chart& chart, const SourceLayout& layout, unsigned depth,
                                      const EncodeOptions& options);

// The part of a colour that a site of a mosaic sees.
double SiteOf(const Colour& colour, ZrConvertersLib::MosaicPattern pattern, unsigned x, unsigned y);

}  // namespace zrconvert
