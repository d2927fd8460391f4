#include <ZrConvertersLib/BMPSaver.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace ZrConvertersLib {

using ZrUtilsLib::Result;
using ZrUtilsLib::ResultCode;

static_assert(sizeof(void*) != 8 || sizeof(BMPSaver) == 8);

namespace {

constexpr std::size_t kFileHeaderSize = 14;
constexpr std::size_t kInfoHeaderSize = 40;
constexpr std::uint32_t kHeadersSize = kFileHeaderSize + kInfoHeaderSize;

/// Stores `bytes` bytes of `value` at `to`, the lowest first.
void Put(unsigned char* to, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) to[i] = static_cast<unsigned char>(value >> (8 * i));
}

/// BITMAPFILEHEADER
std::array<unsigned char, kFileHeaderSize> FileHeader(std::uint32_t imageSize) {
  std::array<unsigned char, kFileHeaderSize> header{'B', 'M'};
  Put(&header[2], imageSize + kHeadersSize, 4);
  Put(&header[10], kHeadersSize, 4);
  return header;
}

/// BITMAPINFOHEADER of an uncompressed image; the negative height says that its rows run from top to bottom.
std::array<unsigned char, kInfoHeaderSize> InfoHeader(std::uint32_t width, std::uint32_t height,
                                                      unsigned short bitCount, std::uint32_t imageSize) {
  std::array<unsigned char, kInfoHeaderSize> header{};
  Put(header.data(), kInfoHeaderSize, 4);
  Put(&header[4], width, 4);
  Put(&header[8], 0u - height, 4);
  Put(&header[12], 1, 2);  // planes
  Put(&header[14], bitCount, 2);
  Put(&header[20], imageSize, 4);
  return header;
}

}  // namespace

BMPSaver::BMPSaver() = default;

BMPSaver::~BMPSaver() = default;

Result BMPSaver::SaveBMP(const std::string& fileName, const void* data, int width, int height,
                         unsigned short bitCount) {
  const auto columns = static_cast<std::uint32_t>(width);
  const auto rows = static_cast<std::uint32_t>(height);
  const std::uint32_t imageSize = (rows * bitCount * columns) >> 3;
  const auto fileHeader = FileHeader(imageSize);
  const auto infoHeader = InfoHeader(columns, rows, bitCount, imageSize);

  std::FILE* file = std::fopen(fileName.c_str(), "wb");
  if (file == nullptr) return ResultCode::FileNotOpened;
  std::fwrite(fileHeader.data(), fileHeader.size(), 1, file);
  std::fwrite(infoHeader.data(), infoHeader.size(), 1, file);
  if (imageSize != 0) std::fwrite(data, imageSize, 1, file);
  std::fclose(file);
  return ResultCode::Success;
}

}  // namespace ZrConvertersLib
