#pragma once

#include <ZrConvertersLib/Export.h>
#include <ZrConvertersLib/PixelType.h>

/// @file
/// The catalogue: a constant and a class for every pixel type.
///
/// A `p` after the bit depth means samples packed without gaps from the least significant bit up; `Packed`
/// means the older layout of two pixels in three bytes; without either each sample has a byte or a
/// little-endian 16-bit word of its own, in the low bits.

namespace ZrConvertersLib {

/// Type IDs. The high byte names the family, the low byte the member.
namespace PixelTypeIds {

/// @name RGB and BGR: interleaved, with alpha, packed and planar
/// @{
inline constexpr long RGB565p = 0x100;
inline constexpr long BGR565p = 0x101;
inline constexpr long RGB8 = 0x102;
inline constexpr long BGR8 = 0x103;
inline constexpr long RGBa8 = 0x104;
inline constexpr long BGRa8 = 0x105;
inline constexpr long RGB10 = 0x106;
inline constexpr long RGB10p = 0x108;
inline constexpr long RGBa10 = 0x10A;
inline constexpr long RGBa10p = 0x10C;
inline constexpr long RGB12 = 0x10E;
inline constexpr long RGB12p = 0x110;
inline constexpr long RGBa12 = 0x112;
inline constexpr long RGBa12p = 0x114;
inline constexpr long RGB14 = 0x116;
inline constexpr long BGR14 = 0x117;
inline constexpr long RGBa14 = 0x118;
inline constexpr long BGRa14 = 0x119;
inline constexpr long RGB16 = 0x11A;
inline constexpr long BGR16 = 0x11B;
inline constexpr long RGBa16 = 0x11C;
inline constexpr long BGRa16 = 0x11D;
inline constexpr long RGB10V1Packed = 0x11E;
inline constexpr long RGB10p32 = 0x11F;
inline constexpr long RGB12V1Packed = 0x120;
inline constexpr long RGB8_Planar = 0x121;
inline constexpr long RGB10_Planar = 0x122;
inline constexpr long RGB12_Planar = 0x123;
inline constexpr long RGB16_Planar = 0x124;
/// @}

/// @name Sources without a pixel type
/// Converters read these layouts, but no pixel type is registered for them.
/// @{
inline constexpr long BGR10 = 0x107;
inline constexpr long BGR10p = 0x109;
inline constexpr long BGRa10 = 0x10B;
inline constexpr long BGRa10p = 0x10D;
inline constexpr long BGR12 = 0x10F;
inline constexpr long BGR12p = 0x111;
inline constexpr long BGRa12 = 0x113;
inline constexpr long BGRa12p = 0x115;
/// @}

/// @name Monochrome
/// @{
inline constexpr long Mono8 = 0x200;
inline constexpr long Mono8s = 0x201;
inline constexpr long Mono10 = 0x202;
inline constexpr long Mono12 = 0x203;
inline constexpr long Mono10Packed = 0x204;
inline constexpr long Mono12Packed = 0x205;
inline constexpr long Mono14 = 0x206;
inline constexpr long Mono16 = 0x207;
inline constexpr long Mono1p = 0x208;
inline constexpr long Mono2p = 0x209;
inline constexpr long Mono4p = 0x20A;
inline constexpr long Mono10p = 0x20B;
inline constexpr long Mono12p = 0x20C;
inline constexpr long Mono14p = 0x20D;
inline constexpr long Mono32 = 0x20E;
/// @}

/// @name YCbCr: 4:4:4, 4:2:2 and 4:1:1, each in two component orders
/// @{
inline constexpr long YCbCr422_8 = 0x300;
inline constexpr long YCbCr422_10 = 0x301;
inline constexpr long YCbCr422_10p = 0x302;
inline constexpr long YCbCr422_12 = 0x303;
inline constexpr long YCbCr422_12p = 0x304;
inline constexpr long YCbCr422_8_CbYCrY = 0x305;
inline constexpr long YCbCr422_10_CbYCrY = 0x306;
inline constexpr long YCbCr422_10p_CbYCrY = 0x307;
inline constexpr long YCbCr422_12_CbYCrY = 0x308;
inline constexpr long YCbCr422_12p_CbYCrY = 0x309;
inline constexpr long YCbCr8 = 0x30A;
inline constexpr long YCbCr8_CbYCr = 0x30B;
inline constexpr long YCbCr10_CbYCr = 0x30C;
inline constexpr long YCbCr10p_CbYCr = 0x30D;
inline constexpr long YCbCr12_CbYCr = 0x30E;
inline constexpr long YCbCr12p_CbYCr = 0x30F;
inline constexpr long YCbCr411_8 = 0x310;
inline constexpr long YCbCr411_8_CbYYCrYY = 0x311;
/// @}

/// @name Bayer mosaics: one colour per site, 2x2 tiles of one red, two greens and one blue
/// @{
inline constexpr long Bayer8 = 0x400;
inline constexpr long Bayer10 = 0x401;
inline constexpr long Bayer10Packed = 0x402;
inline constexpr long Bayer12 = 0x403;
inline constexpr long Bayer12Packed = 0x404;
inline constexpr long Bayer16 = 0x405;
inline constexpr long Bayer10p = 0x406;
inline constexpr long Bayer12p = 0x407;
inline constexpr long Bayer14 = 0x408;
inline constexpr long Bayer14p = 0x409;
/// @}

/// @name Sparse colour filter mosaics: mostly white (panchromatic) sites
/// @{
inline constexpr long SCF18 = 0x500;
inline constexpr long SCF110 = 0x501;
inline constexpr long SCF110p = 0x502;
inline constexpr long SCF112 = 0x503;
inline constexpr long SCF112p = 0x504;
inline constexpr long SCF114 = 0x505;
inline constexpr long SCF116 = 0x506;
/// @}

/// @name BiColor mosaics: a pair of colours per pixel
/// @{
inline constexpr long BiColor8 = 0x600;
inline constexpr long BiColor10 = 0x601;
inline constexpr long BiColor12 = 0x602;
inline constexpr long BiColor10p = 0x603;
inline constexpr long BiColor12p = 0x604;
/// @}

}  // namespace PixelTypeIds

/// Declares the class of one pixel type. The classes add nothing to PixelType but their identity.
#define ZR_PIXEL_TYPE(name)                 \
  class ZR_EXPORT name : public PixelType { \
   public:                                  \
    using PixelType::PixelType;             \
    ~name() override;                       \
  }

ZR_PIXEL_TYPE(RGB565p);
ZR_PIXEL_TYPE(BGR565p);
ZR_PIXEL_TYPE(RGB8);
ZR_PIXEL_TYPE(BGR8);
ZR_PIXEL_TYPE(RGBa8);
ZR_PIXEL_TYPE(BGRa8);
ZR_PIXEL_TYPE(RGB10);
ZR_PIXEL_TYPE(RGB10p);
ZR_PIXEL_TYPE(RGBa10);
ZR_PIXEL_TYPE(RGBa10p);
ZR_PIXEL_TYPE(RGB12);
ZR_PIXEL_TYPE(RGB12p);
ZR_PIXEL_TYPE(RGBa12);
ZR_PIXEL_TYPE(RGBa12p);
ZR_PIXEL_TYPE(RGB14);
ZR_PIXEL_TYPE(BGR14);
ZR_PIXEL_TYPE(RGBa14);
ZR_PIXEL_TYPE(BGRa14);
ZR_PIXEL_TYPE(RGB16);
ZR_PIXEL_TYPE(BGR16);
ZR_PIXEL_TYPE(RGBa16);
ZR_PIXEL_TYPE(BGRa16);
ZR_PIXEL_TYPE(RGB10V1Packed);
ZR_PIXEL_TYPE(RGB10p32);
ZR_PIXEL_TYPE(RGB12V1Packed);
ZR_PIXEL_TYPE(RGB8_Planar);
ZR_PIXEL_TYPE(RGB10_Planar);
ZR_PIXEL_TYPE(RGB12_Planar);
ZR_PIXEL_TYPE(RGB16_Planar);

ZR_PIXEL_TYPE(Mono8);
ZR_PIXEL_TYPE(Mono8s);
ZR_PIXEL_TYPE(Mono10);
ZR_PIXEL_TYPE(Mono12);
ZR_PIXEL_TYPE(Mono10Packed);
ZR_PIXEL_TYPE(Mono12Packed);
ZR_PIXEL_TYPE(Mono14);
ZR_PIXEL_TYPE(Mono16);
ZR_PIXEL_TYPE(Mono1p);
ZR_PIXEL_TYPE(Mono2p);
ZR_PIXEL_TYPE(Mono4p);
ZR_PIXEL_TYPE(Mono10p);
ZR_PIXEL_TYPE(Mono12p);
ZR_PIXEL_TYPE(Mono14p);
ZR_PIXEL_TYPE(Mono32);

ZR_PIXEL_TYPE(YCbCr422_8);
ZR_PIXEL_TYPE(YCbCr422_10);
ZR_PIXEL_TYPE(YCbCr422_10p);
ZR_PIXEL_TYPE(YCbCr422_12);
ZR_PIXEL_TYPE(YCbCr422_12p);
ZR_PIXEL_TYPE(YCbCr422_8_CbYCrY);
ZR_PIXEL_TYPE(YCbCr422_10_CbYCrY);
ZR_PIXEL_TYPE(YCbCr422_10p_CbYCrY);
ZR_PIXEL_TYPE(YCbCr422_12_CbYCrY);
ZR_PIXEL_TYPE(YCbCr422_12p_CbYCrY);
ZR_PIXEL_TYPE(YCbCr8);
ZR_PIXEL_TYPE(YCbCr8_CbYCr);
ZR_PIXEL_TYPE(YCbCr10_CbYCr);
ZR_PIXEL_TYPE(YCbCr10p_CbYCr);
ZR_PIXEL_TYPE(YCbCr12_CbYCr);
ZR_PIXEL_TYPE(YCbCr12p_CbYCr);
ZR_PIXEL_TYPE(YCbCr411_8);
ZR_PIXEL_TYPE(YCbCr411_8_CbYYCrYY);

ZR_PIXEL_TYPE(Bayer8);
ZR_PIXEL_TYPE(Bayer10);
ZR_PIXEL_TYPE(Bayer10Packed);
ZR_PIXEL_TYPE(Bayer12);
ZR_PIXEL_TYPE(Bayer12Packed);
ZR_PIXEL_TYPE(Bayer16);
ZR_PIXEL_TYPE(Bayer10p);
ZR_PIXEL_TYPE(Bayer12p);
ZR_PIXEL_TYPE(Bayer14);
ZR_PIXEL_TYPE(Bayer14p);

ZR_PIXEL_TYPE(SCF18);
ZR_PIXEL_TYPE(SCF110);
ZR_PIXEL_TYPE(SCF110p);
ZR_PIXEL_TYPE(SCF112);
ZR_PIXEL_TYPE(SCF112p);
ZR_PIXEL_TYPE(SCF114);
ZR_PIXEL_TYPE(SCF116);

ZR_PIXEL_TYPE(BiColor8);
ZR_PIXEL_TYPE(BiColor10);
ZR_PIXEL_TYPE(BiColor12);
ZR_PIXEL_TYPE(BiColor10p);
ZR_PIXEL_TYPE(BiColor12p);

#undef ZR_PIXEL_TYPE

}  // namespace ZrConvertersLib
