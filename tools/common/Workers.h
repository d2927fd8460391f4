// A fixed group of threads that run the parts of one job at a time.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace zrcommon {

/// Threads are started once and wait between jobs, so that a job costs two wake-ups and no start.
class Workers {
 public:
  /// @param count  threads that share a job, the caller's own among them; at least 1
  explicit Workers(unsigned count);
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  /// Runs job(0) on the calling thread and job(1) to job(count - 1) on the others, and returns when all have
  /// ended. The job must not throw. One call at a time.
  void Run(const std::function<void(unsigned)>& job);

 private:
  void Serve(unsigned index);
  const std::function<void(unsigned)>* WaitForJob(unsigned& seen);

  std::mutex mMutex;
  std::condition_variable mStarted;
  std::condition_variable mEnded;
  const std::function<void(unsigned)>* mJob = nullptr;  // null ends the threads
  unsigned mJobs = 0;                                   // jobs begun so far
  unsigned mRunning = 0;                                // threads that have not ended the present job
  std::vector<std::jthread> mThreads;
};

}  // namespace zrcommon
