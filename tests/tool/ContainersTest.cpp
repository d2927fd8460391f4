// Every destination format into every container that holds it, read back by other readers.
#include "Containers.h"

#include "ImageFiles.h"
#include "OutputFile.h"
#include "ToolRunner.h"

using namespace zrconvert;

namespace {

// One pixel whose channels all differ, and what it is at the depth of its format.
struct Pixel {
  std::string format;
  std::vector<std::uint8_t> bytes;
  std::vector<std::uint16_t> samples;
};

void PrintTo(const Pixel& pixel, std::ostream* out) {
  *out << pixel.format;
}

// The three planes of a picture of one pixel follow one another as interleaved samples would.
const std::vector<Pixel> cPixels{
    {"Mono8", {0x12}, {0x12}},
    {"Mono10", {0x34, 0x02}, {0x234}},
    {"Mono12", {0x34, 0x0A}, {0xA34}},
    {"Mono14", {0x34, 0x2A}, {0x2A34}},
    {"Mono16", {0x34, 0xFA}, {0xFA34}},
    {"RGB8", {1, 2, 3}, {1, 2, 3}},
    {"BGR8", {3, 2, 1}, {1, 2, 3}},
    {"RGBa8", {1, 2, 3, 255}, {1, 2, 3, 255}},
    {"BGRa8", {3, 2, 1, 255}, {1, 2, 3, 255}},
    {"RGB16", {1, 2, 3, 4, 5, 6}, {0x201, 0x403, 0x605}},
    {"BGR16", {5, 6, 3, 4, 1, 2}, {0x201, 0x403, 0x605}},
    {"RGB565p", {0x1F, 0x84}, {0x84, 0x82, 0xFF}},  // 10000 100000 11111
    {"RGB8_Planar", {1, 2, 3}, {1, 2, 3}},
    {"RGB10_Planar", {1, 2, 3, 1, 5, 0}, {0x201, 0x103, 0x005}},
    {"RGB12_Planar", {1, 2, 3, 4, 5, 6}, {0x201, 0x403, 0x605}},
    {"RGB16_Planar", {1, 2, 3, 4, 5, 6}, {0x201, 0x403, 0x605}},
};

// The picture is the pixel above, a black one to its right and two white ones below.
std::vector<std::uint8_t> PictureOf(const Pixel& pixel, const PictureLayout& layout) {
  const auto full = [&](std::size_t i) -> std::uint8_t {
    const bool high = layout.storage == Storage::Words && i % 2 == 1;
    return static_cast<std::uint8_t>(high ? 0xFF >> (16 - layout.depth) : 0xFF);
  };
  const std::size_t size = pixel.bytes.size();
  const std::size_t planes = layout.planar ? 3 : 1;
  std::vector<std::uint8_t> bytes;
  for (std::size_t plane = 0; plane < planes; ++plane) {
    const std::size_t step = size / planes;
    for (std::size_t i = 0; i < step; ++i) bytes.push_back(pixel.bytes[plane * step + i]);
    bytes.insert(bytes.end(), step, 0);
    for (std::size_t i = 0; i < 2 * step; ++i) bytes.push_back(full(i));
  }
  return bytes;
}

class ContainersTest : public ToolTest, public testing::WithParamInterface<Pixel> {
 protected:
  std::string WriteAs(Container container, int pngLevel = 1) const {
    const std::vector<std::uint8_t> bytes = PictureOf(GetParam(), *mLayout);
    OutputFile file(At("picture"), Existing::Replace);
    WritePicture(file, container, {mLayout, 2, 2, bytes}, {.pngLevel = pngLevel});
    file.Commit();
    return At("picture");
  }

  // Each sample on the scale of the file's own.
  std::uint16_t Expected(unsigned channel, unsigned greatest) const {
    unsigned bits = 0;
    while (greatest >> bits) ++bits;
    return Rescale(GetParam().samples[channel], mLayout->depth, bits);
  }

  void Check(const Image& image, unsigned channels) const {
    ASSERT_EQ(image.width, 2U);
    ASSERT_EQ(image.height, 2U);
    ASSERT_EQ(image.channels, channels);
    for (unsigned c = 0; c < channels; ++c) {
      const unsigned own = mLayout->channels == 1 ? 0 : c;
      EXPECT_EQ(image.At(0, 0, c), Expected(own, image.greatest)) << c;
      EXPECT_EQ(image.At(1, 0, c), 0U) << c;
      EXPECT_EQ(image.At(0, 1, c), image.greatest) << c;
      EXPECT_EQ(image.At(1, 1, c), image.greatest) << c;
    }
  }

  const PictureLayout* mLayout = FindPictureLayout(GetParam().format);
};

TEST_P(ContainersTest, Bmp) {
  if (!WhyNot(Container::Bmp, *mLayout, 2, 2).empty()) GTEST_SKIP() << "more than 8 bits";
  Check(ReadBmp(WriteAs(Container::Bmp)), 3);
}

TEST_P(ContainersTest, Png) {
  for (const int level : {0, 1, 9}) {
    const Image image = ReadPng(WriteAs(Container::Png, level));
    EXPECT_EQ(image.greatest, mLayout->depth == 8 ? 255U : 65535U);
    Check(image, mLayout->channels);
  }
}

TEST_P(ContainersTest, Pnm) {
  const bool grey = mLayout->channels == 1;
  const Image image = ReadPnm(ReadFile(WriteAs(Container::Pnm)));
  EXPECT_EQ(image.greatest, (1U << mLayout->depth) - 1);
  Check(image, grey ? 1 : 3);
}

TEST_P(ContainersTest, Raw) {
  EXPECT_EQ(ReadFile(WriteAs(Container::Raw)), PictureOf(GetParam(), *mLayout));
}

INSTANTIATE_TEST_SUITE_P(Formats, ContainersTest, testing::ValuesIn(cPixels),
                         [](const auto& test) { return test.param.format; });

TEST(Rescale, KeepsFullScaleAndOrder) {
  for (const unsigned depth : {8U, 10U, 12U, 14U}) {
    const auto full = static_cast<std::uint16_t>((1U << depth) - 1);
    EXPECT_EQ(Rescale(full, depth, 16), 0xFFFF) << depth;
    EXPECT_EQ(Rescale(0, depth, 16), 0) << depth;
    EXPECT_EQ(Rescale(Rescale(full / 3, depth, 16), 16, depth), full / 3) << depth;
  }
  EXPECT_EQ(Rescale(0x15, 5, 8), 0xAD);
}

}  // namespace
