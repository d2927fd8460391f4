#include "Encode.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace zrconvert {
namespace {

using ZrConvertersLib::ColourMatrix;
using ZrConvertersLib::MosaicPattern;
using Bytes = std::vector<std::uint8_t>;

// A sample and the number of bits that it takes in its stream.
struct Sample {
  std::uint32_t value;
  unsigned depth;
};

// Appends values of any width up to 32 bits to a stream of bytes, the lowest bit first.
class BitWriter {
 public:
  explicit BitWriter(Bytes& bytes) : mBytes(bytes) {}

  void Put(std::uint64_t value, unsigned bits) {
    mPending |= value << mCount;
    for (mCount += bits; mCount >= 8; mCount -= 8) {
      mBytes.push_back(static_cast<std::uint8_t>(mPending));
      mPending >>= 8;
    }
  }

  // Fills the last byte with zeros.
  void Align() { Put(0, (8 - mCount) % 8); }

 private:
  Bytes& mBytes;
  std::uint64_t mPending = 0;
  unsigned mCount = 0;
};

struct YCbCr {
  double y, cb, cr;
};

// Scale of luma and chroma and the weights of red and blue of one standard.
struct MatrixFacts {
  double red, blue;
  double lumaScale, lumaOffset, chromaScale;
};

// BT.601 and BT.709 in video range (16 to 235, 16 to 240 of 255), JFIF in full range.
MatrixFacts FactsOf(ColourMatrix matrix) {
  switch (matrix) {
    case ColourMatrix::Bt709:
      return {0.2126, 0.0722, 219, 16, 224};
    case ColourMatrix::Jpeg:
      return {0.299, 0.114, 255, 0, 255};
    default:
      return {0.299, 0.114, 219, 16, 224};
  }
}

// On the scale of 8 bits, not rounded.
YCbCr ToYCbCr(const Colour& colour, const MatrixFacts& facts) {
  const double y =
      facts.red * colour.red + (1 - facts.red - facts.blue) * colour.green + facts.blue * colour.blue;
  const double cb = (colour.blue - y) / (2 * (1 - facts.blue));
  const double cr = (colour.red - y) / (2 * (1 - facts.red));
  return {facts.lumaOffset + facts.lumaScale * y, 128 + facts.chromaScale * cb, 128 + facts.chromaScale * cr};
}

std::uint32_t Quantise(double value, double full) {
  return static_cast<std::uint32_t>(std::clamp(std::floor(value + 0.5), 0.0, full));
}

double FullScale(unsigned depth) {
  return std::ldexp(1.0, static_cast<int>(depth)) - 1;
}

Sample FromUnit(double value, unsigned depth) {
  return {Quantise(value * FullScale(depth), FullScale(depth)), depth};
}

// From a value on the scale of 8 bits.
Sample FromByteScale(double value, unsigned depth) {
  return {Quantise(std::ldexp(value, static_cast<int>(depth) - 8), FullScale(depth)), depth};
}

Colour Mean(const std::vector<Colour>& colours) {
  Colour sum;
  for (const Colour& colour : colours) {
    sum.red += colour.red;
    sum.green += colour.green;
    sum.blue += colour.blue;
  }
  const auto count = double(colours.size());
  return {sum.red / count, sum.green / count, sum.blue / count};
}

// The one place that says what each component of a layout holds.
class Sampler {
 public:
  Sampler(const SourceLayout& layout, unsigned depth, const EncodeOptions& options)
      : mLayout(layout), mDepth(depth), mOptions(options), mFacts(FactsOf(options.matrix)) {}

  Sample Take(const Slot& slot, const std::vector<Colour>& group, unsigned x, unsigned y) const {
    const bool shared = slot.pixel == Slot::cWholeGroup;
    const Colour colour = shared ? Mean(group) : group[slot.pixel];
    switch (slot.component) {
      case Component::Grey:
        return Grey(colour);
      case Component::Site:
        return FromUnit(SiteOf(colour, mOptions.pattern, x, y), mDepth);
      case Component::Red:
        return FromUnit(colour.red, OtherDepth());
      case Component::Green:
        return FromUnit(colour.green, GreenDepth());
      case Component::Blue:
        return FromUnit(colour.blue, OtherDepth());
      case Component::Alpha:
        return FromUnit(1, mDepth);
      case Component::Luma:
        return FromByteScale(ToYCbCr(colour, mFacts).y, mDepth);
      case Component::BlueDifference:
        return FromByteScale(ToYCbCr(colour, mFacts).cb, mDepth);
      case Component::RedDifference:
        return FromByteScale(ToYCbCr(colour, mFacts).cr, mDepth);
    }
    return {};
  }

 private:
  // Mono8s counts from -128 for black in two's complement: the top bit is inverted.
  Sample Grey(const Colour& colour) const {
    Sample sample = FromUnit(Luma(colour), mDepth);
    if (mLayout.name == "Mono8s") sample.value ^= 0x80U;
    return sample;
  }

  unsigned GreenDepth() const { return mLayout.packing == Packing::Pixel565 ? 6 : mDepth; }
  unsigned OtherDepth() const { return mLayout.packing == Packing::Pixel565 ? 5 : mDepth; }

  const SourceLayout& mLayout;
  unsigned mDepth;
  const EncodeOptions& mOptions;
  MatrixFacts mFacts;
};

// Two samples in three bytes; the first one's low bits are in the high nibble of the middle byte.
void PutPairs(const std::vector<Sample>& samples, unsigned depth, BitWriter& writer) {
  const unsigned low = depth - 8;
  const std::uint32_t mask = (1U << low) - 1;
  for (std::size_t i = 0; i < samples.size(); i += 2) {
    const bool whole = i + 1 < samples.size();
    const std::uint32_t first = samples[i].value;
    const std::uint32_t second = whole ? samples[i + 1].value : 0;
    writer.Put(first >> low, 8);
    writer.Put((first & mask) << 4 | (second & mask), 8);
    if (whole) writer.Put(second >> low, 8);
  }
}

void PutPixels32(const std::vector<Sample>& samples, BitWriter& writer) {
  for (std::size_t i = 0; i + 3 <= samples.size(); i += 3) {
    for (std::size_t k = 0; k < 3; ++k) writer.Put(samples[i + k].value, samples[i + k].depth);
    writer.Put(0, 2);
  }
}

// Bits that each sample takes; 0 stands for the sample's own depth.
unsigned ContainerBits(Packing packing, unsigned depth) {
  switch (packing) {
    case Packing::Bytes:
      return 8;
    case Packing::Words:
      return 16;
    case Packing::DoubleWords:
      return 32;
    case Packing::Planes:
      return depth > 8 ? 16 : 8;
    default:
      return 0;
  }
}

void PutStream(const std::vector<Sample>& samples, unsigned container, BitWriter& writer) {
  for (const Sample& sample : samples) writer.Put(sample.value, container ? container : sample.depth);
}

void PutLine(const std::vector<Sample>& samples, Packing packing, unsigned depth, Bytes& bytes) {
  BitWriter writer(bytes);
  switch (packing) {
    case Packing::Pairs:
      PutPairs(samples, depth, writer);
      break;
    case Packing::Pixel32:
      PutPixels32(samples, writer);
      break;
    default:
      PutStream(samples, ContainerBits(packing, depth), writer);
  }
  writer.Align();
}

using Slots = std::vector<Slot>;

std::vector<Sample> SamplesOfLine(const Chart& chart, const Slots& slots, unsigned pixels,
                                  const Sampler& sampler, unsigned y) {
  std::vector<Sample> samples;
  std::vector<Colour> group(pixels);
  for (unsigned x = 0; x + pixels <= chart.Width(); x += pixels) {
    for (unsigned i = 0; i < pixels; ++i) group[i] = chart.At(x + i, y);
    for (const Slot& slot : slots) samples.push_back(sampler.Take(slot, group, x, y));
  }
  return samples;
}

// All lines of the frame, or of one plane of it.
void PutImage(const Chart& chart, const SourceLayout& layout, const Slots& slots, unsigned depth,
              const EncodeOptions& options, Bytes& bytes) {
  const Sampler sampler(layout, depth, options);
  const unsigned pixels = PixelsPerGroup(layout);
  for (unsigned y = 0; y < chart.Height(); ++y) {
    PutLine(SamplesOfLine(chart, slots, pixels, sampler, y), layout.packing, depth, bytes);
    bytes.insert(bytes.end(), options.linePadding, 0);
  }
}

}  // namespace

double SiteOf(const Colour& colour, MosaicPattern pattern, unsigned x, unsigned y) {
  static constexpr std::string_view cTiles[] = {"GRBG", "GBRG", "RGGB", "BGGR"};
  switch (cTiles[static_cast<unsigned>(pattern)][y % 2 * 2 + x % 2]) {
    case 'R':
      return colour.red;
    case 'B':
      return colour.blue;
    default:
      return colour.green;
  }
}

std::vector<std::uint8_t> EncodeFrame(const Chart& chart, const SourceLayout& layout, unsigned depth,
                                      const EncodeOptions& options) {
  Bytes bytes;
  const Slots slots = GroupOf(layout);
  if (layout.packing != Packing::Planes) {
    PutImage(chart, layout, slots, depth, options, bytes);
    return bytes;
  }
  for (const Slot& slot : slots) PutImage(chart, layout, {slot}, depth, options, bytes);
  return bytes;
}

}  // namespace zrconvert
