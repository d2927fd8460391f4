#include "Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace zrconvert {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t cWidestBar = 30;
constexpr std::size_t cNarrowestBar = 5;
constexpr auto cRedraw = 100ms;

double Seconds(std::chrono::nanoseconds time) {
  return std::max(1e-9, std::chrono::duration<double>(time).count());
}

std::string Bar(std::uint64_t done, std::uint64_t frames, std::size_t width) {
  const std::uint64_t whole = std::max<std::uint64_t>(1, frames);
  std::string bar(width, ' ');
  std::fill_n(bar.begin(), width * std::min(done, whole) / whole, '#');
  return "[" + bar + "] ";
}

// "1:02:03", or "2:03" below an hour.
std::string Clock(double seconds) {
  const auto all = static_cast<unsigned long long>(seconds);
  char text[40];
  if (all < 3600) {
    std::snprintf(text, sizeof text, "%llu:%02llu", all / 60, all % 60);
  } else {
    std::snprintf(text, sizeof text, "%llu:%02llu:%02llu", all / 3600, all / 60 % 60, all % 60);
  }
  return text;
}

// A line that is as wide as the terminal would go on in the next one, and could not be drawn over.
std::size_t RoomInTerminal() {
  winsize size{};
  const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return (known ? size.ws_col : 80U) - 1;
}

}  // namespace

Progress::Progress(std::optional<std::uint64_t> frames, bool quiet)
    : mFrames(frames), mDraws(!quiet && isatty(STDERR_FILENO) && frames != 1U), mQuiet(quiet) {}

Progress::~Progress() {
  Clear();
}

void Progress::FrameDone() {
  ++mDone;
  const Moment now = std::chrono::steady_clock::now();
  if (!mDraws || (now < mNextDraw && mDone != mFrames)) return;
  Draw(now);
  mNextDraw = now + cRedraw;
}

std::string Progress::Text(double seconds) const {
  const double rate = double(mDone) / seconds;
  const std::string total = mFrames ? "/" + std::to_string(*mFrames) : std::string();
  char text[120];
  std::snprintf(text, sizeof text, "%llu%s frames, %.1f frames/s", static_cast<unsigned long long>(mDone),
                total.c_str(), rate);
  if (!mFrames) return text;
  return text + (", " + Clock(double(*mFrames - std::min(mDone, *mFrames)) / rate)) + " left";
}

// The bar gives way to the words, and these are cut in a terminal that is narrower still.
void Progress::Draw(Moment now) {
  const std::size_t room = RoomInTerminal();
  std::string line = Text(Seconds(now - mStart));
  const std::size_t beside = line.size() + 3;
  if (mFrames && room >= beside + cNarrowestBar) {
    line.insert(0, Bar(mDone, *mFrames, std::min(cWidestBar, room - beside)));
  }
  line.resize(std::min(line.size(), room));
  std::fprintf(stderr, "\r\033[K%s", line.c_str());
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
  const double total = Seconds(std::chrono::steady_clock::now() - mStart);
  std::fprintf(stderr, "%llu frames in %.2f s: %.1f frames/s, conversion alone %.0f frames/s\n",
               static_cast<unsigned long long>(mDone), total, double(mDone) / total,
               double(mDone) / Seconds(mConversion));
}

}  // namespace zrconvert
