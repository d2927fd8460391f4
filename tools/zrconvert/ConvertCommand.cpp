#include <algorithm>
#include <cstdio>

#include "BandConverter.h"
#include "Commands.h"
#include "Error.h"
#include "FrameFacts.h"
#include "FrameReader.h"
#include "PictureWriter.h"
#include "Progress.h"
#include "Targets.h"
#include "Tone.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

std::uint32_t PictureWidth(const ConvertOptions& options) {
  return options.region.width ? options.region.width : options.size.width;
}

std::vector<std::string> InputsOf(const ConvertOptions& options) {
  return {options.files.begin(), options.files.end() - 1};
}

void RequireInputs(const ConvertOptions& options) {
  if (options.files.size() < 2) throw UsageError("convert needs an input and an output: IN... OUT");
  if (std::count(options.files.begin(), options.files.end() - 1, "-") > 1) {
    throw UsageError("standard input can be read only once");
  }
}

void RequireRegion(const ConvertOptions& options) {
  const zr::Region& region = options.region;
  const bool inside = std::uint64_t{region.x} + region.width <= options.size.width &&
                      std::uint64_t{region.y} + region.height <= options.size.height;
  if (!inside) throw UsageError("the region leaves the frame of " + ToText(options.size));
}

zr::FrameOptions FrameOptionsOf(const ConvertOptions& options, zr::RGBFilter& filter) {
  zr::FrameOptions frame = ColourOptions(options.source, options.pattern, options.matrix);
  frame.demosaic = options.demosaic;
  frame.flipVertical = options.flipVertical;
  frame.flipHorizontal = options.flipHorizontal;
  frame.region = options.region;
  if (!options.tone) return frame;
  SetTone(filter, *options.tone, options.source.info->depth);
  frame.filter = &filter;
  return frame;
}

// What is settled before the first frame is read.
struct Plan {
  Container container;
  const zr::FormatInfo* target;
  zr::FrameLayout source;
  BandConverter::Job job;
};

Plan PlanOf(const ConvertOptions& options, zr::RGBFilter& filter) {
  RequireInputs(options);
  RequireRegion(options);
  Plan plan;
  plan.container = ContainerOf(options);
  plan.source = DescribeOrThrow(*options.source.info, options.size, options.sourcePadding);
  plan.target = &TargetOf(options, plan.container, PictureWidth(options));
  plan.job.source = options.source.info->id;
  plan.job.destination = plan.target->id;
  plan.job.width = options.size.width;
  plan.job.height = options.size.height;
  plan.job.stride = static_cast<std::size_t>(plan.source.stride);
  plan.job.threads = options.threads;
  plan.job.options = FrameOptionsOf(options, filter);
  return plan;
}

void Note(const ConvertOptions& options, const std::string& text) {
  if (!options.quiet) std::fprintf(stderr, "zrconvert: note: %s\n", text.c_str());
}

// Counted before the first picture is written, which may be written over the input.
struct Remainder {
  std::uint64_t frames;
  std::uint64_t bytes;
};

Remainder RemainderOf(const FrameReader& reader, bool takesSequence) {
  return {takesSequence ? 0 : reader.FrameCount().value_or(0), reader.LeftOver()};
}

void Tell(const ConvertOptions& options, const Remainder& remainder) {
  if (remainder.frames > 1) {
    Note(options, "of " + std::to_string(remainder.frames) +
                      " frames only the first is converted; a name such as frame_%04d.png takes them all");
  }
  if (remainder.bytes > 0) {
    Note(options, std::to_string(remainder.bytes) + " bytes after the last whole frame are left over");
  }
}

// A mosaic keeps its sites when it is flipped or cut, so its first site may be another.
void TellPattern(const ConvertOptions& options, const Plan& plan, const BandConverter& converter) {
  if (plan.target->family != zr::FormatFamily::Bayer) return;
  const zr::MosaicPattern pattern = converter.PicturePattern();
  if (pattern == plan.job.options.pattern) return;
  Note(options, "the pattern of the mosaic is now " + std::string(zr::PatternName(pattern)));
}

// The loop over the frames.
class Conversion {
 public:
  Conversion(const ConvertOptions& options, const Plan& plan)
      : mOptions(options),
        mLayout(FindPictureLayout(plan.target->name)),
        mConverter(plan.job),
        mReader(InputsOf(options), static_cast<std::size_t>(plan.source.frameBytes),
                static_cast<std::size_t>(plan.source.leastBytes), options.frames),
        mWriter(options.files.back(), plan.container),
        mProgress(mWriter.TakesSequence() ? mReader.FrameCount() : 1, options.quiet) {}

  const BandConverter& Converter() const { return mConverter; }

  void Run() {
    const Remainder remainder = RemainderOf(mReader, mWriter.TakesSequence());
    std::uint64_t number = mOptions.frames.first;
    while (mReader.Next(mFrame)) {
      ThrowIfInterrupted();
      ConvertFrame(number++);
      if (!mWriter.TakesSequence()) break;
    }
    if (number == mOptions.frames.first) throw Failure("the input has no frame that is not skipped");
    mWriter.Finish();
    mProgress.Summarise();
    Tell(mOptions, remainder);
  }

 private:
  void ConvertFrame(std::uint64_t number) {
    mPicture.resize(mConverter.PictureBytes());
    const auto begin = std::chrono::steady_clock::now();
    mConverter.Convert(mFrame, mPicture);
    mProgress.AddConversion(std::chrono::steady_clock::now() - begin);
    mWriter.Write({mLayout, mConverter.Width(), mConverter.Height(), mPicture}, number);
    mProgress.FrameDone();
  }

  const ConvertOptions& mOptions;
  const PictureLayout* mLayout;
  BandConverter mConverter;
  FrameReader mReader;
  PictureWriter mWriter;
  Progress mProgress;
  std::vector<std::uint8_t> mFrame;
  std::vector<std::uint8_t> mPicture;
};

}  // namespace

void Convert(const ConvertOptions& options) {
  zr::RGBFilter filter;
  const Plan plan = PlanOf(options, filter);
  Conversion conversion(options, plan);
  conversion.Run();
  TellPattern(options, plan, conversion.Converter());
}

}  // namespace zrconvert
