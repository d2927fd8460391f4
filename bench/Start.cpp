// zrstart: what it costs to load the library and to use it for the first time.
//
//   zrstart LIBRARY [RUNS]     runs itself in fresh processes; each loads the library by dlopen
#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "Timing.h"

namespace Bench {
namespace {

using ZrConvertersLib::PixelConverter;

/// Seconds.
struct Start {
  double load, find, firstUse, secondUse;
};

/// PixelTypeFactory::GetConverter(const long&, const long&): the library is not linked, so by its linker
/// name.
constexpr const char* kGetConverter = "_ZN15ZrConvertersLib16PixelTypeFactory12GetConverterERKlS2_";
using GetConverter = const PixelConverter* (*)(const long&, const long&);

double Convert(const PixelConverter& converter) {
  std::array<unsigned char, 64> source{}, destination{};
  const double begin = Now();
  converter.Convert(source.data(), 1, 1, destination.data(), 1, 1, 1, 1, 0, 0, nullptr, nullptr, 0, false,
                    nullptr);
  return Now() - begin;
}

int Child(const char* library, int pipe) {
  Start start{};
  double begin = Now();
  void* handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  start.load = Now() - begin;
  if (handle == nullptr) return 1;
  begin = Now();
  const auto get = reinterpret_cast<GetConverter>(dlsym(handle, kGetConverter));
  if (get == nullptr) return 1;
  const PixelConverter* converter =
      get(ZrConvertersLib::PixelTypeIds::Mono8, ZrConvertersLib::PixelTypeIds::BGRa8);
  start.find = Now() - begin;
  start.firstUse = Convert(*converter);
  start.secondUse = Convert(*converter);
  return write(pipe, &start, sizeof start) == sizeof start ? 0 : 1;
}

bool RunChild(const char* program, const char* library, Start& start) {
  int ends[2];
  if (pipe(ends) != 0) return false;
  const pid_t child = fork();
  if (child == 0) {
    char number[16];
    std::snprintf(number, sizeof number, "%d", ends[1]);
    execl(program, program, "--child", library, number, static_cast<char*>(nullptr));
    _exit(1);
  }
  close(ends[1]);
  const bool whole = child > 0 && read(ends[0], &start, sizeof start) == sizeof start;
  close(ends[0]);
  if (child > 0) waitpid(child, nullptr, 0);
  return whole;
}

void Report(const char* what, const std::vector<Start>& starts, double Start::*member) {
  std::vector<double> values;
  values.reserve(starts.size());
  for (const Start& start : starts) values.push_back(start.*member * 1e6);
  std::sort(values.begin(), values.end());
  std::printf("| %s | %.2f | %.2f |\n", what, values.front(), values[values.size() / 2]);
}

int Main(int argc, char** argv) {
  if (argc == 4 && std::strcmp(argv[1], "--child") == 0) return Child(argv[2], std::atoi(argv[3]));
  if (argc < 2) return 2;
  const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 200;
  std::vector<Start> starts(static_cast<std::size_t>(runs));
  for (Start& start : starts)
    if (!RunChild("/proc/self/exe", argv[1], start)) return 1;
  std::printf("| In %d fresh processes | Fastest, us | Median, us |\n|---|--:|--:|\n", runs);
  Report("Loading the library (dlopen)", starts, &Start::load);
  Report("First look-up of a converter", starts, &Start::find);
  Report("First conversion of 1x1, choosing the level", starts, &Start::firstUse);
  Report("Second conversion of 1x1", starts, &Start::secondUse);
  return 0;
}

}  // namespace
}  // namespace Bench

int main(int argc, char** argv) {
  return Bench::Main(argc, argv);
}
