// Converting at frame rate: all memory is allocated before the first frame, and each frame is one call.
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <ZrConvertersLib/RGBFilter.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <vector>

using namespace ZrConvertersLib;

namespace {

/// Stands for a camera: a bright bar that moves over a dark field, in lines padded to 64 bytes as drivers do.
class Camera {
 public:
  static constexpr std::uint32_t kFormat = 0x010C0059;  // what such a camera reports: BayerRG12p
  static constexpr std::uint32_t kWidth = 1280;
  static constexpr std::uint32_t kHeight = 720;
  static constexpr std::size_t kStride = 1984;  // 1920 bytes of pixels

  const std::vector<std::uint8_t>& NextFrame() {
    for (std::size_t y = 0; y < kHeight; ++y) mFrame[y * kStride + mNumber] = 0x20;
    mNumber = (mNumber + 3) % 1920;
    for (std::size_t y = 0; y < kHeight; ++y) mFrame[y * kStride + mNumber] = 0xF0;
    return mFrame;
  }

 private:
  std::vector<std::uint8_t> mFrame = std::vector<std::uint8_t>(kStride * kHeight, 0x20);
  std::size_t mNumber = 0;
};

}  // namespace

int main() {
  const FormatCode* format = FindFormatCode(Camera::kFormat);
  if (format == nullptr) return 1;

  // Without these a raw sensor frame looks dark and green.
  ToneSettings tone;
  tone.gamma = 2.2;
  tone.black = 4;
  tone.balance = {1.8, 1.0, 1.5};
  RGBFilter filter;
  if (!filter.SetTone(tone).IsSuccess()) return 1;

  FrameOptions options;
  options.SetFlags(format->flags);
  options.filter = &filter;
  FrameConverter converter;
  if (!converter.Configure(format->id, PixelTypeIds::BGRa8, Camera::kWidth, Camera::kHeight, options)
           .IsSuccess())
    return 1;

  Camera camera;
  std::vector<std::uint8_t> screen(converter.DestinationLayout().frameBytes);
  const DestinationView destination = DestinationView::Of(screen, Camera::kWidth, Camera::kHeight);
  constexpr int kFrames = 100;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kFrames; ++i) {
    const SourceView frame =
        SourceView::Of(camera.NextFrame(), Camera::kWidth, Camera::kHeight, Camera::kStride);
    if (!converter.Convert(frame, destination).IsSuccess()) return 1;
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  std::printf("%d frames, %.2f ms each, the first pixel is %d %d %d\n", kFrames,
              taken.count() * 1000 / kFrames, screen[2], screen[1], screen[0]);
  return 0;
}
