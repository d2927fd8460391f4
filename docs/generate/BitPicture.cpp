#include "BitPicture.h"

#include <cstddef>
#include <span>
#include <vector>

namespace ZrConvertersLib::Pages {

namespace {

constexpr int kUnused = -1;
constexpr std::size_t kBitWidth = 6;  // characters that one bit takes in the picture

/// Which bit of which sample of the group a bit in memory is.
struct SampleBit {
  int sample = kUnused;
  int bit = 0;
  bool operator==(const SampleBit&) const = default;
};

/// Samples of a pixel unit, in memory order: a letter or two, and the pixel they belong to (-1: all of it).
struct Channel {
  const char* name;
  int pixel;
};

std::span<const Channel> ChannelsOf(ChannelOrder order) {
  static constexpr Channel kSite[] = {{"P", 0}};
  static constexpr Channel kSites[] = {{"A", 0}, {"B", 0}};
  static constexpr Channel kRgba[] = {{"R", 0}, {"G", 0}, {"B", 0}, {"a", 0}};
  static constexpr Channel kBgra[] = {{"B", 0}, {"G", 0}, {"R", 0}, {"a", 0}};
  static constexpr Channel kYCbCr[] = {{"Y", 0}, {"Cb", 0}, {"Cr", 0}};
  static constexpr Channel kCbYCr[] = {{"Cb", 0}, {"Y", 0}, {"Cr", 0}};
  static constexpr Channel kYCbYCr[] = {{"Y", 0}, {"Cb", -1}, {"Y", 1}, {"Cr", -1}};
  static constexpr Channel kCbYCrY[] = {{"Cb", -1}, {"Y", 0}, {"Cr", -1}, {"Y", 1}};
  static constexpr Channel kYYCbYYCr[] = {{"Y", 0}, {"Y", 1}, {"Cb", -1}, {"Y", 2}, {"Y", 3}, {"Cr", -1}};
  static constexpr Channel kCbYYCrYY[] = {{"Cb", -1}, {"Y", 0}, {"Y", 1}, {"Cr", -1}, {"Y", 2}, {"Y", 3}};
  switch (order) {
    case ChannelOrder::Mono:
    case ChannelOrder::Bayer:
    case ChannelOrder::Scf1:
      return kSite;
    case ChannelOrder::BiColor:
      return kSites;
    case ChannelOrder::Rgb:
      return std::span(kRgba).first(3);
    case ChannelOrder::RgbA:
      return kRgba;
    case ChannelOrder::Bgr:
      return std::span(kBgra).first(3);
    case ChannelOrder::BgrA:
      return kBgra;
    case ChannelOrder::YCbCr:
      return kYCbCr;
    case ChannelOrder::CbYCr:
      return kCbYCr;
    case ChannelOrder::YCbYCr:
      return kYCbYCr;
    case ChannelOrder::CbYCrY:
      return kCbYCrY;
    case ChannelOrder::YYCbYYCr:
      return kYYCbYYCr;
    case ChannelOrder::CbYYCrYY:
      return kCbYYCrYY;
  }
  return {};
}

/// "Y1", "Cb", "P0"; the pixel's number only where the group has several.
std::string SampleName(const FormatRow& row, int sample) {
  const auto channels = ChannelsOf(row.order);
  const int perUnit = static_cast<int>(channels.size());
  const Channel& channel = channels[static_cast<std::size_t>(sample % perUnit)];
  const int unitPixels = UnitOf(row.order).pixels;
  const int pixel = sample / perUnit * unitPixels + channel.pixel;
  return row.group.pixels == 1 || channel.pixel < 0 ? channel.name : channel.name + std::to_string(pixel);
}

/// Samples one after another in containers of equal size, used from the low bit up.
SampleBit InContainers(int container, int depth, int position) {
  const int bit = position % container;
  return bit < depth ? SampleBit{position / container, bit} : SampleBit{};
}

/// High 8 bits in the outer bytes; low bits in the middle byte, the first sample's in its high nibble.
SampleBit InPair(const FormatRow& row, int position) {
  const int byte = position / 8;
  const int bit = position % 8;
  const int low = row.depth - 8;
  if (byte != 1) return {byte / 2, low + bit};
  return bit % 4 < low ? SampleBit{bit < 4 ? 1 : 0, bit % 4} : SampleBit{};
}

/// One pixel in one word. 5-6-5 words begin with the first channel at the top, the others at the bottom,
/// where bits above the third channel are unused.
SampleBit InWord(const FormatRow& row, int position) {
  if (row.depth != 5)
    return position < 3 * row.depth ? InContainers(row.depth, row.depth, position) : SampleBit{};
  if (position >= 11) return {0, position - 11};
  return position >= 5 ? SampleBit{1, position - 5} : SampleBit{2, position};
}

SampleBit At(const FormatRow& row, int position) {
  switch (row.packing) {
    case Packing::Pair:
      return InPair(row, position);
    case Packing::Word:
      return InWord(row, position);
    default:
      return InContainers(row.container, row.depth, position);
  }
}

std::string CellText(const FormatRow& row, const SampleBit& high, const SampleBit& low) {
  if (high.sample == kUnused) return "-";
  std::string text = row.packing == Packing::Planar ? "P" : SampleName(row, high.sample);
  if (row.depth == 1) return text;
  text.append("[").append(std::to_string(high.bit));
  if (high.bit != low.bit) text.append(":").append(std::to_string(low.bit));
  return text.append("]");
}

bool Continues(const SampleBit& upper, const SampleBit& lower) {
  if (upper.sample != lower.sample) return false;
  return upper.sample == kUnused || upper.bit == lower.bit + 1;
}

std::string ByteLine(const FormatRow& row, int byte) {
  std::string line = "|";
  for (int high = 7; high >= 0;) {
    int low = high;
    while (low > 0 && Continues(At(row, byte * 8 + low), At(row, byte * 8 + low - 1))) --low;
    std::string cell = " ";
    cell.append(CellText(row, At(row, byte * 8 + high), At(row, byte * 8 + low)));
    cell.resize(static_cast<std::size_t>(high - low + 1) * kBitWidth - 1, ' ');
    line.append(cell).append("|");
    high = low - 1;
  }
  return line;
}

}  // namespace

std::string BitPicture(const FormatRow& row) {
  if (row.packing == Packing::V1Packed) return {};
  std::string picture = "       |";
  for (char bit = '7'; bit >= '0'; --bit) picture += std::string({' ', bit}).append(kBitWidth - 3, ' ') + "|";
  picture += "\n";
  for (int byte = 0; byte < row.group.bytes; ++byte) {
    std::string label = "byte " + std::to_string(byte);
    label.resize(7, ' ');
    picture.append(label).append(ByteLine(row, byte)).append("\n");
  }
  return picture;
}

}  // namespace ZrConvertersLib::Pages
