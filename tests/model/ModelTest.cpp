#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "Converter.h"
#include "Demosaic.h"
#include "Readers.h"

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

TEST(Model, KnowsEveryPair) {
  std::size_t pairs = 0;
  for (const Model::Source& source : Model::AllSources()) {
    for (const long destination : Model::DestinationsOf(source.id)) {
      EXPECT_TRUE(Model::FindPair(source.id, destination)) << source.name << " to " << destination;
      ++pairs;
    }
  }
  EXPECT_EQ(pairs, 1024u);
  EXPECT_FALSE(Model::FindPair(1028, 512 + 1));
}

}  // namespace
