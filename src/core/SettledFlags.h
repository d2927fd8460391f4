#pragma once

#include "core/FormatTable.h"
#include "core/MatrixFlags.h"
#include "core/PackingFlags.h"
#include "core/Patterns.h"

/// @file
/// Which conversion flags apply to a format; they distinguish format codes of the same type.

namespace ZrConvertersLib {

/// The bits of the flags that matter to the format.
constexpr unsigned SettledFlags(const FormatRow& row, unsigned flags) {
  const unsigned packing = flags & PackingFlagOf(row);
  switch (row.family) {
    case Family::YCbCr:
      return packing | MatrixFlag(MatrixOf(flags));
    case Family::Bayer:
    case Family::BiColor:
    case Family::Scf1:
      return packing | PatternFlag(PatternOf(row.family, flags));
    case Family::Rgb:
    case Family::Mono:
      break;
  }
  return packing;
}

}  // namespace ZrConvertersLib
