#include "SourceLayout.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace zrconvert {
namespace {

using enum Packing;

constexpr std::array cLayouts{
    SourceLayout{"Mono8", Bytes, "L"},
    SourceLayout{"Mono8s", Bytes, "L"},
    SourceLayout{"Mono10", Words, "L"},
    SourceLayout{"Mono10Packed", Pairs, "L"},
    SourceLayout{"Mono12", Words, "L"},
    SourceLayout{"Mono12Packed", Pairs, "L"},
    SourceLayout{"Mono14", Words, "L"},
    SourceLayout{"Mono16", Words, "L"},
    SourceLayout{"Mono1p", Bits, "L"},
    SourceLayout{"Mono2p", Bits, "L"},
    SourceLayout{"Mono4p", Bits, "L"},
    SourceLayout{"Mono10p", Bits, "L"},
    SourceLayout{"Mono12p", Bits, "L"},
    SourceLayout{"Mono14p", Bits, "L"},
    SourceLayout{"Mono32", DoubleWords, "L"},
    SourceLayout{"Bayer8", Bytes, "S"},
    SourceLayout{"Bayer10", Words, "S"},
    SourceLayout{"Bayer10Packed", Pairs, "S"},
    SourceLayout{"Bayer12", Words, "S"},
    SourceLayout{"Bayer12Packed", Pairs, "S"},
    SourceLayout{"Bayer14", Words, "S"},
    SourceLayout{"Bayer16", Words, "S"},
    SourceLayout{"Bayer10p", Bits, "S"},
    SourceLayout{"Bayer12p", Bits, "S"},
    SourceLayout{"Bayer14p", Bits, "S"},
    SourceLayout{"RGB565p", Pixel565, "B G R"},
    SourceLayout{"BGR565p", Pixel565, "R G B"},
    SourceLayout{"RGB8", Bytes, "R G B"},
    SourceLayout{"BGR8", Bytes, "B G R"},
    SourceLayout{"RGBa8", Bytes, "R G B a"},
    SourceLayout{"BGRa8", Bytes, "B G R a"},
    SourceLayout{"RGB10", Words, "R G B"},
    SourceLayout{"BGR10", Words, "B G R"},
    SourceLayout{"RGBa10", Words, "R G B a"},
    SourceLayout{"BGRa10", Words, "B G R a"},
    SourceLayout{"RGB12", Words, "R G B"},
    SourceLayout{"BGR12", Words, "B G R"},
    SourceLayout{"RGBa12", Words, "R G B a"},
    SourceLayout{"BGRa12", Words, "B G R a"},
    SourceLayout{"RGB14", Words, "R G B"},
    SourceLayout{"BGR14", Words, "B G R"},
    SourceLayout{"RGBa14", Words, "R G B a"},
    SourceLayout{"BGRa14", Words, "B G R a"},
    SourceLayout{"RGB16", Words, "R G B"},
    SourceLayout{"BGR16", Words, "B G R"},
    SourceLayout{"RGBa16", Words, "R G B a"},
    SourceLayout{"BGRa16", Words, "B G R a"},
    SourceLayout{"RGB10p", Bits, "R G B"},
    SourceLayout{"RGBa10p", Bits, "R G B a"},
    SourceLayout{"RGB12p", Bits, "R G B"},
    SourceLayout{"RGBa12p", Bits, "R G B a"},
    SourceLayout{"RGB10p32", Pixel32, "R G B"},
    SourceLayout{"RGB8_Planar", Planes, "R G B"},
    SourceLayout{"RGB10_Planar", Planes, "R G B"},
    SourceLayout{"RGB12_Planar", Planes, "R G B"},
    SourceLayout{"RGB16_Planar", Planes, "R G B"},
    SourceLayout{"YCbCr8", Bytes, "Y Cb Cr"},
    SourceLayout{"YCbCr8_CbYCr", Bytes, "Cb Y Cr"},
    SourceLayout{"YCbCr10_CbYCr", Words, "Cb Y Cr"},
    SourceLayout{"YCbCr12_CbYCr", Words, "Cb Y Cr"},
    SourceLayout{"YCbCr10p_CbYCr", Bits, "Cb Y Cr"},
    SourceLayout{"YCbCr12p_CbYCr", Bits, "Cb Y Cr"},
    SourceLayout{"YCbCr422_8", Bytes, "Y0 Cb Y1 Cr"},
    SourceLayout{"YCbCr422_10", Words, "Y0 Cb Y1 Cr"},
    SourceLayout{"YCbCr422_12", Words, "Y0 Cb Y1 Cr"},
    SourceLayout{"YCbCr422_10p", Bits, "Y0 Cb Y1 Cr"},
    SourceLayout{"YCbCr422_12p", Bits, "Y0 Cb Y1 Cr"},
    SourceLayout{"YCbCr422_8_CbYCrY", Bytes, "Cb Y0 Cr Y1"},
    SourceLayout{"YCbCr422_10_CbYCrY", Words, "Cb Y0 Cr Y1"},
    SourceLayout{"YCbCr422_12_CbYCrY", Words, "Cb Y0 Cr Y1"},
    SourceLayout{"YCbCr422_10p_CbYCrY", Bits, "Cb Y0 Cr Y1"},
    SourceLayout{"YCbCr422_12p_CbYCrY", Bits, "Cb Y0 Cr Y1"},
    SourceLayout{"YCbCr411_8", Bytes, "Y0 Y1 Cb Y2 Y3 Cr"},
    SourceLayout{"YCbCr411_8_CbYYCrYY", Bytes, "Cb Y0 Y1 Cr Y2 Y3"},
};

Component ComponentOf(std::string_view word) {
  if (word == "Cb") return Component::BlueDifference;
  if (word == "Cr") return Component::RedDifference;
  switch (word.front()) {
    case 'S':
      return Component::Site;
    case 'R':
      return Component::Red;
    case 'G':
      return Component::Green;
    case 'B':
      return Component::Blue;
    case 'a':
      return Component::Alpha;
    case 'Y':
      return Component::Luma;
    default:
      return Component::Grey;
  }
}

Slot SlotOf(std::string_view word) {
  const Component component = ComponentOf(word);
  const bool chroma = component == Component::BlueDifference || component == Component::RedDifference;
  const bool counted = word.back() >= '0' && word.back() <= '9';
  const unsigned pixel = counted ? static_cast<unsigned>(word.back() - '0') : 0U;
  return {component, chroma ? Slot::cWholeGroup : pixel};
}

}  // namespace

const SourceLayout* FindLayout(std::string_view name) {
  const auto found = std::ranges::find(cLayouts, name, &SourceLayout::name);
  return found == cLayouts.end() ? nullptr : &*found;
}

std::vector<Slot> GroupOf(const SourceLayout& layout) {
  std::istringstream words{std::string(layout.order)};
  std::vector<Slot> slots;
  for (std::string word; words >> word;) slots.push_back(SlotOf(word));
  return slots;
}

unsigned PixelsPerGroup(const SourceLayout& layout) {
  unsigned last = 0;
  for (const Slot& slot : GroupOf(layout)) {
    if (slot.pixel != Slot::cWholeGroup) last = std::max(last, slot.pixel);
  }
  return last + 1;
}

}  // namespace zrconvert
