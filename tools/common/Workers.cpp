#include "Workers.h"

namespace zrcommon {

Workers::Workers(unsigned count) {
  mThreads.reserve(count - 1);
  for (unsigned i = 1; i < count; ++i) mThreads.emplace_back([this, i] { Serve(i); });
}

Workers::~Workers() {
  {
    const std::lock_guard lock(mMutex);
    mJob = nullptr;
    ++mJobs;
  }
  mStarted.notify_all();
}

void Workers::Run(const std::function<void(unsigned)>& job) {
  {
    const std::lock_guard lock(mMutex);
    mJob = &job;
    mRunning = static_cast<unsigned>(mThreads.size());
    ++mJobs;
  }
  mStarted.notify_all();
  job(0);
  std::unique_lock lock(mMutex);
  mEnded.wait(lock, [this] { return mRunning == 0; });
}

void Workers::Serve(unsigned index) {
  unsigned seen = 0;
  while (const auto* job = WaitForJob(seen)) {
    (*job)(index);
    const std::lock_guard lock(mMutex);
    if (--mRunning == 0) mEnded.notify_one();
  }
}

const std::function<void(unsigned)>* Workers::WaitForJob(unsigned& seen) {
  std::unique_lock lock(mMutex);
  mStarted.wait(lock, [&] { return mJobs != seen; });
  seen = mJobs;
  return mJob;
}

}  // namespace zrcommon
