#include "BitPicture.h"

#include <formats/FormatWords.h>

#include <cstddef>
#include <vector>

namespace ZrConvertersLib::Pages {

namespace {

constexpr int kUnused = -1;
constexpr std::size_t kBitWidth = 6;  // characters that one bit takes in the picture

/// Which bit of which sample of the group a bit in memory is.
struct SampleBit {
  int sample = kUnused;
  unsigned bit = 0;
};

std::vector<SampleBit> BitsOf(const FormatRow& row, bool flagged) {
  const auto positionOf = flagged ? FlaggedBitPosition : BitPosition;
  std::vector<SampleBit> bits(row.group.bytes * 8u);
  for (unsigned sample = 0; sample < SamplesInGroup(row); ++sample) {
    for (unsigned bit = 0; bit < SampleDepth(row, sample); ++bit) {
      bits[positionOf(row, sample, bit)] = {static_cast<int>(sample), bit};
    }
  }
  return bits;
}

std::string CellText(const FormatRow& row, const SampleBit& high, const SampleBit& low) {
  if (high.sample == kUnused) return "-";
  std::string text(std::string_view(FormatWords::NameOf(row, static_cast<unsigned>(high.sample))));
  if (row.depth == 1) return text;
  text.append("[").append(std::to_string(high.bit));
  if (high.bit != low.bit) text.append(":").append(std::to_string(low.bit));
  return text.append("]");
}

bool Continues(const SampleBit& upper, const SampleBit& lower) {
  return upper.sample == lower.sample && (upper.sample == kUnused || upper.bit == lower.bit + 1);
}

/// One byte, its bits from the lowest at `bits` on.
std::string ByteLine(const FormatRow& row, const SampleBit* bits) {
  std::string line = "|";
  for (int high = 7; high >= 0;) {
    int low = high;
    while (low > 0 && Continues(bits[low], bits[low - 1])) --low;
    std::string cell = " ";
    cell.append(CellText(row, bits[high], bits[low]));
    cell.resize(static_cast<std::size_t>(high - low + 1) * kBitWidth - 1, ' ');
    line.append(cell).append("|");
    high = low - 1;
  }
  return line;
}

}  // namespace

std::string BitPicture(const FormatRow& row, bool flagged) {
  const std::vector<SampleBit> bits = BitsOf(row, flagged);
  std::string picture = "       |";
  for (char bit = '7'; bit >= '0'; --bit) picture += std::string({' ', bit}).append(kBitWidth - 3, ' ') + "|";
  picture += "\n";
  for (std::size_t byte = 0; byte < row.group.bytes; ++byte) {
    std::string label = "byte ";
    label.append(std::to_string(byte)).resize(7, ' ');
    picture.append(label).append(ByteLine(row, &bits[byte * 8])).append("\n");
  }
  return picture;
}

}  // namespace ZrConvertersLib::Pages
