// Portable network graphics, 8 or 16 bits a sample, through libpng.
#include <png.h>
#include <zlib.h>

#include <array>
#include <csetjmp>
#include <cstdio>
#include <exception>
#include <vector>

#include "Containers.h"
#include "Error.h"
#include "Rows.h"

namespace zrconvert {
namespace {

constexpr std::size_t cCompressedPart = 1U << 18;

// No exception passes through libpng, which is C: what the sink throws is kept until libpng has returned by
// its long jump.
struct Output {
  ByteSink& sink;
  std::exception_ptr fault;
  std::array<char, 200> message;
};

[[noreturn]] void OnError(png_structp png, png_const_charp message) {
  std::array<char, 200>& kept = static_cast<Output*>(png_get_error_ptr(png))->message;
  std::snprintf(kept.data(), kept.size(), "%s", message);
  png_longjmp(png, 1);
}

void OnWarning(png_structp, png_const_charp) {}

bool TryWrite(Output& output, std::span<const std::uint8_t> bytes) {
  try {
    output.sink.Write(bytes);
  } catch (...) {
    output.fault = std::current_exception();
  }
  return !output.fault;
}

void OnWrite(png_structp png, png_bytep bytes, std::size_t count) {
  if (!TryWrite(*static_cast<Output*>(png_get_io_ptr(png)), {bytes, count})) png_error(png, "");
}

void OnFlush(png_structp) {}

// Owns libpng's two structures.
class Encoder {
 public:
  explicit Encoder(Output& output)
      : mPng(png_create_write_struct(PNG_LIBPNG_VER_STRING, &output, OnError, OnWarning)) {
    if (mPng) mInfo = png_create_info_struct(mPng);
    if (!mInfo) {
      png_destroy_write_struct(&mPng, nullptr);
      throw std::bad_alloc();
    }
    png_set_write_fn(mPng, &output, OnWrite, OnFlush);
  }
  ~Encoder() { png_destroy_write_struct(&mPng, &mInfo); }
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

  png_structp Png() const { return mPng; }
  png_infop Info() const { return mInfo; }

 private:
  png_structp mPng = nullptr;
  png_infop mInfo = nullptr;
};

int ColourType(const PictureLayout& layout) {
  if (layout.channels == 1) return PNG_COLOR_TYPE_GRAY;
  return layout.channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGB_ALPHA;
}

// Readers learn from this chunk that only the top bits of a sample came from the camera.
void SetSignificantBits(const Encoder& encoder, const PictureLayout& layout) {
  const auto depth = static_cast<png_byte>(layout.depth);
  const png_color_8 bits{.red = depth, .green = depth, .blue = depth, .gray = depth, .alpha = depth};
  png_set_sBIT(encoder.Png(), encoder.Info(), &bits);
}

// Level 1 codes runs and single bytes only: the noise of camera frames never repeats, so they become at most
// a tenth larger than by level 4, in little more than half its time. The filter that predicts best costs time
// too.
int FilterFor(int level) {
  if (level == 0) return PNG_FILTER_NONE;
  if (level == 1) return PNG_FILTER_SUB | PNG_FILTER_UP;
  return level < 4 ? PNG_FILTER_UP : PNG_FILTER_PAETH;
}

void SetCompression(png_structp png, int level) {
  png_set_filter(png, PNG_FILTER_TYPE_BASE, FilterFor(level));
  png_set_compression_level(png, level);
  png_set_compression_strategy(png, level == 1 ? Z_RLE : Z_DEFAULT_STRATEGY);
  png_set_compression_buffer_size(png, cCompressedPart);
}

void WriteHeader(const Encoder& encoder, const Picture& picture, unsigned depth, int level) {
  png_set_IHDR(encoder.Png(), encoder.Info(), picture.width, picture.height, static_cast<int>(depth),
               ColourType(*picture.layout), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  if (picture.layout->depth != depth) SetSignificantBits(encoder, *picture.layout);
  SetCompression(encoder.Png(), level);
  png_write_info(encoder.Png(), encoder.Info());
}

// The rows of such a picture go to libpng as they lie.
bool LiesInterleaved(const PictureLayout& layout, unsigned depth) {
  return layout.storage != Storage::Packed565 && !layout.planar && layout.depth == depth;
}

void WriteRowsAsTheyLie(png_structp png, const Picture& picture, unsigned depth) {
  if (depth == 16) png_set_swap(png);
  if (picture.layout->blueFirst) png_set_bgr(png);
  const std::size_t lineBytes = std::size_t{picture.width} * picture.layout->channels * (depth / 8);
  for (std::size_t line = 0; line < picture.height; ++line) {
    png_write_row(png, &picture.bytes[line * lineBytes]);
  }
}

struct RowBuffers {
  std::vector<std::uint16_t> samples;
  std::vector<std::uint8_t> bytes;
};

void WriteConvertedRows(png_structp png, const Picture& picture, unsigned depth, RowBuffers& row) {
  for (unsigned line = 0; line < picture.height; ++line) {
    ReadRow(picture, line, picture.layout->channels, row.samples);
    StoreSamples(row.samples, picture.layout->depth, depth, row.bytes.data());
    png_write_row(png, row.bytes.data());
  }
}

// False when libpng has jumped back. Nothing that needs a destructor lives here or in what is called from
// here while libpng works.
bool Encode(const Encoder& encoder, const Picture& picture, int level, RowBuffers& row) {
  if (setjmp(png_jmpbuf(encoder.Png()))) return false;
  const unsigned depth = picture.layout->depth > 8 ? 16 : 8;
  WriteHeader(encoder, picture, depth, level);
  if (LiesInterleaved(*picture.layout, depth)) {
    WriteRowsAsTheyLie(encoder.Png(), picture, depth);
  } else {
    WriteConvertedRows(encoder.Png(), picture, depth, row);
  }
  png_write_end(encoder.Png(), encoder.Info());
  return true;
}

}  // namespace

void WritePng(ByteSink& sink, const Picture& picture, const EncoderOptions& options) {
  Output output{sink, nullptr, {}};
  const Encoder encoder(output);
  const std::size_t samples = std::size_t{picture.width} * picture.layout->channels;
  RowBuffers row{std::vector<std::uint16_t>(samples), std::vector<std::uint8_t>(2 * samples)};
  if (Encode(encoder, picture, options.pngLevel, row)) return;
  if (output.fault) std::rethrow_exception(output.fault);
  throw Failure("cannot write " + sink.Name() + ": " + output.message.data());
}

}  // namespace zrconvert
