#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <ZrConvertersLib/V4l2Formats.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

// Any bytes as formats, sizes, options, views and data of the checked interface. The sanitizers watch what is
// read and written; beside that a refusal must change nothing, and a success must give the same picture over
// another background and in bands.

namespace {

using namespace ZrConvertersLib;

/// Takes numbers from the front of the input; an input that has run out gives zeros.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : mData(data), mSize(size) {}

  std::uint8_t Byte() {
    if (mSize == 0) return 0;
    --mSize;
    return *mData++;
  }

  std::uint32_t Word() {
    std::uint32_t word = 0;
    for (int i = 0; i < 4; ++i) word = word << 8 | Byte();
    return word;
  }

  /// Mostly small, now and then anything.
  std::uint32_t Side() {
    const std::uint8_t kind = Byte();
    return kind < 250 ? kind % 70 : Word();
  }

  std::string_view Rest() const { return {reinterpret_cast<const char*>(mData), mSize}; }

 private:
  const std::uint8_t* mData;
  std::size_t mSize;
};

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

long TakeFormat(Input& input) {
  const std::uint8_t kind = input.Byte();
  if (kind >= 250) return static_cast<std::int32_t>(input.Word());
  return Formats()[kind % Formats().size()].id;
}

FrameOptions TakeOptions(Input& input, const RGBFilter& filter) {
  FrameOptions options;
  const std::uint8_t kind = input.Byte();
  options.SetFlags(input.Word());
  if (kind % 16 == 15) options.pattern = static_cast<MosaicPattern>(input.Byte());
  if (kind % 16 == 14) options.demosaic = static_cast<Demosaic>(input.Byte());
  if (kind % 16 == 13) options.matrix = static_cast<ColourMatrix>(input.Byte());
  if (kind % 16 == 12) options.packing = static_cast<PackingOrder>(input.Byte());
  options.flipVertical = (kind & 16) != 0;
  options.flipHorizontal = (kind & 32) != 0;
  if ((kind & 64) != 0) options.filter = &filter;
  if ((kind & 128) != 0) options.region = {input.Side(), input.Side(), input.Side(), input.Side()};
  return options;
}

/// A frame's bytes and what is claimed about them. The claimed size is the true one.
struct Frame {
  std::vector<std::uint8_t> bytes;
  std::size_t stride = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

/// Mostly what the converter wants, now and then something else.
Frame TakeFrame(Input& input, long format, std::uint32_t width, std::uint32_t height) {
  Frame frame;
  const std::uint8_t kind = input.Byte();
  frame.width = kind == 255 ? input.Word() : width;
  frame.height = kind == 254 ? input.Word() : height;
  FrameLayout layout;
  if (DescribeFrame(format, width, height, 0, layout).IsSuccess() && kind % 2 == 1)
    frame.stride = layout.stride + kind % 32;
  if (kind == 253) frame.stride = input.Word();
  const bool known = DescribeFrame(format, width, height, frame.stride, layout).IsSuccess();
  const std::size_t wanted = known ? static_cast<std::size_t>(layout.leastBytes) : 0;
  frame.bytes.resize(kind == 252 || wanted > 1 << 22 ? input.Word() % 4096 : wanted);
  return frame;
}

void FillFrom(Input& input, std::vector<std::uint8_t>& bytes) {
  const std::string_view data = input.Rest();
  for (std::size_t i = 0; i < bytes.size() && !data.empty(); ++i)
    bytes[i] = static_cast<std::uint8_t>(data[i % data.size()] + static_cast<int>(i / data.size()));
}

/// The vectors' own capacity would hide an overrun: exact copies on the heap do not.
std::unique_ptr<std::uint8_t[]> ExactCopy(const std::vector<std::uint8_t>& bytes) {
  std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), copy.get());
  return copy;
}

/// Whether both pictures hold the same pixels and kept their own background everywhere else.
void RequireSamePixels(const Frame& frame, const FrameLayout& layout, const std::uint8_t* a,
                       std::uint8_t backgroundA, const std::uint8_t* b, std::uint8_t backgroundB) {
  for (std::size_t i = 0; i < frame.bytes.size(); ++i) {
    const bool pixel = i < layout.leastBytes && i % layout.stride < layout.bytesPerLine;
    Require(pixel ? a[i] == b[i] : a[i] == backgroundA && b[i] == backgroundB);
  }
}

void ConvertTwice(Input& input, FrameConverter& converter, long destination, const Frame& from, Frame& to) {
  const auto source = ExactCopy(from.bytes);
  const SourceView view{source.get(), from.bytes.size(), from.stride, from.width, from.height};
  constexpr std::uint8_t kA = 0x5A;
  constexpr std::uint8_t kB = 0xA5;
  std::fill(to.bytes.begin(), to.bytes.end(), kA);
  const auto a = ExactCopy(to.bytes);
  std::fill(to.bytes.begin(), to.bytes.end(), kB);
  const auto b = ExactCopy(to.bytes);
  const auto result = converter.Convert(view, {a.get(), to.bytes.size(), to.stride, to.width, to.height});
  if (!result.IsSuccess()) {
    Require(std::all_of(a.get(), a.get() + to.bytes.size(), [](std::uint8_t byte) { return byte == kA; }));
    return;
  }
  for (std::uint32_t end = converter.Height(); end > 0;) {
    const std::uint32_t count = std::min<std::uint32_t>(end, 1 + input.Byte() % 16);
    end -= count;
    Require(
        converter.ConvertLines(end, count, view, {b.get(), to.bytes.size(), to.stride, to.width, to.height})
            .IsSuccess());
  }
  FrameLayout layout;
  Require(DescribeFrame(destination, to.width, to.height, to.stride, layout).IsSuccess());
  RequireSamePixels(to, layout, a.get(), kA, b.get(), kB);
}

/// Whether a converter's own buffers stay small enough for a fuzzer's memory.
bool IsModest(long format, std::uint32_t width) {
  FrameLayout layout;
  return !DescribeFrame(format, width, 1, 0, layout).IsSuccess() || layout.bytesPerLine <= 1 << 14;
}

void TryFrame(Input& input) {
  static RGBFilter filter;
  filter.SetMultipliers(1.5, 0.7, 1.0, -10, 20, 0);
  const long source = TakeFormat(input);
  const long destination = TakeFormat(input);
  const std::uint32_t width = input.Side();
  const std::uint32_t height = input.Side();
  const FrameOptions options = TakeOptions(input, filter);
  if (!IsModest(source, width)) return;

  FrameConverter converter;
  const auto result = converter.Configure(source, destination, width, height, options);
  Require(!ResultText(result).empty());
  Require(converter.IsConfigured() == result.IsSuccess());
  if (!result.IsSuccess()) return;
  const Frame frame = [&] {
    Frame taken = TakeFrame(input, source, width, height);
    FillFrom(input, taken.bytes);
    return taken;
  }();
  Frame picture = TakeFrame(input, destination, converter.Width(), converter.Height());
  ConvertTwice(input, converter, destination, frame, picture);
}

void TryNames(Input& input) {
  FormatChoice choice;
  const bool known = ReadFormat(input.Rest(), choice).IsSuccess();
  Require(known == (FindFormatInfo(choice.id) != nullptr));
  if (known && choice.flags != 0)
    Require(FormatCodeOf(choice.id, choice.flags) || V4l2FormatOf(choice.id, choice.flags));
  const FormatCode* code = FindFormatCode(input.Word());
  if (code != nullptr) Require(FormatCodeOf(code->id, code->flags) != nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  if (input.Byte() % 8 == 7) {
    TryNames(input);
  } else {
    TryFrame(input);
  }
  return 0;
}
