// Reads the words of the command line. Everything here throws UsageError with a sentence that says what is
// wrong and what would be right.
#pragma once

#include <ZrConvertersLib/Development.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/ToneSettings.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zrconvert {

struct Size {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

Size ReadSize(const std::string& text);                       // "640x480"
ZrConvertersLib::Region ReadRegion(const std::string& text);  // "8,16,320,240"
ZrConvertersLib::MosaicPattern ReadPattern(const std::string& text);
ZrConvertersLib::ColourMatrix ReadMatrix(const std::string& text);
ZrConvertersLib::Demosaic ReadDemosaic(const std::string& text);
ZrConvertersLib::PackingOrder ReadPacking(const std::string& text);  // a name of PackingName

// These say in their sentence which option it is and what it takes.
struct CountRange {
  static constexpr std::uint64_t cNoLimit = ~std::uint64_t{0};
  std::uint64_t least = 0;
  std::uint64_t most = cNoLimit;
};
std::uint64_t ReadCount(const std::string& option, const std::string& text, CountRange range);

enum class NumberRange { Any, NotNegative, Positive };
double ReadNumber(const std::string& option, const std::string& text, NumberRange range);

// "1.9,1,1.4", or one number for all three.
ZrConvertersLib::ToneSettings::Channels ReadChannels(const std::string& option, const std::string& text,
                                                     NumberRange range);

std::array<double, 9> ReadColorMatrix(const std::string& text);  // row by row

struct Curve {
  ZrConvertersLib::ToneCurve kind = ZrConvertersLib::ToneCurve::Linear;
  std::vector<ZrConvertersLib::CurvePoint> points;  // of ToneCurve::Points
};
Curve ReadCurve(const std::string& text);  // a name, or "0:0,0.2:0.5,1:1"

std::string ToText(Size size);  // "640x480"

}  // namespace zrconvert
