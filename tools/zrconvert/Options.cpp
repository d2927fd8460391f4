#include "Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <thread>

#include "Error.h"
#include "Names.h"
#include "Version.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

constexpr unsigned cMostThreads = 256;

// An option whose word is read by one of the functions of Arguments.h.
template <typename Target, typename Value>
CLI::Option* AddWord(CLI::App& app, const std::string& names, const std::string& kind, Target& target,
                     Value (*read)(const std::string&), const std::string& help) {
  const auto take = [&target, read](const std::string& word) { target = read(word); };
  return app.add_option_function<std::string>(names, take, help)->type_name(kind);
}

Container ReadContainer(const std::string& text) {
  const auto container = ContainerByName(text);
  if (!container) throw UsageError("unknown container '" + text + "': it is one of bmp, png, pgm, ppm, raw");
  return *container;
}

unsigned ReadThreads(const std::string& text) {
  const std::uint64_t threads = ReadCount(text);
  if (threads > cMostThreads) throw UsageError("at most 256 threads are used, not " + text);
  return threads > 0 ? static_cast<unsigned>(threads) : std::max(1U, std::thread::hardware_concurrency());
}

std::uint64_t ReadFrames(const std::string& text) {
  const std::uint64_t frames = ReadCount(text);
  if (frames == 0) throw UsageError("0 frames leave nothing to do");
  return frames;
}

std::size_t ReadPadding(const std::string& text) {
  const std::uint64_t padding = ReadCount(text);
  if (padding > 1U << 30) throw UsageError("a padding of " + text + " bytes is beyond all reason");
  return static_cast<std::size_t>(padding);
}

template <typename Options>
void AddColour(CLI::App& app, Options& options) {
  AddWord(
      app, "-p,--pattern", "PATTERN", options.pattern, ReadPattern,
      "How a mosaic begins: GRBG, GBRG, RGGB, BGGR; BiColor RGBG ...; SCF1 WGWR ... (the first unless the "
      "format says)");
  AddWord(app, "-m,--matrix", "MATRIX", options.matrix, ReadMatrix,
          "Matrix of YCbCr: 601, 709 (both video range) or jpeg (full range) (601 unless the format says)");
}

// One of the numbers of the tone settings; the first one given creates them.
template <typename Member, typename Value>
void AddTone(CLI::App& app, const std::string& name, const std::string& kind, ConvertOptions& options,
             Member zr::ToneSettings::*member, Value (*read)(const std::string&), const std::string& help) {
  const auto take = [&options, member, read](const std::string& word) {
    if (!options.tone) options.tone.emplace();
    *options.tone.*member = read(word);
  };
  app.add_option_function<std::string>(name, take, help)->type_name(kind)->group("Tone (8-bit colour only)");
}

void AddTones(CLI::App& app, ConvertOptions& options) {
  using Tone = zr::ToneSettings;
  AddTone(app, "--black", "LEVEL", options, &Tone::black, ReadNumber,
          "Black level to take off, in counts of the source's samples");
  AddTone(app, "--white-balance", "R,G,B", options, &Tone::balance, ReadChannels,
          "White balance, after black");
  AddTone(app, "--gain", "R,G,B", options, &Tone::gain, ReadChannels, "Gains, or one for all channels");
  AddTone(app, "--gamma", "G", options, &Tone::gamma, ReadNumber,
          "Gamma after the gains; 2.2 suits linear frames");
  AddTone(app, "--offset", "R,G,B", options, &Tone::offset, ReadChannels, "Added at the end, of 255");
}

void AddGeometry(CLI::App& app, ConvertOptions& options) {
  AddWord(app, "-r,--region", "X,Y,W,H", options.region, ReadRegion, "Convert only this part of the frame");
  app.add_flag("--flip", options.flipVertical, "Upside down");
  app.add_flag("--flip-horizontal", options.flipHorizontal, "Left to right");
  AddWord(app, "--src-padding", "BYTES", options.sourcePadding, ReadPadding,
          "Bytes after every line of the source");
}

void AddSequence(CLI::App& app, ConvertOptions& options) {
  AddWord(app, "--skip", "N", options.frames.first, ReadCount, "Frames to leave out at the beginning");
  AddWord(app, "--frames", "N", options.frames.count, ReadFrames, "Frames to convert at most");
  AddWord(app, "-j,--threads", "N", options.threads, ReadThreads,
          "Threads that share each frame (1); 0: one for each processor");
  app.add_flag("-q,--quiet", options.quiet, "No progress, no notes");
}

void AddConvert(CLI::App& app, ConvertOptions& options, const Actions& actions) {
  CLI::App* command = app.add_subcommand("convert", "Convert raw frames into pictures");
  command
      ->add_option("FILES", options.files,
                   "IN... OUT: files of raw frames, then the picture; - is standard "
                   "input or output. frame_%04d.png numbers the frames of a sequence")
      ->required();
  AddWord(*command, "-f,--format", "FORMAT", options.source, ReadFormat,
          "Format of the frames: a name of 'zrconvert formats', a PFNC name or a PFNC code (0x010C0059)")
      ->required();
  AddWord(*command, "-s,--size", "WxH", options.size, ReadSize, "Size of a frame in pixels, 640x480")
      ->required();
  AddWord(*command, "-t,--to", "FORMAT", options.destination, ReadFormat,
          "Format of the picture (what suits the source and the container)");
  AddWord(*command, "-c,--container", "KIND", options.container, ReadContainer,
          "bmp, png, pgm, ppm or raw, whatever the ending of OUT says");
  AddColour(*command, options);
  AddWord(*command, "-d,--demosaic", "METHOD", options.demosaic, ReadDemosaic,
          "fast (one colour for each tile of the mosaic) or interpolate");
  AddGeometry(*command, options);
  AddTones(*command, options);
  AddSequence(*command, options);
  command->final_callback([&] { actions.convert(options); });
}

void AddChart(CLI::App& app, ChartOptions& options, const Actions& actions) {
  CLI::App* command = app.add_subcommand("chart", "Write a test chart as a camera would send it");
  command->add_option("OUT", options.output, "The file of raw frames, or - for standard output")->required();
  AddWord(*command, "-f,--format", "FORMAT", options.format, ReadFormat, "Format of the frame")->required();
  AddWord(*command, "-s,--size", "WxH", options.size, ReadSize, "Size of the frame in pixels, 640x480")
      ->required();
  AddColour(*command, options);
  AddWord(*command, "--padding", "BYTES", options.padding, ReadPadding, "Zeros after every line");
  AddWord(*command, "--frames", "N", options.frames, ReadFrames, "Frames of a moving chart (1)");
  command->final_callback([&] { actions.chart(options); });
}

void AddInfo(CLI::App& app, InfoOptions& options, const Actions& actions) {
  CLI::App* command = app.add_subcommand("info", "Say what a file of that size could be");
  command->add_option("FILE", options.file, "A file of raw frames")->required();
  AddWord(*command, "-f,--format", "FORMAT", options.format, ReadFormat, "Only frames of this format");
  AddWord(*command, "-s,--size", "WxH", options.size, ReadSize, "Only frames of this size");
  command->final_callback([&] { actions.info(options); });
}

void AddLists(CLI::App& app, FormatsOptions& formats, PairsOptions& pairs, const Actions& actions) {
  CLI::App* list = app.add_subcommand("formats", "List the formats with their layouts and PFNC codes");
  list->add_flag("--names", formats.namesOnly, "Only the names, one a line");
  list->final_callback([&] { actions.formats(formats); });
  CLI::App* command = app.add_subcommand("pairs", "List the conversions that there are");
  const auto take = [&pairs](const std::string& word) { pairs.format = ReadFormat(word); };
  command->add_option_function<std::string>("FORMAT", take, "Only those from or to this format");
  command->final_callback([&] { actions.pairs(pairs); });
}

struct AllOptions {
  ConvertOptions convert;
  ChartOptions chart;
  InfoOptions info;
  InfoOptions topInfo;
  FormatsOptions formats;
  PairsOptions pairs;
};

void Describe(CLI::App& app, AllOptions& options, const Actions& actions) {
  app.set_version_flag("-V,--version", "zrconvert " ZRCONVERT_VERSION, "Print the version");
  app.set_help_flag("-h,--help", "Print this help");
  app.add_option("--info", options.topInfo.file, "The same as the command info")->type_name("FILE");
  app.footer(
      "'zrconvert COMMAND --help' tells more. Exit codes: 0 done, 1 the conversion failed, 2 wrong usage.");
  AddConvert(app, options.convert, actions);
  AddChart(app, options.chart, actions);
  AddInfo(app, options.info, actions);
  AddLists(app, options.formats, options.pairs, actions);
  app.require_subcommand(0, 1);
}

// Without this a mistaken command would be told as an argument too many.
void RequireCommand(const CLI::App& app, int count, const char* const* words) {
  if (count < 2 || words[1][0] == '-' || words[1][0] == '\0') return;
  std::vector<std::string_view> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  if (std::ranges::count(names, words[1]) > 0) return;
  const std::vector<std::string_view> near = NearestNames(words[1], names, 1);
  const std::string hint =
      near.empty() ? "it is one of " + Join(names, ", ") : "did you mean " + std::string(near[0]) + "?";
  throw UsageError("unknown command '" + std::string(words[1]) + "': " + hint);
}

// CLI11 gives help and version as errors with exit code 0. Its sentences may run over several lines.
int Tell(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) return app.exit(error);
  std::string sentence = error.what();
  std::replace(sentence.begin(), sentence.end(), '\n', ' ');
  throw UsageError(sentence + " ('zrconvert --help' tells more)");
}

}  // namespace

int ReadCommandLine(int count, const char* const* words, const Actions& actions) {
  AllOptions options;
  CLI::App app("Converts the frames of industrial cameras into pictures.", "zrconvert");
  Describe(app, options, actions);
  RequireCommand(app, count, words);
  try {
    app.parse(count, words);
  } catch (const CLI::ParseError& error) {
    return Tell(app, error);
  }
  if (!options.topInfo.file.empty()) {
    actions.info(options.topInfo);
  } else if (app.get_subcommands().empty()) {
    throw UsageError("no command is given: it is one of convert, chart, info, formats, pairs (see --help)");
  }
  return ExitSuccess;
}

}  // namespace zrconvert
