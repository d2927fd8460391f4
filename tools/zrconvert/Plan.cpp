#include "Plan.h"

#include <algorithm>

#include "Error.h"
#include "FrameFacts.h"
#include "Measuring.h"
#include "Targets.h"
#include "Tone.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

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

Size PictureSize(const ConvertOptions& options) {
  const zr::Region& region = options.region;
  return region.width > 0 ? Size{region.width, region.height} : options.size;
}

void AddTone(const ConvertOptions& options, const FrameFit& fit, zr::RGBFilter& filter,
             zrcommon::Conversion& job) {
  ToneOptions tone = options.tone;
  if (tone.automatic) {
    FrameFit loose = fit;
    loose.ignoreRest = true;
    ChooseTone(tone, MeasureFirstFrame(options.files.front(), loose, MeasureOptionsOf(job.options)));
  }
  if (tone.Develops()) job.development = DevelopmentOf(tone);
  if (tone.curve) job.points = tone.curve->points;
  if (!tone.offset) return;
  SetOffset(filter, *tone.offset);
  job.options.filter = &filter;
}

zr::FrameOptions FrameOptionsOf(const ConvertOptions& options) {
  zr::FrameOptions frame = ColourOptions(options.source, options.pattern, options.matrix);
  frame.packing = PackingFor(options.source, options.size, options.packing);
  frame.demosaic = options.demosaic.value_or(zr::Demosaic::Directional);
  frame.flipVertical = options.flipVertical;
  frame.flipHorizontal = options.flipHorizontal;
  frame.region = options.region;
  return frame;
}

void RequireDemosaic(const ConvertOptions& options, const zr::FormatInfo& target) {
  if (!options.demosaic) return;
  const zr::FormatInfo& source = *options.source.info;
  if (!IsMosaic(source)) throw UsageError("--demosaic has no meaning for " + std::string(source.name));
  if (target.family == source.family) {
    throw UsageError("--demosaic has no meaning here: " + std::string(target.name) + " stays a mosaic");
  }
}

// Pattern and matrix matter as soon as the picture is of another family.
std::vector<std::string> AssumptionsOf(const ConvertOptions& options, const Plan& plan) {
  const Format& source = options.source;
  if (source.settled || source.info->family == plan.target->family) return {};
  if (IsMosaic(*source.info) && !options.pattern) {
    return {"the pattern " + std::string(zr::PatternName(plan.job.options.pattern)) +
            " is assumed; --pattern says another"};
  }
  if (source.info->family == zr::FormatFamily::YCbCr && !options.matrix) {
    return {"the matrix 601 is assumed; --matrix says another"};
  }
  return {};
}

// Words that leave open which of two orders the camera sends.
std::vector<std::string> PackingNotes(const ConvertOptions& options, const Plan& plan) {
  const Format& source = options.source;
  if (source.settled || options.packing || source.info->packing != zr::Packing::Pair) return {};
  const bool gigEVision = plan.job.options.packing == zr::PackingOrder::GigEVision;
  return {gigEVision ? "GigE Vision's order of the low bits is assumed; --packing type says the other"
                     : "the library's order of the low bits is assumed; GigE Vision cameras send the other, "
                       "--packing gige-vision"};
}

std::vector<std::string> NotesOn(const ConvertOptions& options, const Plan& plan, std::uint32_t width) {
  std::vector<std::string> notes = AssumptionsOf(options, plan);
  for (const std::string& note : PackingNotes(options, plan)) notes.push_back(note);
  const std::string without = TargetWithoutTone(options, plan.container, width);
  if (without != plan.target->name) {
    notes.push_back("--offset acts on 8-bit colour: the picture is " + std::string(plan.target->name) +
                    ", without it it would be " + without);
  }
  return notes;
}

zrcommon::Conversion JobOf(const ConvertOptions& options, const Plan& plan, zr::RGBFilter& filter) {
  zrcommon::Conversion job;
  job.source = options.source.info->id;
  job.destination = plan.target->id;
  job.width = options.size.width;
  job.height = options.size.height;
  job.threads = options.threads;
  job.options = FrameOptionsOf(options);
  AddTone(options, plan.fit, filter, job);
  job.options.fullDepth = plan.target->depth > 8 || job.development.has_value();
  return job;
}

}  // namespace

Plan PlanOf(const ConvertOptions& options, zr::RGBFilter& filter) {
  RequireInputs(options);
  RequireRegion(options);
  Plan plan;
  plan.inputs.assign(options.files.begin(), options.files.end() - 1);
  plan.container = ContainerOf(options);
  const zr::FormatInfo& source = *options.source.info;
  plan.fit = {&source, options.size, DescribeOrThrow(source, options.size, options.lines),
              options.headerBytes, options.ignoreRest};
  const Size picture = PictureSize(options);
  plan.target = &TargetOf(options, plan.container, picture);
  RequireDemosaic(options, *plan.target);
  plan.job = JobOf(options, plan, filter);
  plan.notes = NotesOn(options, plan, picture.width);
  return plan;
}

void RequireTrueName(const ConvertOptions& options, const Plan& plan, zr::MosaicPattern pattern) {
  if (!options.destination || !options.destination->settled) return;
  const std::string quoted = "'" + options.destination->word + "'";
  zr::FrameOptions said;
  said.SetFlags(options.destination->flags);
  if (IsMosaic(*plan.target) && said.pattern != pattern) {
    throw UsageError(quoted + " would be a wrong name: the picture's pattern is " +
                     std::string(zr::PatternName(pattern)));
  }
  if (plan.target->family == zr::FormatFamily::YCbCr && said.matrix != plan.job.options.matrix) {
    throw UsageError(quoted + " would be a wrong name: the frames have another matrix (see --matrix)");
  }
}

}  // namespace zrconvert
