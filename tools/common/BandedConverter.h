// Whole frames, each spread over threads in bands of lines.
#pragma once

#include <ZrConvertersLib/Development.h>
#include <ZrConvertersLib/FrameConverter.h>

#include <sys/types.h>

#include <memory>
#include <optional>
#include <vector>

#include "Workers.h"

namespace zrcommon {

/// What is converted into what.
struct Conversion {
  long source = 0;
  long destination = 0;
  std::uint32_t width = 0;   ///< of the source frame, in pixels
  std::uint32_t height = 0;  ///< of the source frame, in lines
  ZrConvertersLib::FrameOptions options;
  std::optional<ZrConvertersLib::Development> development;
  std::vector<ZrConvertersLib::CurvePoint> points;  ///< of ToneCurve::Points
  unsigned threads = 1;                             ///< 0: one for each processor
};

/// One FrameConverter for each band. Serves one thread at a time.
class BandedConverter {
 public:
  /// Throws Refusal or std::bad_alloc when the library refuses the conversion.
  explicit BandedConverter(const Conversion& conversion);

  /// Throws Refusal when the library refuses the views; nothing is written then.
  void Convert(const ZrConvertersLib::SourceView& source,
               const ZrConvertersLib::DestinationView& destination);

  /// The converter of the first band, for what is true of the whole frame.
  const ZrConvertersLib::FrameConverter& Facts() const { return mConverters.front(); }

  unsigned Threads() const { return static_cast<unsigned>(mConverters.size()); }

 private:
  ZrUtilsLib::Result ConvertBand(unsigned index, const ZrConvertersLib::SourceView& source,
                                 const ZrConvertersLib::DestinationView& destination);
  Workers& WorkersOfThisProcess();

  std::vector<ZrConvertersLib::FrameConverter> mConverters;
  std::unique_ptr<Workers> mWorkers;  // started by the first frame that needs them
  pid_t mProcess = 0;  // the process that started them: a fork has none of its parent's threads
};

}  // namespace zrcommon
