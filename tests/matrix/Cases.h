#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/Converter.h"
#include "support/GuardedBuffer.h"
#include "support/Pattern.h"
#include "support/Random.h"

namespace Matrix {

/// Who provides the intermediate image of a chain.
enum class Between { Library, Caller, CallerTooSmall };

/// One conversion of the matrix. The filter is in `filter`, not in `call`.
struct Case {
  Model::Call call;
  unsigned filter = 0;  ///< a FilterIndex
  TestSupport::Content content = TestSupport::Content::Noise;
  std::uint64_t seed = 0;
  TestSupport::Placement source, destination;
  Between between = Between::Library;
  bool streaming = false;  ///< written past the caches, as large frames are
  bool lineByLine =
      false;  ///< by the inherited Convert, which calls ConvertLine for each line; not for chains
};

std::string Describe(const Case& conversion);

/// Lines of a frame of `width` x `height` without paddings or flags, both images ending at unmapped pages.
Case PlainCase(std::uint32_t width, std::uint32_t height);

/// What every kind of case draws: flags of the source's family and of packings, the padding of lines (odd
/// ones put 16-bit words at odd addresses), a place in memory.
unsigned DrawFlags(const Model::Pair& pair, TestSupport::Random& random);
unsigned DrawPadding(TestSupport::Random& random);
TestSupport::Placement DrawPlacement(TestSupport::Random& random);

/// The cases a pair is tested with: every width of interest several times, each time with other heights,
/// flags, paddings, fillings and places in memory, and a few larger frames. The same for the same pair in
/// every run.
std::vector<Case> CasesOf(const Model::Pair& pair);

}  // namespace Matrix
