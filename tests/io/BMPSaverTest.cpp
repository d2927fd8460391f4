#include <ZrConvertersLib/BMPSaver.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace ZrConvertersLib {
namespace {

class BMPSaverTest : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    mFolder = std::filesystem::path(testing::TempDir()) / (std::string("zr_bmp_") + test->name());
    std::filesystem::remove_all(mFolder);
    std::filesystem::create_directories(mFolder);
  }
  void TearDown() override { std::filesystem::remove_all(mFolder); }

  std::string File() const { return (mFolder / "image.bmp").string(); }

  std::vector<unsigned char> Bytes() const {
    std::ifstream stream(File(), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  std::filesystem::path mFolder;
};

TEST_F(BMPSaverTest, WritesHeadersAndRowsAsTheyStand) {
  std::vector<unsigned char> pixels(18);
  for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<unsigned char>(100 + i);
  EXPECT_EQ(BMPSaver().SaveBMP(File(), pixels.data(), 3, 2, 24).GetCode(), 0u);

  std::vector<unsigned char> expected{
      'B', 'M', 72, 0, 0, 0, 0, 0, 0,    0,    54,   0,    0, 0,  // file header
      40,  0,   0,  0, 3, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF,        // size, width, height
      1,   0,   24, 0, 0, 0, 0, 0, 18,   0,    0,    0,           // planes, bits, compression, image size
      0,   0,   0,  0, 0, 0, 0, 0, 0,    0,    0,    0,    0, 0, 0, 0};  // resolutions, colours
  expected.insert(expected.end(), pixels.begin(), pixels.end());
  EXPECT_EQ(Bytes(), expected);
}

TEST_F(BMPSaverTest, WritesNoPalette) {
  const std::vector<unsigned char> pixels(8, 7);
  EXPECT_EQ(BMPSaver().SaveBMP(File(), pixels.data(), 4, 2, 8).GetCode(), 0u);
  const std::vector<unsigned char> bytes = Bytes();
  ASSERT_EQ(bytes.size(), 62u);
  EXPECT_EQ(bytes[10], 54);
  EXPECT_EQ(bytes[28], 8);
  EXPECT_EQ(bytes[54], 7);
}

TEST_F(BMPSaverTest, RoundsTheImageSizeDownToBytes) {
  const std::vector<unsigned char> pixels(8);
  EXPECT_EQ(BMPSaver().SaveBMP(File(), pixels.data(), 5, 3, 1).GetCode(), 0u);
  EXPECT_EQ(Bytes().size(), 54u + 1);
}

TEST_F(BMPSaverTest, WrapsTheImageSizeAround) {
  // 0x10000 x 32 x 0x8001 = 2^36 + 2^21, of which 32 bits keep 2^21.
  const std::vector<unsigned char> pixels(std::size_t{1} << 18);
  EXPECT_EQ(BMPSaver().SaveBMP(File(), pixels.data(), 0x8001, 0x10000, 32).GetCode(), 0u);
  EXPECT_EQ(std::filesystem::file_size(File()), 54u + (1u << 18));
}

TEST_F(BMPSaverTest, TakesAnEmptyImage) {
  EXPECT_EQ(BMPSaver().SaveBMP(File(), nullptr, 0, 0, 24).GetCode(), 0u);
  EXPECT_EQ(Bytes().size(), 54u);
}

TEST_F(BMPSaverTest, ReplacesAnOlderFile) {
  std::ofstream(File()) << std::string(1000, 'x');
  const unsigned char pixel[4]{};
  EXPECT_EQ(BMPSaver().SaveBMP(File(), pixel, 1, 1, 32).GetCode(), 0u);
  EXPECT_EQ(Bytes().size(), 58u);
}

TEST_F(BMPSaverTest, SaysWhenTheFileCannotBeOpened) {
  const unsigned char pixel[4]{};
  const std::filesystem::path file = mFolder / "absent" / "image.bmp";
  EXPECT_EQ(BMPSaver().SaveBMP(file.string(), pixel, 1, 1, 32).GetCode(), 16384u);
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(BMPSaver().SaveBMP(mFolder.string(), pixel, 1, 1, 32).GetCode(), 16384u);
}

}  // namespace
}  // namespace ZrConvertersLib
