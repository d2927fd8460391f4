// zrbench: how long the registered conversions take, as multiples of the time of the fastest loop that loads
// and stores as many bytes.
#include <ZrConvertersLib/CpuLevel.h>
#include <ZrConvertersLib/StreamingStores.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "Report.h"

namespace Bench {
namespace {

struct Options {
  bool quick = false;
  double seconds = 0;
  std::string level;
  std::size_t streamingThreshold = 0;
  std::vector<std::string> cached, fromMemory;
  Selection selection;
  std::string filter = "both", tables = "gains";
  std::string note;
  std::string csv, json, summary;
  bool table = false;
};

Size ParseSize(const std::string& text) {
  Size size;
  char rest = 0;
  if (std::sscanf(text.c_str(), "%ux%u%c", &size.width, &size.height, &rest) != 2 || size.Pixels() == 0)
    throw std::invalid_argument("no size: " + text);
  return size;
}

void AddPlaces(std::vector<Place>& places, const std::vector<std::string>& sizes, bool fromMemory) {
  const std::size_t first = places.size();
  for (const std::string& text : sizes) places.push_back({ParseSize(text), fromMemory});
  std::sort(places.begin() + static_cast<std::ptrdiff_t>(first), places.end(),
            [](const Place& a, const Place& b) { return a.size.Pixels() < b.size.Pixels(); });
}

/// Those of the aims and 1920x1080 from memory, unless others are asked for.
std::vector<Place> PlacesOf(const Options& options) {
  std::vector<Place> places;
  const bool usual = options.cached.empty() && options.fromMemory.empty();
  AddPlaces(places, usual ? std::vector<std::string>{"64x64", "640x480", "1920x1080"} : options.cached,
            false);
  AddPlaces(places, usual ? std::vector<std::string>{"1920x1080", "4096x3000"} : options.fromMemory, true);
  return places;
}

/// A quick run leaves some of the three minutes to preparations.
Budget BudgetOf(const Options& options) {
  const double seconds = options.quick ? 150 : 390;
  return {options.seconds > 0 ? options.seconds : seconds, options.quick};
}

void ForceLevel(const Options& options) {
  if (!options.level.empty() && !ZrConvertersLib::ForceCpuLevel(options.level.c_str()))
    throw std::invalid_argument("this machine cannot run the level " + options.level);
}

Run RunAll(const Options& options) {
  ForceLevel(options);
  if (options.streamingThreshold > 0) ZrConvertersLib::SetStreamingThreshold(options.streamingThreshold);
  Run run;
  run.level = ZrConvertersLib::GetCpuLevel();
  run.places = PlacesOf(options);
  run.measurements = Plan(RegisteredCases(options.selection), run.places);
  if (run.measurements.empty()) throw std::invalid_argument("nothing to measure");
  std::cerr << run.measurements.size() << " measurements at level " << run.level << '\n';
  const double begin = Now();
  Frames frames(run.measurements);
  if (options.tables == "gammas") frames.tables = Tables::Gammas;
  MeasureFor(BudgetOf(options), run.measurements, frames,
             [](const std::string& state) { std::cerr << state << '\n'; });
  run.facts = DescribeMachine();
  run.facts.emplace_back("Level", run.level);
  const auto& all = run.measurements;
  const auto measured = std::count_if(all.begin(), all.end(), [](auto& m) { return m.rounds > 0; });
  run.facts.emplace_back("Measured", std::to_string(measured) + " of " + std::to_string(all.size()));
  const auto [least, most] =
      std::minmax_element(all.begin(), all.end(), [](auto& a, auto& b) { return a.rounds < b.rounds; });
  run.facts.emplace_back("Rounds", std::to_string(least->rounds) + " to " + std::to_string(most->rounds) +
                                       " in " + std::to_string(static_cast<int>(Now() - begin)) + " s");
  if (!options.note.empty()) run.facts.emplace_back("Note", options.note);
  return run;
}

void WriteFile(const std::string& name, const Run& run, void (*write)(std::ostream&, const Run&)) {
  if (name.empty()) return;
  std::ofstream file(name);
  write(file, run);
  if (!file.flush()) throw std::runtime_error("cannot write " + name);
}

void Define(CLI::App& app, Options& options) {
  app.add_flag("--quick", options.quick,
               "Done within three minutes, even if not every case has been measured then");
  app.add_option("--seconds", options.seconds, "How long to measure; otherwise 150 if quick, else 390");
  app.add_option("--size", options.cached, "Sizes of frames in the caches, WIDTHxHEIGHT,...")->delimiter(',');
  app.add_option(
         "--memory-size", options.fromMemory,
         "Sizes of frames from memory; without either option 64x64, 640x480 and 1920x1080 in the caches "
         "and 1920x1080 and 4096x3000 from memory")
      ->delimiter(',');
  app.add_option("--level", options.level, "CPU level to force; the highest one otherwise");
  app.add_option("--streaming-threshold", options.streamingThreshold,
                 "Bytes of source and destination above which destinations are written past the caches");
  app.add_option("--source", options.selection.source, "Only sources with this in their name");
  app.add_option("--destination", options.selection.destination, "Only destinations with this in their name");
  app.add_option("--pair", options.selection.pairs,
                 "Only these pairs, SOURCE:DESTINATION,...; SOURCE: and :DESTINATION take all of that format")
      ->delimiter(',');
  app.add_flag("--bit-orders", options.selection.bitOrders,
               "Packed samples as GigE Vision and MIPI CSI-2 order their bits, too");
  app.add_option("--filter", options.filter, "Conversions through tone tables or not: on, off or both")
      ->check(CLI::IsMember({"on", "off", "both"}))
      ->capture_default_str();
  app.add_option("--tables", options.tables,
                 "What tone tables hold: gains (straight lines) or gammas (curves)")
      ->check(CLI::IsMember({"gains", "gammas"}))
      ->capture_default_str();
  app.add_flag("--table", options.table,
               "Print the ratios of every case, and what a call for 64x64 costs beside its pixels");
  app.add_option("--csv", options.csv, "Write all measurements to this file");
  app.add_option("--json", options.json, "Write all measurements and the machine to this file");
  app.add_option("--summary", options.summary, "Write what is printed to this file");
  app.add_option("--note", options.note, "A remark on the run that is written with it");
}

int Main(int argc, char** argv) {
  CLI::App app(
      "Times the registered conversions against the floor: the fastest loop of the same CPU level that loads "
      "and "
      "stores as many bytes, in as many planes, and computes nothing.\n\n"
      "Chosen pairs at one level, for some seconds:\n"
      "  zrbench --level x86-64-v3 --pair YCbCr422_8:,Mono8:RGB8 --filter off --seconds 10 --table\n"
      "One size, frames in the caches and from memory:\n"
      "  zrbench --size 1920x1080 --memory-size 1920x1080 --pair RGB16:RGB8 --seconds 5 --table\n");
  Options options;
  Define(app, options);
  CLI11_PARSE(app, argc, argv);
  options.selection.plain = options.filter != "on";
  options.selection.filtered = options.filter != "off";
  try {
    const Run run = RunAll(options);
    if (options.table) WriteTable(std::cout, run);
    WriteSummary(std::cout, run);
    WriteFile(options.summary, run, WriteSummary);
    WriteFile(options.csv, run, WriteCsv);
    WriteFile(options.json, run, WriteJson);
  } catch (const std::exception& error) {
    std::cerr << "zrbench: " << error.what() << '\n';
    return 1;
  }
  return 0;
}

}  // namespace
}  // namespace Bench

// What no standard exception tells may end the program.
int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape)
  return Bench::Main(argc, argv);
}
