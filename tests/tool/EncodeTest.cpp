// The bytes of pixels whose colours are plain: the third line of a chart of 32x32 begins red, red, black,
// white.
#include "Encode.h"

#include <gtest/gtest.h>

using namespace zrconvert;
using ZrConvertersLib::ColourMatrix;
using ZrConvertersLib::MosaicPattern;

namespace {

using Bytes = std::vector<std::uint8_t>;

// Bytes at the beginning of the third line.
Bytes Begin(const std::string& format, unsigned depth, std::ptrdiff_t count,
            const EncodeOptions& options = {}) {
  const Bytes bytes = EncodeFrame(Chart(32, 32), *FindLayout(format), depth, options);
  const auto line = bytes.begin() + 2 * static_cast<std::ptrdiff_t>(bytes.size()) / 32;
  return {line, line + count};
}

// Red has the luma 0.299: 1224.4 of 4095, 305.9 of 1023, 76.2 of 255.
TEST(Encode, Mono) {
  EXPECT_EQ(Begin("Mono8", 8, 4), (Bytes{76, 76, 0, 255}));
  EXPECT_EQ(Begin("Mono8s", 8, 4), (Bytes{0xCC, 0xCC, 0x80, 0x7F}));
  EXPECT_EQ(Begin("Mono10", 10, 4), (Bytes{0x32, 0x01, 0x32, 0x01}));
  EXPECT_EQ(Begin("Mono32", 32, 8), (Bytes{0x95, 0x43, 0x8B, 0x4C, 0x95, 0x43, 0x8B, 0x4C}));
}

TEST(Encode, PackedMonoIsFilledFromTheLowestBit) {
  EXPECT_EQ(Begin("Mono1p", 1, 1), Bytes{0x08 | 0xF0});                             // 0 0 0 1, then yellow
  EXPECT_EQ(Begin("Mono4p", 4, 2), (Bytes{0x44, 0xF0}));                            // 4 4 0 15
  EXPECT_EQ(Begin("Mono12p", 12, 6), (Bytes{0xC8, 0x84, 0x4C, 0x00, 0xF0, 0xFF}));  // 4C8 4C8 000 FFF
  EXPECT_EQ(Begin("Mono10p", 10, 5), (Bytes{0x32, 0xC9, 0x04, 0xC0, 0xFF}));        // 132 132 000 3FF
}

TEST(Encode, PairsHaveTheFirstLowBitsInTheHighNibble) {
  EXPECT_EQ(Begin("Mono12Packed", 12, 6), (Bytes{0x4C, 0x88, 0x4C, 0x00, 0x0F, 0xFF}));
  EXPECT_EQ(Begin("Mono10Packed", 10, 6), (Bytes{0x4C, 0x22, 0x4C, 0x00, 0x03, 0xFF}));
}

TEST(Encode, ColourInItsOrder) {
  EXPECT_EQ(Begin("RGB8", 8, 3), (Bytes{255, 0, 0}));
  EXPECT_EQ(Begin("BGRa8", 8, 4), (Bytes{0, 0, 255, 255}));
  EXPECT_EQ(Begin("BGR12", 12, 6), (Bytes{0, 0, 0, 0, 0xFF, 0x0F}));
  EXPECT_EQ(Begin("RGB565p", 6, 2), (Bytes{0x00, 0xF8}));
  EXPECT_EQ(Begin("BGR565p", 6, 2), (Bytes{0x1F, 0x00}));
  EXPECT_EQ(Begin("RGB10p32", 10, 4), (Bytes{0xFF, 0x03, 0, 0}));
}

// Red of 100 % is (81, 90, 240) in BT.601, (63, 102, 240) in BT.709 and (76, 85, 255) in JFIF.
TEST(Encode, ChromaOfEachMatrix) {
  EXPECT_EQ(Begin("YCbCr8", 8, 3), (Bytes{81, 90, 240}));
  EXPECT_EQ(Begin("YCbCr8", 8, 3, {.matrix = ColourMatrix::Bt709}), (Bytes{63, 102, 240}));
  EXPECT_EQ(Begin("YCbCr8", 8, 3, {.matrix = ColourMatrix::Jpeg}), (Bytes{76, 85, 255}));
  EXPECT_EQ(Begin("YCbCr422_8", 8, 4), (Bytes{81, 90, 81, 240}));
  EXPECT_EQ(Begin("YCbCr422_8_CbYCrY", 8, 4), (Bytes{90, 81, 240, 81}));
}

TEST(Encode, SitesOfEachPattern) {
  EXPECT_EQ(Begin("Bayer8", 8, 2, {.pattern = MosaicPattern::RGGB}), (Bytes{255, 0}));
  EXPECT_EQ(Begin("Bayer8", 8, 2, {.pattern = MosaicPattern::GRBG}), (Bytes{0, 255}));
  EXPECT_EQ(Begin("Bayer8", 8, 2, {.pattern = MosaicPattern::BGGR}), (Bytes{0, 0}));
  EXPECT_EQ(Begin("Bayer8", 8, 4, {.pattern = MosaicPattern::GBRG}), (Bytes{0, 0, 0, 255}));
}

TEST(Encode, PlanesFollowOneAnother) {
  const Bytes frame = EncodeFrame(Chart(16, 16), *FindLayout("RGB8_Planar"), 8, {});
  ASSERT_EQ(frame.size(), 768U);
  EXPECT_EQ(frame[0], 255);
  EXPECT_EQ(frame[256], 0);
  EXPECT_EQ(frame[512], 0);
}

TEST(Encode, LinesBeginAtWholeBytesAfterTheirPadding) {
  const Bytes frame = EncodeFrame(Chart(3, 2), *FindLayout("Mono10p"), 10, {.linePadding = 2});
  EXPECT_EQ(frame.size(), 2U * (4 + 2));
}

}  // namespace
