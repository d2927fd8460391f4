#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/PixelTypes.h>

#include <array>
#include <cstddef>
#include <string_view>

#include "core/FormatTable.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {

RGB565p::~RGB565p() = default;
BGR565p::~BGR565p() = default;
RGB8::~RGB8() = default;
BGR8::~BGR8() = default;
RGBa8::~RGBa8() = default;
BGRa8::~BGRa8() = default;
RGB10::~RGB10() = default;
RGB10p::~RGB10p() = default;
RGBa10::~RGBa10() = default;
RGBa10p::~RGBa10p() = default;
RGB12::~RGB12() = default;
RGB12p::~RGB12p() = default;
RGBa12::~RGBa12() = default;
RGBa12p::~RGBa12p() = default;
RGBa14::~RGBa14() = default;
BGRa14::~BGRa14() = default;
RGB14::~RGB14() = default;
BGR14::~BGR14() = default;
RGB16::~RGB16() = default;
BGR16::~BGR16() = default;
RGBa16::~RGBa16() = default;
BGRa16::~BGRa16() = default;
RGB10V1Packed::~RGB10V1Packed() = default;
RGB10p32::~RGB10p32() = default;
RGB12V1Packed::~RGB12V1Packed() = default;
RGB8_Planar::~RGB8_Planar() = default;
RGB10_Planar::~RGB10_Planar() = default;
RGB12_Planar::~RGB12_Planar() = default;
RGB16_Planar::~RGB16_Planar() = default;
Mono8::~Mono8() = default;
Mono8s::~Mono8s() = default;
Mono10::~Mono10() = default;
Mono10Packed::~Mono10Packed() = default;
Mono12::~Mono12() = default;
Mono12Packed::~Mono12Packed() = default;
Mono14::~Mono14() = default;
Mono16::~Mono16() = default;
Mono1p::~Mono1p() = default;
Mono2p::~Mono2p() = default;
Mono4p::~Mono4p() = default;
Mono10p::~Mono10p() = default;
Mono12p::~Mono12p() = default;
Mono14p::~Mono14p() = default;
Mono32::~Mono32() = default;
YCbCr422_8::~YCbCr422_8() = default;
YCbCr422_10::~YCbCr422_10() = default;
YCbCr422_10p::~YCbCr422_10p() = default;
YCbCr422_12::~YCbCr422_12() = default;
YCbCr422_12p::~YCbCr422_12p() = default;
YCbCr422_8_CbYCrY::~YCbCr422_8_CbYCrY() = default;
YCbCr422_10_CbYCrY::~YCbCr422_10_CbYCrY() = default;
YCbCr422_10p_CbYCrY::~YCbCr422_10p_CbYCrY() = default;
YCbCr422_12_CbYCrY::~YCbCr422_12_CbYCrY() = default;
YCbCr422_12p_CbYCrY::~YCbCr422_12p_CbYCrY() = default;
YCbCr8::~YCbCr8() = default;
YCbCr8_CbYCr::~YCbCr8_CbYCr() = default;
YCbCr10_CbYCr::~YCbCr10_CbYCr() = default;
YCbCr10p_CbYCr::~YCbCr10p_CbYCr() = default;
YCbCr12_CbYCr::~YCbCr12_CbYCr() = default;
YCbCr12p_CbYCr::~YCbCr12p_CbYCr() = default;
YCbCr411_8::~YCbCr411_8() = default;
YCbCr411_8_CbYYCrYY::~YCbCr411_8_CbYYCrYY() = default;
Bayer8::~Bayer8() = default;
Bayer10::~Bayer10() = default;
Bayer10Packed::~Bayer10Packed() = default;
Bayer12::~Bayer12() = default;
Bayer12Packed::~Bayer12Packed() = default;
Bayer16::~Bayer16() = default;
Bayer10p::~Bayer10p() = default;
Bayer12p::~Bayer12p() = default;
Bayer14::~Bayer14() = default;
Bayer14p::~Bayer14p() = default;
SCF18::~SCF18() = default;
SCF110::~SCF110() = default;
SCF110p::~SCF110p() = default;
SCF112::~SCF112() = default;
SCF112p::~SCF112p() = default;
SCF114::~SCF114() = default;
SCF116::~SCF116() = default;
BiColor8::~BiColor8() = default;
BiColor10::~BiColor10() = default;
BiColor12::~BiColor12() = default;
BiColor10p::~BiColor10p() = default;
BiColor12p::~BiColor12p() = default;

namespace {

/// Registers one row of the format table under the identity of its class.
using RegisterRow = void (*)(const FormatRow&);

template <class Type>
void RegisterAs(const FormatRow& row) {
  const Type type(row.id, row.bits, row.bytes, false);
  PixelTypeFactory::RegisterPixelType(row.id, &type, nullptr);
}

struct TypeClass {
  std::string_view name;
  long id;
  RegisterRow registerRow;
};

template <class Type>
constexpr TypeClass ClassOf(std::string_view name, long id) {
  return {name, id, &RegisterAs<Type>};
}

#define ZR_TYPE_CLASS(name) ClassOf<name>(#name, PixelTypeIds::name)
/// The classes in the order of the format table.
constexpr std::array kClasses = {
    ZR_TYPE_CLASS(RGB565p),
    ZR_TYPE_CLASS(BGR565p),
    ZR_TYPE_CLASS(RGB8),
    ZR_TYPE_CLASS(BGR8),
    ZR_TYPE_CLASS(RGBa8),
    ZR_TYPE_CLASS(BGRa8),
    ZR_TYPE_CLASS(RGB10),
    ZR_TYPE_CLASS(RGB10p),
    ZR_TYPE_CLASS(RGBa10),
    ZR_TYPE_CLASS(RGBa10p),
    ZR_TYPE_CLASS(RGB12),
    ZR_TYPE_CLASS(RGB12p),
    ZR_TYPE_CLASS(RGBa12),
    ZR_TYPE_CLASS(RGBa12p),
    ZR_TYPE_CLASS(RGBa14),
    ZR_TYPE_CLASS(BGRa14),
    ZR_TYPE_CLASS(RGB14),
    ZR_TYPE_CLASS(BGR14),
    ZR_TYPE_CLASS(RGB16),
    ZR_TYPE_CLASS(BGR16),
    ZR_TYPE_CLASS(RGBa16),
    ZR_TYPE_CLASS(BGRa16),
    ZR_TYPE_CLASS(RGB10V1Packed),
    ZR_TYPE_CLASS(RGB10p32),
    ZR_TYPE_CLASS(RGB12V1Packed),
    ZR_TYPE_CLASS(RGB8_Planar),
    ZR_TYPE_CLASS(RGB10_Planar),
    ZR_TYPE_CLASS(RGB12_Planar),
    ZR_TYPE_CLASS(RGB16_Planar),
    ZR_TYPE_CLASS(Mono8),
    ZR_TYPE_CLASS(Mono8s),
    ZR_TYPE_CLASS(Mono10),
    ZR_TYPE_CLASS(Mono10Packed),
    ZR_TYPE_CLASS(Mono12),
    ZR_TYPE_CLASS(Mono12Packed),
    ZR_TYPE_CLASS(Mono14),
    ZR_TYPE_CLASS(Mono16),
    ZR_TYPE_CLASS(Mono1p),
    ZR_TYPE_CLASS(Mono2p),
    ZR_TYPE_CLASS(Mono4p),
    ZR_TYPE_CLASS(Mono10p),
    ZR_TYPE_CLASS(Mono12p),
    ZR_TYPE_CLASS(Mono14p),
    ZR_TYPE_CLASS(Mono32),
    ZR_TYPE_CLASS(YCbCr422_8),
    ZR_TYPE_CLASS(YCbCr422_10),
    ZR_TYPE_CLASS(YCbCr422_10p),
    ZR_TYPE_CLASS(YCbCr422_12),
    ZR_TYPE_CLASS(YCbCr422_12p),
    ZR_TYPE_CLASS(YCbCr422_8_CbYCrY),
    ZR_TYPE_CLASS(YCbCr422_10_CbYCrY),
    ZR_TYPE_CLASS(YCbCr422_10p_CbYCrY),
    ZR_TYPE_CLASS(YCbCr422_12_CbYCrY),
    ZR_TYPE_CLASS(YCbCr422_12p_CbYCrY),
    ZR_TYPE_CLASS(YCbCr8),
    ZR_TYPE_CLASS(YCbCr8_CbYCr),
    ZR_TYPE_CLASS(YCbCr10_CbYCr),
    ZR_TYPE_CLASS(YCbCr10p_CbYCr),
    ZR_TYPE_CLASS(YCbCr12_CbYCr),
    ZR_TYPE_CLASS(YCbCr12p_CbYCr),
    ZR_TYPE_CLASS(YCbCr411_8),
    ZR_TYPE_CLASS(YCbCr411_8_CbYYCrYY),
    ZR_TYPE_CLASS(Bayer8),
    ZR_TYPE_CLASS(Bayer10),
    ZR_TYPE_CLASS(Bayer10Packed),
    ZR_TYPE_CLASS(Bayer12),
    ZR_TYPE_CLASS(Bayer12Packed),
    ZR_TYPE_CLASS(Bayer16),
    ZR_TYPE_CLASS(Bayer10p),
    ZR_TYPE_CLASS(Bayer12p),
    ZR_TYPE_CLASS(Bayer14),
    ZR_TYPE_CLASS(Bayer14p),
    ZR_TYPE_CLASS(SCF18),
    ZR_TYPE_CLASS(SCF110),
    ZR_TYPE_CLASS(SCF110p),
    ZR_TYPE_CLASS(SCF112),
    ZR_TYPE_CLASS(SCF112p),
    ZR_TYPE_CLASS(SCF114),
    ZR_TYPE_CLASS(SCF116),
    ZR_TYPE_CLASS(BiColor8),
    ZR_TYPE_CLASS(BiColor10),
    ZR_TYPE_CLASS(BiColor12),
    ZR_TYPE_CLASS(BiColor10p),
    ZR_TYPE_CLASS(BiColor12p),
};
#undef ZR_TYPE_CLASS

constexpr bool ClassesMatchFormats() {
  if (kClasses.size() != kFormats.size()) return false;
  for (std::size_t i = 0; i < kFormats.size(); ++i) {
    if (kClasses[i].name != kFormats[i].name || kClasses[i].id != kFormats[i].id) return false;
  }
  return true;
}
static_assert(ClassesMatchFormats(), "every row of the format table has the class of its name");

}  // namespace

void RegisterFamily(Family family) {
  for (std::size_t i = 0; i < kFormats.size(); ++i) {
    if (kFormats[i].family == family) kClasses[i].registerRow(kFormats[i]);
  }
}

}  // namespace ZrConvertersLib
