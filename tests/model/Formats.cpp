#include "Formats.h"

#include <algorithm>
#include <utility>

namespace Model {
namespace {

constexpr ColourOrder kRgb{3, 0, 1, 2};
constexpr ColourOrder kBgr{3, 2, 1, 0};
constexpr ColourOrder kRgba{4, 0, 1, 2};
constexpr ColourOrder kBgra{4, 2, 1, 0};

constexpr ChromaGroup kYCbCr{1, 3, 1, 2, {0}};
constexpr ChromaGroup kCbYCr{1, 3, 0, 2, {1}};
constexpr ChromaGroup kYCbYCr{2, 4, 1, 3, {0, 2}};
constexpr ChromaGroup kCbYCrY{2, 4, 0, 2, {1, 3}};
constexpr ChromaGroup kYYCbYYCr{4, 6, 2, 5, {0, 1, 3, 4}};
constexpr ChromaGroup kCbYYCrYY{4, 6, 0, 3, {1, 2, 4, 5}};

constexpr Packing Container(unsigned bits) {
  return bits == 8 ? Packing::Byte : Packing::Word16;
}

constexpr Source Grey(long id, std::string_view name, Packing packing, unsigned bits) {
  return {.id = id, .name = name, .meaning = Meaning::Grey, .packing = packing, .bits = bits};
}

constexpr Source Mosaic(long id, std::string_view name, unsigned bits) {
  return {.id = id, .name = name, .meaning = Meaning::Mosaic, .packing = Container(bits), .bits = bits};
}

constexpr Source BiColor(long id, std::string_view name, Packing packing, unsigned bits) {
  return {.id = id, .name = name, .meaning = Meaning::BiColor, .packing = packing, .bits = bits};
}

constexpr Source Scf1(long id, std::string_view name, Packing packing, unsigned bits) {
  return {.id = id, .name = name, .meaning = Meaning::Scf1, .packing = packing, .bits = bits};
}

constexpr Source PackedColour(long id, std::string_view name, Packing packing, ColourOrder order,
                              unsigned bits) {
  Source source{.id = id, .name = name, .meaning = Meaning::Colour, .packing = packing, .bits = bits};
  source.colour = order;
  return source;
}

constexpr Source Colour(long id, std::string_view name, ColourOrder order, unsigned bits) {
  return PackedColour(id, name, Container(bits), order, bits);
}

constexpr Source Planes(long id, std::string_view name, unsigned bits) {
  Source source = Colour(id, name, kRgb, bits);
  source.planar = true;
  return source;
}

constexpr Source Chroma(long id, std::string_view name, ChromaGroup group, unsigned bits) {
  Source source{.id = id, .name = name, .meaning = Meaning::YCbCr, .packing = Container(bits), .bits = bits};
  source.chroma = group;
  return source;
}

/// Least significant bits first, or as CSI-2 has them when a flag says so.
constexpr Source Stream(long id, std::string_view name, unsigned bits) {
  Source source = Grey(id, name, Packing::LsbFirst, bits);
  source.csi2 = true;
  return source;
}

constexpr Source Mono10Packed() {
  Source source = Grey(516, "Mono10Packed", Packing::PairPacked, 10);
  source.nibbleShift = 6;
  return source;
}

/// Sources that one converter reads.
constexpr auto kDirect = std::to_array<Source>({
    Grey(512, "Mono8", Packing::Byte, 8),
    Grey(513, "Mono8s", Packing::SignedByte, 8),
    Grey(514, "Mono10", Packing::Word16, 10),
    Grey(515, "Mono12", Packing::Word16, 12),
    Mono10Packed(),
    Grey(517, "Mono12Packed", Packing::PairPacked, 12),
    Grey(518, "Mono14", Packing::Word16, 14),
    Grey(519, "Mono16", Packing::Word16, 16),
    Grey(520, "Mono1p", Packing::SubByte, 1),
    Grey(521, "Mono2p", Packing::SubByte, 2),
    Grey(522, "Mono4p", Packing::SubByte, 4),
    Stream(523, "Mono10p", 10),
    Stream(524, "Mono12p", 12),
    Stream(525, "Mono14p", 14),
    Grey(526, "Mono32", Packing::Word32, 32),

    Mosaic(1024, "Bayer8", 8),
    Mosaic(1025, "Bayer10", 10),
    Mosaic(1027, "Bayer12", 12),
    Mosaic(1032, "Bayer14", 14),
    Mosaic(1029, "Bayer16", 16),

    Colour(258, "RGB8", kRgb, 8),
    Colour(259, "BGR8", kBgr, 8),
    Colour(260, "RGBa8", kRgba, 8),
    Colour(261, "BGRa8", kBgra, 8),
    Colour(262, "RGB10", kRgb, 10),
    Colour(263, "BGR10", kBgr, 10),
    Colour(266, "RGBa10", kRgba, 10),
    Colour(267, "BGRa10", kBgra, 10),
    Colour(270, "RGB12", kRgb, 12),
    Colour(271, "BGR12", kBgr, 12),
    Colour(274, "RGBa12", kRgba, 12),
    Colour(275, "BGRa12", kBgra, 12),
    Colour(278, "RGB14", kRgb, 14),
    Colour(279, "BGR14", kBgr, 14),
    Colour(280, "RGBa14", kRgba, 14),
    Colour(281, "BGRa14", kBgra, 14),
    Colour(282, "RGB16", kRgb, 16),
    Colour(283, "BGR16", kBgr, 16),
    Colour(284, "RGBa16", kRgba, 16),
    Colour(285, "BGRa16", kBgra, 16),

    // The three channels of a word from its lowest bits up.
    PackedColour(256, "RGB565p", Packing::Word565, kBgr, 6),
    PackedColour(257, "BGR565p", Packing::Word565, kRgb, 6),
    PackedColour(287, "RGB10p32", Packing::Word10p32, kRgb, 10),
    PackedColour(286, "RGB10V1Packed", Packing::V1Packed, kRgb, 10),
    PackedColour(288, "RGB12V1Packed", Packing::GigEVision, kRgb, 12),
    Planes(289, "RGB8_Planar", 8),
    Planes(290, "RGB10_Planar", 10),
    Planes(291, "RGB12_Planar", 12),
    Planes(292, "RGB16_Planar", 16),

    BiColor(1536, "BiColor8", Packing::Byte, 8),
    BiColor(1537, "BiColor10", Packing::Word16, 10),
    BiColor(1538, "BiColor12", Packing::Word16, 12),
    BiColor(1539, "BiColor10p", Packing::LsbFirst, 10),
    BiColor(1540, "BiColor12p", Packing::LsbFirst, 12),

    Scf1(1280, "SCF18", Packing::Byte, 8),
    Scf1(1281, "SCF110", Packing::Word16, 10),
    Scf1(1282, "SCF110p", Packing::LsbFirst, 10),
    Scf1(1283, "SCF112", Packing::Word16, 12),
    Scf1(1284, "SCF112p", Packing::LsbFirst, 12),
    Scf1(1285, "SCF114", Packing::Word16, 14),
    Scf1(1286, "SCF116", Packing::Word16, 16),

    Chroma(768, "YCbCr422_8", kYCbYCr, 8),
    Chroma(769, "YCbCr422_10", kYCbYCr, 10),
    Chroma(771, "YCbCr422_12", kYCbYCr, 12),
    Chroma(773, "YCbCr422_8_CbYCrY", kCbYCrY, 8),
    Chroma(774, "YCbCr422_10_CbYCrY", kCbYCrY, 10),
    Chroma(776, "YCbCr422_12_CbYCrY", kCbYCrY, 12),
    Chroma(778, "YCbCr8", kYCbCr, 8),
    Chroma(779, "YCbCr8_CbYCr", kCbYCr, 8),
    Chroma(780, "YCbCr10_CbYCr", kCbYCr, 10),
    Chroma(782, "YCbCr12_CbYCr", kCbYCr, 12),
    Chroma(784, "YCbCr411_8", kYYCbYYCr, 8),
    Chroma(785, "YCbCr411_8_CbYYCrYY", kCbYYCrYY, 8),
});

constexpr long kBayer8 = 1024;
constexpr long kBayer16 = 1029;

/// A packed source: unpacked as a stream of grey samples, then read as the type it is unpacked to.
struct Packed {
  Source stream;
  long to8;
  long to16;                           // 0: never unpacked to 16 bits
  bool unpackersAreConverters = true;  // registered for the types they unpack to
};

constexpr Packed PackedBayer(Source stream) {
  return {stream, kBayer8, kBayer16};
}

constexpr Packed PackedYCbCr(Source stream, unsigned samplesPerPixel, long to8) {
  stream.multiplier = samplesPerPixel;
  return {stream, to8, 0};
}

constexpr Packed PackedRgb(long id, std::string_view name, unsigned bits, unsigned samplesPerPixel, long to8,
                           long to16) {
  Packed packed{Grey(id, name, Packing::LsbFirst, bits), to8, to16, false};
  packed.stream.multiplier = samplesPerPixel;
  return packed;
}

/// Bayer10Packed keeps the nibble shift of the 12-bit packing: its samples come out as 8 + 4 bits.
constexpr auto kPacked = std::to_array<Packed>({
    PackedBayer(Grey(1026, "Bayer10Packed", Packing::PairPacked, 10)),
    PackedBayer(Grey(1028, "Bayer12Packed", Packing::PairPacked, 12)),
    PackedBayer(Stream(1030, "Bayer10p", 10)),
    PackedBayer(Stream(1031, "Bayer12p", 12)),
    PackedBayer(Stream(1033, "Bayer14p", 14)),
    PackedYCbCr(Stream(770, "YCbCr422_10p", 10), 2, 768),
    PackedYCbCr(Grey(772, "YCbCr422_12p", Packing::LsbFirst, 12), 2, 768),
    PackedYCbCr(Stream(775, "YCbCr422_10p_CbYCrY", 10), 2, 773),
    PackedYCbCr(Grey(777, "YCbCr422_12p_CbYCrY", Packing::LsbFirst, 12), 2, 773),
    PackedYCbCr(Grey(781, "YCbCr10p_CbYCr", Packing::LsbFirst, 10), 3, 779),
    PackedYCbCr(Grey(783, "YCbCr12p_CbYCr", Packing::LsbFirst, 12), 3, 779),
    PackedRgb(264, "RGB10p", 10, 3, 258, 282),
    PackedRgb(265, "BGR10p", 10, 3, 259, 283),
    PackedRgb(268, "RGBa10p", 10, 4, 260, 284),
    PackedRgb(269, "BGRa10p", 10, 4, 261, 285),
    PackedRgb(272, "RGB12p", 12, 3, 258, 282),
    PackedRgb(273, "BGR12p", 12, 3, 259, 283),
    PackedRgb(276, "RGBa12p", 12, 4, 260, 284),
    PackedRgb(277, "BGRa12p", 12, 4, 261, 285),
});

constexpr auto kDestinations = std::to_array<Destination>({
    {512, "Mono8", Shape::Grey, 8, false, 1},
    {514, "Mono10", Shape::Grey, 10, false, 2},
    {515, "Mono12", Shape::Grey, 12, false, 2},
    {518, "Mono14", Shape::Grey, 14, false, 2},
    {519, "Mono16", Shape::Grey, 16, false, 2},
    {258, "RGB8", Shape::ThreeChannels, 8, false, 3},
    {259, "BGR8", Shape::ThreeChannels, 8, true, 3},
    {260, "RGBa8", Shape::FourChannels, 8, false, 4},
    {261, "BGRa8", Shape::FourChannels, 8, true, 4},
    {282, "RGB16", Shape::ThreeChannels, 16, false, 6},
    {283, "BGR16", Shape::ThreeChannels, 16, true, 6},
    {256, "RGB565p", Shape::Word565, 8, false, 2},
    {289, "Planar8", Shape::Planes, 8, false, 1},
    {290, "Planar10", Shape::Planes, 10, false, 2},
    {291, "Planar12", Shape::Planes, 12, false, 2},
    {292, "Planar16", Shape::Planes, 16, false, 2},
});

template <class Range, class Matches>
auto FindIn(const Range& range, Matches matches) {
  const auto found = std::find_if(range.begin(), range.end(), matches);
  return found == range.end() ? std::nullopt : std::optional(*found);
}

std::optional<Source> FindDirect(long id) {
  return FindIn(kDirect, [id](const Source& source) { return source.id == id; });
}

std::optional<Packed> FindPacked(long id) {
  return FindIn(kPacked, [id](const Packed& packed) { return packed.stream.id == id; });
}

std::optional<Destination> FindDestination(long id) {
  return FindIn(kDestinations, [id](const Destination& destination) { return destination.id == id; });
}

Stage Unpack(const Packed& packed, long to) {
  constexpr long kMono8 = 512, kMono16 = 519;
  return {packed.stream, FindDestination(to == packed.to16 ? kMono16 : kMono8).value()};
}

/// Destinations of at most 8 bits a channel are served from the 8-bit intermediate.
long IntermediateOf(const Packed& packed, const Destination& destination) {
  return packed.to16 == 0 || destination.bits == 8 ? packed.to8 : packed.to16;
}

std::optional<Pair> FindPackedPair(const Packed& packed, long to) {
  if (packed.unpackersAreConverters && (to == packed.to8 || (to == packed.to16 && to != 0)))
    return Pair{Unpack(packed, to)};
  const auto destination = FindDestination(to);
  if (!destination) return std::nullopt;
  const long through = IntermediateOf(packed, *destination);
  return Pair{Unpack(packed, through), {FindDirect(through).value(), *destination}};
}

}  // namespace

std::optional<Pair> FindPair(long source, long destination) {
  if (const auto packed = FindPacked(source)) return FindPackedPair(*packed, destination);
  const auto direct = FindDirect(source);
  const auto writer = FindDestination(destination);
  if (!direct || !writer) return std::nullopt;
  return Pair{{*direct, *writer}};
}

std::optional<Source> FindSource(long id) {
  const auto packed = FindPacked(id);
  if (!packed) return FindDirect(id);
  Source source = FindDirect(packed->to8).value();
  source.id = id;
  source.name = packed->stream.name;
  source.packing = packed->stream.packing;
  source.bits = packed->stream.bits;
  source.csi2 = packed->stream.csi2;
  return source;
}

std::vector<Source> AllSources() {
  std::vector<Source> sources(kDirect.begin(), kDirect.end());
  for (const Packed& packed : kPacked) sources.push_back(packed.stream);
  return sources;
}

std::vector<long> DestinationsOf(long source) {
  std::vector<long> ids;
  for (const Destination& destination : kDestinations) ids.push_back(destination.id);
  if (const auto packed = FindPacked(source); packed && packed->unpackersAreConverters) {
    ids.push_back(packed->to8);
    if (packed->to16 != 0) ids.push_back(packed->to16);
  }
  return ids;
}

}  // namespace Model
