// Tells on standard error how far a sequence of frames has come.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace zrconvert {

class Progress {
 public:
  // The bar is drawn only when standard error is a terminal.
  Progress(std::optional<std::uint64_t> frames, bool quiet);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void FrameDone();

  // The time that the conversion took, without reading and writing.
  void AddConversion(std::chrono::nanoseconds time) { mConversion += time; }

  // "240 frames in 1.9 s: 126 frames/s, conversion alone 1450 frames/s".
  void Summarise();

 private:
  using Moment = std::chrono::steady_clock::time_point;
  std::string Text(double seconds) const;
  void Draw(Moment now);
  void Clear();

  std::optional<std::uint64_t> mFrames;
  bool mDraws;
  bool mQuiet;
  bool mDrawn = false;
  std::uint64_t mDone = 0;
  Moment mStart = std::chrono::steady_clock::now();
  Moment mNextDraw = mStart;
  std::chrono::nanoseconds mConversion{0};
};

}  // namespace zrconvert
