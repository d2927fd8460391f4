#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <ostream>
#include <vector>

#include "support/CpuLevels.h"
#include "support/Pattern.h"

namespace ZrConvertersLib {
namespace {

namespace Ids = PixelTypeIds;

/// Frames so large that kernels compute the tables they can compute.
constexpr std::uint32_t kWidth = 336, kHeight = 99, kPixels = kWidth * kHeight;

using Table = std::function<int(int)>;

struct Kind {
  const char* name;
  Table red, green, blue;

  friend std::ostream& operator<<(std::ostream& out, const Kind& kind) { return out << kind.name; }
};

Table Gain(double gain, int offset) {
  return [=](int x) { return RGBFilter::Get8(x, gain, offset); };
}

Table Gamma(double gamma, double gain) {
  return [=](int x) { return RGBFilter::Get8(1, 255 * std::pow(std::min(gain * x / 255, 1.0), gamma), 0); };
}

/// All but one entry of a table.
Table Except(int entry, const Table& table) {
  return [=](int x) { return x == entry ? table(x) ^ 1 : table(x); };
}

int Noise(int x) {
  return (x * 167 + 13) ^ (x * x >> 3 & 0xFF);
}

int SShape(int x) {
  return RGBFilter::Get8(1, x * x * (3 - x / 127.5) / 255, 0);
}

const Kind kKinds[] = {
    {"gains", Gain(1.2, 3), Gain(0.9, -2), Gain(1.4, 7)},
    {"one gain", Gain(1.31, 7), Gain(1.31, 7), Gain(1.31, 7)},
    {"limits within 16 entries", Gain(1.7, -20), Gain(1.97, -205), Gain(2.57, -43)},
    {"steep and flat", Gain(3.99, -400), Gain(7.3, -800), Gain(0.03, 9)},
    {"falling", Gain(-1, 255), Gain(-0.77, 180), Gain(-3.3, 700)},
    {"constants", Gain(0, 0), Gain(0, 255), Gain(0, 77)},
    {"steps", [](int x) { return x < 128 ? 0 : 255; }, [](int x) { return x < 77 ? 3 : 9; },
     [](int x) { return x / 32 * 36; }},
    {"gammas", Gamma(1 / 2.2, 1), Gamma(0.7, 1.4), Gamma(1.5, 1.1)},
    {"one gamma", Gamma(1 / 2.4, 1), Gamma(1 / 2.4, 1), Gamma(1 / 2.4, 1)},
    {"curves", SShape, [](int x) { return 255 - SShape(x); }, [](int x) { return 2 * std::abs(x - 128); }},
    {"irregular entries", Except(0, Gain(1.2, 3)), Except(255, Gain(0.9, -2)), Except(100, Gamma(0.7, 1))},
    {"noise", Noise, [](int x) { return ~Noise(x); }, [](int x) { return Noise(255 - x); }},
    {"noise once", Gain(1.1, 0), Gamma(0.6, 1), Noise},
};

/// The interface makes straight lines and powers only. The filter owns its tables, so they may be written.
void Set(const unsigned char* table, const Table& entry) {
  for (int i = 0; i < 256; ++i) const_cast<unsigned char*>(table)[i] = static_cast<unsigned char>(entry(i));
}

std::vector<std::uint8_t> Converted(long source, long destination, const RGBFilter* filter) {
  std::vector<std::uint8_t> from(std::size_t{kPixels} * 4), to(std::size_t{kPixels} * 4);
  TestSupport::Fill(from, TestSupport::Content::Noise, 5);
  PixelTypeFactory::GetConverter(source, destination)
      ->Convert(from.data(), kWidth, kHeight, to.data(), kWidth, kHeight, kWidth, kHeight, 0, 0, nullptr,
                nullptr, 0, false, filter);
  return to;
}

/// Where a destination keeps its channels: bytes from a pixel to the next and from red to green to blue.
struct Place {
  long format;
  std::size_t step;
  std::array<std::size_t, 3> channels;
};

const Place kPlaces[] = {{Ids::RGB8, 3, {0, 1, 2}},
                         {Ids::BGR8, 3, {2, 1, 0}},
                         {Ids::RGBa8, 4, {0, 1, 2}},
                         {Ids::BGRa8, 4, {2, 1, 0}},
                         {Ids::RGB8_Planar, 1, {0, kPixels, 2 * kPixels}}};

class ToneTables : public testing::TestWithParam<Kind> {};

TEST_P(ToneTables, AreAppliedToEachByteAtEveryLevel) {
  RGBFilter filter;
  Set(filter.GetRed(), GetParam().red);
  Set(filter.GetGreen(), GetParam().green);
  Set(filter.GetBlue(), GetParam().blue);
  const std::array tables = {filter.GetRed(), filter.GetGreen(), filter.GetBlue()};
  for (const char* level : TestSupport::CpuLevels()) {
    const TestSupport::ForcedCpuLevel forced(level);
    for (const long source :
         {Ids::Mono8, Ids::Mono1p, Ids::Mono2p, Ids::Mono4p, Ids::RGB8, Ids::BGRa8, Ids::RGB8_Planar}) {
      const auto plain = Converted(source, Ids::RGB8, nullptr);
      const auto entry = [&](std::size_t pixel, std::size_t channel) {
        return tables[channel][plain[3 * pixel + channel]];
      };
      for (const Place& place : kPlaces) {
        const auto toned = Converted(source, place.format, &filter);
        std::size_t wrong = 0;
        for (std::size_t i = 0; i < kPixels; ++i)
          for (std::size_t channel = 0; channel < 3; ++channel)
            wrong += toned[i * place.step + place.channels[channel]] != entry(i, channel);
        EXPECT_EQ(wrong, 0U) << level << ", " << source << " to " << place.format;
      }
      const auto words = Converted(source, Ids::RGB565p, &filter);
      std::size_t wrong = 0;
      for (std::size_t i = 0; i < kPixels; ++i)
        wrong += (words[2 * i] | words[2 * i + 1] << 8) !=
                 (entry(i, 0) >> 3 << 11 | entry(i, 1) >> 2 << 5 | entry(i, 2) >> 3);
      EXPECT_EQ(wrong, 0U) << level << ", " << source << " to RGB565p";
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, ToneTables, testing::ValuesIn(kKinds));

}  // namespace
}  // namespace ZrConvertersLib
