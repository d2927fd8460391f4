// Portable network graphics, 8 or 16 bits a sample, through libpng.
#include <png.h>

#include "Containers.h"
#include "Error.h"
#include "File.h"

namespace zrconvert {
namespace {

constexpr int cCompression = 4;  // half the time of the default (6) for camera frames, at the same size

[[noreturn]] void OnError(png_structp, png_const_charp message) {
  throw Failure(std::string("cannot write the picture: ") + message);
}

void OnWarning(png_structp, png_const_charp) {}

void OnWrite(png_structp png, png_bytep bytes, std::size_t count) {
  static_cast<File*>(png_get_io_ptr(png))->Write({bytes, count});
}

void OnFlush(png_structp) {}

// Owns libpng's two structures.
class Encoder {
 public:
  explicit Encoder(File& file)
      : mPng(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, OnError, OnWarning)) {
    if (mPng) mInfo = png_create_info_struct(mPng);
    if (!mInfo) throw std::bad_alloc();
    png_set_write_fn(mPng, &file, OnWrite, OnFlush);
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

void WriteHeader(const Encoder& encoder, const Picture& picture, unsigned depth) {
  png_set_IHDR(encoder.Png(), encoder.Info(), picture.width, picture.height, static_cast<int>(depth),
               ColourType(*picture.layout), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  if (picture.layout->depth != depth) SetSignificantBits(encoder, *picture.layout);
  png_set_compression_level(encoder.Png(), cCompression);
  png_write_info(encoder.Png(), encoder.Info());
}

std::vector<png_byte> Line(const Picture& picture, unsigned line, unsigned depth) {
  std::vector<png_byte> bytes;
  for (const std::uint16_t sample : ReadRow(picture, line)) {
    const std::uint16_t value = Rescale(sample, picture.layout->depth, depth);
    if (depth == 16) bytes.push_back(static_cast<png_byte>(value >> 8));
    bytes.push_back(static_cast<png_byte>(value));
  }
  return bytes;
}

}  // namespace

void WritePng(const std::string& path, const Picture& picture) {
  File file(path, "ab");
  const Encoder encoder(file);
  const unsigned depth = picture.layout->depth > 8 ? 16 : 8;
  WriteHeader(encoder, picture, depth);
  for (unsigned line = 0; line < picture.height; ++line) {
    png_write_row(encoder.Png(), Line(picture, line, depth).data());
  }
  png_write_end(encoder.Png(), encoder.Info());
  file.Close();
}

}  // namespace zrconvert
