// Programs built against other builds of the library call through the virtual tables and read the contexts:
// the order of slots and fields is part of the interface. Read here as the Itanium C++ ABI lays them out.

#include <ZrConvertersLib/BMPSaver.h>
#include <ZrConvertersLib/ComplexConverter.h>
#include <ZrConvertersLib/PixelType.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <ZrConvertersLib/YCbCr.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>

#include "core/Recorder.h"

namespace ZrTest {
namespace {

using ZrConvertersLib::PixelType;
using ZrConvertersLib::RGBFilter;

/// Calls slot `slot` of the object's virtual table; slots 0 and 1 are the destructors.
template <class Return, class... Arguments>
__attribute__((no_sanitize("undefined"))) Return CallSlot(const void* object, std::size_t slot,
                                                          Arguments... arguments) {
  using Function = Return (*)(const void*, Arguments...);
  void* const* table = nullptr;
  std::memcpy(&table, object, sizeof table);
  Function function = nullptr;
  std::memcpy(&function, &table[slot], sizeof function);
  return function(object, arguments...);
}

class SlotConverter final : public PixelConverter {
 public:
  SlotConverter() : PixelConverter(1, 2, 3, 4, 5, 6, false) {}

  const long& GetSourceType() const override { return Id("GetSourceType"); }
  const long& GetDestinationType() const override { return Id("GetDestinationType"); }
  std::uint32_t GetSourceByteSize() const override { return Say("GetSourceByteSize"); }
  std::uint32_t GetSourceByteSize(std::uint32_t) const override { return Say("GetSourceByteSize(w)"); }
  std::uint32_t GetDestinationByteSize() const override { return Say("GetDestinationByteSize"); }
  std::uint32_t GetDestinationByteSize(std::uint32_t) const override {
    return Say("GetDestinationByteSize(w)");
  }
  std::uint32_t GetPipeliningSize() const override { return Say("GetPipeliningSize"); }
  std::uint32_t GetLinesPerConvert() const override { return Say("GetLinesPerConvert"); }
  std::uint32_t GetWidthMultiplier() const override { return Say("GetWidthMultiplier"); }
  Result ConvertLastLine(const PixelConverterContext&, std::uint32_t) const override {
    return Say("ConvertLastLine");
  }
  Result Convert(const PixelConverterContext&, unsigned char*) const override {
    return Say("Convert(context)");
  }
  Result ConvertLine(const PixelConverterContext&, std::uint32_t) const override {
    return Say("ConvertLine");
  }
  Result Convert(const unsigned char*, std::uint32_t, std::uint32_t, unsigned char*, std::uint32_t,
                 std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, unsigned char**,
                 std::uint32_t*, std::uint32_t, bool, const RGBFilter*) const override {
    return Say("Convert(15)");
  }

  mutable std::string called;

 private:
  std::uint32_t Say(const char* name) const {
    called = name;
    return 0;
  }
  const long& Id(const char* name) const {
    static const long id = 0;
    called = name;
    return id;
  }
};

TEST(Vtable, ConverterSlots) {
  const SlotConverter converter;
  const PixelConverterContext context;
  // Slots without argument take no notice of the one they get here.
  const char* const names[] = {"GetSourceType",        "GetDestinationType",     "GetSourceByteSize",
                               "GetSourceByteSize(w)", "GetDestinationByteSize", "GetDestinationByteSize(w)",
                               "GetPipeliningSize",    "GetLinesPerConvert",     "GetWidthMultiplier"};
  for (std::size_t i = 0; i < std::size(names); ++i) {
    CallSlot<std::uintptr_t>(&converter, 2 + i, 1u);
    EXPECT_EQ(converter.called, names[i]);
  }
  CallSlot<Result>(&converter, 11, &context, 1u);
  EXPECT_EQ(converter.called, "ConvertLastLine");
  CallSlot<Result>(&converter, 12, &context, static_cast<unsigned char*>(nullptr));
  EXPECT_EQ(converter.called, "Convert(context)");
  CallSlot<Result>(&converter, 13, &context, 1u);
  EXPECT_EQ(converter.called, "ConvertLine");
  CallSlot<Result>(&converter, 14, static_cast<const unsigned char*>(nullptr), 0u, 0u,
                   static_cast<unsigned char*>(nullptr), 0u, 0u, 0u, 0u, 0u, 0u,
                   static_cast<unsigned char**>(nullptr), static_cast<std::uint32_t*>(nullptr), 0u, false,
                   static_cast<const RGBFilter*>(nullptr));
  EXPECT_EQ(converter.called, "Convert(15)");
}

class SlotType final : public PixelType {
 public:
  SlotType() : PixelType(1, 2, 3, false) {}
  PixelType* Clone() const override { return Say<PixelType*>("Clone"); }
  const long& GetTypeID() const override {
    called = "GetTypeID";
    return PixelType::GetTypeID();
  }
  unsigned short GetPixelBitSize() const override { return Say<unsigned short>("GetPixelBitSize"); }
  unsigned short GetPixelByteSize() const override { return Say<unsigned short>("GetPixelByteSize"); }
  bool IsBayerPattern() const override { return Say<bool>("IsBayerPattern"); }
  unsigned GetBufferSizeFor(unsigned, unsigned) const override { return Say<unsigned>("GetBufferSizeFor"); }

  mutable std::string called;

 private:
  template <class T>
  T Say(const char* name) const {
    called = name;
    return T{};
  }
};

TEST(Vtable, TypeSlots) {
  const SlotType type;
  const char* const names[] = {"Clone",          "GetTypeID",       "GetPixelBitSize", "GetPixelByteSize",
                               "IsBayerPattern", "GetBufferSizeFor"};
  for (std::size_t i = 0; i < std::size(names); ++i) {
    CallSlot<std::uintptr_t>(&type, 2 + i, 1u, 1u);
    EXPECT_EQ(type.called, names[i]);
  }
}

TEST(Layout, Sizes) {
  EXPECT_EQ(sizeof(PixelType), 24u);
  EXPECT_EQ(sizeof(PixelConverter), 40u);
  EXPECT_EQ(sizeof(PixelConverterContext), 56u);
  EXPECT_EQ(sizeof(RGBFilter), 32u);
  EXPECT_EQ(sizeof(ZrConvertersLib::BMPSaver), 8u);
  EXPECT_EQ(sizeof(ZrConvertersLib::ComplexConverter), 72u);
}

TEST(Layout, FieldsOfAConverter) {
  struct Fields {
    const void* table;
    long sourceType;
    long destinationType;
    std::uint32_t sourceByteSize;
    std::uint32_t destinationByteSize;
    std::uint32_t pipeliningSize;
    std::uint32_t linesPerConvert;
  } fields{};
  const PixelConverter converter(11, 12, 13, 14, 15, 16, false);
  static_assert(sizeof fields == sizeof converter);
  std::memcpy(&fields, static_cast<const void*>(&converter), sizeof fields);
  EXPECT_EQ(fields.sourceType, 11);
  EXPECT_EQ(fields.destinationType, 12);
  EXPECT_EQ(fields.sourceByteSize, 13u);
  EXPECT_EQ(fields.destinationByteSize, 14u);
  EXPECT_EQ(fields.pipeliningSize, 15u);
  EXPECT_EQ(fields.linesPerConvert, 16u);
  EXPECT_EQ(converter.GetSourceByteSize(10), 130u);
  EXPECT_EQ(converter.GetDestinationByteSize(10), 140u);
  EXPECT_EQ(converter.GetPipeliningSize(), 15u);
  EXPECT_EQ(converter.GetWidthMultiplier(), 1u);
}

TEST(Layout, FieldsOfAContext) {
  EXPECT_EQ(offsetof(PixelConverterContext, mReserved), 0u);
  EXPECT_EQ(offsetof(PixelConverterContext, mSourceStride), 4u);
  EXPECT_EQ(offsetof(PixelConverterContext, mSourceHeight), 8u);
  EXPECT_EQ(offsetof(PixelConverterContext, mDestinationStride), 12u);
  EXPECT_EQ(offsetof(PixelConverterContext, mDestinationHeight), 16u);
  EXPECT_EQ(offsetof(PixelConverterContext, mFlags), 20u);
  EXPECT_EQ(offsetof(PixelConverterContext, mFilter), 24u);
  EXPECT_EQ(offsetof(PixelConverterContext, mLine), 32u);
  EXPECT_EQ(offsetof(PixelConverterContext, mSource), 40u);
  EXPECT_EQ(offsetof(PixelConverterContext, mDestination), 48u);
}

TEST(Layout, FieldsOfAType) {
  struct Fields {
    const void* table;
    long id;
    unsigned short bits;
    unsigned short bytes;
    bool bayer;
  } fields{};
  const PixelType type(21, 22, 23, true);
  static_assert(sizeof fields == sizeof type);
  std::memcpy(&fields, static_cast<const void*>(&type), sizeof fields);
  EXPECT_EQ(fields.id, 21);
  EXPECT_EQ(fields.bits, 22);
  EXPECT_EQ(fields.bytes, 23);
  EXPECT_TRUE(fields.bayer);
}

TEST(Layout, FieldsOfAYCbCrPixel) {
  using ZrConvertersLib::YUVPixelContext;
  EXPECT_EQ(sizeof(YUVPixelContext), 24u);
  EXPECT_EQ(offsetof(YUVPixelContext, y), 0u);
  EXPECT_EQ(offsetof(YUVPixelContext, cb), 4u);
  EXPECT_EQ(offsetof(YUVPixelContext, cr), 8u);
  EXPECT_EQ(offsetof(YUVPixelContext, r), 12u);
  EXPECT_EQ(offsetof(YUVPixelContext, g), 16u);
  EXPECT_EQ(offsetof(YUVPixelContext, b), 20u);
}

}  // namespace
}  // namespace ZrTest
