// Encodes and writes pictures on several threads, where each picture has a file of its own.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace zrconvert {

class WriterThreads {
 public:
  using Bytes = std::vector<std::uint8_t>;
  using Write = std::function<void(const Bytes& picture, std::uint64_t number)>;

  // Below two threads Add itself writes.
  WriterThreads(unsigned threads, Write write);

  // Waits for the pictures that are being written; queued ones are dropped.
  ~WriterThreads();
  WriterThreads(const WriterThreads&) = delete;
  WriterThreads& operator=(const WriterThreads&) = delete;

  // A buffer for the next picture: one that was used before when there is one.
  Bytes TakeBuffer();

  // Blocks while as many pictures are queued as there are threads. Rethrows the error of an earlier picture.
  void Add(Bytes picture, std::uint64_t number);

  // Waits until everything is written. Rethrows the error of a picture that could not be written.
  void Finish();

 private:
  struct Entry {
    Bytes picture;
    std::uint64_t number;
  };
  void Work();
  void WriteOne(std::unique_lock<std::mutex>& lock);
  void ThrowFault();

  const Write mWrite;
  std::mutex mMutex;
  std::condition_variable mChanged;
  std::deque<Entry> mWaiting;
  std::vector<Bytes> mFree;
  std::size_t mBusy = 0;
  bool mEnding = false;
  std::exception_ptr mFault;
  std::vector<std::jthread> mThreads;
};

}  // namespace zrconvert
