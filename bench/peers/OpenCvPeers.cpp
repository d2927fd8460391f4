#include <array>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "Peers.h"

namespace Bench {
namespace {

cv::Mat Image(unsigned char* data, Size size, int type) {
  return {static_cast<int>(size.height), static_cast<int>(size.width), type, data};
}

template <int sourceType, int destinationType, int code>
void CvtColor(unsigned char* source, unsigned char* destination, Size size) {
  const cv::Mat out = Image(destination, size, destinationType);
  cv::cvtColor(Image(source, size, sourceType), out, code);
}

/// Times 2 to the power of `shift`.
template <int sourceType, int destinationType, int shift>
void Scale(unsigned char* source, unsigned char* destination, Size size) {
  cv::Mat out = Image(destination, size, destinationType);
  constexpr double kFactor = shift < 0 ? 1.0 / (1 << -shift) : 1 << shift;
  Image(source, size, sourceType).convertTo(out, CV_MAT_DEPTH(destinationType), kFactor);
}

void Split(unsigned char* source, unsigned char* destination, Size size) {
  std::array<cv::Mat, 3> planes;
  for (std::size_t i = 0; i < planes.size(); ++i)
    planes[i] = Image(destination + i * size.Pixels(), size, CV_8UC1);
  cv::split(Image(source, size, CV_8UC3), planes.data());
}

void Table(unsigned char* source, unsigned char* destination, Size size) {
  static const cv::Mat table = [] {
    cv::Mat values(1, 256, CV_8UC1);
    for (int i = 0; i < 256; ++i) values.at<unsigned char>(i) = static_cast<unsigned char>(255 - i);
    return values;
  }();
  const cv::Mat out = Image(destination, size, CV_8UC3);
  cv::LUT(Image(source, size, CV_8UC3), table, out);
}

constexpr const char* kRounds = "rounds to nearest instead of dropping the low bits";
constexpr const char* kBilinear = "bilinear, rounds otherwise and treats borders otherwise";

}  // namespace

std::vector<Peer> OpenCvPeers() {
  using enum Demosaic;
  cv::setNumThreads(1);
  return {
      {"OpenCV", "Mono8:RGB8", None, false, "", CvtColor<CV_8UC1, CV_8UC3, cv::COLOR_GRAY2RGB>},
      {"OpenCV", "Mono8:BGRa8", None, false, "", CvtColor<CV_8UC1, CV_8UC4, cv::COLOR_GRAY2BGRA>},
      {"OpenCV", "Mono8:Mono16", None, false, "", Scale<CV_8UC1, CV_16UC1, 8>},
      {"OpenCV", "Mono12:Mono16", None, false, "saturates instead of dropping stray high bits",
       Scale<CV_16UC1, CV_16UC1, 4>},
      {"OpenCV", "Mono16:Mono8", None, false, kRounds, Scale<CV_16UC1, CV_8UC1, -8>},
      {"OpenCV", "RGB8:BGR8", None, false, "", CvtColor<CV_8UC3, CV_8UC3, cv::COLOR_RGB2BGR>},
      {"OpenCV", "RGB8:BGRa8", None, false, "", CvtColor<CV_8UC3, CV_8UC4, cv::COLOR_RGB2BGRA>},
      {"OpenCV", "BGRa8:RGB8", None, false, "", CvtColor<CV_8UC4, CV_8UC3, cv::COLOR_BGRA2RGB>},
      {"OpenCV", "RGB8:RGB8_Planar", None, false, "", Split},
      {"OpenCV", "RGB8:RGB565p", None, false, "", CvtColor<CV_8UC3, CV_8UC2, cv::COLOR_RGB2BGR565>},
      {"OpenCV", "RGB16:RGB8", None, false, kRounds, Scale<CV_16UC3, CV_8UC3, -8>},
      {"OpenCV", "RGB8:RGB8", None, true, "one table for all channels", Table},
      {"OpenCV", "YCbCr422_8:RGB8", None, false, "coefficients of 20 bits",
       CvtColor<CV_8UC2, CV_8UC3, cv::COLOR_YUV2RGB_YUY2>},
      {"OpenCV", "YCbCr422_8:BGRa8", None, false, "coefficients of 20 bits",
       CvtColor<CV_8UC2, CV_8UC4, cv::COLOR_YUV2BGRA_YUY2>},
      {"OpenCV", "YCbCr8:RGB8", None, false, "full range, Cr before Cb",
       CvtColor<CV_8UC3, CV_8UC3, cv::COLOR_YCrCb2RGB>},
      {"OpenCV", "Bayer8:RGB8", Interpolate, false, kBilinear,
       CvtColor<CV_8UC1, CV_8UC3, cv::COLOR_BayerRGGB2RGB>},
      {"OpenCV", "Bayer8:BGRa8", Interpolate, false, kBilinear,
       CvtColor<CV_8UC1, CV_8UC4, cv::COLOR_BayerRGGB2BGRA>},
      {"OpenCV", "Bayer16:RGB16", Interpolate, false, "bilinear in 16 bits, this library in 8",
       CvtColor<CV_16UC1, CV_16UC3, cv::COLOR_BayerRGGB2RGB>},
  };
}

}  // namespace Bench
