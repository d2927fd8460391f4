// zrcount: converts a frame of every registered pair, and one of twice as many lines, and marks where each
// conversion begins and ends, for bench/count_instructions.py, which runs it under an emulator that logs what
// it executes.
//
//   zrcount WIDTH HEIGHT [LEVEL]
//
// A mark is a line on standard error, in the midst of that log: "# begin", "# once", "# begin", "# NAME".
#include <ZrConvertersLib/CpuLevel.h>
#include <ZrConvertersLib/Format.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "Measure.h"

namespace Bench {
namespace {

bool Log(const std::string& text) {
  return write(STDERR_FILENO, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

/// Family, layout, how it is converted, and the pair, separated by tabulators.
std::string MarkOf(const Case& what) {
  using enum ZrConvertersLib::Packing;
  const auto packing = what.source->packing;
  const char* layout = packing == Plain ? "" : packing == Planar ? "planar" : "packed";
  const char* how = what.demosaic == Demosaic::None   ? ""
                    : what.demosaic == Demosaic::Fast ? "fast"
                                                      : "interpolating";
  return std::string(what.Family()) + '\t' + layout + '\t' + how + '\t' + (what.filtered ? "filtered" : "") +
         '\t' + what.Name();
}

/// Converts once more than is counted: the first time the level is chosen and a chain's buffer is made.
bool Count(const Case& what, Size size, Frames& frames) {
  const FramePair pair = frames.Next(false, 0, 0);
  const Size twice{size.width, 2 * size.height};
  ConvertFrame(what, twice, pair, frames);
  const std::string begin = "# begin\n", once = "# once\n# begin\n", mark = "# " + MarkOf(what) + "\n";
  if (!Log(begin)) return false;
  ConvertFrame(what, size, pair, frames);
  if (!Log(once)) return false;
  ConvertFrame(what, twice, pair, frames);
  return Log(mark);
}

int Main(int argc, char** argv) {
  if (argc < 3 || (argc > 3 && !ZrConvertersLib::ForceCpuLevel(argv[3]))) return 2;
  const Size size{static_cast<std::uint32_t>(std::atoi(argv[1])),
                  static_cast<std::uint32_t>(std::atoi(argv[2]))};
  Selection selection;
  const auto plan = Plan(RegisteredCases(selection), {{{size.width, 2 * size.height}}});
  Frames frames(plan);
  for (const Measurement& m : plan)
    if (!Count(m.what, size, frames)) return 1;
  return 0;
}

}  // namespace
}  // namespace Bench

int main(int argc, char** argv) {
  return Bench::Main(argc, argv);
}
