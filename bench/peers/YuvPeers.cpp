#include <libyuv.h>

#include "Peers.h"

/// libyuv names words from their high byte down: its ARGB is BGRa8 in memory, RAW is RGB8 and RGB24 is BGR8.

namespace Bench {
namespace {

using Plane = int (*)(const unsigned char*, int, unsigned char*, int, int, int);

template <Plane convert, int sourceBytes, int destinationBytes>
void Call(unsigned char* source, unsigned char* destination, Size size) {
  const int width = static_cast<int>(size.width), height = static_cast<int>(size.height);
  convert(source, width * sourceBytes, destination, width * destinationBytes, width, height);
}

void Split(unsigned char* source, unsigned char* destination, Size size) {
  const int width = static_cast<int>(size.width), height = static_cast<int>(size.height);
  const auto plane = [&](unsigned i) { return destination + i * size.Pixels(); };
  libyuv::SplitRGBPlane(source, width * 3, plane(0), width, plane(1), width, plane(2), width, width, height);
}

void Narrow(unsigned char* source, unsigned char* destination, Size size) {
  const int width = static_cast<int>(size.width), height = static_cast<int>(size.height);
  constexpr int kDrop8Bits = 256;
  libyuv::Convert16To8Plane(reinterpret_cast<const std::uint16_t*>(source), width, destination, width,
                            kDrop8Bits, width, height);
}

}  // namespace

std::vector<Peer> YuvPeers() {
  using enum Demosaic;
  return {
      {"libyuv", "Mono8:BGRa8", None, false, "", Call<libyuv::J400ToARGB, 1, 4>},
      {"libyuv", "Mono16:Mono8", None, false, "", Narrow},
      {"libyuv", "RGB8:BGR8", None, false, "", Call<libyuv::RAWToRGB24, 3, 3>},
      {"libyuv", "RGB8:BGRa8", None, false, "", Call<libyuv::RAWToARGB, 3, 4>},
      {"libyuv", "BGRa8:RGB8", None, false, "", Call<libyuv::ARGBToRAW, 4, 3>},
      {"libyuv", "BGRa8:RGB565p", None, false, "", Call<libyuv::ARGBToRGB565, 4, 2>},
      {"libyuv", "RGB8:RGB8_Planar", None, false, "", Split},
      {"libyuv", "YCbCr422_8:BGRa8", None, false, "coefficients of 6 bits", Call<libyuv::YUY2ToARGB, 2, 4>},
  };
}

}  // namespace Bench
