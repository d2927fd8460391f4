#pragma once

#include <ZrConvertersLib/Export.h>

#include <cstddef>

/// @file
/// When a conversion writes with non-temporal stores, past the caches.

namespace ZrConvertersLib {

/// Frames whose source and destination together take more than `bytes` are written with non-temporal stores.
/// Without these, memory is read before it is written, and the frame drives everything else out of the
/// caches. The bytes that a conversion writes do not depend on it.
///
/// The default follows the caches of this machine: 16 MiB, or the size of a last cache that is smaller than
/// that. On servers with at least 2 MiB of second and 48 MiB of last cache it is twice the second cache,
/// because their last cache is no faster than memory: for frames that come from memory non-temporal stores
/// halve the time there, for frames that lie in the last cache they cost up to a tenth.
///
/// Lower the threshold (0 streams every frame) when frames come from many buffers in turn, as cameras fill
/// them, and nobody reads the result soon. Raise it when the same few buffers are converted again and again
/// and the last cache holds them, or when the next step reads the result at once. Measure both:
/// `zrbench --streaming-threshold`.
///
/// Returns the previous value. May be called from any thread; conversions that have begun keep theirs.
ZR_EXPORT std::size_t SetStreamingThreshold(std::size_t bytes) noexcept;

}  // namespace ZrConvertersLib
