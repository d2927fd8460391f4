#pragma once

#include <ZrConvertersLib/PixelTypes.h>

#include <memory>
#include <string_view>

namespace ZrTest {

/// What is expected of a pixel type, typed here by hand from the documents and not from the library's table.
/// The bits in memory are the size fields of the format's public code (GenICam PFNC, bits 23..16).
struct CatalogueEntry {
  std::string_view name;
  long constant;  ///< what PixelTypes.h calls it
  long id;
  unsigned bits;
  unsigned bytes;
  unsigned bitsInMemory;
  std::unique_ptr<ZrConvertersLib::PixelType> (*make)();  ///< an object of its class
};

template <class Type>
std::unique_ptr<ZrConvertersLib::PixelType> Make() {
  return std::make_unique<Type>(7, static_cast<unsigned short>(8), static_cast<unsigned short>(9), true);
}

// clang-format off
#define ZR_ENTRY(name, id, bits, bytes, memory) \
  {#name, ZrConvertersLib::PixelTypeIds::name, id, bits, bytes, memory, &Make<ZrConvertersLib::name>}
inline const CatalogueEntry kCatalogue[] = {
    ZR_ENTRY(RGB565p, 256, 16, 2, 16),
    ZR_ENTRY(BGR565p, 257, 16, 2, 16),
    ZR_ENTRY(RGB8, 258, 24, 3, 24),
    ZR_ENTRY(BGR8, 259, 24, 3, 24),
    ZR_ENTRY(RGBa8, 260, 32, 4, 32),
    ZR_ENTRY(BGRa8, 261, 32, 4, 32),
    ZR_ENTRY(RGB10, 262, 10, 6, 48),
    ZR_ENTRY(RGB10p, 264, 30, 4, 30),
    ZR_ENTRY(RGBa10, 266, 64, 8, 64),
    ZR_ENTRY(RGBa10p, 268, 40, 5, 40),
    ZR_ENTRY(RGB12, 270, 12, 6, 48),
    ZR_ENTRY(RGB12p, 272, 36, 5, 36),
    ZR_ENTRY(RGBa12, 274, 64, 8, 64),
    ZR_ENTRY(RGBa12p, 276, 48, 6, 48),
    ZR_ENTRY(RGB14, 278, 48, 6, 48),
    ZR_ENTRY(BGR14, 279, 48, 6, 48),
    ZR_ENTRY(RGBa14, 280, 64, 8, 64),
    ZR_ENTRY(BGRa14, 281, 8, 8, 64),
    ZR_ENTRY(RGB16, 282, 48, 6, 48),
    ZR_ENTRY(BGR16, 283, 48, 6, 48),
    ZR_ENTRY(RGBa16, 284, 64, 8, 64),
    ZR_ENTRY(BGRa16, 285, 64, 8, 64),
    ZR_ENTRY(RGB10V1Packed, 286, 32, 4, 32),
    ZR_ENTRY(RGB10p32, 287, 32, 4, 32),
    ZR_ENTRY(RGB12V1Packed, 288, 36, 5, 36),
    ZR_ENTRY(RGB8_Planar, 289, 24, 3, 24),
    ZR_ENTRY(RGB10_Planar, 290, 30, 6, 48),
    ZR_ENTRY(RGB12_Planar, 291, 36, 6, 48),
    ZR_ENTRY(RGB16_Planar, 292, 48, 6, 48),
    ZR_ENTRY(Mono8, 512, 8, 1, 8),
    ZR_ENTRY(Mono8s, 513, 8, 1, 8),
    ZR_ENTRY(Mono10, 514, 10, 2, 16),
    ZR_ENTRY(Mono12, 515, 12, 2, 16),
    ZR_ENTRY(Mono10Packed, 516, 10, 2, 12),
    ZR_ENTRY(Mono12Packed, 517, 12, 2, 12),
    ZR_ENTRY(Mono14, 518, 14, 2, 16),
    ZR_ENTRY(Mono16, 519, 16, 2, 16),
    ZR_ENTRY(Mono1p, 520, 1, 1, 1),
    ZR_ENTRY(Mono2p, 521, 2, 1, 2),
    ZR_ENTRY(Mono4p, 522, 4, 1, 4),
    ZR_ENTRY(Mono10p, 523, 10, 2, 10),
    ZR_ENTRY(Mono12p, 524, 12, 2, 12),
    ZR_ENTRY(Mono14p, 525, 14, 2, 14),
    ZR_ENTRY(Mono32, 526, 32, 4, 32),
    ZR_ENTRY(YCbCr422_8, 768, 16, 2, 16),
    ZR_ENTRY(YCbCr422_10, 769, 32, 4, 32),
    ZR_ENTRY(YCbCr422_10p, 770, 20, 3, 20),
    ZR_ENTRY(YCbCr422_12, 771, 32, 4, 32),
    ZR_ENTRY(YCbCr422_12p, 772, 24, 3, 24),
    ZR_ENTRY(YCbCr422_8_CbYCrY, 773, 16, 2, 16),
    ZR_ENTRY(YCbCr422_10_CbYCrY, 774, 32, 4, 32),
    ZR_ENTRY(YCbCr422_10p_CbYCrY, 775, 20, 3, 20),
    ZR_ENTRY(YCbCr422_12_CbYCrY, 776, 32, 4, 32),
    ZR_ENTRY(YCbCr422_12p_CbYCrY, 777, 24, 3, 24),
    ZR_ENTRY(YCbCr8, 778, 24, 3, 24),
    ZR_ENTRY(YCbCr8_CbYCr, 779, 24, 3, 24),
    ZR_ENTRY(YCbCr10_CbYCr, 780, 48, 6, 48),
    ZR_ENTRY(YCbCr10p_CbYCr, 781, 30, 4, 30),
    ZR_ENTRY(YCbCr12_CbYCr, 782, 48, 6, 48),
    ZR_ENTRY(YCbCr12p_CbYCr, 783, 36, 40, 36),
    ZR_ENTRY(YCbCr411_8, 784, 12, 2, 12),
    ZR_ENTRY(YCbCr411_8_CbYYCrYY, 785, 12, 2, 12),
    ZR_ENTRY(Bayer8, 1024, 8, 1, 8),
    ZR_ENTRY(Bayer10, 1025, 10, 2, 16),
    ZR_ENTRY(Bayer10Packed, 1026, 10, 2, 12),
    ZR_ENTRY(Bayer12, 1027, 12, 2, 16),
    ZR_ENTRY(Bayer12Packed, 1028, 12, 2, 12),
    ZR_ENTRY(Bayer16, 1029, 16, 2, 16),
    ZR_ENTRY(Bayer10p, 1030, 10, 2, 10),
    ZR_ENTRY(Bayer12p, 1031, 12, 2, 12),
    ZR_ENTRY(Bayer14, 1032, 14, 2, 16),
    ZR_ENTRY(Bayer14p, 1033, 14, 2, 14),
    ZR_ENTRY(SCF18, 1280, 8, 1, 8),
    ZR_ENTRY(SCF110, 1281, 10, 2, 16),
    ZR_ENTRY(SCF110p, 1282, 10, 2, 10),
    ZR_ENTRY(SCF112, 1283, 12, 2, 16),
    ZR_ENTRY(SCF112p, 1284, 12, 2, 12),
    ZR_ENTRY(SCF114, 1285, 14, 2, 16),
    ZR_ENTRY(SCF116, 1286, 16, 2, 16),
    ZR_ENTRY(BiColor8, 1536, 16, 2, 16),
    ZR_ENTRY(BiColor10, 1537, 32, 4, 32),
    ZR_ENTRY(BiColor12, 1538, 32, 4, 32),
    ZR_ENTRY(BiColor10p, 1539, 20, 3, 20),
    ZR_ENTRY(BiColor12p, 1540, 24, 3, 24),
};
#undef ZR_ENTRY
// clang-format on

}  // namespace ZrTest
