#include <ZrConvertersLib/FrameCodes.h>

namespace ZrConvertersLib {

namespace {

std::string_view BaseText(std::uint32_t code) noexcept {
  switch (static_cast<ZrUtilsLib::ResultCode>(code)) {
    case ZrUtilsLib::ResultCode::Success:
      return "success";
    case ZrUtilsLib::ResultCode::AlreadyRegistered:
      return "the pixel type or the pair is registered already";
    case ZrUtilsLib::ResultCode::RegistryNotCreated:
      return "there is no memory for the registry of formats";
    case ZrUtilsLib::ResultCode::NotSupported:
      return "this converter does not offer the operation";
    case ZrUtilsLib::ResultCode::FileNotOpened:
      return "the file could not be opened for writing";
  }
  return "an unknown result code";
}

}  // namespace

std::string_view ResultText(std::uint32_t code) noexcept {
  switch (code) {
    case FrameCode::UnknownFormat:
      return "no pixel format has this name, ID or code";
    case FrameCode::NoConverter:
      return "the library has no conversion between these two formats";
    case FrameCode::ZeroSize:
      return "width and height must be at least 1";
    case FrameCode::WidthNotAllowed:
      return "the format keeps its pixels in groups, and the width is not a whole number of groups";
    case FrameCode::HeightNotAllowed:
      return "the format keeps its lines in groups, and the height is not a whole number of groups";
    case FrameCode::FrameTooSmall:
      return "a colour mosaic needs at least 2 x 2 pixels to become a picture";
    case FrameCode::FrameTooLarge:
      return "the frame is too large: a line may take 512 MiB and a side 4294967295 pixels at most";
    case FrameCode::StrideTooSmall:
      return "the line stride is smaller than the bytes of one line";
    case FrameCode::InvalidPattern:
      return "the mosaic pattern is not one of GRBG, GBRG, RGGB and BGGR";
    case FrameCode::InvalidDemosaic:
      return "the demosaic method is neither fast nor interpolating";
    case FrameCode::InvalidMatrix:
      return "the colour matrix is not one of BT.601, BT.709 and JPEG";
    case FrameCode::RegionOutside:
      return "the region reaches outside the source frame";
    case FrameCode::RegionNotAllowed:
      return "the region cuts through a group of pixels that the destination format keeps together";
    case FrameCode::OutOfMemory:
      return "there is not enough memory for the converter's own buffers";
    case FrameCode::NotConfigured:
      return "the frame converter was never configured";
    case FrameCode::NullSource:
      return "there is no source data";
    case FrameCode::NullDestination:
      return "there is no place for the destination picture";
    case FrameCode::SourceSizeDiffers:
      return "the source frame does not have the width and height that were configured";
    case FrameCode::DestinationSizeDiffers:
      return "the destination picture does not have the width and height that were configured";
    case FrameCode::SourceTooSmall:
      return "the source buffer is smaller than the frame";
    case FrameCode::DestinationTooSmall:
      return "the destination buffer is smaller than the picture";
    case FrameCode::BuffersOverlap:
      return "source and destination share memory";
    case FrameCode::LinesOutside:
      return "the band of lines reaches outside the destination picture";
    case FrameCode::InvalidTone:
      return "a tone setting is out of its range";
    case FrameCode::MatrixUnknown:
      return "the format has a colour matrix (BT.2020) that the library does not know";
    default:
      return BaseText(code);
  }
}

std::string_view ResultText(const ZrUtilsLib::Result& result) noexcept {
  return ResultText(result.GetCode());
}

}  // namespace ZrConvertersLib
