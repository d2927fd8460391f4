#pragma once

#include <cstddef>
#include <cstdint>

#include "simd/LineKernel.h"

/// What the stages of developing need of a call: plain data, seen by baseline code and by the kernel files.
///
/// Samples and colours are 16-bit words. A line is kept as two halves, its even columns and its odd columns
/// apart: the sites of a colour then follow one another, and a site's neighbours are a word before or after.

namespace ZrConvertersLib::simd {

inline constexpr std::size_t kTilePixels = 4224;  ///< columns of a tile at most, a multiple of 128
inline constexpr std::size_t kHalfMargin = 64;    ///< bytes before and after a half that kernels may read
inline constexpr std::size_t kHalfBytes = kTilePixels + 2 * kHalfMargin;  ///< from a half to the next
inline constexpr std::size_t kPlaneBytes = 2 * kHalfBytes;      ///< from a plane of such a line to the next
inline constexpr std::size_t kDevelopedLine = 3 * kPlaneBytes;  ///< from a line of three planes to the next

/// Words of a line to its halves, or bytes to halves of words.
struct SplitArgs {
  const std::uint8_t* samples;
  std::uint8_t* even;
  std::uint8_t* odd;
  std::size_t pixels;   ///< rounded up to whole blocks, which both sides can hold
  std::uint32_t shift;  ///< of words to the right, of bytes to the left
};

/// The sites of a line that are not green, and the halves around them, each from the first site's column or
/// its neighbour's on. One word more may be read to the left and to the right of what `sites` covers.
struct GreenArgs {
  const std::uint8_t* site;
  const std::uint8_t *west, *east, *north, *south;  ///< at a distance of 1
  const std::uint8_t *farNorth, *farSouth;          ///< at a distance of 2
  std::uint8_t* green;
  std::size_t sites;  ///< rounded up to whole vectors
};

/// Samples of a half, and the green that was found where they stand.
struct Sites {
  const std::uint8_t *sample, *green;
};

/// A line of the mosaic with its own colour, red or blue, at every other site, and the lines around it: the
/// half of its green sites there has the other colour. One word more may be read to the left and to the right
/// of what `sites` covers.
struct ColourArgs {
  Sites own;                      ///< the line's own colour
  const std::uint8_t* greenSite;  ///< the other half of the line
  Sites above, below;             ///< the other colour
  std::uint8_t* planes[3];        ///< even half of own colour, green and other colour
  std::size_t sites;              ///< of either half, rounded up to whole vectors
  bool ownIsOdd;                  ///< the line's own colour is in odd columns
};

/// The scale that samples are kept on: 14 bits leave room for sums in 16, and hold most sensors' samples.
enum class SampleScale : std::uint8_t { Fourteen, Sixteen, Count };

inline constexpr std::size_t kSampleScales = static_cast<std::size_t>(SampleScale::Count);

struct DemosaicKernels {
  void (*split)(const SplitArgs&);
  void (*splitBytes)(const SplitArgs&);
  void (*green[kSampleScales])(const GreenArgs&);
  void (*colour[kSampleScales])(const ColourArgs&);
  void (*greenOnly[kSampleScales])(const ColourArgs&);  ///< leaves the other planes as they are
};

/// A curve from 0..65535 to 0..65535 in short straight pieces. The piece of x is found in the bits of the
/// 32-bit float x + shift, so that pieces are equally long with a shift of 65536 and grow with x without one.
struct CurveTable {
  const float* pieces;      ///< two a piece: the value at 0 less 32768, and the slope
  float least;              ///< smaller x are taken for this one
  float shift;              ///< added to x
  std::uint32_t firstBits;  ///< of the first piece's first x + shift, moved down
  std::uint32_t down;       ///< how far bits are moved to the right
};

/// Levels, gains, matrix and curve for words of three planes, in place.
struct GradeArgs {
  std::uint8_t* planes[3];
  std::size_t words;    ///< of each plane, rounded up to whole vectors
  float factors[3][3];  ///< of red, green and blue, a row for each result
  float offset[3];      ///< added to the sum of products
  const CurveTable* curve;
};

/// What a grading leaves out.
enum GradeKind : std::uint8_t { kGradeMixes = 1, kGradeCurve = 2, kGradeGreenOnly = 4, kGradeKinds = 8 };

struct GradeKernels {
  void (*grade[kGradeKinds])(const GradeArgs&);
};

/// Samples of a line of YCbCr, as words of the 16-bit scale, to three planes of words.
struct YCbCrDepthArgs {
  const std::uint8_t* words;
  std::uint8_t* planes[3];
  std::size_t pixels;  ///< rounded up to whole vectors of words in each plane
  const YCbCrMatrix* matrix;
};

/// By the order of samples.
struct YCbCrDepthKernels {
  void (*yCbYCr)(const YCbCrDepthArgs&);
  void (*cbYCrY)(const YCbCrDepthArgs&);
  void (*cbYCr)(const YCbCrDepthArgs&);
};

}  // namespace ZrConvertersLib::simd
