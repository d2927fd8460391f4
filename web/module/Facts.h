// What the library knows of formats, and which of them fill a file, for the page.
#pragma once

#include <ZrConvertersLib/Measure.h>

#include <cstdint>
#include <string>

#include "Frame.h"

namespace page {

// An array of the formats that can be shown.
std::string FormatsAsJson();

// An array of the frames, a format and a size each, that fill so many bytes.
std::string GuessesAsJson(std::uint64_t bytes);

// Sizes of a frame; {"error": "..."} where there is none.
std::string LayoutAsJson(long format, std::uint32_t width, std::uint32_t height, std::uint32_t stride);

// {"black", "white", "balance"}: levels in counts of the source's samples, and gains of red, green and blue;
// {"error": "..."} where the frame cannot be measured.
std::string AutomaticToneAsJson(const Geometry& geometry, const ZrConvertersLib::MeasureOptions& options,
                                const Frame& frame);

}  // namespace page
