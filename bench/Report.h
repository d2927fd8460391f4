#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "Machine.h"
#include "Measure.h"

namespace Bench {

/// A run and what it gave.
struct Run {
  Facts facts;              ///< machine, level, time
  double allowance = 1;     ///< by which the aims are multiplied
  std::vector<Size> sizes;  ///< in ascending order
  std::vector<Measurement> measurements;
};

/// Geometric means, the worst pairs and the aims, as Markdown that reads well on a terminal, too.
void WriteSummary(std::ostream& out, const Run& run);

/// A line for each case with its ratio at each size.
void WriteTable(std::ostream& out, const Run& run);

void WriteCsv(std::ostream& out, const Run& run);
void WriteJson(std::ostream& out, const Run& run);

}  // namespace Bench
