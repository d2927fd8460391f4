// Programs built against other builds of the library call through the virtual tables and read the contexts:
// the order of slots and fields is part of the interface. Read here as the Itanium C++ ABI lays them out.

#include <ZrConvertersLib/BMPSaver.h>
#include <ZrConvertersLib/ComplexConverter.h>
#include <ZrConvertersLib/PixelConverterContext.h>
#include <ZrConvertersLib/PixelType.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <ZrConvertersLib/YCbCr.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>

namespace ZrConvertersLib {
namespace {

using ZrUtilsLib::Result;

/// The slot of a virtual function in its table, where 0 and 1 are the destructors. A pointer to a virtual
/// member holds its offset in the table, plus one on some architectures.
template <class Member>
std::size_t SlotOf(Member member) {
  static_assert(sizeof member == 2 * sizeof(std::size_t));
  std::array<std::size_t, 2> words{};
  std::memcpy(words.data(), &member, sizeof member);
  return words[0] / sizeof(void*);
}

TEST(Vtable, ConverterSlots) {
  using Size = std::uint32_t (PixelConverter::*)() const;
  using SizeOfWidth = std::uint32_t (PixelConverter::*)(std::uint32_t) const;
  using ConvertFrame = Result (PixelConverter::*)(
      const unsigned char*, std::uint32_t, std::uint32_t, unsigned char*, std::uint32_t, std::uint32_t,
      std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, unsigned char**, std::uint32_t*,
      std::uint32_t, bool, const RGBFilter*) const;
  EXPECT_EQ(SlotOf(&PixelConverter::GetSourceType), 2u);
  EXPECT_EQ(SlotOf(&PixelConverter::GetDestinationType), 3u);
  EXPECT_EQ(SlotOf<Size>(&PixelConverter::GetSourceByteSize), 4u);
  EXPECT_EQ(SlotOf<SizeOfWidth>(&PixelConverter::GetSourceByteSize), 5u);
  EXPECT_EQ(SlotOf<Size>(&PixelConverter::GetDestinationByteSize), 6u);
  EXPECT_EQ(SlotOf<SizeOfWidth>(&PixelConverter::GetDestinationByteSize), 7u);
  EXPECT_EQ(SlotOf(&PixelConverter::GetPipeliningSize), 8u);
  EXPECT_EQ(SlotOf(&PixelConverter::GetLinesPerConvert), 9u);
  EXPECT_EQ(SlotOf(&PixelConverter::GetWidthMultiplier), 10u);
  EXPECT_EQ(SlotOf(&PixelConverter::ConvertLastLine), 11u);
  EXPECT_EQ(SlotOf<Result (PixelConverter::*)(const PixelConverterContext&, unsigned char*) const>(
                &PixelConverter::Convert),
            12u);
  EXPECT_EQ(SlotOf(&PixelConverter::ConvertLine), 13u);
  EXPECT_EQ(SlotOf<ConvertFrame>(&PixelConverter::Convert), 14u);
}

TEST(Vtable, TypeSlots) {
  EXPECT_EQ(SlotOf(&PixelType::Clone), 2u);
  EXPECT_EQ(SlotOf(&PixelType::GetTypeID), 3u);
  EXPECT_EQ(SlotOf(&PixelType::GetPixelBitSize), 4u);
  EXPECT_EQ(SlotOf(&PixelType::GetPixelByteSize), 5u);
  EXPECT_EQ(SlotOf(&PixelType::IsBayerPattern), 6u);
  EXPECT_EQ(SlotOf(&PixelType::GetBufferSizeFor), 7u);
}

/// What follows the pointer to the table in an object's memory.
template <class Fields, class Object>
Fields FieldsOf(const Object& object) {
  Fields fields{};
  static_assert(sizeof(void*) + sizeof fields == sizeof object);
  std::memcpy(&fields, reinterpret_cast<const char*>(&object) + sizeof(void*), sizeof fields);
  return fields;
}

TEST(Layout, FieldsOfAConverter) {
  struct Fields {
    long sourceType, destinationType;
    std::uint32_t sourceByteSize, destinationByteSize, pipeliningSize, linesPerConvert;
    bool operator==(const Fields&) const = default;
  };
  const PixelConverter converter(11, 12, 13, 14, 15, 16, false);
  EXPECT_EQ(FieldsOf<Fields>(converter), (Fields{11, 12, 13, 14, 15, 16}));
  EXPECT_EQ(converter.GetSourceByteSize(10), 130u);
  EXPECT_EQ(converter.GetDestinationByteSize(10), 140u);
  EXPECT_EQ(converter.GetPipeliningSize(), 15u);
  EXPECT_EQ(converter.GetWidthMultiplier(), 1u);
}

TEST(Layout, FieldsOfAType) {
  struct Fields {
    long id;
    unsigned short bits, bytes;
    bool bayer;
    bool operator==(const Fields&) const = default;
  };
  EXPECT_EQ(FieldsOf<Fields>(PixelType(21, 22, 23, true)), (Fields{21, 22, 23, true}));
}

// Callers hold objects of these by value.
static_assert(sizeof(RGBFilter) == 32 && sizeof(BMPSaver) == 8 && sizeof(ComplexConverter) == 72);

static_assert(sizeof(PixelConverterContext) == 56);
static_assert(offsetof(PixelConverterContext, mReserved) == 0);
static_assert(offsetof(PixelConverterContext, mSourceStride) == 4);
static_assert(offsetof(PixelConverterContext, mSourceHeight) == 8);
static_assert(offsetof(PixelConverterContext, mDestinationStride) == 12);
static_assert(offsetof(PixelConverterContext, mDestinationHeight) == 16);
static_assert(offsetof(PixelConverterContext, mFlags) == 20);
static_assert(offsetof(PixelConverterContext, mFilter) == 24);
static_assert(offsetof(PixelConverterContext, mLine) == 32);
static_assert(offsetof(PixelConverterContext, mSource) == 40);
static_assert(offsetof(PixelConverterContext, mDestination) == 48);

static_assert(sizeof(YUVPixelContext) == 24);
static_assert(offsetof(YUVPixelContext, y) == 0 && offsetof(YUVPixelContext, cb) == 4);
static_assert(offsetof(YUVPixelContext, cr) == 8 && offsetof(YUVPixelContext, r) == 12);
static_assert(offsetof(YUVPixelContext, g) == 16 && offsetof(YUVPixelContext, b) == 20);

}  // namespace
}  // namespace ZrConvertersLib
