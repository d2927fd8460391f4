// Memory that a Python object lends, and frames in it.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <pybind11/pybind11.h>

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace zrpython {

/// A view of any object with the buffer protocol, held until this object ends.
class Buffer {
 public:
  enum class Access { Read, Write };

  /// @param what  "frame" or "out", for messages
  /// Throws TypeError for objects without a buffer or with items that are no native integers, and ValueError
  /// for a read-only buffer that is to be written.
  Buffer(pybind11::handle object, Access access, std::string what);
  ~Buffer();
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  const std::string& What() const { return mWhat; }
  void* Data() const { return mView.buf; }
  std::size_t ItemBytes() const { return static_cast<std::size_t>(mView.itemsize); }
  bool HasUnsignedItems() const;
  std::span<const Py_ssize_t> Shape() const { return {mView.shape, static_cast<std::size_t>(mView.ndim)}; }
  std::span<const Py_ssize_t> Strides() const {
    return {mView.strides, static_cast<std::size_t>(mView.ndim)};
  }
  bool IsContiguous() const { return PyBuffer_IsContiguous(&mView, 'C') != 0; }
  std::size_t Bytes() const { return static_cast<std::size_t>(mView.len); }

 private:
  void RequireIntegers() const;

  Py_buffer mView{};
  std::string mWhat;
};

/// A whole frame in memory, for the views of the library.
struct FrameMemory {
  void* data = nullptr;
  std::size_t size = 0;
  std::size_t stride = 0;  ///< 0: lines without a gap
};

/// A frame's format and size.
struct FrameKind {
  const ZrConvertersLib::FormatInfo* format = nullptr;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

/// The shape of a frame as an array and the bytes of an item: (h, w), (h, w, channels) or (planes, h, w);
/// (h, bytes of a line) where samples are packed.
struct ArrayKind {
  std::vector<Py_ssize_t> shape;
  std::size_t itemBytes = 1;
};
ArrayKind ArrayKindOf(const FrameKind& frame);

/// Where the lines of a source frame lie. Throws ValueError or TypeError for a buffer that cannot be one.
/// @param stride  bytes from line to line of a buffer without a shape; 0: lines without a gap
FrameMemory SourceMemory(const Buffer& buffer, const FrameKind& frame, std::size_t stride);

/// The same for a picture to be written, whose shape must be the natural one if it has one.
FrameMemory DestinationMemory(const Buffer& buffer, const FrameKind& frame);

/// Width and height as the shape of an array tells them. Throws ValueError when it does not.
void ReadSize(const Buffer& buffer, FrameKind& frame);

}  // namespace zrpython
