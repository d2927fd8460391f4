#include "WriterThreads.h"

#include <utility>

namespace zrconvert {

WriterThreads::WriterThreads(unsigned threads, Write write) : mWrite(std::move(write)) {
  for (unsigned i = 0; threads > 1 && i < threads; ++i) mThreads.emplace_back([this] { Work(); });
}

WriterThreads::~WriterThreads() {
  const std::scoped_lock lock(mMutex);
  mEnding = true;
  mWaiting.clear();
  mChanged.notify_all();
}

WriterThreads::Bytes WriterThreads::TakeBuffer() {
  const std::scoped_lock lock(mMutex);
  if (mFree.empty()) return {};
  Bytes buffer = std::move(mFree.back());
  mFree.pop_back();
  return buffer;
}

void WriterThreads::ThrowFault() {
  if (mFault) std::rethrow_exception(mFault);
}

void WriterThreads::Add(Bytes picture, std::uint64_t number) {
  if (mThreads.empty()) {
    mWrite(picture, number);
    mFree.push_back(std::move(picture));
    return;
  }
  std::unique_lock lock(mMutex);
  mChanged.wait(lock, [this] { return mFault || mWaiting.size() < mThreads.size(); });
  ThrowFault();
  mWaiting.push_back({std::move(picture), number});
  mChanged.notify_all();
}

void WriterThreads::Finish() {
  std::unique_lock lock(mMutex);
  mChanged.wait(lock, [this] { return mFault || (mWaiting.empty() && mBusy == 0); });
  ThrowFault();
}

void WriterThreads::Work() {
  std::unique_lock lock(mMutex);
  while (true) {
    mChanged.wait(lock, [this] { return mEnding || mFault || !mWaiting.empty(); });
    if (mEnding || mFault) return;
    WriteOne(lock);
    mChanged.notify_all();
  }
}

void WriterThreads::WriteOne(std::unique_lock<std::mutex>& lock) {
  Entry entry = std::move(mWaiting.front());
  mWaiting.pop_front();
  ++mBusy;
  lock.unlock();
  std::exception_ptr fault;
  try {
    mWrite(entry.picture, entry.number);
  } catch (...) {
    fault = std::current_exception();
  }
  lock.lock();
  --mBusy;
  if (fault && !mFault) mFault = fault;
  mFree.push_back(std::move(entry.picture));
}

}  // namespace zrconvert
