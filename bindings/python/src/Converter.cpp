#include "Converter.h"

#include <pybind11/stl.h>

#include "Options.h"

namespace zrpython {

namespace py = pybind11;
namespace zr = ZrConvertersLib;

namespace {

zrcommon::Conversion ConversionOf(const zr::FormatChoice& source, const zr::FormatChoice& destination,
                                  std::uint32_t width, std::uint32_t height, const py::dict& keywords) {
  zrcommon::Conversion conversion;
  conversion.source = source.id;
  conversion.destination = destination.id;
  conversion.width = width;
  conversion.height = height;
  ReadOptions(source, keywords, conversion);
  return conversion;
}

}  // namespace

Converter::Converter(const zr::FormatChoice& source, const zr::FormatChoice& destination, std::uint32_t width,
                     std::uint32_t height, const py::dict& keywords)
    : mSource{&InfoOf(source.id), width, height},
      mFilter(keywords.attr("get")("filter")),
      mConverter(ConversionOf(source, destination, width, height, keywords)) {
  mDestination = {&InfoOf(destination.id), Facts().Width(), Facts().Height()};
}

py::object Converter::Convert(const py::object& frame, py::object out, std::size_t stride) {
  return Convert(Buffer(frame, Buffer::Access::Read, "frame"), std::move(out), stride);
}

py::object Converter::Convert(const Buffer& frame, py::object out, std::size_t stride) {
  const FrameMemory source = SourceMemory(frame, mSource, stride);
  if (out.is_none()) out = NewPicture();
  const Buffer picture(out, Buffer::Access::Write, "out");
  ConvertInto(source, DestinationMemory(picture, mDestination));
  return out;
}

void Converter::ConvertInto(const FrameMemory& frame, const FrameMemory& picture) {
  const py::gil_scoped_release released;
  const std::lock_guard lock(mMutex);
  mConverter.Convert({frame.data, frame.size, frame.stride, mSource.width, mSource.height},
                     {picture.data, picture.size, picture.stride, mDestination.width, mDestination.height});
}

py::array Converter::NewPicture() const {
  return {Type(), ArrayKindOf(mDestination).shape};
}

py::tuple Converter::Shape() const {
  return py::cast(ArrayKindOf(mDestination).shape);
}

py::dtype Converter::Type() const {
  switch (ArrayKindOf(mDestination).itemBytes) {
    case 1:
      return py::dtype::of<std::uint8_t>();
    case 2:
      return py::dtype::of<std::uint16_t>();
    default:
      return py::dtype::of<std::uint32_t>();
  }
}

py::object Converter::Pattern() const {
  const auto family = Destination().family;
  if (family == zr::FormatFamily::Mono || family == zr::FormatFamily::Rgb) return py::none();
  return py::str(std::string(zr::PatternName(Facts().DestinationPattern())));
}

}  // namespace zrpython
