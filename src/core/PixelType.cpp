#include <ZrConvertersLib/PixelType.h>

#include <ZrConvertersLib/PixelTypeFactory.h>

#include <cstdint>

namespace ZrConvertersLib {

static_assert(sizeof(void*) != 8 || sizeof(long) == 8, "type IDs are 64 bits wide");
static_assert(sizeof(void*) != 8 || sizeof(PixelType) == 24);

PixelType::PixelType(const long& id, unsigned short bitSize, unsigned short byteSize, bool bayerPattern)
    : mTypeID(id), mBitSize(bitSize), mByteSize(byteSize), mBayerPattern(bayerPattern) {}

PixelType::~PixelType() = default;

PixelType* PixelType::Clone() const {
  return new PixelType(GetTypeID(), GetPixelBitSize(), GetPixelByteSize(), IsBayerPattern());
}

const long& PixelType::GetTypeID() const {
  return mTypeID;
}

unsigned short PixelType::GetPixelBitSize() const {
  return mBitSize;
}

unsigned short PixelType::GetPixelByteSize() const {
  return mByteSize;
}

bool PixelType::IsBayerPattern() const {
  return mBayerPattern;
}

unsigned PixelType::GetBufferSizeFor(unsigned width, unsigned height) const {
  return width * height * GetPixelByteSize();
}

bool PixelType::HasConverterTo(const PixelType& other) const {
  return PixelTypeFactory::HasConverter(mTypeID, other.GetTypeID());
}

const PixelConverter* PixelType::GetConverterTo(const PixelType& other) const {
  return PixelTypeFactory::GetConverter(mTypeID, other.GetTypeID());
}

bool PixelTypeMatches(const PixelType& type, unsigned bitSize, long, bool, bool, long) {
  return type.GetPixelBitSize() == bitSize;
}

}  // namespace ZrConvertersLib
