#include <ZrConvertersLib/FrameErrors.h>

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
    case FrameError::UnknownFormat:
      return "no pixel format has this name, ID or code";
    case FrameError::NoConverter:
      return "the library has no conversion between these two formats";
    case FrameError::ZeroSize:
      return "width and height must be at least 1";
    case FrameError::WidthNotAllowed:
      return "the format keeps its pixels in groups, and the width is not a whole number of groups";
    case FrameError::FrameTooSmall:
      return "a colour mosaic needs at least one whole tile (2 x 2 pixels, SCF1 4 x 4) to become a picture";
    case FrameError::FrameTooLarge:
      return "the frame is too large: a line may take 512 MiB and a side 4294967295 pixels at most";
    case FrameError::StrideTooSmall:
      return "the line stride is smaller than the bytes of one line";
    case FrameError::InvalidPattern:
      return "the source's family of mosaics has no such pattern";
    case FrameError::InvalidDemosaic:
      return "the demosaic method is neither fast nor interpolating";
    case FrameError::InvalidMatrix:
      return "the colour matrix is not one of BT.601, BT.709 and JPEG";
    case FrameError::RegionOutside:
      return "the region reaches outside the source frame";
    case FrameError::RegionNotAllowed:
      return "the region cuts through a group of pixels that the destination format keeps together";
    case FrameError::OutOfMemory:
      return "there is not enough memory for the converter's own buffers";
    case FrameError::NotConfigured:
      return "the frame converter was never configured";
    case FrameError::NullSource:
      return "there is no source data";
    case FrameError::NullDestination:
      return "there is no place for the destination picture";
    case FrameError::SourceSizeDiffers:
      return "the source frame does not have the width and height that were configured";
    case FrameError::DestinationSizeDiffers:
      return "the destination picture does not have the width and height that were configured";
    case FrameError::SourceTooSmall:
      return "the source buffer is smaller than the frame";
    case FrameError::DestinationTooSmall:
      return "the destination buffer is smaller than the picture";
    case FrameError::BuffersOverlap:
      return "source and destination share memory";
    case FrameError::LinesOutside:
      return "the band of lines reaches outside the destination picture";
    case FrameError::InvalidTone:
      return "a tone setting is out of its range";
    case FrameError::MatrixUnknown:
      return "the format has a colour matrix (BT.2020) that the library does not know";
    case FrameError::InvalidPacking:
      return "the packing is not one of type, GigE Vision and CSI-2";
    default:
      return BaseText(code);
  }
}

std::string_view ResultText(const ZrUtilsLib::Result& result) noexcept {
  return ResultText(result.GetCode());
}

}  // namespace ZrConvertersLib
