// How the tool ends by a signal.
#pragma once

namespace zrconvert {

// From now on SIGHUP, SIGINT and SIGTERM first remove incomplete files and then end the process by the same
// signal, also while it waits for a file or a pipe. Signals that are ignored already stay ignored. A write to
// a closed pipe, or beyond the limit of file sizes, fails instead of ending the process. Call this before any
// other thread is started.
void HandleSignals();

// Ends the process as a write to a closed pipe ends programs, or returns when the caller of the tool ignores
// that signal.
void EndByBrokenPipe();

}  // namespace zrconvert
