#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include <string>

#include "Cases.h"
#include "Expectation.h"
#include "support/GuardedBuffer.h"

namespace Matrix {

/// Runs conversions in guarded buffers and compares their bytes.
class Checker {
 public:
  Checker();

  /// One sentence about the first fault, or nothing. A read or write beyond an unmapped page crashes, after
  /// the case has been told on stderr.
  std::string Check(const ZrConvertersLib::PixelConverter& converter, const Case& conversion,
                    const Expectation& expected);

 private:
  std::string FindFault(const Expectation& expected, std::span<const std::uint8_t> source,
                        std::span<const std::uint8_t> destination) const;

  TestSupport::GuardedBuffer mSource, mDestination;
};

}  // namespace Matrix
