#include <ZrConvertersLib/V4l2Formats.h>

#include <algorithm>
#include <array>

#include "core/SettledFlags.h"

namespace ZrConvertersLib {

namespace {

constexpr std::uint32_t Fourcc(std::string_view letters) {
  std::uint32_t code = 0;
  for (std::size_t i = 0; i < 4; ++i)
    code |= std::uint32_t{static_cast<unsigned char>(letters[i])} << (8 * i);
  return code;
}

// clang-format off
constexpr auto kV4l2Formats = [] {
  namespace Ids = PixelTypeIds;
  using C = PixelConverter;
  constexpr unsigned kCsi2 = C::FLAG_PACKED_CSI2;
  return std::array{
      V4l2Format{Fourcc("RGBP"), "RGB565",   Ids::RGB565p,           0},
      V4l2Format{Fourcc("RGB3"), "RGB24",    Ids::RGB8,              0},
      V4l2Format{Fourcc("BGR3"), "BGR24",    Ids::BGR8,              0},
      V4l2Format{Fourcc("AB24"), "RGBA32",   Ids::RGBa8,             0},
      V4l2Format{Fourcc("XB24"), "RGBX32",   Ids::RGBa8,             0},
      V4l2Format{Fourcc("AR24"), "ABGR32",   Ids::BGRa8,             0},
      V4l2Format{Fourcc("XR24"), "XBGR32",   Ids::BGRa8,             0},
      V4l2Format{Fourcc("GREY"), "GREY",     Ids::Mono8,             0},
      V4l2Format{Fourcc("Y10 "), "Y10",      Ids::Mono10,            0},
      V4l2Format{Fourcc("Y12 "), "Y12",      Ids::Mono12,            0},
      V4l2Format{Fourcc("Y14 "), "Y14",      Ids::Mono14,            0},
      V4l2Format{Fourcc("Y16 "), "Y16",      Ids::Mono16,            0},
      V4l2Format{Fourcc("Y10P"), "Y10P",     Ids::Mono10p,           kCsi2},
      V4l2Format{Fourcc("Y12P"), "Y12P",     Ids::Mono12p,           kCsi2},
      V4l2Format{Fourcc("Y14P"), "Y14P",     Ids::Mono14p,           kCsi2},
      V4l2Format{Fourcc("YUYV"), "YUYV",     Ids::YCbCr422_8,        0},
      V4l2Format{Fourcc("UYVY"), "UYVY",     Ids::YCbCr422_8_CbYCrY, 0},
      V4l2Format{Fourcc("BA81"), "SBGGR8",   Ids::Bayer8,            C::FLAG_BAYER_BGGR},
      V4l2Format{Fourcc("GBRG"), "SGBRG8",   Ids::Bayer8,            C::FLAG_BAYER_GBRG},
      V4l2Format{Fourcc("GRBG"), "SGRBG8",   Ids::Bayer8,            C::FLAG_BAYER_GRBG},
      V4l2Format{Fourcc("RGGB"), "SRGGB8",   Ids::Bayer8,            C::FLAG_BAYER_RGGB},
      V4l2Format{Fourcc("BG10"), "SBGGR10",  Ids::Bayer10,           C::FLAG_BAYER_BGGR},
      V4l2Format{Fourcc("GB10"), "SGBRG10",  Ids::Bayer10,           C::FLAG_BAYER_GBRG},
      V4l2Format{Fourcc("BA10"), "SGRBG10",  Ids::Bayer10,           C::FLAG_BAYER_GRBG},
      V4l2Format{Fourcc("RG10"), "SRGGB10",  Ids::Bayer10,           C::FLAG_BAYER_RGGB},
      V4l2Format{Fourcc("BG12"), "SBGGR12",  Ids::Bayer12,           C::FLAG_BAYER_BGGR},
      V4l2Format{Fourcc("GB12"), "SGBRG12",  Ids::Bayer12,           C::FLAG_BAYER_GBRG},
      V4l2Format{Fourcc("BA12"), "SGRBG12",  Ids::Bayer12,           C::FLAG_BAYER_GRBG},
      V4l2Format{Fourcc("RG12"), "SRGGB12",  Ids::Bayer12,           C::FLAG_BAYER_RGGB},
      V4l2Format{Fourcc("BYR2"), "SBGGR16",  Ids::Bayer16,           C::FLAG_BAYER_BGGR},
      V4l2Format{Fourcc("GB16"), "SGBRG16",  Ids::Bayer16,           C::FLAG_BAYER_GBRG},
      V4l2Format{Fourcc("GR16"), "SGRBG16",  Ids::Bayer16,           C::FLAG_BAYER_GRBG},
      V4l2Format{Fourcc("RG16"), "SRGGB16",  Ids::Bayer16,           C::FLAG_BAYER_RGGB},
      V4l2Format{Fourcc("pBAA"), "SBGGR10P", Ids::Bayer10p,          C::FLAG_BAYER_BGGR | kCsi2},
      V4l2Format{Fourcc("pGAA"), "SGBRG10P", Ids::Bayer10p,          C::FLAG_BAYER_GBRG | kCsi2},
      V4l2Format{Fourcc("pgAA"), "SGRBG10P", Ids::Bayer10p,          C::FLAG_BAYER_GRBG | kCsi2},
      V4l2Format{Fourcc("pRAA"), "SRGGB10P", Ids::Bayer10p,          C::FLAG_BAYER_RGGB | kCsi2},
      V4l2Format{Fourcc("pBCC"), "SBGGR12P", Ids::Bayer12p,          C::FLAG_BAYER_BGGR | kCsi2},
      V4l2Format{Fourcc("pGCC"), "SGBRG12P", Ids::Bayer12p,          C::FLAG_BAYER_GBRG | kCsi2},
      V4l2Format{Fourcc("pgCC"), "SGRBG12P", Ids::Bayer12p,          C::FLAG_BAYER_GRBG | kCsi2},
      V4l2Format{Fourcc("pRCC"), "SRGGB12P", Ids::Bayer12p,          C::FLAG_BAYER_RGGB | kCsi2},
      V4l2Format{Fourcc("BG14"), "SBGGR14",  Ids::Bayer14,           C::FLAG_BAYER_BGGR},
      V4l2Format{Fourcc("GB14"), "SGBRG14",  Ids::Bayer14,           C::FLAG_BAYER_GBRG},
      V4l2Format{Fourcc("GR14"), "SGRBG14",  Ids::Bayer14,           C::FLAG_BAYER_GRBG},
      V4l2Format{Fourcc("RG14"), "SRGGB14",  Ids::Bayer14,           C::FLAG_BAYER_RGGB},
      V4l2Format{Fourcc("pBEE"), "SBGGR14P", Ids::Bayer14p,          C::FLAG_BAYER_BGGR | kCsi2},
      V4l2Format{Fourcc("pGEE"), "SGBRG14P", Ids::Bayer14p,          C::FLAG_BAYER_GBRG | kCsi2},
      V4l2Format{Fourcc("pgEE"), "SGRBG14P", Ids::Bayer14p,          C::FLAG_BAYER_GRBG | kCsi2},
      V4l2Format{Fourcc("pREE"), "SRGGB14P", Ids::Bayer14p,          C::FLAG_BAYER_RGGB | kCsi2},
  };
}();
// clang-format on

consteval bool CodesAndNamesAreDistinct() {
  for (std::size_t i = 0; i < kV4l2Formats.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (kV4l2Formats[i].fourcc == kV4l2Formats[j].fourcc || kV4l2Formats[i].name == kV4l2Formats[j].name)
        return false;
    }
  }
  return true;
}
static_assert(CodesAndNamesAreDistinct());
static_assert(std::is_sorted(kV4l2Formats.begin(), kV4l2Formats.end(),
                             [](const V4l2Format& a, const V4l2Format& b) { return a.id < b.id; }));
static_assert(std::all_of(kV4l2Formats.begin(), kV4l2Formats.end(), [](const V4l2Format& entry) {
  return FormatSatisfies(
      entry.id, [&entry](const FormatRow& row) { return SettledFlags(row, entry.flags) == entry.flags; });
}));

template <typename Wanted>
const V4l2Format* Find(Wanted wanted) noexcept {
  const auto found = std::find_if(kV4l2Formats.begin(), kV4l2Formats.end(), wanted);
  return found != kV4l2Formats.end() ? &*found : nullptr;
}

}  // namespace

std::span<const V4l2Format> V4l2Formats() noexcept {
  return kV4l2Formats;
}

const V4l2Format* FindV4l2Format(std::uint32_t fourcc) noexcept {
  return Find([fourcc](const V4l2Format& entry) { return entry.fourcc == fourcc; });
}

const V4l2Format* FindV4l2Format(std::string_view name) noexcept {
  if (const V4l2Format* entry = Find([name](const V4l2Format& one) { return one.name == name; }))
    return entry;
  if (name.empty() || name.size() > 4) return nullptr;
  std::array<char, 4> letters{' ', ' ', ' ', ' '};
  std::copy(name.begin(), name.end(), letters.begin());
  return FindV4l2Format(Fourcc({letters.data(), letters.size()}));
}

const V4l2Format* V4l2FormatOf(long id, unsigned flags) noexcept {
  const FormatRow* row = FindFormat(id);
  if (row == nullptr) return nullptr;
  const unsigned settled = SettledFlags(*row, flags);
  return Find([id, settled](const V4l2Format& one) { return one.id == id && one.flags == settled; });
}

}  // namespace ZrConvertersLib
