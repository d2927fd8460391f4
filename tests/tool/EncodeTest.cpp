// The bytes of pixels whose colours are plain: the third line of a chart of 32x32 begins red, red, black,
// white.
#include "Encode.h"

#include <gtest/gtest.h>

using namespace zrconvert;
using ZrConvertersLib::ColourMatrix;
using ZrConvertersLib::FindFormatInfo;
using ZrConvertersLib::MosaicPattern;
using ZrConvertersLib::PackingOrder;

namespace {

using Bytes = std::vector<std::uint8_t>;

// Bytes at the beginning of the third line.
Bytes Begin(std::string_view format, std::ptrdiff_t count, const EncodeOptions& options = {}) {
  const Bytes bytes = EncodeFrame(Chart(32, 32), *FindFormatInfo(format), options);
  const auto line = bytes.begin() + 2 * static_cast<std::ptrdiff_t>(bytes.size()) / 32;
  return {line, line + count};
}

// Red has the luma 0.299: 1224.4 of 4095, 305.9 of 1023, 76.2 of 255.
TEST(Encode, Mono) {
  EXPECT_EQ(Begin("Mono8", 4), (Bytes{76, 76, 0, 255}));
  EXPECT_EQ(Begin("Mono8s", 4), (Bytes{0xCC, 0xCC, 0x80, 0x7F}));
  EXPECT_EQ(Begin("Mono10", 4), (Bytes{0x32, 0x01, 0x32, 0x01}));
  EXPECT_EQ(Begin("Mono32", 8), (Bytes{0x95, 0x43, 0x8B, 0x4C, 0x95, 0x43, 0x8B, 0x4C}));
}

TEST(Encode, PackedMonoIsFilledFromTheLowestBit) {
  EXPECT_EQ(Begin("Mono1p", 1), Bytes{0x08 | 0xF0});                            // 0 0 0 1, then yellow
  EXPECT_EQ(Begin("Mono4p", 2), (Bytes{0x44, 0xF0}));                           // 4 4 0 15
  EXPECT_EQ(Begin("Mono12p", 6), (Bytes{0xC8, 0x84, 0x4C, 0x00, 0xF0, 0xFF}));  // 4C8 4C8 000 FFF
  EXPECT_EQ(Begin("Mono10p", 5), (Bytes{0x32, 0xC9, 0x04, 0xC0, 0xFF}));        // 132 132 000 3FF
}

TEST(Encode, PairsHaveTheFirstLowBitsInTheHighNibble) {
  EXPECT_EQ(Begin("Mono12Packed", 6), (Bytes{0x4C, 0x88, 0x4C, 0x00, 0x0F, 0xFF}));
  EXPECT_EQ(Begin("Mono10Packed", 6), (Bytes{0x4C, 0x22, 0x4C, 0x00, 0x03, 0xFF}));
}

// Greys 4C8 4C8 000 FFF, 132 132 000 3FF and 1323 1323 0000 3FFF.
TEST(Encode, PackingsOfCameras) {
  const EncodeOptions gigEVision{.packing = PackingOrder::GigEVision};
  EXPECT_EQ(Begin("Mono12Packed", 6, gigEVision), (Bytes{0x4C, 0x88, 0x4C, 0x00, 0xF0, 0xFF}));
  EXPECT_EQ(Begin("Mono10Packed", 6, gigEVision), (Bytes{0x4C, 0x22, 0x4C, 0x00, 0x30, 0xFF}));
  const EncodeOptions csi2{.packing = PackingOrder::Csi2};
  EXPECT_EQ(Begin("Mono10p", 5, csi2), (Bytes{0x4C, 0x4C, 0x00, 0xFF, 0xCA}));
  EXPECT_EQ(Begin("Mono12p", 6, csi2), (Bytes{0x4C, 0x4C, 0x88, 0x00, 0xFF, 0xF0}));
  EXPECT_EQ(Begin("Mono14p", 7, csi2), (Bytes{0x4C, 0x4C, 0x00, 0xFF, 0xE3, 0x08, 0xFC}));
  // Y 326, Cb 361, Cr 960.
  EXPECT_EQ(Begin("YCbCr422_10p", 5, csi2), (Bytes{81, 90, 81, 240, 0x26}));
  EXPECT_EQ(Begin("YCbCr422_10p_CbYCrY", 5, csi2), (Bytes{90, 81, 240, 81, 0x89}));
}

TEST(Encode, ColourInItsOrder) {
  EXPECT_EQ(Begin("RGB8", 3), (Bytes{255, 0, 0}));
  EXPECT_EQ(Begin("BGRa8", 4), (Bytes{0, 0, 255, 255}));
  EXPECT_EQ(Begin("BGR12", 6), (Bytes{0, 0, 0, 0, 0xFF, 0x0F}));
  EXPECT_EQ(Begin("RGB565p", 2), (Bytes{0x00, 0xF8}));
  EXPECT_EQ(Begin("BGR565p", 2), (Bytes{0x1F, 0x00}));
  EXPECT_EQ(Begin("RGB10p32", 4), (Bytes{0xFF, 0x03, 0, 0}));
  EXPECT_EQ(Begin("RGB10V1Packed", 4), (Bytes{0x03, 0xFF, 0, 0}));
  EXPECT_EQ(Begin("RGB12V1Packed", 6), (Bytes{0xFF, 0x0F, 0, 0, 0xF0, 0xFF}));
  EXPECT_EQ(Begin("BGR12p", 5), (Bytes{0, 0, 0, 0xFF, 0x0F}));
}

// Red of 100 % is (81, 90, 240) in BT.601, (63, 102, 240) in BT.709 and (76, 85, 255) in JFIF.
TEST(Encode, ChromaOfEachMatrix) {
  EXPECT_EQ(Begin("YCbCr8", 3), (Bytes{81, 90, 240}));
  EXPECT_EQ(Begin("YCbCr8", 3, {.matrix = ColourMatrix::Bt709}), (Bytes{63, 102, 240}));
  EXPECT_EQ(Begin("YCbCr8", 3, {.matrix = ColourMatrix::Jpeg}), (Bytes{76, 85, 255}));
  EXPECT_EQ(Begin("YCbCr422_8", 4), (Bytes{81, 90, 81, 240}));
  EXPECT_EQ(Begin("YCbCr422_8_CbYCrY", 4), (Bytes{90, 81, 240, 81}));
}

TEST(Encode, SitesOfEachPattern) {
  EXPECT_EQ(Begin("Bayer8", 2, {.pattern = MosaicPattern::RGGB}), (Bytes{255, 0}));
  EXPECT_EQ(Begin("Bayer8", 2, {.pattern = MosaicPattern::GRBG}), (Bytes{0, 255}));
  EXPECT_EQ(Begin("Bayer8", 2, {.pattern = MosaicPattern::BGGR}), (Bytes{0, 0}));
  EXPECT_EQ(Begin("Bayer8", 4, {.pattern = MosaicPattern::GBRG}), (Bytes{0, 0, 0, 255}));
}

// Two samples in each pixel; without a pattern of the family it is the first.
TEST(Encode, PixelsOfBiColor) {
  EXPECT_EQ(Begin("BiColor8", 4), (Bytes{255, 0, 0, 0}));
  EXPECT_EQ(Begin("BiColor8", 4, {.pattern = MosaicPattern::BGRG}), (Bytes{0, 0, 255, 0}));
  EXPECT_EQ(Begin("BiColor8", 4, {.pattern = MosaicPattern::GBGR}), (Bytes{0, 0, 0, 255}));
}

// The third line has the second row of cells: blue and green, of two pixels each.
TEST(Encode, WhiteAndCellsOfScf1) {
  EXPECT_EQ(Begin("SCF18", 2), (Bytes{85, 0}));
  EXPECT_EQ(Begin("SCF18", 2, {.pattern = MosaicPattern::WGWB}), (Bytes{85, 255}));
  using ZrConvertersLib::FormatFamily;
  const Colour colour{.red = 1, .green = 2, .blue = 6};
  const auto at = [&](MosaicPattern pattern, unsigned x, unsigned y) {
    return SiteOf(colour, FormatFamily::Scf1, pattern, x, y);
  };
  EXPECT_EQ(at(MosaicPattern::WGWR, 3, 0), 1);
  EXPECT_EQ(at(MosaicPattern::WBWG, 1, 0), 6);
  EXPECT_EQ(at(MosaicPattern::WRWG, 2, 3), 6);
  EXPECT_EQ(at(MosaicPattern::WGWB, 0, 3), 1);
  EXPECT_EQ(at(MosaicPattern::WGWB, 3, 3), 3);
}

TEST(Encode, PlanesFollowOneAnother) {
  const Bytes frame = EncodeFrame(Chart(16, 16), *FindFormatInfo("RGB8_Planar"), {});
  ASSERT_EQ(frame.size(), 768U);
  EXPECT_EQ(frame[0], 255);
  EXPECT_EQ(frame[256], 0);
  EXPECT_EQ(frame[512], 0);
}

TEST(Encode, LinesBeginAtWholeBytesAfterTheirPadding) {
  const Bytes frame = EncodeFrame(Chart(3, 2), *FindFormatInfo("Mono10p"), {.linePadding = 2});
  EXPECT_EQ(frame.size(), 2U * (4 + 2));
}

}  // namespace
