// Readers of the pictures that the tool writes, independent of it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

struct Image {
  unsigned width = 0;
  unsigned height = 0;
  unsigned channels = 0;
  unsigned greatest = 0;               // the sample that means full scale
  unsigned bitsPerPixel = 0;           // in the file, for bitmaps
  std::vector<std::uint16_t> samples;  // interleaved; red, green, blue, alpha

  std::uint16_t At(unsigned x, unsigned y, unsigned channel) const {
    return samples[(std::size_t{y} * width + x) * channels + channel];
  }
};

// Each fails the running test, and gives an empty image, when the file is not what its format asks for.
Image ReadBmp(const std::filesystem::path& path);
Image ReadPnm(const std::vector<std::uint8_t>& bytes);
Image ReadPng(const std::filesystem::path& path);
