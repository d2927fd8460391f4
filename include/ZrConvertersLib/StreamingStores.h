#pragma once

#include <ZrConvertersLib/Export.h>

#include <cstddef>

/// @file
/// Which frames are written past the caches.

namespace ZrConvertersLib {

/// Frames whose source and destination together take more than `bytes` are written past the caches: their
/// destination could not stay in them anyway, and memory then moves a third less. Lower it when nobody reads
/// the destination soon, raise it on machines with very large caches. Returns the value before (16 MiB at
/// first). May be called from any thread.
ZR_EXPORT std::size_t SetStreamingThreshold(std::size_t bytes) noexcept;

}  // namespace ZrConvertersLib
