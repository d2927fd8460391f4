#pragma once

#include <cstdint>
#include <memory>

#include "frame/FramePlan.h"

namespace ZrConvertersLib {

/// The intermediate image of a chain, which may replace it by a larger one of new[].
struct PipelineBuffer {
  unsigned char* data = nullptr;
  std::uint32_t bytes = 0;

  PipelineBuffer() = default;
  PipelineBuffer(const PipelineBuffer&) = delete;
  PipelineBuffer& operator=(const PipelineBuffer&) = delete;
  ~PipelineBuffer() { delete[] data; }
};

/// The buffers of one converter: all memory that its conversions will ever need, allocated by Configure.
struct FrameScratch {
  std::unique_ptr<std::uint8_t[]> source;   ///< copied source lines, plane by plane
  std::unique_ptr<std::uint8_t[]> picture;  ///< converted lines, plane by plane
  std::int64_t columns = 0;                 ///< pixels per line that are converted at a time
  std::int64_t lines = 0;                   ///< lines that both can hold
  std::int64_t directLines = 0;  ///< lines of one raw call into the caller's buffer; 0: none is possible

  PipelineBuffer pipeline;

  /// Takes the buffers for a plan. Throws std::bad_alloc.
  explicit FrameScratch(const FramePlan& plan);

  /// Pixels per line that the buffers hold: the columns and what lies around them.
  std::int64_t Width(const FramePlan& plan) const noexcept {
    return columns != 0 ? columns + 4 * plan.unit : 0;
  }
};

}  // namespace ZrConvertersLib
