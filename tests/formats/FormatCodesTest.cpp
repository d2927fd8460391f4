#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <ZrConvertersLib/V4l2Formats.h>
#include <gtest/gtest.h>

namespace {

using namespace ZrConvertersLib;
namespace Ids = PixelTypeIds;

struct Known {
  std::uint32_t code;
  const char* name;
  long id;
  unsigned flags;
};

/// One of each kind, from the convention's list.
constexpr Known kKnown[] = {
    {0x01080001, "Mono8", Ids::Mono8, 0},
    {0x010E0104, "Mono14p", Ids::Mono14p, 0},
    {0x010C0059, "BayerRG12p", Ids::Bayer12p, PixelConverter::FLAG_BAYER_RGGB},
    {0x01080008, "BayerGR8", Ids::Bayer8, PixelConverter::FLAG_BAYER_GRBG},
    {0x010C0028, "BayerGB10Packed", Ids::Bayer10Packed,
     PixelConverter::FLAG_BAYER_GBRG | PixelConverter::FLAG_PACKED_GIGE_VISION},
    {0x0110010C, "BayerBG14", Ids::Bayer14, PixelConverter::FLAG_BAYER_BGGR},
    {0x021000A6, "BiColorBGRG8", Ids::BiColor8, PixelConverter::FLAG_BICOLOR_BGRG},
    {0x0110007D, "SCF1WRWG10", Ids::SCF110, PixelConverter::FLAG_SCF_WRWG},
    {0x0210003B, "YCbCr422_8", Ids::YCbCr422_8, PixelConverter::FLAG_YCBCR_JPG},
    {0x0210003E, "YCbCr601_422_8", Ids::YCbCr422_8, 0},
    {0x02100045, "YCbCr709_422_8_CbYCrY", Ids::YCbCr422_8_CbYCrY, PixelConverter::FLAG_YCBCR_709},
    {0x02240086, "YCbCr12p_CbYCr", Ids::YCbCr12p_CbYCr, PixelConverter::FLAG_YCBCR_JPG},
    {0x020C003F, "YCbCr601_411_8_CbYYCrYY", Ids::YCbCr411_8_CbYYCrYY, 0},
    {0x0230001B, "BGR12", Ids::BGR12, 0},
    {0x02300024, "RGB16_Planar", Ids::RGB16_Planar, 0},
    {0x0220001D, "RGB10p32", Ids::RGB10p32, 0},
};

TEST(FormatCodesTest, CodesOfTheConvention) {
  for (const Known& known : kKnown) {
    const FormatCode* entry = FindFormatCode(known.code);
    ASSERT_NE(entry, nullptr) << known.name;
    EXPECT_EQ(entry, FindFormatCode(known.name));
    EXPECT_EQ(entry->name, known.name);
    EXPECT_EQ(entry->id, known.id) << known.name;
    EXPECT_EQ(entry->flags, known.flags) << known.name;
    EXPECT_EQ(entry, FormatCodeOf(known.id, known.flags)) << known.name;
  }
}

TEST(FormatCodesTest, WayThereAndBack) {
  for (const FormatCode& entry : FormatCodes()) {
    if (entry.matrixKnown && !entry.name.starts_with("YUV")) {
      EXPECT_EQ(FormatCodeOf(entry.id, entry.flags), &entry) << entry.name;
    }
    EXPECT_EQ(FindFormatCode(entry.code), &entry);
  }
}

TEST(FormatCodesTest, Word565IsMappedByItsBits) {
  EXPECT_EQ(FindFormatCode(0x02100036u)->id, Ids::RGB565p);
  EXPECT_EQ(FindFormatCode("RGB565p")->id, Ids::BGR565p);
  EXPECT_EQ(FormatCodeOf(Ids::BGR565p, 0)->code, 0x02100035u);
}

TEST(FormatCodesTest, OnlyTheBitsOfTheFamilyCount) {
  EXPECT_EQ(FormatCodeOf(Ids::Mono12Packed, 0), nullptr);
  EXPECT_EQ(FormatCodeOf(Ids::Mono8, 0xFFFFFFFF)->name, "Mono8");
  EXPECT_EQ(FormatCodeOf(Ids::Bayer8, 0)->name, "BayerGR8");
  EXPECT_EQ(FormatCodeOf(Ids::Bayer8, 0xF0)->name, "BayerBG8");
  EXPECT_EQ(FormatCodeOf(Ids::YCbCr8_CbYCr, 0x50000)->name, "YCbCr8_CbYCr");
  EXPECT_EQ(FormatCodeOf(Ids::BiColor8, 0)->name, "BiColorRGBG8");
  EXPECT_EQ(FormatCodeOf(Ids::BiColor8, PixelConverter::FLAG_BICOLOR_GBGR), nullptr);
  EXPECT_EQ(FormatCodeOf(293, 0), nullptr);
}

TEST(V4l2FormatsTest, WayThereAndBack) {
  for (const V4l2Format& entry : V4l2Formats()) {
    EXPECT_EQ(FindV4l2Format(entry.fourcc), &entry) << entry.name;
    EXPECT_EQ(FindV4l2Format(entry.name), &entry) << entry.name;
    const V4l2Format* back = V4l2FormatOf(entry.id, entry.flags);
    ASSERT_NE(back, nullptr) << entry.name;
    EXPECT_TRUE(back->id == entry.id && back->flags == entry.flags) << entry.name;
  }
  EXPECT_EQ(V4l2FormatOf(Ids::Mono10p, 0), nullptr);
}

TEST(FormatCodesTest, UnknownCodes) {
  EXPECT_EQ(FindFormatCode(0u), nullptr);
  EXPECT_EQ(FindFormatCode(0x010C0058u), nullptr);
  EXPECT_EQ(FindFormatCode(""), nullptr);
}

struct Word {
  const char* text;
  std::uint32_t code;
  FormatChoice choice;
};

TEST(ReadFormatTest, WordsOfAPerson) {
  const unsigned rggb = PixelConverter::FLAG_BAYER_RGGB;
  const unsigned gige = PixelConverter::FLAG_PACKED_GIGE_VISION;
  const unsigned csi2 = PixelConverter::FLAG_PACKED_CSI2;
  const Word words[] = {
      {"Mono12Packed", 0, {Ids::Mono12Packed, gige, false}},
      {"0x010C002B", 0, {Ids::Bayer12Packed, rggb | gige, true}},
      {"pRAA", 0, {Ids::Bayer10p, rggb | csi2, true}},
      {"SRGGB10P", 0, {Ids::Bayer10p, rggb | csi2, true}},
      {"0x41415270", 0, {Ids::Bayer10p, rggb | csi2, true}},
      {"Y10", 0, {Ids::Mono10, 0, false}},
      {"Y14P", 0, {Ids::Mono14p, csi2, false}},
      {"AR24", 0, {Ids::BGRa8, 0, false}},
      {"Mono12p", 0, {Ids::Mono12p, 0, false}},
      {"Bayer12p", 0, {Ids::Bayer12p, 0, false}},
      {"BayerRG12p", 0, {Ids::Bayer12p, rggb, true}},
      {"0x010C0059", 0, {Ids::Bayer12p, rggb, true}},
      {"0X010c0059", 0, {Ids::Bayer12p, rggb, true}},
      {"17563737", 0, {Ids::Bayer12p, rggb, true}},
      {"YCbCr422_8", 0, {Ids::YCbCr422_8, 0, false}},
      {"0x0210003B", 0, {Ids::YCbCr422_8, PixelConverter::FLAG_YCBCR_JPG, true}},
      {"YCbCr601_422_8", 0, {Ids::YCbCr422_8, 0, true}},
      {"RGB565p", 0, {Ids::RGB565p, 0, false}},
      {"0x02100035", 0, {Ids::BGR565p, 0, false}},
      {"BGRa10", 0, {Ids::BGRa10, 0, false}},
      {"YCbCr2020_422_8", FrameError::MatrixUnknown, {}},
      {"0x021000FA", FrameError::MatrixUnknown, {}},
      {"", FrameError::UnknownFormat, {}},
      {"0x", FrameError::UnknownFormat, {}},
      {"0x010C0059 ", FrameError::UnknownFormat, {}},
      {"0x1010C0059", FrameError::UnknownFormat, {}},
      {"-1", FrameError::UnknownFormat, {}},
      {"mono8", FrameError::UnknownFormat, {}},
  };
  for (const Word& word : words) {
    FormatChoice choice;
    EXPECT_EQ(ReadFormat(word.text, choice).GetCode(), word.code) << word.text;
    EXPECT_EQ(choice.id, word.choice.id) << word.text;
    EXPECT_EQ(choice.flags, word.choice.flags) << word.text;
    EXPECT_EQ(choice.settled, word.choice.settled) << word.text;
  }
}

TEST(FrameOptionsTest, FlagsMeanWhatTheRawCallMakesOfThem) {
  constexpr unsigned kInterpolate =
      PixelConverter::FLAG_BAYER_INTERPOLATE | PixelConverter::FLAG_BICOLOR_INTERPOLATE;
  FrameOptions options;
  options.SetFlags(PixelConverter::FLAG_BAYER_RGGB | PixelConverter::FLAG_BAYER_GBRG |
                   PixelConverter::FLAG_BAYER_INTERPOLATE | PixelConverter::FLAG_YCBCR_709 |
                   PixelConverter::FLAG_YCBCR_JPG);
  EXPECT_EQ(options.pattern, MosaicPattern::RGGB);
  EXPECT_EQ(options.demosaic, Demosaic::Interpolate);
  EXPECT_EQ(options.matrix, ColourMatrix::Jpeg);
  EXPECT_EQ(options.GetFlags(),
            PixelConverter::FLAG_BAYER_RGGB | kInterpolate | PixelConverter::FLAG_YCBCR_JPG);
  options.SetFlags(PixelConverter::FLAG_BICOLOR_INTERPOLATE);
  EXPECT_EQ(options.GetFlags(), PixelConverter::FLAG_BAYER_GRBG | kInterpolate);
}

/// One pattern of each family by the name that its codes have.
TEST(FrameOptionsTest, PatternsOfCodes) {
  for (const char* name : {"BayerBG8", "BiColorBGRG10p", "SCF1WGWR8", "SCF1WRWG12p"}) {
    FrameOptions options;
    options.SetFlags(FindFormatCode(name)->flags);
    const std::string_view family = FamilyName(FindFormatInfo(FindFormatCode(name)->id)->family);
    EXPECT_TRUE(PatternName(options.pattern).starts_with(std::string_view(name).substr(family.size(), 2)))
        << name;
    EXPECT_EQ(options.GetFlags(), FindFormatCode(name)->flags) << name;
  }
  EXPECT_EQ(PatternName(static_cast<MosaicPattern>(12)), "");
}

}  // namespace
