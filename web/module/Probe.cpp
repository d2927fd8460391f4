#include "Probe.h"

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/PixelTypes.h>

#include <algorithm>
#include <array>
#include <numeric>

#include "Json.h"

namespace page {
namespace {

namespace zr = ZrConvertersLib;
using zr::ChannelOrder;
using zr::Packing;

// The samples that pixels share bytes with, in memory order, and how many pixels these are.
struct Channels {
  unsigned pixels;
  std::vector<std::string_view> names;
};

Channels ChannelsOf(ChannelOrder order) {
  switch (order) {
    case ChannelOrder::BiColor:
      return {1, {"first", "second"}};
    case ChannelOrder::Rgb:
      return {1, {"R", "G", "B"}};
    case ChannelOrder::Bgr:
      return {1, {"B", "G", "R"}};
    case ChannelOrder::RgbA:
      return {1, {"R", "G", "B", "a"}};
    case ChannelOrder::BgrA:
      return {1, {"B", "G", "R", "a"}};
    case ChannelOrder::YCbCr:
      return {1, {"Y", "Cb", "Cr"}};
    case ChannelOrder::CbYCr:
      return {1, {"Cb", "Y", "Cr"}};
    case ChannelOrder::YCbYCr:
      return {2, {"Y", "Cb", "Y", "Cr"}};
    case ChannelOrder::CbYCrY:
      return {2, {"Cb", "Y", "Cr", "Y"}};
    case ChannelOrder::YYCbYYCr:
      return {4, {"Y", "Y", "Cb", "Y", "Y", "Cr"}};
    case ChannelOrder::CbYYCrYY:
      return {4, {"Cb", "Y", "Y", "Cr", "Y", "Y"}};
    default:
      return {1, {"sample"}};
  }
}

struct Site {
  const Frame& frame;
  const zr::FormatInfo& format;
  zr::FrameLayout layout;
  std::uint32_t x;
  std::uint32_t y;
};

// Bytes of the pixels that the site cannot be told apart from by whole bytes.
struct Group {
  std::size_t offset;
  std::size_t bytes;
  unsigned pixels;
};

Group GroupOf(const Site& site) {
  const zr::FormatInfo& format = site.format;
  const std::size_t inLine = std::size_t{site.x} / format.groupPixels * format.groupBytes;
  const auto line = static_cast<std::size_t>(site.y * site.layout.stride);
  const std::size_t rest = static_cast<std::size_t>(site.layout.bytesPerLine) - inLine;
  return {line + inLine, std::min<std::size_t>(format.groupBytes, rest), format.groupPixels};
}

std::vector<std::string> BytesOf(const Site& site, const Group& group) {
  std::vector<std::string> bytes;
  for (unsigned plane = 0; plane < site.layout.planes; ++plane) {
    const std::size_t begin = group.offset + static_cast<std::size_t>(plane * site.layout.bytesPerPlane);
    for (std::size_t i = begin; i < begin + group.bytes; ++i)
      bytes.push_back(std::to_string(site.frame.Bytes()[i]));
  }
  return bytes;
}

// `count` bits from bit `first` of the bytes on, the least significant bit of each byte first.
std::uint64_t Bits(const std::uint8_t* bytes, std::size_t first, unsigned count) {
  std::uint64_t value = 0;
  for (unsigned i = 0; i < count; ++i) {
    const std::size_t bit = first + i;
    value |= std::uint64_t{(bytes[bit / 8] >> bit % 8 & 1U)} << i;
  }
  return value;
}

std::string Sample(std::string_view name, std::uint64_t value) {
  return Object({{"name", Quoted(name)}, {"value", std::to_string(value)}});
}

// Samples one after another from bit to bit, of the pixels that share chroma with the site.
std::vector<std::string> SamplesInOrder(const Site& site, const Group& group) {
  const Channels channels = ChannelsOf(site.format.order);
  const unsigned bits = site.format.sampleBits;
  const std::size_t before = site.x % group.pixels / channels.pixels * channels.names.size();
  const std::uint8_t* const bytes = site.frame.Bytes().data() + group.offset;
  std::vector<std::string> samples;
  for (std::size_t i = 0; i < channels.names.size(); ++i) {
    const std::size_t first = (before + i) * bits;
    if (first + bits > 8 * group.bytes) break;
    samples.push_back(Sample(channels.names[i], Bits(bytes, first, bits)));
  }
  return samples;
}

std::vector<std::string> SamplesOfPlanes(const Site& site, const Group& group) {
  const Channels channels = ChannelsOf(site.format.order);
  std::vector<std::string> samples;
  for (unsigned plane = 0; plane < site.layout.planes && plane < channels.names.size(); ++plane) {
    const std::size_t begin = group.offset + static_cast<std::size_t>(plane * site.layout.bytesPerPlane);
    const std::uint64_t value = Bits(site.frame.Bytes().data() + begin, 0, site.format.sampleBits);
    samples.push_back(Sample(channels.names[plane], value));
  }
  return samples;
}

// As the library unpacks them. A packed mosaic unpacked keeps its samples; grey has bit 15 for the samples'
// highest.
std::vector<std::string> SamplesUnpacked(const Site& site) {
  const bool grey = site.format.family == zr::FormatFamily::Mono;
  const std::vector<long> ids = zr::DestinationsOf(site.format.id);
  const auto unpacked = std::find_if(ids.begin(), ids.end(), [&](long id) {
    const zr::FormatInfo* const info = zr::FindFormatInfo(id);
    return grey ? id == zr::PixelTypeIds::Mono16
                : info->family == site.format.family && info->sampleBits == 16;
  });
  if (unpacked == ids.end()) return {};
  const Geometry& shape = site.frame.Shape();
  zr::FrameOptions options = site.frame.Options();
  options.region = {site.x, site.y, 1, 1};
  zr::FrameConverter converter;
  std::array<std::uint16_t, 1> word{};
  const auto view = zr::DestinationView::Of(word, 1, 1);
  if (!converter.Configure(site.format.id, *unpacked, shape.width, shape.height, options).IsSuccess() ||
      !converter.Convert(ViewOf(shape, site.frame.Bytes()), view).IsSuccess())
    return {};
  return {Sample("sample", grey ? word[0] >> (16 - site.format.depth) : word[0])};
}

std::vector<std::string> SamplesOf(const Site& site, const Group& group) {
  if (site.frame.Options().packing != zr::PackingOrder::Type) return SamplesUnpacked(site);
  switch (site.format.packing) {
    case Packing::Plain:
    case Packing::Dense:
      return SamplesInOrder(site, group);
    case Packing::Planar:
      return SamplesOfPlanes(site, group);
    case Packing::Pair:
      return SamplesUnpacked(site);
    default:
      return {};
  }
}

std::vector<std::string> ColourOf(const Site& site) {
  const std::uint8_t* const pixel =
      site.frame.Picture() + 4 * (std::size_t{site.y} * site.frame.Shape().width + site.x);
  return {std::to_string(pixel[0]), std::to_string(pixel[1]), std::to_string(pixel[2])};
}

}  // namespace

std::string ProbeAsJson(const Frame& frame, std::uint32_t x, std::uint32_t y) {
  const Geometry& shape = frame.Shape();
  const zr::FormatInfo* const format = zr::FindFormatInfo(shape.format);
  if (format == nullptr || x >= shape.width || y >= shape.height) return "null";
  Site site{frame, *format, {}, x, y};
  if (!zr::DescribeFrame(shape.format, shape.width, shape.height, shape.stride, site.layout).IsSuccess())
    return "null";
  const Group group = GroupOf(site);
  return Object({{"offset", std::to_string(group.offset)},
                 {"bytes", Array(BytesOf(site, group))},
                 {"pixels", std::to_string(group.pixels)},
                 {"samples", Array(SamplesOf(site, group))},
                 {"depth", std::to_string(format->depth)},
                 {"colour", Array(ColourOf(site))}});
}

}  // namespace page
