#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "FrameCase.h"
#include "support/Registry.h"

namespace {

using namespace ZrConvertersLib;
using FrameTest::Case;

constexpr unsigned kThreads = 4;

void OnThreads(const std::function<void(unsigned)>& work) {
  std::vector<std::jthread> threads;
  for (unsigned i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
}

/// Each thread converts a quarter of the lines with an object of its own.
void ConvertOnThreads(const Case& frame, const SourceView& source, const DestinationView& picture,
                      std::atomic<int>& failures) {
  OnThreads([&](unsigned thread) {
    FrameConverter converter;
    if (!converter.Configure(frame.source, frame.destination, frame.width, frame.height, frame.options)
             .IsSuccess()) {
      ++failures;
      return;
    }
    const std::uint32_t first = picture.height * thread / kThreads;
    const std::uint32_t end = picture.height * (thread + 1) / kThreads;
    if (!converter.ConvertLines(first, end - first, source, picture).IsSuccess()) ++failures;
  });
}

TEST(ThreadsTest, BandsOfOneFrame) {
  for (const auto& [source, destination] : TestSupport::RegisteredPairs()) {
    const Case frame = FrameTest::CaseOf(source, destination, 200);
    const std::vector<std::uint8_t> from = FrameTest::SourceOf(frame);
    std::vector<std::uint8_t> to = FrameTest::BlankOf(frame);
    std::atomic<int> failures = 0;
    ConvertOnThreads(frame, FrameTest::ViewOf(frame, std::span<const std::uint8_t>(from)),
                     FrameTest::ViewOf(frame, std::span<std::uint8_t>(to)), failures);
    ASSERT_EQ(failures, 0) << Describe(frame);
    ASSERT_EQ(to, FrameTest::ExpectedOf(frame)) << Describe(frame);
  }
}

TEST(ThreadsTest, ManyConvertersSideBySide) {
  const auto pairs = TestSupport::RegisteredPairs();
  std::atomic<int> wrong = 0;
  OnThreads([&](unsigned thread) {
    for (const auto& [source, destination] : pairs) {
      const Case frame = FrameTest::CaseOf(source, destination, 300 + thread);
      const std::vector<std::uint8_t> from = FrameTest::SourceOf(frame);
      std::vector<std::uint8_t> to = FrameTest::BlankOf(frame);
      const auto result =
          ConvertFrame(source, FrameTest::ViewOf(frame, std::span<const std::uint8_t>(from)), destination,
                       FrameTest::ViewOf(frame, std::span<std::uint8_t>(to)), frame.options);
      // A picture that is a part of the frame needs a converter, which ConvertFrame has made.
      if (!result.IsSuccess() || to != FrameTest::ExpectedOf(frame)) ++wrong;
    }
  });
  EXPECT_EQ(wrong, 0);
}

}  // namespace
