// The options that are chosen by a word, and their words, which are those of the tool zrconvert.
#pragma once

#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "Refusal.h"

namespace zrbindings {

template <typename Value>
struct Word {
  const char* text;  ///< zero-terminated
  Value value;
  const char* meaning;
};
template <typename Value>
Word(const char*, Value, const char*) -> Word<Value>;

inline constexpr std::array kPatterns{
    Word{"GRBG", ZrConvertersLib::MosaicPattern::GRBG, "green red / blue green"},
    Word{"GBRG", ZrConvertersLib::MosaicPattern::GBRG, "green blue / red green"},
    Word{"RGGB", ZrConvertersLib::MosaicPattern::RGGB, "red green / green blue"},
    Word{"BGGR", ZrConvertersLib::MosaicPattern::BGGR, "blue green / green red"},
};

inline constexpr std::array kDemosaics{
    Word{"fast", ZrConvertersLib::Demosaic::Fast, "one colour for each 2 x 2 sites"},
    Word{"interpolate", ZrConvertersLib::Demosaic::Interpolate, "bilinear over 3 x 3 sites"},
};

inline constexpr std::array kMatrices{
    Word{"601", ZrConvertersLib::ColourMatrix::Bt601, "BT.601, video range"},
    Word{"709", ZrConvertersLib::ColourMatrix::Bt709, "BT.709, video range"},
    Word{"jpeg", ZrConvertersLib::ColourMatrix::Jpeg, "BT.601, full range (JFIF)"},
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

template <typename Value, std::size_t kCount>
const char* TextOf(const std::array<Word<Value>, kCount>& words, Value value) {
  return std::ranges::find(words, value, &Word<Value>::value)->text;
}

/// Throws Refusal when the source's name or code has settled another pattern or matrix than the options have.
inline void RefuseContradiction(const ZrConvertersLib::FormatChoice& source,
                                const ZrConvertersLib::FrameOptions& options) {
  ZrConvertersLib::FrameOptions settled;
  settled.SetFlags(source.flags);
  if (!source.settled || (settled.pattern == options.pattern && settled.matrix == options.matrix)) return;
  throw Refusal("the source format's name or code says another pattern or matrix");
}

}  // namespace zrbindings
