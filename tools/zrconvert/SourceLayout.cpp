#include "SourceLayout.h"

namespace zrconvert {

std::vector<Slot> SlotsOf(const ZrConvertersLib::FormatInfo& format) {
  using enum Component;
  using ZrConvertersLib::ChannelOrder;
  constexpr Slot cCb{BlueDifference, Slot::cAllPixels};
  constexpr Slot cCr{RedDifference, Slot::cAllPixels};
  switch (format.order) {
    case ChannelOrder::Mono:
      return {{Grey}};
    case ChannelOrder::Bayer:
    case ChannelOrder::Scf1:
      return {{Site}};
    case ChannelOrder::BiColor:
      return {{Site}, {Site}};
    case ChannelOrder::Rgb:
      return {{Red}, {Green}, {Blue}};
    case ChannelOrder::Bgr:
      return {{Blue}, {Green}, {Red}};
    case ChannelOrder::RgbA:
      return {{Red}, {Green}, {Blue}, {Alpha}};
    case ChannelOrder::BgrA:
      return {{Blue}, {Green}, {Red}, {Alpha}};
    case ChannelOrder::YCbCr:
      return {{Luma}, cCb, cCr};
    case ChannelOrder::CbYCr:
      return {cCb, {Luma}, cCr};
    case ChannelOrder::YCbYCr:
      return {{Luma, 0}, cCb, {Luma, 1}, cCr};
    case ChannelOrder::CbYCrY:
      return {cCb, {Luma, 0}, cCr, {Luma, 1}};
    case ChannelOrder::YYCbYYCr:
      return {{Luma, 0}, {Luma, 1}, cCb, {Luma, 2}, {Luma, 3}, cCr};
    case ChannelOrder::CbYYCrYY:
      return {cCb, {Luma, 0}, {Luma, 1}, cCr, {Luma, 2}, {Luma, 3}};
  }
  return {};
}

}  // namespace zrconvert
