#include "Progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace zrconvert {
namespace {

using namespace std::chrono_literals;

constexpr unsigned cBarWidth = 30;
constexpr auto cRedraw = 100ms;

double Seconds(std::chrono::nanoseconds time) {
  return std::max(1e-9, std::chrono::duration<double>(time).count());
}

std::string Bar(std::uint64_t done, std::uint64_t frames) {
  const std::uint64_t whole = std::max<std::uint64_t>(1, frames);
  std::string bar(cBarWidth, ' ');
  std::fill_n(bar.begin(), cBarWidth * std::min(done, whole) / whole, '#');
  return bar;
}

}  // namespace

Progress::Progress(std::optional<std::uint64_t> frames, bool quiet)
    : mFrames(frames), mDraws(!quiet && isatty(STDERR_FILENO) && frames != 1U), mQuiet(quiet) {}

Progress::~Progress() {
  Clear();
}

void Progress::FrameDone() {
  ++mDone;
  const Clock::time_point now = Clock::now();
  if (!mDraws || (now < mNextDraw && mDone != mFrames)) return;
  Draw(now);
  mNextDraw = now + cRedraw;
}

void Progress::Draw(Clock::time_point now) {
  const std::string bar = mFrames ? Bar(mDone, *mFrames) : std::string("?");
  const std::string total = mFrames ? std::string("/").append(std::to_string(*mFrames)) : std::string();
  std::fprintf(stderr, "\r\033[K[%s] %llu%s frames, %.1f frames/s", bar.c_str(),
               static_cast<unsigned long long>(mDone), total.c_str(), double(mDone) / Seconds(now - mStart));
  std::fflush(stderr);
  mDrawn = true;
}

void Progress::Clear() {
  if (mDrawn) std::fprintf(stderr, "\r\033[K");
  mDrawn = false;
}

void Progress::Summarise() {
  Clear();
  if (mQuiet || mDone < 2) return;
  const double total = Seconds(Clock::now() - mStart);
  std::fprintf(stderr, "%llu frames in %.2f s: %.1f frames/s, conversion alone %.0f frames/s\n",
               static_cast<unsigned long long>(mDone), total, double(mDone) / total,
               double(mDone) / Seconds(mConversion));
}

}  // namespace zrconvert
