// Any words as the tool's command line and any bytes as its input: it must say no or do its work, and leave
// nothing half done. The data is one word a line; what follows an empty line is the content of the input.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "Commands.h"
#include "Error.h"
#include "PictureWriter.h"

using namespace zrconvert;

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t cMostPixels = 4096;

// Thrown for what would only take long.
struct TooLong {};

// A directory of its own. The actions put in their own file names, so that no word of the data names a file
// elsewhere.
class Folder {
 public:
  Folder() : mPath((fs::temp_directory_path() / "zrconvert_fuzz_XXXXXX").string()) {
    if (!mkdtemp(mPath.data())) std::abort();
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(mPath, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  const std::string& Path() const { return mPath; }
  std::string At(const std::string& name) const { return mPath + "/" + name; }

 private:
  std::string mPath;
};

const Folder& Here() {
  static const Folder folder;
  return folder;
}

void RequireShort(const Size& size, const LineSpacing& lines) {
  const bool isShort = std::uint64_t{size.width} * size.height <= cMostPixels;
  if (!isShort || lines.padding > 1000 || lines.stride > 10000) throw TooLong();
}

// The same kind of output under a name here.
std::string OutputHere(const std::string& output) {
  const auto container = ContainerByEnding(output);
  const std::string ending = container ? "." + std::string(NameOf(*container)) : "";
  return Here().At(OutputName(output).HasNumber() ? "out%d" : "out") + ending;
}

void ConvertHere(ConvertOptions options) {
  RequireShort(options.size, options.lines);
  if (options.threads > 4) throw TooLong();
  options.files = {Here().At("in.raw"), OutputHere(options.files.back())};
  options.quiet = true;
  Convert(options);
}

void ChartHere(ChartOptions options) {
  RequireShort(options.size, options.lines);
  if (options.frames > 3) throw TooLong();
  options.output = Here().At("out.raw");
  WriteChart(options);
}

void InfoHere(InfoOptions options) {
  options.file = Here().At("in.raw");
  TellWhatFileMayBe(options);
}

std::vector<std::string> Split(std::string_view& rest) {
  std::vector<std::string> words{"zrconvert"};
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view word = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (word.empty()) break;
    words.emplace_back(word.substr(0, word.find('\0')));
  }
  return words;
}

void Run(const std::vector<std::string>& words) {
  std::vector<const char*> pointers;
  pointers.reserve(words.size());
  for (const std::string& word : words) pointers.push_back(word.c_str());
  try {
    ReadCommandLine(static_cast<int>(pointers.size()), pointers.data(),
                    {ConvertHere, ChartHere, InfoHere, ListFormats, ListPairs});
  } catch (const UsageError&) {
  } catch (const Failure&) {
  } catch (const TooLong&) {
  }
}

// A temporary file begins with a dot.
void RequireNothingHalfDone() {
  for (const fs::directory_entry& entry : fs::directory_iterator(Here().Path())) {
    const std::string name = entry.path().filename().string();
    if (name.front() == '.') std::abort();
    fs::remove(entry.path());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  [[maybe_unused]] static const std::FILE* const silent = std::freopen("/dev/null", "w", stdout);
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  const std::vector<std::string> words = Split(rest);
  std::ofstream(Here().At("in.raw"), std::ios::binary) << rest;
  Run(words);
  RequireNothingHalfDone();
  return 0;
}
