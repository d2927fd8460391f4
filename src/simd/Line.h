#pragma once

#include <concepts>
#include <iterator>

#include "simd/Writers.h"

#define ZR_PASTE(a, b) a##b
#define ZR_PASTE_LEVEL(name, level) ZR_PASTE(name, level)
/// The name of something this level exports: its own name followed by the level's.
#define ZR_AT_LEVEL(name) ZR_PASTE_LEVEL(name, ZR_LEVEL)

namespace ZrConvertersLib::simd {
namespace {

/// What reads a line: a group of kGroupPixels pixels takes kGroupBytes bytes; Read gives a block of kWidth
/// pixels from the block's first byte on, in the form of channel that is asked for where it can choose, and
/// may read kOverread bytes beyond the block.
template <class Reader>
concept LineReader = std::constructible_from<Reader, const KernelArgs&> &&
    requires(const Reader& reader, const std::uint8_t* p) {
  { Reader::kGroupPixels } -> std::convertible_to<int>;
  { Reader::kGroupBytes } -> std::convertible_to<int>;
  { Reader::kOverread } -> std::convertible_to<int>;
  In<U8>(reader.template Read<U8>(p));
  In<Words>(reader.template Read<Words>(p));
};

/// Pixels from the first of a line to the next that is stored at the address of a whole vector, if that is a
/// whole number of groups, else a block. Stores across cache lines take twice as long, and memory as it is
/// allocated begins 16 bytes off a line.
template <int step, int group>
ZR_INLINE std::size_t PixelsToAligned(const std::uint8_t* line) {
  constexpr unsigned kEven = step % 4 == 0 ? 2 : step % 2 == 0 ? 1 : 0;  // factors of 2 in the step
  constexpr unsigned kInverse = step >> kEven == 3 ? 43 : 1;             // 3 * 43 = 2 * 64 + 1
  static_assert(step >> kEven == 3 || step >> kEven == 1);
  const auto bytes = static_cast<unsigned>(-reinterpret_cast<std::uintptr_t>(line) % kWidth);
  const unsigned pixels = (bytes >> kEven) * kInverse % (unsigned{kWidth} >> kEven);
  const bool reached = bytes % (1U << kEven) == 0 && pixels % group == 0 && pixels != 0;
  return reached ? pixels : kWidth;
}

/// Goes through the line block by block, of which all but the first and the last are stored to addresses of
/// whole vectors where they can be: `step` bytes from a pixel to the next at `stored`, blocks starting with a
/// whole number of groups. The second and the last block may overlap the one before, so that all are whole;
/// the same pixels are then written twice with the same values. `convert` is called with the first pixel of a
/// block. It is inlined, so there is one call of it, in a loop that goes through three runs of blocks: the
/// first block, those after it, and the last one. With `convertTwo` as well, it is called with the first
/// pixel of two blocks as long as there are two.
template <int step, int group, class F, class... Two>
ZR_INLINE void EachBlock(std::size_t width, const std::uint8_t* stored, F convert, Two... convertTwo) {
  constexpr bool kTwo = sizeof...(Two) > 0;
  const std::size_t last = width - kWidth;
  std::size_t aligned = PixelsToAligned<step, group>(stored);
  for (std::size_t x = 0, end = 1;;) {
    if constexpr (kTwo)
      for (; x + kWidth < end; x += 2 * kWidth) (convertTwo(x), ...);
    if (!kTwo || x < end) do {
        convert(x);
        x += kWidth;
      } while (x < end);
    if (end > last) return;
    const bool inner = aligned < last;
    x = inner ? aligned : last;
    end = inner ? last : width;
    aligned = last;
  }
}

/// The pointers of a line, or pair of lines: a copy of those in a LineBlock that can stay in registers.
template <std::size_t sources, std::size_t destinations>
struct LinePointers {
  const std::uint8_t* source[sources];
  std::uint8_t* destination[destinations];
  std::size_t width;
  ReadAhead ahead;

  ZR_INLINE LinePointers(const LineBlock& lines, const ReadAhead& distances)
      : width(lines.pixels), ahead(distances) {
    for (std::size_t i = 0; i < sources; ++i) source[i] = LoadedSingly(lines.source[i]);
    for (std::size_t i = 0; i < destinations; ++i) destination[i] = LoadedSingly(lines.destination[i]);
  }
};

/// Calls `convert` with each line, or pair of lines, in turn.
template <std::size_t sources, std::size_t destinations, class F>
ZR_INLINE void EachLine(const LineBlock& lines, const ReadAhead& ahead, F convert) {
  LinePointers<sources, destinations> line(lines, ahead);
  const std::ptrdiff_t sourceStep = lines.sourceStep, destinationStep = lines.destinationStep;
  for (std::size_t left = lines.lines;;) {
    convert(line);
    if (--left == 0) return;
    for (const std::uint8_t*& source : line.source) source += sourceStep;
    for (std::uint8_t*& destination : line.destination) destination += destinationStep;
  }
}

/// Prefetches what will be read soon into a cache: 3 for the first one, 2 for the second.
template <int bytes, int cache>
ZR_INLINE void PrefetchInto(const std::uint8_t* p, std::ptrdiff_t distance) {
  Unrolled<(bytes + 63) / 64>([&](auto i) ZR_ALWAYS {
    __builtin_prefetch(reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(p) +
                                                     static_cast<std::uintptr_t>(distance + 64 * i)),
                       0, cache);
  });
}

/// The processor's own prefetching follows too few streams and starts too late for frames that come from
/// memory. These are called into the second cache, as lines on their way from memory to the first one would
/// hold the buffers that non-temporal stores need, and into the first one shortly before they are read.
template <int bytes>
ZR_INLINE void Prefetch(const std::uint8_t* p, const ReadAhead& ahead) {
  PrefetchInto<bytes, 2>(p, ahead.toSecond);
  PrefetchInto<bytes, 3>(p, ahead.toFirst);
}

/// The source bytes of `count` blocks, or a copy of them if the reader's loads would reach beyond the line.
template <class Reader, int count = 1>
class BlockBytes {
 public:
  static constexpr std::size_t kBlock = kWidth / Reader::kGroupPixels * Reader::kGroupBytes;

  /// Of source line `from`, from pixel x on.
  template <class Line>
  ZR_INLINE const std::uint8_t* At(const Line& line, int from, std::size_t x) {
    const std::uint8_t* bytes = line.source[from] + BytesOf(x);
    Prefetch<count * kBlock>(bytes, line.ahead);
    if constexpr (Reader::kOverread > 0) {
      const std::size_t after = BytesOf(line.width - x - count * kWidth);
      if (after < Reader::kOverread) {
        std::memcpy(mCopy, bytes, count * kBlock);
        return mCopy;
      }
    }
    return bytes;
  }

 private:
  /// Of whole groups, as a multiple of the pixels and some of the groups: compilers cut a quotient of pixels
  /// to whole groups again.
  static ZR_INLINE std::size_t BytesOf(std::size_t pixels) {
    constexpr std::size_t kPixels = Reader::kGroupPixels, kWhole = Reader::kGroupBytes / kPixels,
                          kRest = Reader::kGroupBytes % kPixels;
    if constexpr (2 * kRest > kPixels)
      return pixels * (kWhole + 1) - pixels / kPixels * (kPixels - kRest);
    else
      return pixels * kWhole + pixels / kPixels * kRest;
  }

  std::uint8_t mCopy[Reader::kOverread > 0 ? count* kBlock + Reader::kOverread : 1];
};

/// Whether a reader gives whole vectors of the pixels as the writer stores them, so that no block is needed.
/// Through tables, taking the channels apart costs less than the lookups of another order or number of them.
template <class Reader, class Writer>
concept ReadsAsStored = requires(const Reader& reader, const std::uint8_t* p) {
  { reader.template ReadStored<typename Writer::Pixel, 0>(p) } -> std::same_as<U8>;
}
&&(!Writer::kMaps || SameOrder<typename Reader::Pixel, typename Writer::Pixel>);

/// Whether the writer takes grey in another form of channel, which the reader has before it has bytes.
template <class Reader, class Writer>
concept ReadsGreyFor = Reader::kWordsFirst && requires {
  typename Writer::GreyChannel;
};

/// Whether the reader can leave out the channels that the writer does not store.
template <class Reader, class Writer>
concept ReadsGreenFor = Writer::kGreenOnly && requires(const Reader& reader, const std::uint8_t* p) {
  reader.template ReadGreen<typename Writer::Channel>(p);
};

/// Whether a block takes so few instructions that those of the loop count: three vectors in and out, and no
/// tables. Where one shuffle reaches a whole vector, a block has more pixels.
template <class Reader, class Writer>
concept TakesLittle =
    kLane < kWidth&& BlockBytes<Reader>::kBlock + Writer::kStep* kWidth <= 3 * kWidth&& requires {
  requires !Writer::kMaps;
};

/// Source lines to destination lines.
template <LineReader Reader>
struct Lines {
  using Source = Reader;

  template <BlockWriter Writer>
  static void Run(const LineBlock& lines, const KernelArgs& args) {
    const Reader reader(args);
    const Writer writer(args);
    EachLine<1, 1>(lines, args.ahead, [&](const auto& line) ZR_ALWAYS {
      const auto blocks = [&](std::size_t x, auto count) ZR_ALWAYS {
        BlockBytes<Reader, count> bytes;
        const std::uint8_t* const from = bytes.At(line, 0, x);
        std::uint8_t* const to = line.destination[0] + x * Writer::kStep;
        Unrolled<count>([&](auto i) ZR_ALWAYS {
          Convert(reader, writer, from + i * bytes.kBlock, to + i * kWidth * Writer::kStep);
        });
      };
      const auto one = [&](std::size_t x) ZR_ALWAYS { blocks(x, std::integral_constant<int, 1>{}); };
      const auto two = [&](std::size_t x) ZR_ALWAYS { blocks(x, std::integral_constant<int, 2>{}); };
      if constexpr (TakesLittle<Reader, Writer>)
        EachBlock<Writer::kStep, Reader::kGroupPixels>(line.width, line.destination[0], one, two);
      else
        EachBlock<Writer::kStep, Reader::kGroupPixels>(line.width, line.destination[0], one);
    });
  }

 private:
  template <class Writer>
  static ZR_INLINE void Convert(const Reader& reader, const Writer& writer, const std::uint8_t* from,
                                std::uint8_t* to) {
    using Channel = typename Writer::Channel;
    if constexpr (ReadsAsStored<Reader, Writer>)
      if (writer.Alike())
        return StoreVectors(to, writer.Mapped(ForEach<Writer::kStep>([&](auto vector) ZR_ALWAYS {
          return reader.template ReadStored<typename Writer::Pixel, vector>(from);
        })));
    if constexpr (ReadsGreyFor<Reader, Writer>)
      ReadAndWrite<typename Writer::GreyChannel>(reader, writer, from, to);
    else if constexpr (ReadsGreenFor<Reader, Writer>)
      writer.Write(to, In<Channel>(reader.template ReadGreen<Channel>(from)));
    else
      ReadAndWrite<Channel>(reader, writer, from, to);
  }

  template <class Channel, class Writer>
  static ZR_INLINE void ReadAndWrite(const Reader& reader, const Writer& writer, const std::uint8_t* from,
                                     std::uint8_t* to) {
    writer.Write(to, In<Channel>(reader.template Read<Channel>(from)));
  }
};

/// Whether a kernel's reader has the group of pixels and bytes that its row in the list of readers states.
template <SourceReader reader, class Kernel>
constexpr bool FactsFit() {
  if constexpr (requires { typename Kernel::Source; }) {
    using Source = typename Kernel::Source;
    constexpr ReaderGroup group = FactsOf(reader).group;
    return group.pixels == Source::kGroupPixels && group.bytes == Source::kGroupBytes;
  }
  return true;
}

/// A reader's kernel with all writers.
template <SourceReader reader, class Kernel>
constexpr KernelRow Row() {
  static_assert(FactsFit<reader, Kernel>(), "the list of readers names another group than the reader has");
#define ZR_WITH(name, ...) &Kernel::template Run<name##Writer<false>>,
#define ZR_WITH_FILTER(name) &Kernel::template Run<name##Writer<true>>,
  return {reader, {ZR_DESTINATIONS(ZR_WITH) ZR_FILTERED_DESTINATIONS(ZR_WITH_FILTER)}};
#undef ZR_WITH
#undef ZR_WITH_FILTER
}

/// Whether readers follow one another in the order of their list, so that a row is found by its place.
template <std::size_t count>
constexpr bool RowsAreInOrder(const KernelRow (&rows)[count]) {
  for (std::size_t i = 0; i < count; ++i)
    if (static_cast<std::size_t>(rows[i].reader) != static_cast<std::size_t>(rows[0].reader) + i)
      return false;
  return true;
}

}  // namespace
}  // namespace ZrConvertersLib::simd

/// Exports kRows as `name` of this level.
#define ZR_EXPORT_KERNELS(name)                                                                  \
  static_assert(RowsAreInOrder(kRows), "kernel rows stand in the order of the list of readers"); \
  extern const FamilyKernels ZR_AT_LEVEL(name);                                                  \
  constinit const FamilyKernels ZR_AT_LEVEL(name) = {kRows, std::size(kRows)};
