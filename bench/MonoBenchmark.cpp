// zrmono: Mono8 and Mono12 to every destination with Google Benchmark. Each iteration is a conversion and a
// memcpy that moves as many bytes; only the conversion is the benchmark's time, and `ratio` is the fastest of
// one over the fastest of the other.
#include <benchmark/benchmark.h>

#include <ZrConvertersLib/Format.h>

#include <cstring>

#include "Measure.h"

namespace Bench {
namespace {

void RunCase(benchmark::State& state, const Measurement& planned) {
  Measurement m = planned;
  Frames frames({m});
  const FramePair pair = frames.Next(m);
  auto convert = [&] { ConvertFrame(m.what, m.place.size, pair, frames); };
  auto copy = [&] {
    std::memcpy(pair.destination, pair.source, m.bytes / 2);
    benchmark::ClobberMemory();
  };
  for ([[maybe_unused]] auto iteration : state) {
    const double seconds = TimeOf(convert, 1);
    state.SetIterationTime(seconds);
    m.seconds = std::min(m.seconds, seconds);
    m.copySeconds = std::min(m.copySeconds, TimeOf(copy, 1));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(m.bytes));
  state.counters["ratio"] = m.CopyRatio();
}

void Register() {
  Selection selection;
  selection.filtered = false;
  for (const char* source : {"Mono8:", "Mono12:"})
    for (const Measurement& m :
         Plan(RegisteredCases(selection), {{{640, 480}}, {{1920, 1080}}, {{4096, 3000}}})) {
      const std::string pair = std::string(m.what.source->name) + ":" + std::string(m.what.destination->name);
      if (pair.starts_with(source))
        benchmark::RegisterBenchmark((pair + "/" + m.place.Name()).c_str(), RunCase, m)->UseManualTime();
    }
}

}  // namespace
}  // namespace Bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  Bench::Register();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
