#include "Encode.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "SourceLayout.h"

namespace zrconvert {
namespace {

using ZrConvertersLib::ColourMatrix;
using ZrConvertersLib::FormatFamily;
using ZrConvertersLib::FormatInfo;
using ZrConvertersLib::MosaicPattern;
using ZrConvertersLib::Packing;
using ZrConvertersLib::PackingOrder;
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

// Computes the value of each component of a format.
class Sampler {
 public:
  Sampler(const FormatInfo& format, const EncodeOptions& options)
      : mFormat(format), mOptions(options), mFacts(FactsOf(options.matrix)) {}

  // The sample of that index among those of the group, whose first pixel lies at x, y.
  Sample Take(const Slot& slot, unsigned index, const std::vector<Colour>& group, unsigned x,
              unsigned y) const {
    const bool shared = slot.pixel == Slot::cAllPixels;
    const Colour colour = shared ? Mean(group) : group[slot.pixel];
    switch (slot.component) {
      case Component::Grey:
        return Grey(colour);
      case Component::Site:
        return FromUnit(SiteOf(colour, mFormat.family, mOptions.pattern, x, y, index), mFormat.depth);
      case Component::Red:
        return FromUnit(colour.red, mFormat.depth);
      case Component::Green:
        return FromUnit(colour.green, Is565() ? 6 : mFormat.depth);
      case Component::Blue:
        return FromUnit(colour.blue, mFormat.depth);
      case Component::Alpha:
        return FromUnit(1, mFormat.depth);
      case Component::Luma:
        return FromByteScale(ToYCbCr(colour, mFacts).y, mFormat.depth);
      case Component::BlueDifference:
        return FromByteScale(ToYCbCr(colour, mFacts).cb, mFormat.depth);
      case Component::RedDifference:
        return FromByteScale(ToYCbCr(colour, mFacts).cr, mFormat.depth);
    }
    return {};
  }

 private:
  bool Is565() const { return mFormat.packing == Packing::Word && mFormat.sampleBits == 16; }

  // Signed samples count from their least value for black in two's complement: the top bit is inverted.
  Sample Grey(const Colour& colour) const {
    Sample sample = FromUnit(Luma(colour), mFormat.depth);
    if (mFormat.isSigned) sample.value ^= 1U << (mFormat.depth - 1);
    return sample;
  }

  const FormatInfo& mFormat;
  const EncodeOptions& mOptions;
  MatrixFacts mFacts;
};

// Two samples in three bytes, their low bits in the middle byte from the given bits on.
void PutPairs(const std::vector<Sample>& samples, unsigned firstLow, unsigned secondLow, BitWriter& writer) {
  for (std::size_t i = 0; i < samples.size(); i += 2) {
    const bool whole = i + 1 < samples.size();
    const unsigned low = samples[i].depth - 8;
    const std::uint32_t mask = (1U << low) - 1;
    const std::uint32_t first = samples[i].value;
    const std::uint32_t second = whole ? samples[i + 1].value : 0;
    writer.Put(first >> low, 8);
    writer.Put((first & mask) << firstLow | (second & mask) << secondLow, 8);
    if (whole) writer.Put(second >> low, 8);
  }
}

// Groups of two samples (of 12 bits) or four: the upper eight bits of each, then the low bits of all.
void PutHighBitsFirst(const std::vector<Sample>& samples, BitWriter& writer) {
  const unsigned low = samples.empty() ? 0 : samples.front().depth - 8;
  const std::size_t together = low == 4 ? 2 : 4;
  for (std::size_t i = 0; i + together <= samples.size(); i += together) {
    for (std::size_t k = i; k < i + together; ++k) writer.Put(samples[k].value >> low, 8);
    for (std::size_t k = i; k < i + together; ++k) writer.Put(samples[k].value & ((1U << low) - 1), low);
  }
}

// A pixel in one word, the first sample in its lowest bits; of 16 bits in its highest.
void PutWords(const std::vector<Sample>& samples, unsigned bits, BitWriter& writer) {
  for (std::size_t i = 0; i + 3 <= samples.size(); i += 3) {
    const Sample& first = samples[bits == 16 ? i + 2 : i];
    const Sample& last = samples[bits == 16 ? i : i + 2];
    for (const Sample* sample : {&first, &samples[i + 1], &last}) writer.Put(sample->value, sample->depth);
    writer.Put(0, bits == 32 ? 2 : 0);
  }
}

// A pixel in four bytes: the low two bits of all samples, then the upper eight of each.
void PutLowBitsFirst(const std::vector<Sample>& samples, BitWriter& writer) {
  for (std::size_t i = 0; i + 3 <= samples.size(); i += 3) {
    for (std::size_t k = 0; k < 3; ++k) writer.Put(samples[i + k].value & 3U, 2);
    writer.Put(0, 2);
    for (std::size_t k = 0; k < 3; ++k) writer.Put(samples[i + k].value >> 2, 8);
  }
}

void PutStream(const std::vector<Sample>& samples, unsigned container, BitWriter& writer) {
  for (const Sample& sample : samples) writer.Put(sample.value, container);
}

void PutPacked(const std::vector<Sample>& samples, const FormatInfo& format, BitWriter& writer) {
  switch (format.packing) {
    case Packing::Pair:
      PutPairs(samples, 4, 0, writer);
      break;
    case Packing::Word:
      PutWords(samples, format.sampleBits, writer);
      break;
    case Packing::V1Packed:
      if (format.sampleBits == 32)
        PutLowBitsFirst(samples, writer);
      else
        PutPairs(samples, 0, 4, writer);
      break;
    default:
      PutStream(samples, format.sampleBits, writer);
  }
}

void PutLine(const std::vector<Sample>& samples, const FormatInfo& format, PackingOrder packing,
             Bytes& bytes) {
  BitWriter writer(bytes);
  if (packing == PackingOrder::GigEVision) {
    PutPairs(samples, 0, 4, writer);
  } else if (packing == PackingOrder::Csi2) {
    PutHighBitsFirst(samples, writer);
  } else {
    PutPacked(samples, format, writer);
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
    for (unsigned i = 0; i < slots.size(); ++i) samples.push_back(sampler.Take(slots[i], i, group, x, y));
  }
  return samples;
}

// All lines of the frame, or of one plane of it.
void PutImage(const Chart& chart, const FormatInfo& format, const Slots& slots, const EncodeOptions& options,
              Bytes& bytes) {
  const Sampler sampler(format, options);
  for (unsigned y = 0; y < chart.Height(); ++y) {
    PutLine(SamplesOfLine(chart, slots, format.widthMultiple, sampler, y), format, options.packing, bytes);
    bytes.insert(bytes.end(), options.linePadding, 0);
  }
}

// A family's pattern is the given one, or the family's first.
std::string_view NameOf(MosaicPattern pattern, MosaicPattern first) {
  const unsigned place = static_cast<unsigned>(pattern) - static_cast<unsigned>(first);
  return ZrConvertersLib::PatternName(place < 4 ? pattern : first);
}

// Which of "RGBW" a sample sees.
char FilterOf(FormatFamily family, MosaicPattern pattern, unsigned x, unsigned y, unsigned sample) {
  if (family == FormatFamily::BiColor) return NameOf(pattern, MosaicPattern::RGBG)[x % 2 * 2 + sample];
  if (family == FormatFamily::Bayer) return NameOf(pattern, MosaicPattern::GRBG)[y % 2 * 2 + x % 2];
  if ((x + y) % 2 == 0) return 'W';
  // The name has the two colours of the first row of cells; red and blue lie across from one another.
  const std::string_view name = NameOf(pattern, MosaicPattern::WGWR);
  const char first = name[1];
  const char second = name[3];
  const auto across = [](char colour) { return colour == 'G' ? 'G' : colour == 'R' ? 'B' : 'R'; };
  const char cells[] = {first, second, across(second), across(first)};
  return cells[y / 2 % 2 * 2 + x / 2 % 2];
}

}  // namespace

double SiteOf(const Colour& colour, FormatFamily family, MosaicPattern pattern, unsigned x, unsigned y,
              unsigned sample) {
  switch (FilterOf(family, pattern, x, y, sample)) {
    case 'R':
      return colour.red;
    case 'B':
      return colour.blue;
    case 'W':
      return (colour.red + colour.green + colour.blue) / 3;
    default:
      return colour.green;
  }
}

std::vector<std::uint8_t> EncodeFrame(const Chart& chart, const FormatInfo& format,
                                      const EncodeOptions& options) {
  Bytes bytes;
  const Slots slots = SlotsOf(format);
  if (format.packing != Packing::Planar) {
    PutImage(chart, format, slots, options, bytes);
    return bytes;
  }
  for (const Slot& slot : slots) PutImage(chart, format, {slot}, options, bytes);
  return bytes;
}

}  // namespace zrconvert
