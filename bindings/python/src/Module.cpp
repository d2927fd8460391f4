// The compiled half of the Python package zrconverters. Its signatures and types stand in
// zrconverters/__init__.pyi.
#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/Measure.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "Converter.h"
#include "Options.h"
#include "common/Refusal.h"
#include "common/Words.h"

namespace zrpython {
namespace {

namespace py = pybind11;
namespace zr = ZrConvertersLib;

constexpr const char* kConverterText = R"(Converts frames of one kind; made once and called at frame rate.

Converter(source, destination, width, height, *, pattern=None, demosaic=None, matrix=None, packing=None,
          black=None, white=None, gain=None, color_matrix=None, curve=None, gamma=None, filter=None, full_depth=False,
          flip_vertical=False, flip_horizontal=False, region=None, threads=1)

source, destination: formats. width, height: size of the frame in pixels.
pattern: how a mosaic begins, 'RGGB' for instance; as the source's name or code says, else the family's first.
demosaic: how a mosaic becomes colour, 'fast' (one colour for each tile), 'interpolate' (from the
    neighbours) or 'directional' (along edges, at full depth).
matrix: of YCbCr, '601' or '709' (video range) or 'jpeg' (full range); as the source says, else '601'.
packing: order of the low bits in packed samples, 'type', 'gige-vision' or 'csi2'; as the source says, else 'type'.
black, white: samples that become black and white, in counts of the source's samples; black may be three numbers.
gain: factors of red, green and blue, or one. color_matrix: three rows of three numbers, applied after the gains.
curve: 'linear', 'srgb' or 'gamma', or points (input, output) from 0 to 1, inputs ascending, with straight lines
    between them; gamma: exponent of 'gamma', which it chooses. All of these act in this order at the full depth of the
    source, on any destination.
filter: an RGBFilter, for destinations of 8-bit colour.
full_depth: keep the depth of YCbCr of 10 and 12 bits, which is cut to 8 otherwise.
flip_vertical, flip_horizontal: the last line, or column, of the picture comes first.
region: (x, y, width, height) of the frame to convert, in pixels; width or height 0 reach to the edge.
threads: threads that share each frame, 0 for one per processor. Pictures do not depend on it.)";

constexpr const char* kFilterText =
    R"(Tables for the channels of 8-bit colour, which are applied to it after the conversion.

RGBFilter(*, gamma=1.0, black=0.0, balance=1.0, gain=1.0, offset=0.0)

light = max(0, value - black) * 255 / (255 - black) * balance * gain
output = 255 * (light / 255) ** (1 / gamma) + offset, rounded and cut to 0 to 255

balance, gain and offset are one number or those of red, green and blue. Options such as black, gain and curve of a
Converter act at the full depth of the source and suit every destination.)";

constexpr const char* kConvertMethodText = R"(Converts a frame and returns the picture.

frame: any object with the buffer protocol, see the package's text. stride: bytes from line to line of a frame without
a shape, 0 for lines without a gap.
out: where to write, an array of self.shape and self.dtype or a writable buffer of bytes; None makes a new array.)";

constexpr const char* kConvertText = R"(Converts one frame without keeping a Converter.

convert(frame, source, destination, width=None, height=None, *, out=None, stride=0, **options)

The arguments are those of Converter and of Converter.convert. Width and height may be left out for an array of lines
whose pixels take whole bytes, since its shape tells them.)";

const zr::FormatInfo& FindFormat(py::handle word) {
  return InfoOf(FormatOf(word).id);
}

std::vector<const zr::FormatInfo*> ListFormats() {
  std::vector<const zr::FormatInfo*> list;
  for (const zr::FormatInfo& format : zr::Formats()) list.push_back(&format);
  return list;
}

std::vector<const zr::FormatInfo*> DestinationsOf(const zr::FormatInfo& source) {
  std::vector<const zr::FormatInfo*> list;
  for (const long id : zr::DestinationsOf(source.id)) list.push_back(&InfoOf(id));
  return list;
}

zr::FrameLayout DescribeFrame(py::handle format, std::uint64_t width, std::uint64_t height,
                              std::uint64_t stride) {
  zr::FrameLayout layout;
  zrcommon::Require(zr::DescribeFrame(FormatOf(format).id, width, height, stride, layout));
  return layout;
}

void BindFormats(py::module_& module) {
  using zr::FormatInfo;
  py::class_<FormatInfo, std::unique_ptr<FormatInfo, py::nodelete>>(module, "Format",
                                                                    "Facts of one pixel format.")
      .def_readonly("id", &FormatInfo::id)
      .def_readonly("name", &FormatInfo::name)
      .def_property_readonly("family", [](const FormatInfo& format) { return zr::FamilyName(format.family); })
      .def_readonly("bits_per_pixel", &FormatInfo::bitsPerPixel, "Bits of memory, all planes together.")
      .def_readonly("depth", &FormatInfo::depth, "Significant bits of one sample.")
      .def_readonly("sample_bits", &FormatInfo::sampleBits, "Bits of memory that a sample takes.")
      .def_readonly("planes", &FormatInfo::planes)
      .def_readonly("width_multiple", &FormatInfo::widthMultiple)
      .def_readonly("is_source", &FormatInfo::isSource)
      .def_readonly("is_destination", &FormatInfo::isDestination)
      .def_readonly("takes_filter", &FormatInfo::takesFilter,
                    "Whether, as a destination, it applies an RGBFilter.")
      .def_readonly("layout", &FormatInfo::layout)
      .def_property_readonly("destinations", &DestinationsOf, py::return_value_policy::reference,
                             "Formats that this one converts to.")
      .def("__repr__", [](const FormatInfo& format) { return "<Format " + std::string(format.name) + ">"; });
  module.def("formats", &ListFormats, py::return_value_policy::reference,
             "All formats that the library knows.");
  module.def("find_format", &FindFormat, py::arg("word"), py::return_value_policy::reference,
             "The format of a name or code; ValueError if there is none.");
}

void BindLayouts(py::module_& module) {
  using zr::FrameLayout;
  py::class_<FrameLayout>(module, "FrameLayout", "Sizes of one frame, in bytes.")
      .def_readonly("bytes_per_line", &FrameLayout::bytesPerLine)
      .def_readonly("stride", &FrameLayout::stride)
      .def_readonly("planes", &FrameLayout::planes)
      .def_readonly("bytes_per_plane", &FrameLayout::bytesPerPlane)
      .def_readonly("frame_bytes", &FrameLayout::frameBytes)
      .def_readonly("least_bytes", &FrameLayout::leastBytes);
  module.def(
      "describe_frame", &DescribeFrame, py::arg("format"), py::arg("width"), py::arg("height"),
      py::arg("stride") = 0,
      "Sizes of a frame, in bytes; stride 0 means lines without a gap. ValueError for sizes that the format "
      "cannot have.");
}

py::object ConvertWith(Converter& converter, const py::object& frame, py::object out, std::size_t stride) {
  return converter.Convert(frame, std::move(out), stride);
}

void BindConverter(py::module_& module) {
  const auto make = [](py::handle source, py::handle destination, std::uint32_t width, std::uint32_t height,
                       const py::kwargs& options) {
    return std::make_unique<Converter>(FormatOf(source), FormatOf(destination), width, height, options);
  };
  py::class_<Converter>(module, "Converter", kConverterText)
      .def(py::init(make), py::arg("source"), py::arg("destination"), py::arg("width"), py::arg("height"))
      .def("convert", &ConvertWith, py::arg("frame"), py::arg("out") = py::none(), py::arg("stride") = 0,
           kConvertMethodText)
      .def("__call__", &ConvertWith, py::arg("frame"), py::arg("out") = py::none(), py::arg("stride") = 0)
      .def_property_readonly("source", &Converter::Source, py::return_value_policy::reference)
      .def_property_readonly("destination", &Converter::Destination, py::return_value_policy::reference)
      .def_property_readonly("shape", &Converter::Shape, "Shape of the picture, for numpy.empty.")
      .def_property_readonly("dtype", &Converter::Type)
      .def_property_readonly("pattern", &Converter::Pattern,
                             "Pattern of a picture that is a mosaic itself, else None.")
      .def_property_readonly("threads", &Converter::Threads)
      .def_property_readonly("source_layout", [](const Converter& c) { return c.Facts().SourceLayout(); })
      .def_property_readonly("destination_layout",
                             [](const Converter& c) { return c.Facts().DestinationLayout(); });
}

py::object ConvertOnce(const py::object& frame, py::handle source, py::handle destination,
                       std::optional<std::uint32_t> width, std::optional<std::uint32_t> height,
                       py::object out, std::size_t stride, const py::kwargs& options) {
  const zr::FormatChoice from = FormatOf(source);
  const Buffer buffer(frame, Buffer::Access::Read, "frame");
  FrameKind kind{&InfoOf(from.id), 0, 0};
  if (!width || !height) ReadSize(buffer, kind);
  Converter converter(from, FormatOf(destination), width.value_or(kind.width), height.value_or(kind.height),
                      options);
  return converter.Convert(buffer, std::move(out), stride);
}

zr::FrameStatistics MeasureFrame(const py::object& frame, py::handle format, std::uint32_t width,
                                 std::uint32_t height, std::size_t stride, std::uint32_t lineStep,
                                 const py::kwargs& keywords) {
  const zr::FormatChoice choice = FormatOf(format);
  zrcommon::Conversion conversion;
  ReadOptions(choice, keywords, conversion);
  const Buffer buffer(frame, Buffer::Access::Read, "frame");
  const FrameMemory memory = SourceMemory(buffer, {&InfoOf(choice.id), width, height}, stride);
  const zr::FrameOptions& options = conversion.options;
  zr::FrameStatistics statistics;
  const py::gil_scoped_release released;
  zrcommon::Require(zr::MeasureFrame(
      choice.id, {memory.data, memory.size, memory.stride, width, height},
      {options.pattern, options.matrix, options.packing, options.region, lineStep}, statistics));
  return statistics;
}

py::tuple TupleOf(const zr::ToneSettings::Channels& channels) {
  return py::make_tuple(channels.red, channels.green, channels.blue);
}

py::array Histogram(const zr::ChannelStatistics& channel) {
  return py::array_t<std::uint64_t>(static_cast<py::ssize_t>(channel.histogram.size()),
                                    channel.histogram.data());
}

void BindStatistics(py::module_& module) {
  using zr::ChannelStatistics;
  using zr::FrameStatistics;
  py::class_<ChannelStatistics>(module, "ChannelStatistics", "The samples of one channel.")
      .def_readonly("count", &ChannelStatistics::count)
      .def_readonly("minimum", &ChannelStatistics::minimum)
      .def_readonly("maximum", &ChannelStatistics::maximum)
      .def_readonly("mean", &ChannelStatistics::mean)
      .def_property_readonly("histogram", &Histogram, "How often each sample occurs: (2 ** depth,), uint64.");
  py::class_<FrameStatistics>(module, "FrameStatistics", "A frame's channels: grey, or red, green and blue.")
      .def_readonly("depth", &FrameStatistics::depth)
      .def_property_readonly("channels",
                             [](const FrameStatistics& statistics) {
                               const auto all = statistics.All();
                               return std::vector<ChannelStatistics>(all.begin(), all.end());
                             })
      .def(
          "levels",
          [](const FrameStatistics& statistics, double black, double white) {
            const zr::Levels levels = zr::LevelsOf(statistics, black, white);
            return py::make_tuple(levels.black, levels.white);
          },
          py::arg("black_share") = 0.001, py::arg("white_share") = 0.999,
          "(black, white): the samples that these shares of all samples are below.")
      .def(
          "grey_world_gains",
          [](const FrameStatistics& statistics, double black) {
            return TupleOf(zr::GreyWorldGains(statistics, black));
          },
          py::arg("black") = 0.0, "Gains that make the frame grey on the whole; the least is 1.")
      .def_property_readonly("saturated_share", &zr::SaturatedShare);
  module.def(
      "measure", &MeasureFrame, py::arg("frame"), py::arg("format"), py::arg("width"), py::arg("height"),
      py::arg("stride") = 0, py::arg("line_step") = 1,
      "Measures a frame, or every n-th of its lines; pattern, matrix, packing and region as of Converter.");
}

std::unique_ptr<zr::RGBFilter> FilterOfTone(double gamma, double black, py::handle balance, py::handle gain,
                                            py::handle offset) {
  auto filter = std::make_unique<zr::RGBFilter>();
  zrcommon::Require(filter->SetTone({gamma, black, ChannelsOf("balance", balance), ChannelsOf("gain", gain),
                                     ChannelsOf("offset", offset)}));
  return filter;
}

std::unique_ptr<zr::RGBFilter> FilterOfMultipliers(py::handle gain, std::array<int, 3> offset) {
  auto filter = std::make_unique<zr::RGBFilter>();
  const auto [red, green, blue] = ChannelsOf("gain", gain);
  zrcommon::Require(filter->SetMultipliers(red, green, blue, offset[0], offset[1], offset[2]));
  return filter;
}

py::array FilterTables(const zr::RGBFilter& filter) {
  constexpr py::ssize_t kValues = 256;
  py::array_t<std::uint8_t> tables({py::ssize_t{3}, kValues});
  py::ssize_t channel = 0;
  for (const unsigned char* table : {filter.GetRed(), filter.GetGreen(), filter.GetBlue()})
    std::copy_n(table, kValues, tables.mutable_data(channel++, 0));
  return tables;
}

void BindFilter(py::module_& module) {
  py::class_<zr::RGBFilter>(module, "RGBFilter", kFilterText)
      .def(py::init(&FilterOfTone), py::kw_only(), py::arg("gamma") = 1.0, py::arg("black") = 0.0,
           py::arg("balance") = 1.0, py::arg("gain") = 1.0, py::arg("offset") = 0.0)
      .def_static("multipliers", &FilterOfMultipliers, py::arg("gain") = 1.0,
                  py::arg("offset") = std::array{0, 0, 0},
                  "Tables of value x gain + offset, rounded and cut to 0 to 255.")
      .def_property_readonly("tables", &FilterTables,
                             "The tables of red, green and blue: a copy, (3, 256), uint8.");
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the type that pybind11 takes
void TranslateRefusal(std::exception_ptr pointer) {
  try {
    if (pointer) std::rethrow_exception(pointer);
  } catch (const zrcommon::Refusal& refusal) {
    PyErr_SetString(PyExc_ValueError, refusal.what());
  }
}

}  // namespace
}  // namespace zrpython

PYBIND11_MODULE(_zrconverters, module) {
  using namespace zrpython;
  py::register_exception_translator(&TranslateRefusal);
  BindFormats(module);
  BindFilter(module);
  BindLayouts(module);
  BindConverter(module);
  BindStatistics(module);
  module.def("convert", &ConvertOnce, py::arg("frame"), py::arg("source"), py::arg("destination"),
             py::arg("width") = py::none(), py::arg("height") = py::none(), py::kw_only(),
             py::arg("out") = py::none(), py::arg("stride") = 0, kConvertText);
}
