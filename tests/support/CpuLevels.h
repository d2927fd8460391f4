#pragma once

#include <ZrConvertersLib/CpuLevel.h>
#include <ZrConvertersLib/StreamingStores.h>

#include <cstddef>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>

namespace TestSupport {

/// Every level this machine can run, lowest first.
inline std::span<const char* const> CpuLevels() {
  return ZrConvertersLib::GetCpuLevels();
}

/// Conversions run at one level while this lives, and at the highest one afterwards.
class ForcedCpuLevel {
 public:
  /// Throws when the level cannot be had.
  explicit ForcedCpuLevel(const char* name) {
    if (!ZrConvertersLib::ForceCpuLevel(name) || ZrConvertersLib::GetCpuLevel() != std::string_view(name))
      throw std::runtime_error(std::string("cannot force the level ") + name);
  }
  ~ForcedCpuLevel() { ZrConvertersLib::ForceCpuLevel(nullptr); }
  ForcedCpuLevel(const ForcedCpuLevel&) = delete;
  ForcedCpuLevel& operator=(const ForcedCpuLevel&) = delete;
};

/// While this lives every frame is written past the caches, or none is.
class ForcedStreaming {
 public:
  explicit ForcedStreaming(bool streaming)
      : mBefore(
            ZrConvertersLib::SetStreamingThreshold(streaming ? 0 : std::numeric_limits<std::size_t>::max())) {
  }
  ~ForcedStreaming() { ZrConvertersLib::SetStreamingThreshold(mBefore); }
  ForcedStreaming(const ForcedStreaming&) = delete;
  ForcedStreaming& operator=(const ForcedStreaming&) = delete;

 private:
  std::size_t mBefore;
};

}  // namespace TestSupport
