#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "Machine.h"
#include "Measure.h"

namespace Bench {

/// A run and what it gave.
struct Run {
  Facts facts;  ///< machine, level, time
  std::string level;
  std::vector<Place> places;
  std::vector<Measurement> measurements;
};

/// Geometric means, the worst pairs and the aims, as Markdown that reads well on a terminal, too.
void WriteSummary(std::ostream& out, const Run& run);

/// A line for each case with its ratios to the floor and to memcpy at each place.
void WriteTable(std::ostream& out, const Run& run);

void WriteCsv(std::ostream& out, const Run& run);
void WriteJson(std::ostream& out, const Run& run);

}  // namespace Bench
