// zrpeers: conversions that OpenCV or libyuv have, too: this library at each of its levels with wide vectors
// and the other one in turn, one thread.
//
//   zrpeers [SECONDS]
#include <ZrConvertersLib/CpuLevel.h>
#include <ZrConvertersLib/Format.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "Peers.h"

namespace Bench {
namespace {

/// The levels that machines beside cameras have and this one can run.
std::vector<const char*> Levels() {
  std::vector<const char*> levels;
  for (const char* level : ZrConvertersLib::GetCpuLevels())
    if (std::string_view(level) >= "x86-64-v3") levels.push_back(level);
  return levels;
}

struct Comparison {
  Peer peer;
  Measurement planned;
  std::vector<double> ourSeconds;  ///< by level
  double theirSeconds = Measurement::kUnmeasured;
  double different = 0;  ///< share of destination bytes
};

Case CaseOf(const Peer& peer) {
  Selection selection;
  selection.pairs = {peer.pair};
  selection.plain = !peer.filtered;
  for (const Case& one : RegisteredCases(selection))
    if (one.demosaic == peer.demosaic && one.filtered == peer.filtered) return one;
  throw std::logic_error(peer.pair);
}

std::vector<Comparison> Comparisons(const std::vector<Place>& places) {
  const std::vector<double> unmeasured(Levels().size(), Measurement::kUnmeasured);
  std::vector<Comparison> comparisons;
  for (const auto& peers : {OpenCvPeers(), YuvPeers()})
    for (const Peer& peer : peers)
      for (const Measurement& m : Plan({CaseOf(peer)}, places)) comparisons.push_back({peer, m, unmeasured});
  return comparisons;
}

Frames FramesFor(const std::vector<Comparison>& comparisons) {
  std::vector<Measurement> all;
  all.reserve(comparisons.size());
  for (const Comparison& one : comparisons) all.push_back(one.planned);
  return Frames(all);
}

/// Both convert the same noise.
void Compare(Comparison& one, Frames& frames) {
  const Size size = one.planned.place.size;
  const std::size_t bytes = FrameBytes(*one.planned.what.destination, size);
  const FramePair pair = frames.Next(false, 0, 0);
  ConvertFrame(one.planned.what, size, pair, frames);
  const std::vector<unsigned char> ours(pair.destination, pair.destination + bytes);
  one.peer.convert(pair.source, pair.destination, size);
  std::size_t different = 0;
  for (std::size_t i = 0; i < bytes; ++i) different += ours[i] != pair.destination[i] ? 1u : 0u;
  one.different = static_cast<double>(different) / static_cast<double>(bytes);
}

void MeasureAll(Comparison& one, Frames& frames) {
  const Measurement& m = one.planned;
  const Burst burst = BurstFor(m);
  const std::vector<const char*> levels = Levels();
  for (std::size_t i = 0; i < levels.size(); ++i) {
    ZrConvertersLib::ForceCpuLevel(levels[i]);
    const auto ours = [&] { ConvertFrame(m.what, m.place.size, frames.Next(m), frames); };
    one.ourSeconds[i] = std::min(one.ourSeconds[i], FastestOf(ours, burst));
  }
  const auto theirs = [&] {
    const FramePair pair = frames.Next(m);
    one.peer.convert(pair.source, pair.destination, m.place.size);
  };
  one.theirSeconds = std::min(one.theirSeconds, FastestOf(theirs, burst));
}

void Print(const std::vector<Comparison>& comparisons) {
  std::printf("| Pair | Frames | Peer | Its time in us |");
  for (const char* level : Levels()) std::printf(" %s |", level);
  std::printf(" Bytes that differ | Its arithmetic |\n|---|---|---|--:|");
  for ([[maybe_unused]] const char* level : Levels()) std::printf("--:|");
  std::printf("--:|---|\n");
  for (const Comparison& one : comparisons) {
    std::printf("| %s | %s | %s | %.4g |", one.planned.what.Name().c_str(), one.planned.place.Name().c_str(),
                one.peer.library, one.theirSeconds * 1e6);
    for (const double seconds : one.ourSeconds) std::printf(" %.2f |", seconds / one.theirSeconds);
    std::printf(" %.1f %% | %s |\n", 100 * one.different, one.peer.arithmetic);
  }
}

/// Where a peer is faster by more than the measurement can be wrong.
void PrintBehind(const std::vector<Comparison>& comparisons) {
  constexpr double kTolerance = 1.02;
  const std::vector<const char*> levels = Levels();
  std::size_t behind = 0;
  std::printf("\nMore than 2 %% behind a peer:\n\n");
  for (const Comparison& one : comparisons)
    for (std::size_t i = 0; i < levels.size(); ++i) {
      if (one.ourSeconds[i] <= kTolerance * one.theirSeconds) continue;
      std::printf("- %s, %s, %s: %.2f of the time of %s\n", one.planned.what.Name().c_str(),
                  one.planned.place.Name().c_str(), levels[i], one.ourSeconds[i] / one.theirSeconds,
                  one.peer.library);
      ++behind;
    }
  std::printf("- altogether %zu of %zu\n", behind, comparisons.size() * levels.size());
}

int Main(double seconds) {
  std::vector<Comparison> comparisons = Comparisons({{{64, 64}, false},
                                                     {{640, 480}, false},
                                                     {{1920, 1080}, false},
                                                     {{1920, 1080}, true},
                                                     {{4096, 3000}, true}});
  Frames frames = FramesFor(comparisons);
  for (Comparison& one : comparisons) Compare(one, frames);
  const double begin = Now();
  do {
    for (Comparison& one : comparisons) MeasureAll(one, frames);
  } while (Now() - begin < seconds);
  Print(comparisons);
  PrintBehind(comparisons);
  return 0;
}

}  // namespace
}  // namespace Bench

int main(int argc, char** argv) {
  return Bench::Main(argc > 1 ? std::atof(argv[1]) : 30);
}
