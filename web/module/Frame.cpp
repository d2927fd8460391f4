#include "Frame.h"

#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/PixelTypes.h>

#include <new>

namespace page {

namespace zr = ZrConvertersLib;
using ZrUtilsLib::Result;

namespace {

constexpr long cPicture = zr::PixelTypeIds::RGBa8;

// Memory is never given back to the browser, so what was there is freed before more is taken.
bool Resize(std::vector<std::uint8_t>& bytes, std::size_t size) {
  try {
    if (bytes.capacity() < size) bytes = {};
    bytes.resize(size);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace

std::uint8_t* Frame::Reserve(std::size_t bytes) {
  return Resize(mBytes, bytes) ? mBytes.data() : nullptr;
}

Result Frame::Convert(const Geometry& geometry, const zr::FrameOptions& options) {
  zr::FrameConverter converter;
  const Result configured =
      converter.Configure(geometry.format, cPicture, geometry.width, geometry.height, options);
  if (!configured.IsSuccess()) return configured;
  const zr::FrameLayout layout = converter.DestinationLayout();
  if (layout.frameBytes > PTRDIFF_MAX || !Resize(mPicture, static_cast<std::size_t>(layout.frameBytes)))
    return zr::FrameError::OutOfMemory;
  mGeometry = geometry;
  mOptions = options;
  mOptions.development = nullptr;
  return converter.Convert(ViewOf(geometry, mBytes),
                           zr::DestinationView::Of(mPicture, geometry.width, geometry.height));
}

Histogram Frame::Count() const {
  Histogram counts{};
  for (std::size_t at = 0; at + 3 < mPicture.size(); at += 4) {
    for (std::size_t channel = 0; channel < 3; ++channel) ++counts[256 * channel + mPicture[at + channel]];
  }
  return counts;
}

zr::SourceView ViewOf(const Geometry& geometry, const std::vector<std::uint8_t>& bytes) {
  return zr::SourceView::Of(bytes, geometry.width, geometry.height, geometry.stride);
}

}  // namespace page
