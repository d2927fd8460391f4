#include <ZrConvertersLib/RGBFilter.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>

namespace ZrConvertersLib {

static_assert(sizeof(void*) != 8 || sizeof(RGBFilter) == 32);

namespace {

constexpr std::size_t kEntries = 256;

constexpr auto kIdentity = [] {
  std::array<unsigned char, kEntries> table{};
  for (std::size_t i = 0; i < kEntries; ++i) table[i] = static_cast<unsigned char>(i);
  return table;
}();

bool IsIdentityTable(const unsigned char* table) {
  return std::memcmp(table, kIdentity.data(), kEntries) == 0;
}

}  // namespace

// Static initialisers of other files may run converters, so the default filter is constructed before all
// objects of normal priority and destroyed after them.
__attribute__((init_priority(101))) const RGBFilter sRGBFilter;

RGBFilter::RGBFilter() {
  auto red = std::make_unique<unsigned char[]>(kEntries);
  auto green = std::make_unique<unsigned char[]>(kEntries);
  auto blue = std::make_unique<unsigned char[]>(kEntries);
  mRed = red.release();
  mGreen = green.release();
  mBlue = blue.release();
  SetIdentity();
}

RGBFilter::~RGBFilter() {
  for (unsigned char** table : {&mRed, &mGreen, &mBlue}) {
    delete[] * table;
    *table = nullptr;
  }
}

void RGBFilter::SetIdentity() {
  for (unsigned char* table : {mRed, mGreen, mBlue}) std::memcpy(table, kIdentity.data(), kEntries);
}

ZrUtilsLib::Result RGBFilter::SetMultipliers(double redGain, double greenGain, double blueGain, int redOffset,
                                             int greenOffset, int blueOffset) {
  for (int i = 0; i < static_cast<int>(kEntries); ++i) {
    mRed[i] = static_cast<unsigned char>(Get8(i, redGain, redOffset));
    mGreen[i] = static_cast<unsigned char>(Get8(i, greenGain, greenOffset));
    mBlue[i] = static_cast<unsigned char>(Get8(i, blueGain, blueOffset));
  }
  return ZrUtilsLib::ResultCode::Success;
}

int RGBFilter::Get8(int value, double gain, int offset) {
  const double rounded = value * gain + offset + 0.5;
  // Clamped before the cast, which could not hold a huge value. The first comparison also catches a NaN.
  if (!(rounded > 0.0)) return 0;
  return rounded >= 255.0 ? 255 : static_cast<int>(rounded);
}

bool RGBFilter::IsIdentity() const noexcept {
  return IsIdentityTable(mRed) && IsIdentityTable(mGreen) && IsIdentityTable(mBlue);
}

}  // namespace ZrConvertersLib
