// The class zrconverters.Converter.
#pragma once

#include <ZrConvertersLib/FormatCodes.h>
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <mutex>

#include "Buffer.h"
#include "common/BandedConverter.h"

namespace zrpython {

/// Converts frames of one kind; the interpreter runs other threads meanwhile. Threads that share one object
/// take turns.
class Converter {
 public:
  Converter(const ZrConvertersLib::FormatChoice& source, const ZrConvertersLib::FormatChoice& destination,
            std::uint32_t width, std::uint32_t height, const pybind11::dict& keywords);

  /// @param out  the array or buffer to write, or None for a new array; it is returned
  pybind11::object Convert(const pybind11::object& frame, pybind11::object out, std::size_t stride);

  /// The same for a frame that is held already.
  pybind11::object Convert(const Buffer& frame, pybind11::object out, std::size_t stride);

  const ZrConvertersLib::FormatInfo& Source() const { return *mSource.format; }
  const ZrConvertersLib::FormatInfo& Destination() const { return *mDestination.format; }
  const ZrConvertersLib::FrameConverter& Facts() const { return mConverter.Facts(); }
  pybind11::tuple Shape() const;
  pybind11::dtype Type() const;
  pybind11::object Pattern() const;
  unsigned Threads() const { return mConverter.Threads(); }

 private:
  pybind11::array NewPicture() const;
  void ConvertInto(const FrameMemory& frame, const FrameMemory& picture);

  FrameKind mSource;
  FrameKind mDestination;
  pybind11::object mFilter;  // keeps the tables that mConverter reads
  std::mutex mMutex;         // one thread at a time uses mConverter
  zrcommon::BandedConverter mConverter;
};

}  // namespace zrpython
