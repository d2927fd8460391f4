#include "Buffer.h"

#include <ZrConvertersLib/Format.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "common/Refusal.h"

namespace zrpython {

namespace py = pybind11;
namespace zr = ZrConvertersLib;

namespace {

// The struct module's letter for an item, without its byte order; 0 where the item is none or is big-endian.
char ItemLetter(const Py_buffer& view) {
  std::string_view format = view.format ? view.format : "B";
  const bool bigEndian = view.itemsize > 1 && format.find_first_of(">!") == 0;
  if (format.find_first_of("@=<|>!") == 0) format.remove_prefix(1);
  return format.size() == 1 && !bigEndian ? format.front() : '\0';
}

zr::FrameLayout LayoutOf(const FrameKind& frame) {
  zr::FrameLayout layout;
  zrcommon::Require(zr::DescribeFrame(frame.format->id, frame.width, frame.height, 0, layout));
  return layout;
}

std::string TextOf(std::span<const Py_ssize_t> shape) {
  std::string text = "(";
  for (const Py_ssize_t length : shape) text += (text.size() > 1 ? ", " : "") + std::to_string(length);
  return text + (shape.size() == 1 ? ",)" : ")");
}

[[noreturn]] void RefuseShape(const Buffer& buffer, const FrameKind& frame, const std::string& expected) {
  throw py::value_error(buffer.What() + ": shape " + TextOf(buffer.Shape()) + " is no " +
                        std::string(frame.format->name) + " frame of " + std::to_string(frame.width) + " x " +
                        std::to_string(frame.height) + " pixels, which is " + expected);
}

// An array of int64 that holds one 8-bit sample in each item must not pass as a frame with wide lines.
void RequireItems(const Buffer& buffer, const FrameKind& frame, std::size_t bytes, std::uint64_t frameBytes) {
  const std::size_t item = buffer.ItemBytes();
  if (item == 1 || item == ArrayKindOf(frame).itemBytes || bytes == frameBytes) return;
  throw py::type_error(buffer.What() + ": items of " + std::to_string(item) + " bytes hold no samples of " +
                       std::string(frame.format->name));
}

FrameMemory FlatMemory(const Buffer& buffer, const FrameKind& frame, std::size_t stride) {
  if (!buffer.IsContiguous()) throw py::value_error(buffer.What() + ": the buffer is not contiguous");
  RequireItems(buffer, frame, buffer.Bytes(), LayoutOf(frame).frameBytes);
  return {buffer.Data(), buffer.Bytes(), stride};
}

// Bytes of an array's line, whose items and channels must lie without gaps.
std::size_t LineBytes(const Buffer& buffer, std::size_t firstDimension) {
  auto bytes = static_cast<Py_ssize_t>(buffer.ItemBytes());
  for (std::size_t i = buffer.Shape().size(); i-- > firstDimension;) {
    if (buffer.Shape()[i] != 1 && buffer.Strides()[i] != bytes)
      throw py::value_error(buffer.What() + ": the pixels of a line must lie without gaps and in order");
    bytes *= buffer.Shape()[i];
  }
  return static_cast<std::size_t>(bytes);
}

// Index of the dimension that counts the lines: 1 where planes come first.
std::size_t LineDimension(const Buffer& buffer, const FrameKind& frame) {
  const bool planes = frame.format->planes > 1 && buffer.Shape().size() > 2;
  const auto shape = buffer.Shape().subspan(planes ? 1 : 0);
  const auto lines = static_cast<std::uint64_t>(shape[0]) * (planes ? frame.format->planes : 1U);
  const bool planesFit = !planes || (buffer.Shape()[0] == Py_ssize_t{frame.format->planes} &&
                                     buffer.Strides()[0] == shape[0] * buffer.Strides()[1]);
  if (!planesFit || lines != std::uint64_t{frame.format->planes} * frame.height)
    RefuseShape(buffer, frame, TextOf(ArrayKindOf(frame).shape));
  return planes ? 1 : 0;
}

// Library's words for a stride that is too small cover lines in descending order too.
std::size_t StrideOf(const Buffer& buffer, const FrameKind& frame, std::size_t dimension, std::size_t line) {
  if (frame.height * frame.format->planes == 1) return 0;
  const Py_ssize_t stride = buffer.Strides()[dimension];
  if (stride < static_cast<Py_ssize_t>(line))
    throw py::value_error(buffer.What() + ": the lines must follow one another in memory and not overlap");
  return static_cast<std::size_t>(stride);
}

FrameMemory ShapedMemory(const Buffer& buffer, const FrameKind& frame) {
  const std::uint64_t owed = LayoutOf(frame).bytesPerLine;
  const std::size_t dimension = LineDimension(buffer, frame);
  const std::size_t line = LineBytes(buffer, dimension + 1);
  // Only a plain row of items may be longer than the line: it is padded then.
  const bool padded = line > owed && buffer.Shape().size() == dimension + 2;
  if (line != owed && !padded) RefuseShape(buffer, frame, TextOf(ArrayKindOf(frame).shape));
  RequireItems(buffer, frame, line, owed);
  const std::size_t stride = StrideOf(buffer, frame, dimension, line);
  const std::size_t lines = std::size_t{frame.height} * frame.format->planes;
  return {buffer.Data(), (lines - 1) * stride + line, stride};
}

}  // namespace

Buffer::Buffer(py::handle object, Access access, std::string what) : mWhat(std::move(what)) {
  if (!PyObject_CheckBuffer(object.ptr()))
    throw py::type_error(mWhat + ": an object with the buffer protocol is needed");
  if (PyObject_GetBuffer(object.ptr(), &mView, PyBUF_RECORDS_RO) != 0) throw py::error_already_set();
  try {
    RequireIntegers();
    if (access == Access::Write && mView.readonly) throw py::value_error(mWhat + ": the buffer is read-only");
  } catch (...) {
    PyBuffer_Release(&mView);
    throw;
  }
}

Buffer::~Buffer() {
  PyBuffer_Release(&mView);
}

void Buffer::RequireIntegers() const {
  const char letter = ItemLetter(mView);
  if (letter != '\0' && std::string_view("?cbBhHiIlLqQnN").find(letter) != std::string_view::npos) return;
  throw py::type_error(mWhat + ": items must be integers in the machine's byte order");
}

bool Buffer::HasUnsignedItems() const {
  return std::string_view("BHILQN").find(ItemLetter(mView)) != std::string_view::npos;
}

ArrayKind ArrayKindOf(const FrameKind& frame) {
  using zr::Packing;
  const zr::FormatInfo& format = *frame.format;
  const auto height = static_cast<Py_ssize_t>(frame.height);
  const auto width = static_cast<Py_ssize_t>(frame.width);
  const std::size_t item = format.sampleBits / 8;
  const auto samples = static_cast<Py_ssize_t>(format.bitsPerPixel / format.sampleBits);
  if (format.packing == Packing::Planar)
    return {{static_cast<Py_ssize_t>(format.planes), height, width}, item};
  if (format.packing == Packing::Word) return {{height, width}, item};
  if (format.packing == Packing::Plain && format.bitsPerPixel % format.sampleBits == 0)
    return samples == 1 ? ArrayKind{{height, width}, item} : ArrayKind{{height, width, samples}, item};
  return {{height, static_cast<Py_ssize_t>(LayoutOf(frame).bytesPerLine)}, 1};
}

FrameMemory SourceMemory(const Buffer& buffer, const FrameKind& frame, std::size_t stride) {
  return stride != 0 || buffer.Shape().size() < 2 ? FlatMemory(buffer, frame, stride)
                                                  : ShapedMemory(buffer, frame);
}

FrameMemory DestinationMemory(const Buffer& buffer, const FrameKind& frame) {
  const ArrayKind kind = ArrayKindOf(frame);
  const bool shaped = buffer.Shape().size() >= 2;
  if (shaped && !std::ranges::equal(buffer.Shape(), kind.shape))
    RefuseShape(buffer, frame, TextOf(kind.shape));
  if ((shaped || buffer.ItemBytes() > 1) &&
      (buffer.ItemBytes() != kind.itemBytes || !buffer.HasUnsignedItems()))
    throw py::type_error(buffer.What() + ": " + std::string(frame.format->name) +
                         " needs unsigned items of " + std::to_string(kind.itemBytes) + " bytes");
  return shaped ? ShapedMemory(buffer, frame) : FlatMemory(buffer, frame, 0);
}

void ReadSize(const Buffer& buffer, FrameKind& frame) {
  const auto shape = buffer.Shape();
  const unsigned planes = frame.format->planes;
  const unsigned bits = frame.format->bitsPerPixel / planes;
  const std::size_t dimension = planes > 1 ? 1 : 0;
  // A line of whole bytes does not tell how many of its bits are pixels unless a pixel takes whole bytes.
  if (shape.size() < dimension + 2 || bits % 8 != 0)
    throw py::value_error(buffer.What() + ": give width and height, the buffer does not tell them");
  frame.height = static_cast<std::uint32_t>(shape[dimension]);
  frame.width = static_cast<std::uint32_t>(LineBytes(buffer, dimension + 1) * 8 / bits);
}

}  // namespace zrpython
