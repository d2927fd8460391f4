#include "Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <thread>

#include "Error.h"
#include "Names.h"
#include "Version.h"

namespace zrconvert {
namespace {

constexpr std::uint64_t cMostThreads = 256;
constexpr std::uint64_t cMostLineBytes = 1U << 30;

// An option whose word is read by one of the functions of Arguments.h.
template <typename Target, typename Value>
CLI::Option* AddWord(CLI::App& app, const std::string& names, const std::string& kind, Target& target,
                     Value (*read)(const std::string&), const std::string& help) {
  const auto take = [&target, read](const std::string& word) { target = read(word); };
  return app.add_option_function<std::string>(names, take, help)->type_name(kind);
}

// The long one of an option's names.
std::string LongNameIn(const std::string& names) {
  return names.substr(names.find("--"));
}

// An option that takes a whole number.
template <typename Target>
void AddCount(CLI::App& app, const std::string& names, const std::string& kind, Target& target,
              CountRange range, const std::string& help) {
  const auto take = [&target, name = LongNameIn(names), range](const std::string& word) {
    target = static_cast<Target>(ReadCount(name, word, range));
  };
  app.add_option_function<std::string>(names, take, help)->type_name(kind);
}

Container ReadContainer(const std::string& text) {
  const auto container = ContainerByName(text);
  if (!container) throw UsageError("unknown container '" + text + "': it is one of " + NamesOfContainers());
  return *container;
}

// Options of both commands that have frames in them.
template <typename Options>
void AddFrame(CLI::App& app, Options& options, const std::string& paddingName) {
  AddCount(app, paddingName, "BYTES", options.lines.padding, {0, cMostLineBytes},
           "Bytes after the pixels of every line");
  AddCount(app, "--stride", "BYTES", options.lines.stride, {1, cMostLineBytes},
           "Bytes from one line to the next, instead of the padding");
  const auto keep = [&options](std::int64_t) { options.existing = Existing::Keep; };
  app.add_flag_function("--no-clobber", keep, "Refuse to overwrite files");
}

template <typename Options>
void AddColour(CLI::App& app, Options& options) {
  AddWord(
      app, "-p,--pattern", "PATTERN", options.pattern, ReadPattern,
      "How a mosaic begins: GRBG, GBRG, RGGB, BGGR; BiColor RGBG ...; SCF1 WGWR ... (the first unless the "
      "format says)");
  AddWord(app, "-m,--matrix", "MATRIX", options.matrix, ReadMatrix,
          "Matrix of YCbCr: 601, 709 (both video range) or jpeg (full range) (601 unless the format says)");
  AddWord(
      app, "--packing", "ORDER", options.packing, ReadPacking,
      "Order of the bits of packed samples: type (as 'zrconvert formats' describes the format), gige-vision "
      "(formats ..10Packed, ..12Packed) or csi2 (MIPI CSI-2: ..10p, ..12p, ..14p) (type unless the format "
      "says)");
}

const std::string cToneGroup = "Tone (at full depth, in this order)";

template <typename Target, typename Value>
void AddTone(CLI::App& app, const std::string& name, const std::string& kind, Target& target,
             Value (*read)(const std::string&, const std::string&, NumberRange), NumberRange range,
             const std::string& help) {
  const auto take = [&target, name, read, range](const std::string& word) {
    target = read(name, word, range);
  };
  app.add_option_function<std::string>(name, take, help)->type_name(kind)->group(cToneGroup);
}

void AddTones(CLI::App& app, ToneOptions& tone) {
  using enum NumberRange;
  app.add_flag("--auto", tone.automatic,
               "Levels, and white balance of colour, from the first frame, where they are not given")
      ->group(cToneGroup);
  AddTone(app, "--black", "LEVEL", tone.black, ReadNumber, NotNegative,
          "Black level to take off, in counts of the source's samples");
  AddTone(app, "--white", "LEVEL", tone.white, ReadNumber, Positive,
          "Samples that become white, in the same counts");
  AddTone(app, "--white-balance", "R,G,B", tone.balance, ReadChannels, NotNegative, "White balance");
  AddTone(app, "--gain", "R,G,B", tone.gain, ReadChannels, NotNegative, "Gains, or one for all channels");
  AddWord(app, "--color-matrix", "9 NUMBERS", tone.matrix, ReadColorMatrix,
          "What red, then green, then blue takes of the three")
      ->group(cToneGroup);
  AddTone(app, "--gamma", "G", tone.gamma, ReadNumber, Positive, "Gamma; 2.2 suits linear frames");
  AddWord(app, "--curve", "CURVE", tone.curve, ReadCurve,
          "srgb, linear, or points joined by lines: INPUT:OUTPUT,... from 0 to 1")
      ->group(cToneGroup);
  AddTone(app, "--offset", "R,G,B", tone.offset, ReadChannels, Any,
          "Added at the end, of 255; 8-bit colour only");
}

void AddGeometry(CLI::App& app, ConvertOptions& options) {
  AddWord(app, "-r,--region", "X,Y,W,H", options.region, ReadRegion, "Convert only this part of the frame");
  app.add_flag("--flip,--flip-vertical", options.flipVertical, "Upside down");
  app.add_flag("--flip-horizontal", options.flipHorizontal, "Left to right");
}

void AddSequence(CLI::App& app, ConvertOptions& options) {
  AddCount(app, "--header-bytes", "N", options.headerBytes, {}, "Bytes before the first frame of each file");
  app.add_flag("--ignore-rest", options.ignoreRest, "Convert files that end within a frame");
  AddCount(app, "--skip", "N", options.frames.first, {}, "Frames to leave out at the beginning");
  AddCount(app, "--frames", "N", options.frames.count, {1}, "Frames to convert at most");
  const auto take = [&options](const std::string& word) {
    const auto threads = static_cast<unsigned>(ReadCount("--threads", word, {0, cMostThreads}));
    options.threads = threads > 0 ? threads : std::max(1U, std::thread::hardware_concurrency());
  };
  app.add_option_function<std::string>("-j,--threads", take,
                                       "Threads that share each frame and, for numbered names, write the "
                                       "pictures (1); 0: one for each processor")
      ->type_name("N");
  app.add_flag("-q,--quiet", options.quiet, "No progress, no notes");
}

void AddConvert(CLI::App& app, ConvertOptions& options, const Actions& actions) {
  CLI::App* command = app.add_subcommand("convert", "Convert raw frames into pictures");
  command
      ->add_option("FILES", options.files,
                   "IN... OUT: files of raw frames, then the picture; - is standard "
                   "input or output. frame_%04d.png numbers the frames of a sequence")
      ->required();
  AddWord(
      *command, "-f,--format", "FORMAT", options.source, ReadFormat,
      "Format of the frames: a name of 'zrconvert formats', a name or code of PFNC (BayerRG12p, 0x010C0059), "
      "or a name or fourcc of V4L2 (SRGGB10P, pRAA)")
      ->required();
  AddWord(*command, "-s,--size", "WxH", options.size, ReadSize, "Size of a frame in pixels, 640x480")
      ->required();
  AddWord(*command, "-t,--to", "FORMAT", options.destination, ReadFormat,
          "Format of the picture (what suits the source and the container)");
  AddWord(*command, "-c,--container", "KIND", options.container, ReadContainer,
          NamesOfContainers() + ", whatever the ending of OUT says");
  AddCount(*command, "--png-level", "N", options.encoder.pngLevel, {0, 9},
           "Compression of .png files, 0 (none) to 9 (smallest) (1)");
  AddColour(*command, options);
  AddWord(*command, "-d,--demosaic", "METHOD", options.demosaic, ReadDemosaic,
          "directional (Bayer only, the others are interpolated), interpolate, or fast (one colour for each "
          "tile)");
  AddGeometry(*command, options);
  AddFrame(*command, options, "--src-padding");
  AddTones(*command, options.tone);
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
  AddFrame(*command, options, "--padding");
  AddCount(*command, "--frames", "N", options.frames, {1}, "Frames of a moving chart (1)");
  command->final_callback([&] { actions.chart(options); });
}

void AddInfo(CLI::App& app, InfoOptions& options, const Actions& actions) {
  CLI::App* command = app.add_subcommand("info", "Say what a file of that size could be");
  command->add_option("FILE", options.file, "A file of raw frames")->required();
  AddWord(*command, "-f,--format", "FORMAT", options.format, ReadFormat, "Only frames of this format");
  AddWord(*command, "-s,--size", "WxH", options.size, ReadSize, "Only frames of this size");
  command->add_flag("--measure", options.measure, "Measure the samples of the first frame");
  command->add_option("--histogram", options.histogram, "Draw them as a .png, too")->type_name("OUT.png");
  AddColour(*command, options);
  command->final_callback([&] { actions.info(options); });
}

void AddLists(CLI::App& app, FormatsOptions& formats, PairsOptions& pairs, const Actions& actions) {
  CLI::App* list =
      app.add_subcommand("formats", "List the formats with their layouts and what PFNC and V4L2 call them");
  list->add_flag("--names", formats.namesOnly, "Only the names that -f takes, one a line");
  list->add_flag("--json", formats.json, "As JSON, for programs");
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

// Without this a misspelt command would be reported as a surplus argument.
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
