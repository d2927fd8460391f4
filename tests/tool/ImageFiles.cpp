#include "ImageFiles.h"

#include <gtest/gtest.h>
#include <png.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <string>

#include "ToolRunner.h"

namespace {

std::uint32_t Little(const std::vector<std::uint8_t>& bytes, std::size_t at, unsigned count) {
  std::uint32_t value = 0;
  for (unsigned i = 0; i < count; ++i) value |= std::uint32_t{bytes[at + i]} << 8 * i;
  return value;
}

// Viewers need rows of whole 4 bytes, and no palette is written, so that 8 bits a pixel would be no picture.
bool CheckBmpHeader(const std::vector<std::uint8_t>& bytes, const Image& image) {
  const std::size_t imageBytes = std::size_t{image.width} * image.height * image.bitsPerPixel / 8;
  EXPECT_EQ(bytes[0], 'B');
  EXPECT_EQ(bytes[1], 'M');
  EXPECT_EQ(Little(bytes, 2, 4), bytes.size());
  EXPECT_EQ(Little(bytes, 10, 4), 54U);
  EXPECT_EQ(Little(bytes, 30, 4), 0U) << "compressed";
  EXPECT_EQ(bytes.size(), 54 + imageBytes);
  EXPECT_TRUE(image.bitsPerPixel == 24 || image.bitsPerPixel == 32) << image.bitsPerPixel;
  EXPECT_EQ(image.width * image.bitsPerPixel / 8 % 4, 0U);
  return !testing::Test::HasFailure();
}

}  // namespace

Image ReadBmp(const std::filesystem::path& path) {
  const std::vector<std::uint8_t> bytes = ReadFile(path);
  if (bytes.size() < 54) {
    ADD_FAILURE() << path << " has " << bytes.size() << " bytes";
    return {};
  }
  Image image;
  image.width = Little(bytes, 18, 4);
  image.height = 0U - Little(bytes, 22, 4);  // negative: the rows run from top to bottom
  image.channels = 3;
  image.greatest = 255;
  image.bitsPerPixel = Little(bytes, 28, 2);
  if (!CheckBmpHeader(bytes, image)) return {};
  for (std::size_t at = 54; at < bytes.size(); at += image.bitsPerPixel / 8) {
    image.samples.insert(image.samples.end(), {bytes[at + 2], bytes[at + 1], bytes[at]});
  }
  return image;
}

Image ReadPnm(const std::vector<std::uint8_t>& bytes) {
  std::istringstream text(std::string(bytes.begin(), bytes.end()));
  std::string magic;
  Image image;
  text >> magic >> image.width >> image.height >> image.greatest;
  text.get();
  EXPECT_TRUE(text) << "no header";
  EXPECT_TRUE(magic == "P5" || magic == "P6") << magic;
  image.channels = magic == "P5" ? 1 : 3;
  for (std::size_t i = 0; i < std::size_t{image.width} * image.height * image.channels; ++i) {
    const auto high = static_cast<unsigned>(image.greatest > 255 ? text.get() : 0);
    image.samples.push_back(static_cast<std::uint16_t>(high << 8 | static_cast<unsigned>(text.get())));
  }
  EXPECT_TRUE(text) << "samples are missing";
  EXPECT_EQ(text.peek(), std::istringstream::traits_type::eof()) << "bytes are left over";
  return image;
}

namespace {

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

// libpng reports faults by a long jump out of here.
bool Decode(png_structp png, png_infop info, std::FILE* file) {
  if (setjmp(png_jmpbuf(png))) return false;
  png_init_io(png, file);
  png_read_png(png, info, PNG_TRANSFORM_SWAP_ENDIAN, nullptr);
  return true;
}

Image Collect(png_structp png, png_infop info) {
  Image image;
  image.width = png_get_image_width(png, info);
  image.height = png_get_image_height(png, info);
  image.channels = png_get_channels(png, info);
  const bool deep = png_get_bit_depth(png, info) == 16;
  image.greatest = deep ? 65535 : 255;
  for (unsigned y = 0; y < image.height; ++y) {
    const png_byte* const row = png_get_rows(png, info)[y];
    for (std::size_t i = 0; i < std::size_t{image.width} * image.channels; ++i) {
      image.samples.push_back(deep ? static_cast<std::uint16_t>(row[2 * i] | row[2 * i + 1] << 8)
                                   : std::uint16_t{row[i]});
    }
  }
  return image;
}

}  // namespace

Image ReadPng(const std::filesystem::path& path) {
  const std::unique_ptr<std::FILE, Closer> file(std::fopen(path.c_str(), "rb"));
  if (!file) {
    ADD_FAILURE() << path << " cannot be opened";
    return {};
  }
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  Image image;
  if (Decode(png, info, file.get())) {
    image = Collect(png, info);
  } else {
    ADD_FAILURE() << path << " is no PNG file";
  }
  png_destroy_read_struct(&png, &info, nullptr);
  return image;
}
