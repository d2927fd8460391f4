#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ZrConvertersLib {
class PixelConverter;
struct FormatInfo;
}  // namespace ZrConvertersLib

namespace Bench {

/// How the sites of a mosaic become colours.
enum class Demosaic { None, Fast, Interpolate };

/// What is known of a pair beside its formats.
enum class Kind {
  Moves,        ///< mono and RGB sources, and mosaics that stay mosaics: samples are moved and shifted
  Fast,         ///< mosaics, one colour per tile
  Interpolate,  ///< mosaics, interpolating
  Matrix        ///< YCbCr
};

/// The order of the bits in packed samples.
enum class BitOrder {
  Named,       ///< what the name of the type means
  GigEVision,  ///< FLAG_PACKED_GIGE_VISION
  Csi2         ///< FLAG_PACKED_CSI2
};

/// One thing to measure: a registered pair with what can be chosen about it.
struct Case {
  const ZrConvertersLib::FormatInfo* source = nullptr;
  const ZrConvertersLib::FormatInfo* destination = nullptr;
  const ZrConvertersLib::PixelConverter* converter = nullptr;
  Demosaic demosaic = Demosaic::None;
  bool filtered = false;  ///< with tables that are not the identity
  BitOrder order = BitOrder::Named;

  bool IsChain() const;  ///< runs through an intermediate format
  Kind GetKind() const;
  std::string_view Family() const;
  std::string Name() const;  ///< "Bayer8 to RGB8, interpolated"
};

struct Selection {
  std::string source, destination;  ///< parts of format names; empty takes all
  std::vector<std::string> pairs;   ///< SOURCE:DESTINATION, whole names or nothing; empty takes all
  bool plain = true;                ///< without a filter
  bool filtered = true;             ///< with one, where the destination has a filter
  bool bitOrders = false;           ///< packed samples in the other orders of bits, too
};

/// All that is registered and selected, in the order of the type IDs: pairs are found by asking the registry.
std::vector<Case> RegisteredCases(const Selection& selection);

/// Width and height of a frame.
struct Size {
  std::uint32_t width = 0, height = 0;
  std::uint64_t Pixels() const { return std::uint64_t{width} * height; }
  std::string Name() const;
};

/// Bytes that the pixels of a frame take in memory, each packed line filled up to whole bytes.
std::uint64_t FrameBytes(const ZrConvertersLib::FormatInfo& format, Size size);

}  // namespace Bench
