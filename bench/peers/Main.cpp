// zrpeers: conversions that OpenCV or libyuv have, too: both and a memcpy of as many bytes in turn, one
// thread.
//
//   zrpeers [SECONDS]
#include <ZrConvertersLib/Format.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "Peers.h"

namespace Bench {
namespace {

struct Comparison {
  Peer peer;
  Measurement ours;
  double theirSeconds = std::numeric_limits<double>::infinity();
  double different = 0;  ///< share of destination bytes

  double TheirRatio() const { return theirSeconds / ours.copySeconds; }
};

Case CaseOf(const Peer& peer) {
  Selection selection;
  selection.pairs = {peer.pair};
  selection.plain = !peer.filtered;
  for (const Case& one : RegisteredCases(selection))
    if (one.demosaic == peer.demosaic && one.filtered == peer.filtered) return one;
  throw std::logic_error(peer.pair);
}

std::vector<Comparison> Comparisons(const std::vector<Size>& sizes) {
  std::vector<Comparison> comparisons;
  for (const auto& peers : {OpenCvPeers(), YuvPeers()})
    for (const Peer& peer : peers)
      for (const Measurement& m : Plan({CaseOf(peer)}, sizes)) comparisons.push_back({peer, m});
  return comparisons;
}

Frames FramesFor(const std::vector<Comparison>& comparisons) {
  std::vector<Measurement> all;
  for (const Comparison& one : comparisons) all.push_back(one.ours);
  return Frames(all);
}

/// Both convert the same noise.
void Compare(Comparison& one, Frames& frames) {
  const std::size_t bytes = FrameBytes(*one.ours.what.destination, one.ours.size);
  ConvertFrame(one.ours.what, one.ours.size, frames);
  const std::vector<unsigned char> ours(frames.destination.Data(), frames.destination.Data() + bytes);
  one.peer.convert(frames.source.Data(), frames.destination.Data(), one.ours.size);
  std::size_t different = 0;
  for (std::size_t i = 0; i < bytes; ++i) different += ours[i] != frames.destination.Data()[i] ? 1u : 0u;
  one.different = static_cast<double>(different) / static_cast<double>(bytes);
}

void MeasureBoth(Comparison& one, Frames& frames) {
  const auto theirs = [&] {
    one.peer.convert(frames.source.Data(), frames.destination.Data(), one.ours.size);
  };
  MeasureRound(one.ours, frames);
  one.theirSeconds = std::min(one.theirSeconds, FastestOf(theirs, BurstFor(one.ours)));
}

void Print(const std::vector<Comparison>& comparisons) {
  std::printf("| Pair | Size | This library | Peer | Which | Bytes that differ | Its arithmetic |\n");
  std::printf("|---|---|--:|--:|---|--:|---|\n");
  for (const Comparison& one : comparisons)
    std::printf("| %s | %s | %.2f | %.2f | %s | %.1f %% | %s |\n", one.ours.what.Name().c_str(),
                one.ours.size.Name().c_str(), one.ours.Ratio(), one.TheirRatio(), one.peer.library,
                100 * one.different, one.peer.arithmetic);
}

int Main(double seconds) {
  std::vector<Comparison> comparisons = Comparisons({{64, 64}, {640, 480}, {4096, 3000}});
  Frames frames = FramesFor(comparisons);
  for (Comparison& one : comparisons) Compare(one, frames);
  const double begin = Now();
  do {
    for (Comparison& one : comparisons) MeasureBoth(one, frames);
  } while (Now() - begin < seconds);
  Print(comparisons);
  return 0;
}

}  // namespace
}  // namespace Bench

int main(int argc, char** argv) {
  return Bench::Main(argc > 1 ? std::atof(argv[1]) : 30);
}
