#include "Signals.h"

#include <csignal>
#include <thread>

#include "TemporaryFile.h"

namespace zrconvert {
namespace {

bool sPipeWasIgnored = false;

bool IsIgnored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void SetAction(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigaction(signal, &action, nullptr);
}

sigset_t SignalsThatEnd() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    if (!IsIgnored(signal)) sigaddset(&signals, signal);
  }
  return signals;
}

// The shell that started the tool has to see the signal itself: it then ends its loop too.
void EndBy(int signal) {
  RemoveTemporaryFiles();
  SetAction(signal, SIG_DFL);
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, signal);
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  raise(signal);
}

}  // namespace

// A thread of its own waits for the signals, so that what they do need not be safe in a handler.
void HandleSignals() {
  const sigset_t signals = SignalsThatEnd();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread([signals] {
    int signal = 0;
    if (sigwait(&signals, &signal) == 0) EndBy(signal);
  }).detach();
  sPipeWasIgnored = IsIgnored(SIGPIPE);
  SetAction(SIGPIPE, SIG_IGN);
  SetAction(SIGXFSZ, SIG_IGN);
}

void EndByBrokenPipe() {
  if (!sPipeWasIgnored) EndBy(SIGPIPE);
}

}  // namespace zrconvert
