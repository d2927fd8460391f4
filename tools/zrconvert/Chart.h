// The test chart: one description of a picture, from which every source format is encoded.
#pragma once

#include <cstdint>

namespace zrconvert {

// A colour as a sensor sees it: proportional to the light, 0 is black and 1 is full scale.
struct Colour {
  double red = 0;
  double green = 0;
  double blue = 0;
};

// What a sensor without colour filters sees of a colour: the luma weights of BT.601.
double Luma(const Colour& colour);

// The chart from top to bottom: eight colour bars, a grey ramp over the full range, sixteen grey steps, and
// a field whose left half is a zone plate (up to half a cycle per pixel at its rim) and whose right half
// runs through all hues. A red triangle with a black edge marks the top-left corner, so that a flipped or
// turned picture shows.
class Chart {
 public:
  // Frames of a sequence differ in the phase of the zone plate and of the hues.
  Chart(unsigned width, unsigned height, std::uint64_t frame = 0);

  unsigned Width() const { return mWidth; }
  unsigned Height() const { return mHeight; }

  // The colour of a pixel; x < Width(), y < Height().
  Colour At(unsigned x, unsigned y) const;

 private:
  Colour ColourBar(unsigned x) const;
  Colour ZonePlate(unsigned x, unsigned y) const;
  Colour HueField(unsigned x, unsigned y) const;
  Colour Field(unsigned x, unsigned y) const;

  unsigned mWidth;
  unsigned mHeight;
  std::uint64_t mFrame;
  unsigned mFieldTop;
};

}  // namespace zrconvert
