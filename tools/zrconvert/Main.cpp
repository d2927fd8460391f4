#include <cstdio>
#include <exception>
#include <new>

#include "Commands.h"
#include "Error.h"
#include "Signals.h"

namespace {

int Complain(const char* sentence, int code) {
  std::fprintf(stderr, "zrconvert: %s\n", sentence);
  return code;
}

int Run(int count, const char* const* words) {
  using namespace zrconvert;
  HandleSignals();
  const int code =
      ReadCommandLine(count, words, {Convert, WriteChart, TellWhatFileMayBe, ListFormats, ListPairs});
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) ThrowUnwritable("standard output");
  return code;
}

}  // namespace

int main(int count, char** words) {
  try {
    return Run(count, words);
  } catch (const zrconvert::UsageError& error) {
    return Complain(error.what(), zrconvert::ExitUsage);
  } catch (const zrconvert::BrokenPipe& error) {
    zrconvert::EndByBrokenPipe();
    return Complain(error.what(), zrconvert::ExitFailure);
  } catch (const std::bad_alloc&) {
    return Complain("there is not enough memory for these frames", zrconvert::ExitFailure);
  } catch (const std::exception& error) {
    return Complain(error.what(), zrconvert::ExitFailure);
  }
}
