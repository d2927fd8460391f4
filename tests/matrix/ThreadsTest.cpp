#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

#include "Cases.h"
#include "Expectation.h"
#include "Filters.h"

// One converter serves many threads at once; a chain does so when each thread brings its own intermediate
// buffer.

namespace {

using ZrConvertersLib::PixelConverter;

/// Converts again and again with one buffer of its own, and counts the wrong images.
class Worker {
 public:
  Worker(long source, long destination, std::uint64_t seed)
      : mConverter(ZrConvertersLib::PixelTypeFactory::GetConverter(source, destination)),
        mCase(Matrix::PlainCase(130, 8)) {
    mCase.seed = seed;
    mExpected = Matrix::Expect(*Model::FindPair(source, destination), mCase);
  }
  ~Worker() { delete[] mBetween; }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  void Run(int times) {
    for (int i = 0; i < times; ++i) mWrong += !IsRight();
  }

  int Wrong() const { return mWrong; }

 private:
  bool IsRight() {
    std::vector<std::uint8_t> destination = mExpected.before;
    const Model::Call& call = mCase.call;
    mConverter->Convert(mExpected.source.data(), call.width, call.height, destination.data(), call.width,
                        call.height, call.width, call.height, 0, 0, &mBetween, &mBetweenSize, 0, false,
                        nullptr);
    return destination == mExpected.after;
  }

  const PixelConverter* mConverter;
  Matrix::Case mCase;
  Matrix::Expectation mExpected;
  unsigned char* mBetween = nullptr;
  std::uint32_t mBetweenSize = 0;
  int mWrong = 0;
};

class ThreadsTest : public testing::TestWithParam<long> {};

TEST_P(ThreadsTest, OneConverterServesAll) {
  std::vector<std::unique_ptr<Worker>> workers;
  for (std::uint64_t seed = 0; seed < 4; ++seed)
    workers.push_back(std::make_unique<Worker>(GetParam(), 258, seed));
  {
    std::vector<std::jthread> threads;
    for (const auto& worker : workers) threads.emplace_back([&worker] { worker->Run(200); });
  }
  for (const auto& worker : workers) EXPECT_EQ(worker->Wrong(), 0);
}

/// A direct converter of each family, and chains of both families that have them.
INSTANTIATE_TEST_SUITE_P(Families, ThreadsTest, testing::Values(512, 523, 282, 768, 1024, 1031, 772));

}  // namespace
