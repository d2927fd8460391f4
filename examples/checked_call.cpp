// The checked interface: converts a frame whose format is the code that the camera reported, and prints the
// reason if that is not possible.
#include <ZrConvertersLib/BMPSaver.h>
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelTypes.h>

#include <cstdint>
#include <iostream>
#include <vector>

using namespace ZrConvertersLib;

namespace {

int Fail(const ZrUtilsLib::Result& result) {
  std::cerr << ResultText(result) << '\n';
  return 1;
}

}  // namespace

int main() {
  constexpr std::uint32_t kWidth = 641;  // any size will do
  constexpr std::uint32_t kHeight = 479;

  FormatChoice format;
  if (auto result = ReadFormat("BayerRG12p", format); !result.IsSuccess()) return Fail(result);

  FrameOptions options;
  options.SetFlags(format.flags);  // the mosaic's pattern, which the name states
  options.demosaic = Demosaic::Interpolate;

  FrameConverter converter;
  if (auto result = converter.Configure(format.id, PixelTypeIds::BGRa8, kWidth, kHeight, options);
      !result.IsSuccess())
    return Fail(result);

  const std::vector<std::uint8_t> frame(converter.SourceLayout().frameBytes, 0x88);
  std::vector<std::uint8_t> picture(converter.DestinationLayout().frameBytes);
  const auto result = converter.Convert(SourceView::Of(frame, kWidth, kHeight),
                                        DestinationView::Of(picture, kWidth, kHeight));
  if (!result.IsSuccess()) return Fail(result);

  const auto saved = BMPSaver().SaveBMP("checked_call.bmp", picture.data(), kWidth, kHeight, 32);
  if (!saved.IsSuccess()) return Fail(saved);
  std::cout << "checked_call.bmp: " << kWidth << " x " << kHeight << " pixels\n";

  // An invalid call returns an error and writes nothing.
  const auto refused = converter.Convert(SourceView::Of(frame, kWidth - 1, kHeight),
                                         DestinationView::Of(picture, kWidth, kHeight));
  std::cout << "another width: " << ResultText(refused) << '\n';
  return refused.IsSuccess() ? 1 : 0;
}
