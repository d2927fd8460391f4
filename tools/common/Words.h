// The options that are chosen by a word, and their words.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "Refusal.h"

namespace zrcommon {

template <typename Value>
struct Word {
  const char* text;  ///< zero-terminated
  Value value;
  const char* meaning;
};
template <typename Value>
Word(const char*, Value, const char*) -> Word<Value>;

/// All names of mosaic patterns that the library knows, in the order of their values.
inline std::vector<std::string_view> PatternNames() {
  std::vector<std::string_view> names;
  const auto name = [&] {
    return ZrConvertersLib::PatternName(ZrConvertersLib::MosaicPattern(names.size()));
  };
  while (!name().empty()) names.push_back(name());
  return names;
}

inline constexpr std::array kDemosaics{
    Word{"fast", ZrConvertersLib::Demosaic::Fast, "one colour for each tile"},
    Word{"interpolate", ZrConvertersLib::Demosaic::Interpolate, "every pixel from its neighbours"},
    Word{"directional", ZrConvertersLib::Demosaic::Directional,
         "along the direction that changes less, at full depth"},
};

inline constexpr std::array kMatrices{
    Word{"601", ZrConvertersLib::ColourMatrix::Bt601, "BT.601, video range"},
    Word{"709", ZrConvertersLib::ColourMatrix::Bt709, "BT.709, video range"},
    Word{"jpeg", ZrConvertersLib::ColourMatrix::Jpeg, "BT.601, full range (JFIF)"},
};

inline constexpr std::array kCurves{
    Word{"linear", ZrConvertersLib::ToneCurve::Linear, "as the light is"},
    Word{"gamma", ZrConvertersLib::ToneCurve::Gamma, "light to the power of 1 / gamma"},
    Word{"srgb", ZrConvertersLib::ToneCurve::Srgb, "the encoding of sRGB"},
};

inline constexpr std::array kPackings{
    Word{"type", ZrConvertersLib::PackingOrder::Type, "as the format's layout says"},
    Word{"gige-vision", ZrConvertersLib::PackingOrder::GigEVision, "low bits as in GigE Vision"},
    Word{"csi2", ZrConvertersLib::PackingOrder::Csi2, "low bits after the samples, as in MIPI CSI-2"},
};

/// Throws Refusal with all words when the text is none of them.
template <typename Value, std::size_t kCount>
Value ValueOf(const std::array<Word<Value>, kCount>& words, std::string_view option, std::string_view text) {
  const auto found = std::ranges::find(words, text, &Word<Value>::text);
  if (found != words.end()) return found->value;
  std::string message = std::string(option) + " is one of";
  for (const auto& word : words) message += std::string(" '") + word.text + "'";
  throw Refusal(message + ", not '" + std::string(text) + "'");
}

/// Throws Refusal when no pattern has that name.
inline ZrConvertersLib::MosaicPattern PatternOf(std::string_view text) {
  const auto names = PatternNames();
  const auto found = std::ranges::find(names, text);
  if (found == names.end())
    Require(ZrConvertersLib::FrameError::InvalidPattern, "'" + std::string(text) + "'");
  return ZrConvertersLib::MosaicPattern(found - names.begin());
}

/// Throws Refusal when the source's name or code has settled another pattern or matrix than the options have.
inline void RefuseContradiction(const ZrConvertersLib::FormatChoice& source,
                                const ZrConvertersLib::FrameOptions& options) {
  if (!source.settled) return;
  ZrConvertersLib::FrameOptions settled;
  settled.SetFlags(source.flags);
  const bool isYCbCr =
      ZrConvertersLib::FindFormatInfo(source.id)->family == ZrConvertersLib::FormatFamily::YCbCr;
  if (isYCbCr ? settled.matrix == options.matrix : settled.pattern == options.pattern) return;
  throw Refusal("the source format's name or code says another pattern or matrix");
}

}  // namespace zrcommon
