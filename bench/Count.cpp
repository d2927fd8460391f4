// zrcount: converts one frame of every registered pair and marks where each conversion begins and ends, for
// scripts/count-instructions, which runs it under an instrument that counts instructions.
//
//   zrcount WIDTH HEIGHT [LEVEL]
//
// Under callgrind a mark is a request to dump the counts, under an emulator that logs what it executes a line
// "# NAME" in the midst of that log on standard error.
#include <ZrConvertersLib/CpuLevel.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "Measure.h"

#if defined(__x86_64__) && __has_include(<valgrind/callgrind.h>)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wpedantic"
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_ZERO_STATS
#define CALLGRIND_DUMP_STATS_AT(name) static_cast<void>(name)
#endif

namespace Bench {
namespace {

bool Log(const std::string& text) {
  return write(STDERR_FILENO, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

/// Converts once more than is counted: the first time the level is chosen and a chain's buffer is made.
bool Count(const Case& what, Size size, Frames& frames) {
  const FramePair pair = frames.Next(false, 0, 0);
  ConvertFrame(what, size, pair, frames);
  const std::string name = std::string(what.Family()) + "\t" + what.Name();
  if (!Log("# begin\n")) return false;
  CALLGRIND_ZERO_STATS;
  ConvertFrame(what, size, pair, frames);
  CALLGRIND_DUMP_STATS_AT(name.c_str());
  return Log("# " + name + "\n");
}

int Main(int argc, char** argv) {
  if (argc < 3 || (argc > 3 && !ZrConvertersLib::ForceCpuLevel(argv[3]))) return 2;
  const Size size{static_cast<std::uint32_t>(std::atoi(argv[1])),
                  static_cast<std::uint32_t>(std::atoi(argv[2]))};
  Selection selection;
  const auto plan = Plan(RegisteredCases(selection), {{size}});
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
