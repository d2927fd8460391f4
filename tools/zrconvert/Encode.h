// Writes the chart as the bytes that a camera would send.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FrameConverter.h>

#include <cstdint>
#include <vector>

#include "Chart.h"

namespace zrconvert {

struct EncodeOptions {
  ZrConvertersLib::MosaicPattern pattern = ZrConvertersLib::MosaicPattern::GRBG;
  ZrConvertersLib::ColourMatrix matrix = ZrConvertersLib::ColourMatrix::Bt601;
  ZrConvertersLib::PackingOrder packing = ZrConvertersLib::PackingOrder::Type;
  std::size_t linePadding = 0;  // bytes of zeros after every line
};

// One frame; the chart's width must be a multiple of format.widthMultiple, under Csi2 of format.groupPixels.
// The format must have the packing.
std::vector<std::uint8_t> EncodeFrame(const Chart& chart, const ZrConvertersLib::FormatInfo& format,
                                      const EncodeOptions& options);

// The part of a colour that a sample of a mosaic sees; BiColor has samples 0 and 1 in each pixel.
double SiteOf(const Colour& colour, ZrConvertersLib::FormatFamily family,
              ZrConvertersLib::MosaicPattern pattern, unsigned x, unsigned y, unsigned sample = 0);

}  // namespace zrconvert
