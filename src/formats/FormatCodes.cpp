#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/V4l2Formats.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "core/FormatTable.h"
#include "core/SettledFlags.h"

namespace ZrConvertersLib {

namespace {

constexpr unsigned kGrbg = PixelConverter::FLAG_BAYER_GRBG;
constexpr unsigned kGbrg = PixelConverter::FLAG_BAYER_GBRG;
constexpr unsigned kRggb = PixelConverter::FLAG_BAYER_RGGB;
constexpr unsigned kBggr = PixelConverter::FLAG_BAYER_BGGR;
constexpr unsigned kBiColorRgbg = PixelConverter::FLAG_BICOLOR_RGBG;
constexpr unsigned kBiColorBgrg = PixelConverter::FLAG_BICOLOR_BGRG;
constexpr unsigned kScfWgwr = PixelConverter::FLAG_SCF_WGWR;
constexpr unsigned kScfWbwg = PixelConverter::FLAG_SCF_WBWG;
constexpr unsigned kScfWrwg = PixelConverter::FLAG_SCF_WRWG;
constexpr unsigned kScfWgwb = PixelConverter::FLAG_SCF_WGWB;
constexpr unsigned kJpeg = PixelConverter::FLAG_YCBCR_JPG;
constexpr unsigned kGigE = PixelConverter::FLAG_PACKED_GIGE_VISION;
constexpr unsigned k709 = PixelConverter::FLAG_YCBCR_709;

// clang-format off
/// The convention's codes as of October 2025, in ascending order of the type ID; of several with the same ID and
/// flags the first is the one to report.
constexpr auto kCodes = [] {
  namespace Ids = PixelTypeIds;
  return std::array{
      FormatCode{0x02100036, "BGR565p",                 Ids::RGB565p,              0},
      FormatCode{0x02100035, "RGB565p",                 Ids::BGR565p,              0},
      FormatCode{0x02180014, "RGB8",                    Ids::RGB8,                 0},
      FormatCode{0x02180015, "BGR8",                    Ids::BGR8,                 0},
      FormatCode{0x02200016, "RGBa8",                   Ids::RGBa8,                0},
      FormatCode{0x02200017, "BGRa8",                   Ids::BGRa8,                0},
      FormatCode{0x02300018, "RGB10",                   Ids::RGB10,                0},
      FormatCode{0x02300019, "BGR10",                   Ids::BGR10,                0},
      FormatCode{0x021E005C, "RGB10p",                  Ids::RGB10p,               0},
      FormatCode{0x021E0048, "BGR10p",                 Ids::BGR10p,               0},
      FormatCode{0x0240005F, "RGBa10",                  Ids::RGBa10,               0},
      FormatCode{0x0240004C, "BGRa10",                  Ids::BGRa10,               0},
      FormatCode{0x02280060, "RGBa10p",                 Ids::RGBa10p,              0},
      FormatCode{0x0228004D, "BGRa10p",                Ids::BGRa10p,              0},
      FormatCode{0x0230001A, "RGB12",                   Ids::RGB12,                0},
      FormatCode{0x0230001B, "BGR12",                   Ids::BGR12,                0},
      FormatCode{0x0224005D, "RGB12p",                  Ids::RGB12p,               0},
      FormatCode{0x02240049, "BGR12p",                 Ids::BGR12p,               0},
      FormatCode{0x02400061, "RGBa12",                  Ids::RGBa12,               0},
      FormatCode{0x0240004E, "BGRa12",                  Ids::BGRa12,               0},
      FormatCode{0x02300062, "RGBa12p",                 Ids::RGBa12p,              0},
      FormatCode{0x0230004F, "BGRa12p",                Ids::BGRa12p,              0},
      FormatCode{0x0230005E, "RGB14",                   Ids::RGB14,                0},
      FormatCode{0x0230004A, "BGR14",                   Ids::BGR14,                0},
      FormatCode{0x02400063, "RGBa14",                  Ids::RGBa14,               0},
      FormatCode{0x02400050, "BGRa14",                  Ids::BGRa14,               0},
      FormatCode{0x02300033, "RGB16",                   Ids::RGB16,                0},
      FormatCode{0x0230004B, "BGR16",                   Ids::BGR16,                0},
      FormatCode{0x02400064, "RGBa16",                  Ids::RGBa16,               0},
      FormatCode{0x02400051, "BGRa16",                  Ids::BGRa16,               0},
      FormatCode{0x0220001C, "RGB10V1Packed",           Ids::RGB10V1Packed,        0},
      FormatCode{0x0220001D, "RGB10p32",                Ids::RGB10p32,             0},
      FormatCode{0x02240034, "RGB12V1Packed",           Ids::RGB12V1Packed,        0},
      FormatCode{0x02180021, "RGB8_Planar",             Ids::RGB8_Planar,          0},
      FormatCode{0x02300022, "RGB10_Planar",            Ids::RGB10_Planar,         0},
      FormatCode{0x02300023, "RGB12_Planar",            Ids::RGB12_Planar,         0},
      FormatCode{0x02300024, "RGB16_Planar",            Ids::RGB16_Planar,         0},
      FormatCode{0x01080001, "Mono8",                   Ids::Mono8,                0},
      FormatCode{0x01080002, "Mono8s",                  Ids::Mono8s,               0},
      FormatCode{0x01100003, "Mono10",                  Ids::Mono10,               0},
      FormatCode{0x01100005, "Mono12",                  Ids::Mono12,               0},
      FormatCode{0x010C0004, "Mono10Packed",            Ids::Mono10Packed,         kGigE},
      FormatCode{0x010C0006, "Mono12Packed",            Ids::Mono12Packed,         kGigE},
      FormatCode{0x01100025, "Mono14",                  Ids::Mono14,               0},
      FormatCode{0x01100007, "Mono16",                  Ids::Mono16,               0},
      FormatCode{0x01010037, "Mono1p",                  Ids::Mono1p,               0},
      FormatCode{0x01020038, "Mono2p",                  Ids::Mono2p,               0},
      FormatCode{0x01040039, "Mono4p",                  Ids::Mono4p,               0},
      FormatCode{0x010A0046, "Mono10p",                 Ids::Mono10p,              0},
      FormatCode{0x010C0047, "Mono12p",                 Ids::Mono12p,              0},
      FormatCode{0x010E0104, "Mono14p",                 Ids::Mono14p,              0},
      FormatCode{0x01200111, "Mono32",                  Ids::Mono32,               0},
      FormatCode{0x0210003B, "YCbCr422_8",              Ids::YCbCr422_8,           kJpeg},
      FormatCode{0x0210003E, "YCbCr601_422_8",          Ids::YCbCr422_8,           0},
      FormatCode{0x02100041, "YCbCr709_422_8",          Ids::YCbCr422_8,           k709},
      FormatCode{0x021000FA, "YCbCr2020_422_8",         Ids::YCbCr422_8,           0, false},
      FormatCode{0x02100032, "YUV422_8",                Ids::YCbCr422_8,           0},
      FormatCode{0x02200065, "YCbCr422_10",             Ids::YCbCr422_10,          kJpeg},
      FormatCode{0x0220008D, "YCbCr601_422_10",         Ids::YCbCr422_10,          0},
      FormatCode{0x02200095, "YCbCr709_422_10",         Ids::YCbCr422_10,          k709},
      FormatCode{0x022000FC, "YCbCr2020_422_10",        Ids::YCbCr422_10,          0, false},
      FormatCode{0x02140087, "YCbCr422_10p",            Ids::YCbCr422_10p,         kJpeg},
      FormatCode{0x0214008E, "YCbCr601_422_10p",        Ids::YCbCr422_10p,         0},
      FormatCode{0x02140096, "YCbCr709_422_10p",        Ids::YCbCr422_10p,         k709},
      FormatCode{0x021400FE, "YCbCr2020_422_10p",       Ids::YCbCr422_10p,         0, false},
      FormatCode{0x02200066, "YCbCr422_12",             Ids::YCbCr422_12,          kJpeg},
      FormatCode{0x0220008F, "YCbCr601_422_12",         Ids::YCbCr422_12,          0},
      FormatCode{0x02200097, "YCbCr709_422_12",         Ids::YCbCr422_12,          k709},
      FormatCode{0x02200100, "YCbCr2020_422_12",        Ids::YCbCr422_12,          0, false},
      FormatCode{0x02180088, "YCbCr422_12p",            Ids::YCbCr422_12p,         kJpeg},
      FormatCode{0x02180090, "YCbCr601_422_12p",        Ids::YCbCr422_12p,         0},
      FormatCode{0x02180098, "YCbCr709_422_12p",        Ids::YCbCr422_12p,         k709},
      FormatCode{0x02180102, "YCbCr2020_422_12p",       Ids::YCbCr422_12p,         0, false},
      FormatCode{0x02100043, "YCbCr422_8_CbYCrY",       Ids::YCbCr422_8_CbYCrY,    kJpeg},
      FormatCode{0x02100044, "YCbCr601_422_8_CbYCrY",   Ids::YCbCr422_8_CbYCrY,    0},
      FormatCode{0x02100045, "YCbCr709_422_8_CbYCrY",   Ids::YCbCr422_8_CbYCrY,    k709},
      FormatCode{0x021000FB, "YCbCr2020_422_8_CbYCrY",  Ids::YCbCr422_8_CbYCrY,    0, false},
      FormatCode{0x0210001F, "YUV422_8_UYVY",           Ids::YCbCr422_8_CbYCrY,    0},
      FormatCode{0x02200099, "YCbCr422_10_CbYCrY",      Ids::YCbCr422_10_CbYCrY,   kJpeg},
      FormatCode{0x0220009D, "YCbCr601_422_10_CbYCrY",  Ids::YCbCr422_10_CbYCrY,   0},
      FormatCode{0x022000A1, "YCbCr709_422_10_CbYCrY",  Ids::YCbCr422_10_CbYCrY,   k709},
      FormatCode{0x022000FD, "YCbCr2020_422_10_CbYCrY", Ids::YCbCr422_10_CbYCrY,   0, false},
      FormatCode{0x0214009A, "YCbCr422_10p_CbYCrY",     Ids::YCbCr422_10p_CbYCrY,  kJpeg},
      FormatCode{0x0214009E, "YCbCr601_422_10p_CbYCrY", Ids::YCbCr422_10p_CbYCrY,  0},
      FormatCode{0x021400A2, "YCbCr709_422_10p_CbYCrY", Ids::YCbCr422_10p_CbYCrY,  k709},
      FormatCode{0x021400FF, "YCbCr2020_422_10p_CbYCrY", Ids::YCbCr422_10p_CbYCrY,  0, false},
      FormatCode{0x0220009B, "YCbCr422_12_CbYCrY",      Ids::YCbCr422_12_CbYCrY,   kJpeg},
      FormatCode{0x0220009F, "YCbCr601_422_12_CbYCrY",  Ids::YCbCr422_12_CbYCrY,   0},
      FormatCode{0x022000A3, "YCbCr709_422_12_CbYCrY",  Ids::YCbCr422_12_CbYCrY,   k709},
      FormatCode{0x02200101, "YCbCr2020_422_12_CbYCrY", Ids::YCbCr422_12_CbYCrY,   0, false},
      FormatCode{0x0218009C, "YCbCr422_12p_CbYCrY",     Ids::YCbCr422_12p_CbYCrY,  kJpeg},
      FormatCode{0x021800A0, "YCbCr601_422_12p_CbYCrY", Ids::YCbCr422_12p_CbYCrY,  0},
      FormatCode{0x021800A4, "YCbCr709_422_12p_CbYCrY", Ids::YCbCr422_12p_CbYCrY,  k709},
      FormatCode{0x02180103, "YCbCr2020_422_12p_CbYCrY", Ids::YCbCr422_12p_CbYCrY,  0, false},
      FormatCode{0x0218005B, "YCbCr8",                  Ids::YCbCr8,               kJpeg},
      FormatCode{0x0218003A, "YCbCr8_CbYCr",            Ids::YCbCr8_CbYCr,         kJpeg},
      FormatCode{0x0218003D, "YCbCr601_8_CbYCr",        Ids::YCbCr8_CbYCr,         0},
      FormatCode{0x02180040, "YCbCr709_8_CbYCr",        Ids::YCbCr8_CbYCr,         k709},
      FormatCode{0x021800F4, "YCbCr2020_8_CbYCr",       Ids::YCbCr8_CbYCr,         0, false},
      FormatCode{0x02180020, "YUV8_UYV",                Ids::YCbCr8_CbYCr,         0},
      FormatCode{0x02300083, "YCbCr10_CbYCr",           Ids::YCbCr10_CbYCr,        kJpeg},
      FormatCode{0x02300089, "YCbCr601_10_CbYCr",       Ids::YCbCr10_CbYCr,        0},
      FormatCode{0x02300091, "YCbCr709_10_CbYCr",       Ids::YCbCr10_CbYCr,        k709},
      FormatCode{0x023000F5, "YCbCr2020_10_CbYCr",      Ids::YCbCr10_CbYCr,        0, false},
      FormatCode{0x021E0084, "YCbCr10p_CbYCr",          Ids::YCbCr10p_CbYCr,       kJpeg},
      FormatCode{0x021E008A, "YCbCr601_10p_CbYCr",      Ids::YCbCr10p_CbYCr,       0},
      FormatCode{0x021E0092, "YCbCr709_10p_CbYCr",      Ids::YCbCr10p_CbYCr,       k709},
      FormatCode{0x021E00F6, "YCbCr2020_10p_CbYCr",     Ids::YCbCr10p_CbYCr,       0, false},
      FormatCode{0x02300085, "YCbCr12_CbYCr",           Ids::YCbCr12_CbYCr,        kJpeg},
      FormatCode{0x0230008B, "YCbCr601_12_CbYCr",       Ids::YCbCr12_CbYCr,        0},
      FormatCode{0x02300093, "YCbCr709_12_CbYCr",       Ids::YCbCr12_CbYCr,        k709},
      FormatCode{0x023000F7, "YCbCr2020_12_CbYCr",      Ids::YCbCr12_CbYCr,        0, false},
      FormatCode{0x02240086, "YCbCr12p_CbYCr",          Ids::YCbCr12p_CbYCr,       kJpeg},
      FormatCode{0x0224008C, "YCbCr601_12p_CbYCr",      Ids::YCbCr12p_CbYCr,       0},
      FormatCode{0x02240094, "YCbCr709_12p_CbYCr",      Ids::YCbCr12p_CbYCr,       k709},
      FormatCode{0x022400F8, "YCbCr2020_12p_CbYCr",     Ids::YCbCr12p_CbYCr,       0, false},
      FormatCode{0x020C005A, "YCbCr411_8",              Ids::YCbCr411_8,           kJpeg},
      FormatCode{0x020C003C, "YCbCr411_8_CbYYCrYY",     Ids::YCbCr411_8_CbYYCrYY,  kJpeg},
      FormatCode{0x020C003F, "YCbCr601_411_8_CbYYCrYY", Ids::YCbCr411_8_CbYYCrYY,  0},
      FormatCode{0x020C0042, "YCbCr709_411_8_CbYYCrYY", Ids::YCbCr411_8_CbYYCrYY,  k709},
      FormatCode{0x020C00F9, "YCbCr2020_411_8_CbYYCrYY", Ids::YCbCr411_8_CbYYCrYY,  0, false},
      FormatCode{0x020C001E, "YUV411_8_UYYVYY",         Ids::YCbCr411_8_CbYYCrYY,  0},
      FormatCode{0x01080008, "BayerGR8",                Ids::Bayer8,               kGrbg},
      FormatCode{0x01080009, "BayerRG8",                Ids::Bayer8,               kRggb},
      FormatCode{0x0108000A, "BayerGB8",                Ids::Bayer8,               kGbrg},
      FormatCode{0x0108000B, "BayerBG8",                Ids::Bayer8,               kBggr},
      FormatCode{0x0110000C, "BayerGR10",               Ids::Bayer10,              kGrbg},
      FormatCode{0x0110000D, "BayerRG10",               Ids::Bayer10,              kRggb},
      FormatCode{0x0110000E, "BayerGB10",               Ids::Bayer10,              kGbrg},
      FormatCode{0x0110000F, "BayerBG10",               Ids::Bayer10,              kBggr},
      FormatCode{0x010C0026, "BayerGR10Packed",         Ids::Bayer10Packed,        kGrbg | kGigE},
      FormatCode{0x010C0027, "BayerRG10Packed",         Ids::Bayer10Packed,        kRggb | kGigE},
      FormatCode{0x010C0028, "BayerGB10Packed",         Ids::Bayer10Packed,        kGbrg | kGigE},
      FormatCode{0x010C0029, "BayerBG10Packed",         Ids::Bayer10Packed,        kBggr | kGigE},
      FormatCode{0x01100010, "BayerGR12",               Ids::Bayer12,              kGrbg},
      FormatCode{0x01100011, "BayerRG12",               Ids::Bayer12,              kRggb},
      FormatCode{0x01100012, "BayerGB12",               Ids::Bayer12,              kGbrg},
      FormatCode{0x01100013, "BayerBG12",               Ids::Bayer12,              kBggr},
      FormatCode{0x010C002A, "BayerGR12Packed",         Ids::Bayer12Packed,        kGrbg | kGigE},
      FormatCode{0x010C002B, "BayerRG12Packed",         Ids::Bayer12Packed,        kRggb | kGigE},
      FormatCode{0x010C002C, "BayerGB12Packed",         Ids::Bayer12Packed,        kGbrg | kGigE},
      FormatCode{0x010C002D, "BayerBG12Packed",         Ids::Bayer12Packed,        kBggr | kGigE},
      FormatCode{0x0110002E, "BayerGR16",               Ids::Bayer16,              kGrbg},
      FormatCode{0x0110002F, "BayerRG16",               Ids::Bayer16,              kRggb},
      FormatCode{0x01100030, "BayerGB16",               Ids::Bayer16,              kGbrg},
      FormatCode{0x01100031, "BayerBG16",               Ids::Bayer16,              kBggr},
      FormatCode{0x010A0056, "BayerGR10p",              Ids::Bayer10p,             kGrbg},
      FormatCode{0x010A0058, "BayerRG10p",              Ids::Bayer10p,             kRggb},
      FormatCode{0x010A0054, "BayerGB10p",              Ids::Bayer10p,             kGbrg},
      FormatCode{0x010A0052, "BayerBG10p",              Ids::Bayer10p,             kBggr},
      FormatCode{0x010C0057, "BayerGR12p",              Ids::Bayer12p,             kGrbg},
      FormatCode{0x010C0059, "BayerRG12p",              Ids::Bayer12p,             kRggb},
      FormatCode{0x010C0055, "BayerGB12p",              Ids::Bayer12p,             kGbrg},
      FormatCode{0x010C0053, "BayerBG12p",              Ids::Bayer12p,             kBggr},
      FormatCode{0x01100109, "BayerGR14",               Ids::Bayer14,              kGrbg},
      FormatCode{0x0110010A, "BayerRG14",               Ids::Bayer14,              kRggb},
      FormatCode{0x0110010B, "BayerGB14",               Ids::Bayer14,              kGbrg},
      FormatCode{0x0110010C, "BayerBG14",               Ids::Bayer14,              kBggr},
      FormatCode{0x010E0105, "BayerGR14p",              Ids::Bayer14p,             kGrbg},
      FormatCode{0x010E0106, "BayerRG14p",              Ids::Bayer14p,             kRggb},
      FormatCode{0x010E0107, "BayerGB14p",              Ids::Bayer14p,             kGbrg},
      FormatCode{0x010E0108, "BayerBG14p",              Ids::Bayer14p,             kBggr},
      FormatCode{0x01080067, "SCF1WBWG8",               Ids::SCF18,                kScfWbwg},
      FormatCode{0x0108006E, "SCF1WGWB8",               Ids::SCF18,                kScfWgwb},
      FormatCode{0x01080075, "SCF1WGWR8",               Ids::SCF18,                kScfWgwr},
      FormatCode{0x0108007C, "SCF1WRWG8",               Ids::SCF18,                kScfWrwg},
      FormatCode{0x01100068, "SCF1WBWG10",              Ids::SCF110,               kScfWbwg},
      FormatCode{0x0110006F, "SCF1WGWB10",              Ids::SCF110,               kScfWgwb},
      FormatCode{0x01100076, "SCF1WGWR10",              Ids::SCF110,               kScfWgwr},
      FormatCode{0x0110007D, "SCF1WRWG10",              Ids::SCF110,               kScfWrwg},
      FormatCode{0x010A0069, "SCF1WBWG10p",             Ids::SCF110p,              kScfWbwg},
      FormatCode{0x010A0070, "SCF1WGWB10p",             Ids::SCF110p,              kScfWgwb},
      FormatCode{0x010A0077, "SCF1WGWR10p",             Ids::SCF110p,              kScfWgwr},
      FormatCode{0x010A007E, "SCF1WRWG10p",             Ids::SCF110p,              kScfWrwg},
      FormatCode{0x0110006A, "SCF1WBWG12",              Ids::SCF112,               kScfWbwg},
      FormatCode{0x01100071, "SCF1WGWB12",              Ids::SCF112,               kScfWgwb},
      FormatCode{0x01100078, "SCF1WGWR12",              Ids::SCF112,               kScfWgwr},
      FormatCode{0x0110007F, "SCF1WRWG12",              Ids::SCF112,               kScfWrwg},
      FormatCode{0x010C006B, "SCF1WBWG12p",             Ids::SCF112p,              kScfWbwg},
      FormatCode{0x010C0072, "SCF1WGWB12p",             Ids::SCF112p,              kScfWgwb},
      FormatCode{0x010C0079, "SCF1WGWR12p",             Ids::SCF112p,              kScfWgwr},
      FormatCode{0x010C0080, "SCF1WRWG12p",             Ids::SCF112p,              kScfWrwg},
      FormatCode{0x0110006C, "SCF1WBWG14",              Ids::SCF114,               kScfWbwg},
      FormatCode{0x01100073, "SCF1WGWB14",              Ids::SCF114,               kScfWgwb},
      FormatCode{0x0110007A, "SCF1WGWR14",              Ids::SCF114,               kScfWgwr},
      FormatCode{0x01100081, "SCF1WRWG14",              Ids::SCF114,               kScfWrwg},
      FormatCode{0x0110006D, "SCF1WBWG16",              Ids::SCF116,               kScfWbwg},
      FormatCode{0x01100074, "SCF1WGWB16",              Ids::SCF116,               kScfWgwb},
      FormatCode{0x0110007B, "SCF1WGWR16",              Ids::SCF116,               kScfWgwr},
      FormatCode{0x01100082, "SCF1WRWG16",              Ids::SCF116,               kScfWrwg},
      FormatCode{0x021000A5, "BiColorRGBG8",            Ids::BiColor8,             kBiColorRgbg},
      FormatCode{0x021000A6, "BiColorBGRG8",            Ids::BiColor8,             kBiColorBgrg},
      FormatCode{0x022000A7, "BiColorRGBG10",           Ids::BiColor10,            kBiColorRgbg},
      FormatCode{0x022000A9, "BiColorBGRG10",           Ids::BiColor10,            kBiColorBgrg},
      FormatCode{0x022000AB, "BiColorRGBG12",           Ids::BiColor12,            kBiColorRgbg},
      FormatCode{0x022000AD, "BiColorBGRG12",           Ids::BiColor12,            kBiColorBgrg},
      FormatCode{0x021400A8, "BiColorRGBG10p",          Ids::BiColor10p,           kBiColorRgbg},
      FormatCode{0x021400AA, "BiColorBGRG10p",          Ids::BiColor10p,           kBiColorBgrg},
      FormatCode{0x021800AC, "BiColorRGBG12p",          Ids::BiColor12p,           kBiColorRgbg},
      FormatCode{0x021800AE, "BiColorBGRG12p",          Ids::BiColor12p,           kBiColorBgrg},
  };
}();
// clang-format on

consteval bool CodesAndNamesAreDistinct() {
  for (std::size_t i = 0; i < kCodes.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (kCodes[i].code == kCodes[j].code || kCodes[i].name == kCodes[j].name) return false;
    }
  }
  return true;
}

/// Bits 25..24: one component or several. Bits 23..16: bits per pixel in memory, padding included.
constexpr bool CodeFitsLayout(const FormatCode& entry) {
  return FormatSatisfies(entry.id, [&entry](const FormatRow& row) {
    const SampleUnit unit = UnitOf(row.order);
    const unsigned kind = unit.samples == unit.pixels ? 1 : 2;
    return entry.code >> 24 == kind && ((entry.code >> 16) & 0xFF) == BitsInMemory(row);
  });
}

static_assert(CodesAndNamesAreDistinct());
static_assert(std::is_sorted(kCodes.begin(), kCodes.end(),
                             [](const FormatCode& a, const FormatCode& b) { return a.id < b.id; }));
static_assert(std::all_of(kCodes.begin(), kCodes.end(),
                          [](const FormatCode& entry) { return CodeFitsLayout(entry); }));
static_assert(std::all_of(kFormats.begin(), kFormats.end(), [](const FormatRow& row) {
  return std::any_of(kCodes.begin(), kCodes.end(),
                     [&](const FormatCode& entry) { return entry.id == row.id; });
}));

bool ReadNumber(std::string_view text, std::uint32_t& number) noexcept {
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, hexadecimal ? 16 : 10);
  return error == std::errc{} && stop == end;
}

bool CodeSettlesFlags(long id) noexcept {
  const Family family = FindFormat(id)->family;
  return family != Family::Rgb && family != Family::Mono;
}

/// A name, or the number of a fourcc.
ZrUtilsLib::Result ReadV4l2Format(std::string_view text, std::uint32_t number, FormatChoice& choice) {
  const V4l2Format* entry = number != 0 ? FindV4l2Format(number) : FindV4l2Format(text);
  if (entry == nullptr) return FrameError::UnknownFormat;
  choice = {entry->id, entry->flags, FindFormat(entry->id)->family == Family::Bayer};
  return {};
}

const FormatRow* FindRow(std::string_view name) noexcept {
  for (const FormatRow& row : kFormats) {
    if (row.name == name) return &row;
  }
  for (const FormatRow& row : kUntypedFormats) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

}  // namespace

std::span<const FormatCode> FormatCodes() noexcept {
  return kCodes;
}

const FormatCode* FindFormatCode(std::uint32_t code) noexcept {
  const auto found = std::find_if(kCodes.begin(), kCodes.end(),
                                  [code](const FormatCode& entry) { return entry.code == code; });
  return found != kCodes.end() ? &*found : nullptr;
}

const FormatCode* FindFormatCode(std::string_view name) noexcept {
  const auto found = std::find_if(kCodes.begin(), kCodes.end(),
                                  [name](const FormatCode& entry) { return entry.name == name; });
  return found != kCodes.end() ? &*found : nullptr;
}

const FormatCode* FormatCodeOf(long id, unsigned flags) noexcept {
  const FormatRow* row = FindFormat(id);
  if (row == nullptr) return nullptr;
  const unsigned settled = SettledFlags(*row, flags);
  const auto found = std::find_if(kCodes.begin(), kCodes.end(), [&](const FormatCode& entry) {
    return entry.id == id && entry.flags == settled && entry.matrixKnown;
  });
  return found != kCodes.end() ? &*found : nullptr;
}

ZrUtilsLib::Result ReadFormat(std::string_view text, FormatChoice& choice) {
  std::uint32_t number = 0;
  const FormatCode* entry = ReadNumber(text, number) ? FindFormatCode(number) : FindFormatCode(text);
  if (const FormatRow* row = FindRow(text)) {
    const bool alike = entry != nullptr && entry->id == row->id;
    choice = {row->id, alike ? entry->flags & PackingFlagOf(*row) : 0, false};
    return {};
  }
  if (entry == nullptr) return ReadV4l2Format(text, number, choice);
  if (!entry->matrixKnown) return FrameError::MatrixUnknown;
  choice = {entry->id, entry->flags, CodeSettlesFlags(entry->id)};
  return {};
}

}  // namespace ZrConvertersLib
