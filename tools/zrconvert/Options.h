// The command line: what may be written there and what it means.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Containers.h"
#include "FormatNames.h"
#include "FrameFacts.h"
#include "FrameReader.h"
#include "OutputFile.h"
#include "Tone.h"

namespace zrconvert {

struct ConvertOptions {
  std::vector<std::string> files;  // the inputs, then the output
  Format source;
  std::optional<Format> destination;
  Size size;
  std::optional<ZrConvertersLib::MosaicPattern> pattern;
  std::optional<ZrConvertersLib::ColourMatrix> matrix;
  std::optional<ZrConvertersLib::PackingOrder> packing;
  std::optional<ZrConvertersLib::Demosaic> demosaic;
  ZrConvertersLib::Region region;
  bool flipVertical = false;
  bool flipHorizontal = false;
  ToneOptions tone;
  LineSpacing lines;
  std::uint64_t headerBytes = 0;
  bool ignoreRest = false;
  std::optional<Container> container;
  EncoderOptions encoder;
  Existing existing = Existing::Replace;
  FrameRange frames;
  unsigned threads = 1;
  bool quiet = false;
};

struct ChartOptions {
  std::string output;
  Format format;
  Size size;
  std::optional<ZrConvertersLib::MosaicPattern> pattern;
  std::optional<ZrConvertersLib::ColourMatrix> matrix;
  std::optional<ZrConvertersLib::PackingOrder> packing;
  LineSpacing lines;
  std::uint64_t frames = 1;
  Existing existing = Existing::Replace;
};

struct InfoOptions {
  std::string file;
  std::optional<Format> format;
  std::optional<Size> size;
  bool measure = false;
  std::string histogram;  // the picture to write; empty for none
  std::optional<ZrConvertersLib::MosaicPattern> pattern;
  std::optional<ZrConvertersLib::ColourMatrix> matrix;
  std::optional<ZrConvertersLib::PackingOrder> packing;
};

struct FormatsOptions {
  bool namesOnly = false;
  bool json = false;
};

struct PairsOptions {
  std::optional<Format> format;
};

// What each command does with its options.
struct Actions {
  std::function<void(const ConvertOptions&)> convert;
  std::function<void(const ChartOptions&)> chart;
  std::function<void(const InfoOptions&)> info;
  std::function<void(const FormatsOptions&)> formats;
  std::function<void(const PairsOptions&)> pairs;
};

// Reads the command line and performs the command that it names. Returns the exit code for --help, --version
// and errors in the command line, which it reports; exceptions of the actions pass through.
int ReadCommandLine(int count, const char* const* words, const Actions& actions);

}  // namespace zrconvert
