#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>

namespace Bench {

inline double Now() {
  const auto since = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(since).count();
}

/// Time that this thread has run, without what it waited for a processor that others use.
inline double ThreadNow() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Seconds of one call, taken over `calls` in a row. By the clock on the wall when they are done sooner than
/// a processor is taken away. Longer ones by the thread's time, or they could not be timed on a busy machine;
/// for short ones that clock does not do, since a virtual machine corrects it by some microseconds at a time,
/// and reading it takes longer than a small frame.
template <class F>
double TimeOf(F& call, unsigned calls) {
  constexpr double kLong = 1e-3;
  const double threadBegin = ThreadNow(), begin = Now();
  for (unsigned i = 0; i < calls; ++i) call();
  const double passed = Now() - begin, ran = ThreadNow() - threadBegin;
  return (ran < kLong ? passed : ran) / calls;
}

/// How long a burst of calls lasts.
struct Burst {
  double seconds = 0;  ///< at least
  unsigned least = 2;  ///< timings at least
};

/// The fastest of a burst of calls, in seconds. Reading the clock takes a fraction of a microsecond: short
/// calls are timed several at once.
template <class F>
double FastestOf(F&& call, const Burst& burst) {
  constexpr double kLongEnough = 20e-6;
  const double begin = Now();
  unsigned calls = 1;
  double fastest = TimeOf(call, calls);
  while (fastest * calls < kLongEnough && calls < 1024) fastest = TimeOf(call, calls *= 4);
  for (unsigned n = 0; n < burst.least || Now() - begin < burst.seconds; ++n)
    fastest = std::min(fastest, TimeOf(call, calls));
  return fastest;
}

}  // namespace Bench
