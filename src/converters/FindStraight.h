#pragma once

#include <cstdint>

#include "simd/StraightTable.h"

namespace ZrConvertersLib {

/// Finds the straight form of a table of 256 bytes. False, with the form undefined, if it cannot give each of
/// the table's entries.
bool FindStraight(const std::uint8_t* table, simd::StraightTable& form);

}  // namespace ZrConvertersLib
