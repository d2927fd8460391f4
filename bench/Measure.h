#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "Cases.h"
#include "Memory.h"
#include "Timing.h"

namespace Bench {

/// One case at one size, and what has been measured of it so far.
struct Measurement {
  Case what;
  Size size;
  std::uint64_t bytes = 0;                                       ///< of source and destination
  double seconds = std::numeric_limits<double>::infinity();      ///< fastest conversion
  double copySeconds = std::numeric_limits<double>::infinity();  ///< fastest copy of bytes / 2
  unsigned rounds = 0;

  double Ratio() const { return seconds / copySeconds; }
  double BytesPerSecond() const { return static_cast<double>(bytes) / seconds; }
};

/// Frames of all measurements share this memory.
struct Frames {
  explicit Frames(const std::vector<Measurement>& measurements);

  Memory source, destination;
  unsigned char* pipelineBuffer = nullptr;  ///< of chains: a caller's, kept from call to call
  std::uint32_t pipelineBufferSize = 0;

  ~Frames() { delete[] pipelineBuffer; }
  Frames(const Frames&) = delete;
  Frames& operator=(const Frames&) = delete;
};

/// Each case at each size, nothing measured yet.
std::vector<Measurement> Plan(const std::vector<Case>& cases, const std::vector<Size>& sizes);

/// One call of PixelConverter::Convert for the whole frame.
void ConvertFrame(const Case& what, Size size, Frames& frames);

/// Frames that take long are measured by fewer runs in a round.
Burst BurstFor(const Measurement& measurement);

/// A burst of conversions and a burst of copies.
void MeasureRound(Measurement& measurement, Frames& frames);

/// Until when to go on.
struct Budget {
  double seconds = 0;
  bool strict = false;  ///< stops even within the first round, so that some cases may stay unmeasured
};

/// Rounds over all measurements until the time is up. Going round spreads the runs of a case over the whole
/// time, so that a disturbance spoils only some of them.
void MeasureFor(Budget budget, std::vector<Measurement>& measurements, Frames& frames,
                const std::function<void(const std::string&)>& progress);

}  // namespace Bench
