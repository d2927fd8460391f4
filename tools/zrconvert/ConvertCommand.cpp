#include <ZrConvertersLib/FrameErrors.h>

#include <chrono>
#include <cstdio>

#include "Commands.h"
#include "Error.h"
#include "FrameReader.h"
#include "PictureWriter.h"
#include "Plan.h"
#include "Progress.h"
#include "WriterThreads.h"
#include "common/Refusal.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

void Note(const ConvertOptions& options, const std::string& text) {
  if (!options.quiet) std::fprintf(stderr, "zrconvert: note: %s\n", text.c_str());
}

// A mosaic keeps its sites when it is flipped or cut, so its first site may be another.
void TellPattern(const ConvertOptions& options, const Plan& plan, zr::MosaicPattern pattern) {
  if (plan.target->family != zr::FormatFamily::Bayer) return;
  if (pattern == plan.job.options.pattern) return;
  Note(options, "the pattern of the mosaic is now " + std::string(zr::PatternName(pattern)));
}

zrcommon::BandedConverter ConverterOf(const zrcommon::Conversion& job) {
  try {
    return zrcommon::BandedConverter(job);
  } catch (const zrcommon::Refusal& refusal) {
    if (refusal.Result().GetCode() != zr::FrameError::InvalidTone) throw UsageError(refusal.what());
    throw UsageError(
        "tone out of range: --gamma is above 0, factors are 0 or more, and --black is less than --white");
  }
}

// The loop over the frames.
class Conversion {
 public:
  Conversion(const ConvertOptions& options, const Plan& plan)
      : mOptions(options),
        mLayout(FindPictureLayout(plan.target->name)),
        mSize(options.size),
        mStride(static_cast<std::size_t>(plan.fit.layout.stride)),
        mConverter(ConverterOf(plan.job)),
        mReader(plan.inputs, plan.fit, options.frames),
        mGuard(plan.inputs, options.existing),
        mWriter(options.files.back(), plan.container, options.encoder, mGuard),
        mFrames(mReader.FrameCount()),
        mLeftOver(mReader.LeftOver()),
        mProgress(mWriter.TakesSequence() ? mFrames : 1, options.quiet),
        mThreads(mWriter.WritesManyFiles() ? options.threads : 1,
                 [this](const auto& picture, std::uint64_t number) { Write(picture, number); }) {}

  zr::MosaicPattern PicturePattern() const { return Facts().DestinationPattern(); }

  // Throws, before anything is written, if an input or output cannot be used.
  void CheckFiles() const {
    mReader.RequireWholeFrames();
    mWriter.CheckOutputs(mOptions.frames.first, mFrames);
  }

  void Run() {
    std::uint64_t number = mOptions.frames.first;
    while (mReader.Next(mFrame)) {
      ConvertFrame(number++);
      if (!mWriter.TakesSequence()) break;
    }
    if (number == mOptions.frames.first) throw Failure("the input has no frame that is not skipped");
    mThreads.Finish();
    mWriter.Finish();
    mProgress.Summarise();
    TellWhatIsLeft();
  }

 private:
  const zr::FrameConverter& Facts() const { return mConverter.Facts(); }

  void ConvertFrame(std::uint64_t number) {
    WriterThreads::Bytes picture = mThreads.TakeBuffer();
    picture.resize(Facts().DestinationLayout().frameBytes);
    const auto begin = std::chrono::steady_clock::now();
    ConvertInto(picture);
    mProgress.AddConversion(std::chrono::steady_clock::now() - begin);
    mThreads.Add(std::move(picture), number);
    mProgress.FrameDone();
  }

  void ConvertInto(WriterThreads::Bytes& picture) {
    try {
      mConverter.Convert(zr::SourceView::Of(mFrame, mSize.width, mSize.height, mStride),
                         zr::DestinationView::Of(picture, Facts().Width(), Facts().Height()));
    } catch (const zrcommon::Refusal& refusal) {
      throw Failure(std::string("the conversion failed: ") + refusal.what());
    }
  }

  void Write(const WriterThreads::Bytes& picture, std::uint64_t number) {
    mWriter.Write({mLayout, Facts().Width(), Facts().Height(), picture}, number);
  }

  void TellWhatIsLeft() const {
    if (!mWriter.TakesSequence() && mFrames > 1U) {
      Note(mOptions, "of " + std::to_string(*mFrames) +
                         " frames only the first is converted; a name such as frame_%04d.png takes them all");
    }
    if (mLeftOver > 0) {
      Note(mOptions, std::to_string(mLeftOver) + " bytes after the last whole frame are left over");
    }
  }

  const ConvertOptions& mOptions;
  const PictureLayout* mLayout;
  Size mSize;
  std::size_t mStride;
  zrcommon::BandedConverter mConverter;
  FrameReader mReader;
  OverwriteGuard mGuard;
  PictureWriter mWriter;
  std::optional<std::uint64_t> mFrames;
  std::uint64_t mLeftOver;
  Progress mProgress;
  std::vector<std::uint8_t> mFrame;
  WriterThreads mThreads;  // ends first: it writes with the others
};

}  // namespace

void Convert(const ConvertOptions& options) {
  zr::RGBFilter filter;
  const Plan plan = PlanOf(options, filter);
  Conversion conversion(options, plan);
  RequireTrueName(options, plan, conversion.PicturePattern());
  conversion.CheckFiles();
  for (const std::string& note : plan.notes) Note(options, note);
  conversion.Run();
  TellPattern(options, plan, conversion.PicturePattern());
}

}  // namespace zrconvert
