#include "develop/SampleLines.h"

#include <algorithm>
#include <cstring>

#include "converters/Packings.h"
#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

using simd::SourceReader;

/// The bytes of a kernel's largest block, and what readers of packed samples may read beyond.
constexpr std::size_t kCopied = 256;

SourceReader ReaderOf(const FormatRow& format, unsigned flags) {
  const OtherPacking other = OtherPackingOf(format);
  if ((flags & other.flag) != 0) return other.reader;
  if (format.packing == Packing::Pair) return SourceReader::MonoPacked;
  if (format.packing != Packing::Dense)
    return format.container == 8 ? SourceReader::Mono8 : SourceReader::Mono16;
  switch (format.depth) {
    case 10:
      return SourceReader::Mono10p;
    case 12:
      return SourceReader::Mono12p;
    default:
      return SourceReader::Mono14p;
  }
}

/// Of the packed pairs all but Mono10Packed keep their nibbles as low bits of 12.
std::uint32_t ShiftOf(const FormatRow& format) {
  const bool keepsNibbles = format.packing == Packing::Pair && format.id != PixelTypeIds::Mono10Packed;
  return keepsNibbles ? 4 : 16u - format.depth;
}

}  // namespace

SampleLines::SampleLines(const FormatRow& format, unsigned flags)
    : mFunction(simd::CurrentLevel().Find(ReaderOf(format, flags), simd::PixelWriter::Mono16)),
      mBlock(static_cast<std::int64_t>(simd::CurrentLevel().blockPixels)),
      mBitsPerSample(format.container),
      mArgs{} {
  mArgs.shift = ShiftOf(format);
}

void SampleLines::Read(const SourceLines& source, std::int64_t y, std::int64_t count, std::int64_t first,
                       std::int64_t end, std::uint8_t* words, std::ptrdiff_t wordStride) const {
  const std::uint8_t* const from = source.data + y * source.stride + Bytes(first);
  const std::int64_t whole = (end - first) / kStep * kStep;
  const bool direct = whole >= mBlock;
  if (direct)
    mFunction({{from},
               {words},
               static_cast<std::size_t>(whole),
               static_cast<std::size_t>(count),
               source.stride,
               wordStride},
              mArgs);
  const std::int64_t done = direct ? whole : 0;
  if (done == end - first) return;
  for (std::int64_t line = 0; line < count; ++line)
    ReadCopied(from + line * source.stride + Bytes(done), end - first - done,
               words + line * wordStride + 2 * done);
}

/// Fewer samples than a block: the kernel reads a copy that is as long as one.
void SampleLines::ReadCopied(const std::uint8_t* line, std::int64_t samples, std::uint8_t* words) const {
  std::uint8_t copy[kCopied] = {};
  std::memcpy(copy, line, static_cast<std::size_t>(Bytes(samples)));
  const std::int64_t whole = (samples + kStep - 1) / kStep * kStep;
  mFunction({{copy}, {words}, static_cast<std::size_t>(std::max(mBlock, whole))}, mArgs);
}

}  // namespace ZrConvertersLib
