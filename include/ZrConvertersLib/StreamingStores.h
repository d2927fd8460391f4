#pragma once

#include <ZrConvertersLib/Export.h>

#include <cstddef>

/// @file
/// When a conversion writes with non-temporal stores, past the caches.

namespace ZrConvertersLib {

/// Frames whose source and destination together take more than `bytes` are written with non-temporal stores.
/// Such frames do not fit the caches, and without these stores memory would move half as much again, since
/// the destination is read before it is written. Lower the threshold if nobody reads the destination soon,
/// raise it on machines with very large caches. Returns the previous value (at first 16 MiB). May be called
/// from any thread.
ZR_EXPORT std::size_t SetStreamingThreshold(std::size_t bytes) noexcept;

}  // namespace ZrConvertersLib
