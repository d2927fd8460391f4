#pragma once

#include <core/FormatTable.h>

#include <string>

namespace ZrConvertersLib::Pages {

/// The bits of one group of pixels, a line for each byte, bit 7 at the left.
/// @param flagged  true: as the samples lie under the packing flag that acts on the format
/// "P1[11:8]" are bits 11 to 8 of the second pixel's sample, "-" is a bit that no sample uses.
std::string BitPicture(const FormatRow& row, bool flagged = false);

}  // namespace ZrConvertersLib::Pages
