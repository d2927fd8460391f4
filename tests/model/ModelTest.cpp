#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "BiColor.h"
#include "Converter.h"
#include "Demosaic.h"
#include "Readers.h"
#include "Scf1.h"

// The model is the reference of the matrix, so it is held against figures worked out by hand.

namespace {

using Bytes = std::vector<unsigned>;

struct Trial {
  Model::Call call;
  Model::Memory source{64, 512}, destination{256, 512};

  Trial(std::uint32_t width, std::uint32_t height, unsigned flags, std::initializer_list<unsigned> bytes) {
    call.sourceWidth = call.destinationWidth = call.width = width;
    call.sourceHeight = call.destinationHeight = call.height = height;
    call.flags = flags;
    std::ptrdiff_t at = 0;
    for (const unsigned byte : bytes) source.Write(at++, static_cast<std::uint8_t>(byte));
    std::ranges::fill(destination.All(), std::uint8_t{0xEE});
  }

  /// `count` destination bytes after the conversion, from `begin` on.
  Bytes To(long from, long to, std::ptrdiff_t count, std::ptrdiff_t begin = 0) {
    Model::Convert(Model::FindPair(from, to).value(), call, source, destination);
    const auto bytes = destination.Range(begin, begin + count);
    return {bytes.begin(), bytes.end()};
  }
};

constexpr long kMono8 = 512, kMono10 = 514, kMono16 = 519, kRgb8 = 258, kRgba8 = 260, kRgb16 = 282;

TEST(Model, ScalesByTruncation) {
  EXPECT_EQ(Trial(1, 1, 0, {0xFF}).To(kMono8, kMono10, 2), (Bytes{0xFC, 0x03}));
  EXPECT_EQ(Trial(1, 1, 0, {0xFF, 0x03}).To(kMono10, kMono8, 1), Bytes{0xFF});
  EXPECT_EQ(Trial(1, 1, 0, {0xFF, 0x03}).To(kMono10, kMono16, 2), (Bytes{0xC0, 0xFF}));
  EXPECT_EQ(Trial(1, 1, 0, {0x00, 0xFC}).To(kMono10, kMono16, 2), (Bytes{0, 0}));
  EXPECT_EQ(Trial(3, 1, 0, {0x80, 0x00, 0x7F}).To(513, kMono8, 3), (Bytes{0, 0x80, 0xFF}));
  EXPECT_EQ(Trial(1, 1, 0, {0x78, 0x56, 0x34, 0x12}).To(526, kMono16, 2), (Bytes{0x34, 0x12}));
  EXPECT_EQ(Trial(1, 1, 0, {0x80}).To(kMono8, 256, 2), (Bytes{0x10, 0x84}));
}

TEST(Model, WritesWholeGroupsOfPackedMono) {
  Trial tenBit(5, 1, 0, {0xFF, 0x03, 0, 0, 0, 0xFF, 0x03, 0, 0, 0});
  EXPECT_EQ(tenBit.To(523, kMono8, 9), (Bytes{0xFF, 0, 0, 0, 0xFF, 0, 0, 0, 0xEE}));
  EXPECT_EQ(tenBit.source.End(), 10);
  EXPECT_EQ(Trial(1, 1, 0, {0x01}).To(520, kMono8, 9), (Bytes{255, 0, 0, 0, 0, 0, 0, 0, 0xEE}));
  EXPECT_EQ(Trial(4, 1, 0, {0b11100100}).To(521, kMono8, 4), (Bytes{0, 64, 128, 255}));
  EXPECT_EQ(Trial(2, 1, 0, {0xFE}).To(522, kMono8, 2), (Bytes{224, 255}));
}

TEST(Model, OverrunsInTheOrderOfTheLines) {
  // One Mono12p pixel a line, whose group holds a second: 0x10 and 0x20, then 0x30 and 0x40.
  Trial down(1, 2, 0, {0, 0x01, 0x20, 0, 0x03, 0x40});
  down.call.sourcePadding = 2;
  Trial up = down;
  up.call.flip = true;
  EXPECT_EQ(down.To(524, kMono8, 4), (Bytes{0x10, 0x30, 0x40, 0xEE}));
  EXPECT_EQ(up.To(524, kMono8, 4), (Bytes{0x30, 0x40, 0x20, 0xEE}));
}

TEST(Model, PairPackedNibbleReachesIntoTheUpperByte) {
  EXPECT_EQ(Trial(2, 1, 0, {0x00, 0xC0, 0x00}).To(516, kMono16, 2), (Bytes{0x00, 0x03}));
  EXPECT_EQ(Trial(2, 1, 0, {0x12, 0x34, 0x56}).To(517, kMono16, 4), (Bytes{0x30, 0x12, 0x40, 0x56}));
  EXPECT_EQ(Trial(2, 1, 0, {0x12, 0x34, 0x56}).To(1026, 1029, 4), (Bytes{0x30, 0x12, 0x40, 0x56}));
}

TEST(Model, ReadsColourByOrder) {
  EXPECT_EQ(Trial(1, 1, 0, {1, 2, 3, 4}).To(261, kRgb8, 3), (Bytes{3, 2, 1}));
  EXPECT_EQ(Trial(1, 1, 0, {10, 200, 30}).To(kRgb8, kMono8, 1), Bytes{200});
  EXPECT_EQ(Trial(1, 1, 0, {0xFF, 3, 3, 0, 0, 0}).To(263, kRgba8, 4), (Bytes{0, 0, 0xFF, 0xFF}));
}

TEST(Model, ChoosesTheMatrix) {
  EXPECT_EQ(Trial(2, 1, 0, {16, 128, 235, 128}).To(768, kRgb8, 6), (Bytes{0, 0, 0, 255, 255, 255}));
  EXPECT_EQ(Trial(1, 1, 0x50000, {128, 128, 255}).To(778, kRgb8, 3), (Bytes{255, 37, 128}));
  EXPECT_EQ(Trial(1, 1, 0x10000, {128, 128, 255}).To(778, kRgb8, 3), (Bytes{255, 37, 128}));
  EXPECT_EQ(Trial(1, 1, 0x20000, {128, 128, 255}).To(778, kRgb8, 3), (Bytes{255, 27, 130}));
  EXPECT_EQ(Trial(1, 1, 0x40000, {128, 128, 255}).To(778, kRgb8, 3), (Bytes{255, 63, 130}));
}

TEST(Model, SharesChromaInWholeGroups) {
  EXPECT_EQ(Trial(3, 1, 0x10000, {1, 128, 2, 128, 3, 128, 4, 128}).To(768, kMono8, 3), (Bytes{1, 2, 0xEE}));
  const auto of411 = [](std::uint32_t width, std::ptrdiff_t count) {
    return Trial(width, 1, 0x10000, {1, 2, 128, 3, 4, 128, 5, 6, 128, 7, 8, 128}).To(784, kMono8, count);
  };
  EXPECT_EQ(of411(6, 9), (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 0xEE}));
  EXPECT_EQ(of411(5, 5), (Bytes{1, 2, 3, 4, 0xEE}));
}

TEST(Model, FastDemosaicGivesOneColourPerTile) {
  const Bytes pixels = Trial(2, 2, Model::kRggb, {200, 10, 21, 50}).To(1024, kRgb8, 12);
  EXPECT_EQ(pixels, (Bytes{200, 15, 50, 200, 15, 50, 200, 15, 50, 200, 15, 50}));
  EXPECT_EQ(Trial(2, 2, 0xF0, {200, 10, 21, 50}).To(1024, kRgb8, 3), (Bytes{50, 15, 200})) << "BGGR wins";
}

TEST(Model, LastColumnLosesGreenOnlyWhereBlueStartsTheTile) {
  // Columns 1 and 2 of a GBRG mosaic form a tile that starts blue-green.
  EXPECT_EQ(Trial(3, 2, Model::kGbrg, {10, 20, 30, 40, 50, 60}).To(1024, kRgb8, 3, 6), (Bytes{60, 0, 20}));
  EXPECT_EQ(Trial(3, 2, Model::kGbrg, {10, 20, 200, 40, 100, 60}).To(1024, kRgb16, 6, 12),
            (Bytes{0, 60, 2, 0, 0, 20}));
  EXPECT_EQ(Trial(3, 2, Model::kGrbg, {10, 20, 30, 40, 50, 60}).To(1024, kRgb8, 3, 6), (Bytes{20, 40, 60}));
}

TEST(Model, OddHeightEndsAsTheFlagsSay) {
  const std::initializer_list<unsigned> lines = {1, 2, 3, 4, 5, 6, 70, 80};
  EXPECT_EQ(Trial(2, 3, Model::kRggb, lines).To(1024, kMono8, 9), (Bytes{2, 2, 2, 2, 38, 38, 38, 38, 0xEE}));
  EXPECT_EQ(Trial(2, 3, Model::kRggb | Model::kSingleLastLine, lines).To(1024, kMono8, 7),
            (Bytes{2, 2, 4, 4, 4, 4, 0xEE}));
  EXPECT_EQ(Trial(2, 1, Model::kSingleLastLine, lines).To(1024, kMono8, 2), (Bytes{0xEE, 0xEE}));
}

TEST(Model, FlippedPairsKeepTheirOrder) {
  Trial run(2, 4, Model::kRggb, {1, 2, 3, 4, 5, 6, 7, 8});
  run.call.flip = true;
  EXPECT_EQ(run.To(1024, kMono8, 8), (Bytes{6, 6, 6, 6, 2, 2, 2, 2}));
}

TEST(Model, InterpolatesBetweenMirroredNeighbours) {
  // R 10 G 20 R 30
  // G 40 B 50 G 60
  // R 70 G 80 R 90
  const std::initializer_list<unsigned> sites = {10, 20, 30, 40, 50, 60, 70, 80, 90, 1, 1, 1};
  const Bytes rgb = Trial(3, 3, Model::kRggb | Model::kInterpolate | 0x05000000, sites).To(1024, kRgb8, 9);
  EXPECT_EQ(rgb, (Bytes{10, 30, 50, 20, 20, 50, 30, 40, 50}));
  const Bytes second =
      Trial(3, 4, Model::kRggb | Model::kInterpolate, {10, 20, 30, 40, 50, 60, 70, 80, 90, 40, 50, 60})
          .To(1024, kRgb8, 9, 9);
  EXPECT_EQ(second, (Bytes{40, 40, 50, 50, 50, 50, 60, 60, 50}));
}

TEST(Model, ChainsThroughTheIntermediate) {
  EXPECT_EQ(Trial(2, 2, Model::kRggb, {200, 0, 10, 21, 0, 50}).To(1028, kRgb8, 3), (Bytes{200, 15, 50}));
  // Two pixels of 10 bits: Y 64, Cb 512, Y 940, Cr 512.
  EXPECT_EQ(Trial(2, 1, 0, {0x40, 0x00, 0xC8, 0x3A, 0x80}).To(770, kRgb8, 6),
            (Bytes{0, 0, 0, 255, 255, 255}));
}

TEST(Model, ReadsPackedColours) {
  // Red 0x234, green 0x101, blue 0x3FF.
  EXPECT_EQ(Trial(1, 1, 0, {0x34, 0x06, 0xF4, 0xFF}).To(287, kRgb16, 6),
            (Bytes{0, 0x8D, 0x40, 0x40, 0xC0, 0xFF}));
  EXPECT_EQ(Trial(1, 1, 0, {0xF4, 0x8D, 0x40, 0xFF}).To(286, kRgb16, 6),
            (Bytes{0, 0x8D, 0x40, 0x40, 0xC0, 0xFF}));
  EXPECT_EQ(Trial(1, 1, 0, {0xE0, 0xFF}).To(256, kRgb8, 3), (Bytes{255, 255, 0}));
  EXPECT_EQ(Trial(1, 1, 0, {0x21, 0x88}).To(257, kRgb8, 3), (Bytes{8, 4, 140}));

  // One pixel of 4.5 bytes: red 0x123, green 0x456, blue 0x789, whose byte's upper nibble is nobody's.
  Trial pairs(1, 1, 0, {0x12, 0x63, 0x45, 0x78, 0xF9});
  EXPECT_EQ(pairs.To(288, kRgb16, 6), (Bytes{0x30, 0x12, 0x60, 0x45, 0x90, 0x78}));
  EXPECT_EQ(pairs.source.End(), 5);

  // Two lines of one pixel: each plane is two bytes and two of padding.
  Trial planes(1, 2, 0, {1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0});
  planes.call.sourcePadding = 1;
  EXPECT_EQ(planes.To(289, kRgb8, 6), (Bytes{1, 3, 5, 2, 4, 6}));
}

TEST(Model, ChainsPackedColoursByWayOfTheirDepth) {
  // Alpha 0, blue 0x3FF, green 0x101, red 0x234.
  const std::initializer_list<unsigned> bgra = {0xFF, 0x07, 0x44, 0x23, 0x00};
  EXPECT_EQ(Trial(1, 1, 0, bgra).To(269, kRgb16, 6), (Bytes{0, 0x8D, 0x40, 0x40, 0xC0, 0xFF}));
  EXPECT_EQ(Trial(1, 1, 0, bgra).To(269, kRgba8, 4), (Bytes{0x8D, 0x40, 0xFF, 0xFF}));
  EXPECT_EQ(Model::FindPair(269, 261)->size(), 2u) << "not the unpacker alone";
}

TEST(Model, PacksAsTheFlagsSay) {
  const auto mono16 = [](long from, unsigned flags, std::initializer_list<unsigned> bytes) {
    return Trial(2, 1, flags, bytes).To(from, kMono16, 4);
  };
  constexpr unsigned kBoth = Model::kGigEVisionPacking | Model::kCsi2Packing;
  EXPECT_EQ(mono16(517, kBoth, {0x12, 0x34, 0x56}), (Bytes{0x40, 0x12, 0x30, 0x56}));
  EXPECT_EQ(mono16(516, kBoth, {0x12, 0xDE, 0x56}), (Bytes{0x80, 0x12, 0x40, 0x56}));
  EXPECT_EQ(mono16(517, Model::kCsi2Packing, {0x12, 0x34, 0x56}), (Bytes{0x30, 0x12, 0x40, 0x56}));
  EXPECT_EQ(mono16(523, kBoth, {0x12, 0x34, 0, 0, 0x09}), (Bytes{0x40, 0x12, 0x80, 0x34}));
  EXPECT_EQ(mono16(524, kBoth, {0x12, 0x34, 0xA5}), (Bytes{0x50, 0x12, 0xA0, 0x34}));
  EXPECT_EQ(mono16(525, kBoth, {0x12, 0x34, 0, 0, 0x41, 0x08, 0}), (Bytes{0x04, 0x12, 0x84, 0x34}));
  // Y 64, Cb 512, Y 940, Cr 512, and the same bytes where the flag means nothing.
  EXPECT_EQ(Trial(2, 1, kBoth, {16, 128, 235, 128, 0}).To(770, kRgb8, 6), (Bytes{0, 0, 0, 255, 255, 255}));
  EXPECT_EQ(Trial(2, 1, kBoth, {0x00, 0x01, 0x80, 0xB0, 0x0E, 0x80}).To(772, kRgb8, 6),
            (Bytes{0, 0, 0, 255, 255, 255}));
}

TEST(Model, SharesBiColourInPairs) {
  const std::initializer_list<unsigned> line = {10, 20, 30, 41, 50, 60};
  EXPECT_EQ(Trial(3, 1, 0, line).To(1536, kRgb8, 10), (Bytes{10, 30, 30, 10, 30, 30, 50, 50, 30, 0xEE}));
  EXPECT_EQ(Trial(3, 1, 0xF000, line).To(1536, kRgb8, 9), (Bytes{41, 20, 20, 41, 20, 20, 41, 40, 60}))
      << "GBGR wins";
  EXPECT_EQ(Trial(3, 1, Model::kBgrg, line).To(1536, kRgb8, 3), (Bytes{30, 30, 10}));
  EXPECT_EQ(Trial(3, 1, Model::kGrgb, line).To(1536, kRgb8, 3), (Bytes{20, 20, 41}));
  EXPECT_EQ(Trial(1, 1, 0, line).To(1536, kRgb8, 3), (Bytes{0xEE, 0xEE, 0xEE}));
  EXPECT_EQ(Trial(2, 1, 0, {0x00, 0xFC, 1, 0, 0, 0, 2, 0}).To(1537, kRgb16, 6), (Bytes{0, 0, 0x60, 0, 0, 0}))
      << "stray bits, and half of 0x40 + 0x80";
}

TEST(Model, InterpolatesBiColourBetweenMirroredNeighbours) {
  const std::initializer_list<unsigned> line = {10, 20, 30, 40, 50, 60, 71, 80};
  EXPECT_EQ(Trial(4, 1, Model::kInterpolateBiColor, line).To(1536, kRgb8, 12),
            (Bytes{10, 20, 30, 30, 40, 30, 50, 60, 50, 50, 80, 71}));
  EXPECT_EQ(Trial(4, 1, Model::kInterpolate, line).To(1536, kRgb8, 3), (Bytes{10, 30, 30}));
}

/// Lines of WGWR: white 100, green 40, red 80 in the first tile; white 100, green 20, blue 60.
const std::initializer_list<unsigned> kTile = {100, 40, 100, 80, 40, 100, 81, 100,
                                               100, 60, 100, 20, 60, 100, 22, 100};

TEST(Model, FastScf1GivesOneColourPerTile) {
  Trial tile(4, 4, 0, kTile);
  EXPECT_EQ(tile.To(1280, kRgb8, 6), (Bytes{80, 30, 60, 80, 30, 60}));
  EXPECT_EQ(Trial(4, 4, 0, kTile).To(1280, kRgb16, 6), (Bytes{0x80, 80, 0x80, 30, 0, 60}));
  // Four columns wide within lines of five, and the fifth line with the colour of the tile above.
  EXPECT_EQ(Trial(4, 5, Model::kWbwg, kTile).To(1280, kRgb8, 3, 48), (Bytes{21, 70, 40}));
  EXPECT_EQ(Trial(4, 4, Model::kWrwg, kTile).To(1280, kRgb8, 3), (Bytes{40, 70, 21}));
  EXPECT_EQ(Trial(4, 4, 0xF0000000, kTile).To(1280, kRgb8, 3), (Bytes{60, 30, 80}));
  EXPECT_EQ(Trial(3, 4, 0, kTile).To(1280, kRgb8, 1), Bytes{0xEE});
  EXPECT_EQ(Trial(4, 3, 0, kTile).To(1280, kRgb8, 1), Bytes{0xEE});
}

TEST(Model, InterpolatedScf1ScalesColourByWhite) {
  // Cells by colour and white: green 40 and 100, red 80 and 50 / blue 60 and 200, green 20 and 100. The fifth
  // column cuts the cells that would follow.
  const std::initializer_list<unsigned> sites = {90,  40, 50,  80, 10, 40, 110, 80, 50,  255,
                                                 200, 60, 100, 20, 30, 60, 200, 20, 100, 255};
  Trial run(5, 4, Model::kInterpolate, sites);
  EXPECT_EQ(run.To(1280, kRgb8, 6), (Bytes{144, 36, 27, 144, 36, 27}))
      << "white 90 of its own, and between others";
  EXPECT_EQ(run.To(1280, kRgb8, 3, 12), (Bytes{16, 4, 3})) << "cut cells are those two before";
  EXPECT_EQ(run.To(1280, kRgb8, 3, 36), (Bytes{160, 20, 30}));
  Trial turned(4, 5, Model::kWgwb | Model::kInterpolate, {});
  for (int i = 0; i < 20; ++i) turned.source.Write(i % 5 * 4 + i / 5, run.source.Read(i));
  EXPECT_EQ(turned.To(1280, kRgb8, 3, 48), (Bytes{16, 4, 3}));
  // Twice as green as white, and white itself is full: limited.
  EXPECT_EQ(Trial(4, 4, Model::kInterpolate, {255, 255, 0, 0, 255, 0}).To(1280, kRgb16, 4),
            (Bytes{0, 0, 255, 255}));
}

TEST(Model, InterpolatesScf1BandsAsPartsOfTheFrame) {
  Trial frame(7, 13, Model::kInterpolate, {}), band(7, 9, Model::kInterpolate | Model::kSingleLastLine, {});
  for (int at = 0; at < 7 * 13; ++at) {
    const auto byte = static_cast<std::uint8_t>(at * at * 37 >> 3);
    frame.source.Write(at, byte);
    band.source.Write(at - 7 * 4, byte);
  }
  EXPECT_EQ(frame.To(1280, kMono8, 7 * 9, 7 * 4), band.To(1280, kMono8, 7 * 9));
}

TEST(Model, KnowsEveryPair) {
  std::size_t pairs = 0;
  for (const Model::Source& source : Model::AllSources()) {
    for (const long destination : Model::DestinationsOf(source.id)) {
      EXPECT_TRUE(Model::FindPair(source.id, destination)) << source.name << " to " << destination;
      ++pairs;
    }
  }
  EXPECT_EQ(pairs, 1488u);
  EXPECT_FALSE(Model::FindPair(1028, 512 + 1));
}

}  // namespace
