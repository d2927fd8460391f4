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

/// A frame size, and where the frames are when a conversion begins.
struct Place {
  Size size;
  bool fromMemory = false;  ///< other frames for each call, none of them in a cache; otherwise the same ones

  std::string Name() const;  ///< "640x480", "4096x3000 from memory"
  bool operator==(const Place& other) const;
};

/// One case at one place, and what has been measured of it so far: the fastest of all rounds, in seconds.
struct Measurement {
  static constexpr double kUnmeasured = std::numeric_limits<double>::infinity();

  Case what;
  Place place;
  std::uint64_t bytes = 0;       ///< of source and destination
  double seconds = kUnmeasured;  ///< a conversion
  double ordinaryFloor = kUnmeasured;
  double streamingFloor = kUnmeasured;  ///< with non-temporal stores
  double copySeconds = kUnmeasured;     ///< a memcpy of bytes / 2
  double quarterSeconds = kUnmeasured;  ///< a conversion of a quarter of the lines, for small frames
  unsigned rounds = 0;

  /// The fastest that moves these bytes and does nothing else.
  double FloorSeconds() const;
  double Ratio() const { return seconds / FloorSeconds(); }
  double CopyRatio() const { return seconds / copySeconds; }
  double BytesPerSecond() const { return static_cast<double>(bytes) / seconds; }
  /// Frames of a few thousand pixels tell what a call costs beside its pixels.
  bool TellsFixedCost() const;
  /// Seconds that would be left of a frame without lines, by the straight line through the times of the frame
  /// and of a quarter of its lines.
  double FixedSeconds() const { return (4 * quarterSeconds - seconds) / 3; }
};

/// Where a conversion reads and writes.
struct FramePair {
  unsigned char* source;
  unsigned char* destination;
};

/// What conversions with a filter map channels by: straight lines, or a curve that no straight line fits.
enum class Tables { Gains, Gammas };

/// Frames of all measurements share this memory.
struct Frames {
  explicit Frames(const std::vector<Measurement>& measurements);

  /// The first frames, or those least recently used. Takes `sourceBytes` and `destinationBytes` of them.
  FramePair Next(bool fromMemory, std::size_t sourceBytes, std::size_t destinationBytes);
  FramePair Next(const Measurement& measurement);

  Ring source, destination;
  Tables tables = Tables::Gains;            ///< of conversions with a filter
  unsigned char* pipelineBuffer = nullptr;  ///< of chains: a caller's, kept from call to call
  std::uint32_t pipelineBufferSize = 0;

  ~Frames() { delete[] pipelineBuffer; }
  Frames(const Frames&) = delete;
  Frames& operator=(const Frames&) = delete;
};

/// Each case at each place, nothing measured yet.
std::vector<Measurement> Plan(const std::vector<Case>& cases, const std::vector<Place>& places);

/// One call of PixelConverter::Convert for the whole frame.
void ConvertFrame(const Case& what, Size size, FramePair pair, Frames& frames);

/// Frames that take long are measured by fewer runs in a round.
Burst BurstFor(const Measurement& measurement);

/// A burst of conversions, of each floor and of copies.
void MeasureRound(Measurement& measurement, Frames& frames);

/// Until when to go on.
struct Budget {
  double seconds = 0;
  bool strict = false;  ///< stops even within the first round, so that some cases may stay unmeasured
};

/// Rounds over all measurements until most of the time is up. Going round spreads the runs of a case over the
/// whole time, so that a disturbance spoils only some of them. The rest of the time goes to rounds over the
/// measurements with the highest and the lowest ratios, which are most likely to have been disturbed.
void MeasureFor(Budget budget, std::vector<Measurement>& measurements, Frames& frames,
                const std::function<void(const std::string&)>& progress);

}  // namespace Bench
