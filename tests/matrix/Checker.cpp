#include "Checker.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>

#include "Filters.h"

namespace Matrix {
namespace {

using ZrConvertersLib::PixelConverter;

constexpr std::size_t kCapacity = std::size_t{32} << 20;

std::string NameOf(const PixelConverter& converter) {
  return std::to_string(converter.GetSourceType()) + " to " + std::to_string(converter.GetDestinationType());
}

/// What runs now, for the message of a crash.
const PixelConverter* sConverter = nullptr;
const Case* sCase = nullptr;

/// The process is lost, so a message is worth more than being safe in a signal handler.
void TellCrash(int signal) {
  std::signal(signal, SIG_DFL);
  if (sConverter && sCase) {
    const std::string text = "crashed in " + NameOf(*sConverter) + ": " + Describe(*sCase) + "\n";
    if (write(STDERR_FILENO, text.data(), text.size()) < 0) _exit(1);
  }
  std::raise(signal);
}

/// An intermediate buffer as the caller of a chain owns it: from array new, since a chain replaces one too
/// small.
class CallersBuffer {
 public:
  explicit CallersBuffer(const Case& conversion) {
    if (conversion.between == Between::Library) return;
    const Model::Call& call = conversion.call;
    mSize = conversion.between == Between::Caller ? (call.sourceHeight + 8) * (call.sourceWidth * 8 + 64) : 1;
    mBytes = mFirst = new unsigned char[mSize];
    mFirstSize = mSize;
  }
  ~CallersBuffer() { delete[] mBytes; }
  CallersBuffer(const CallersBuffer&) = delete;
  CallersBuffer& operator=(const CallersBuffer&) = delete;

  unsigned char** Bytes() { return mBytes ? &mBytes : nullptr; }
  std::uint32_t* Size() { return mBytes ? &mSize : nullptr; }

  /// A buffer that is large enough stays; another grows to at least `needed`.
  std::string FindFault(std::uint32_t needed) const {
    if (mFirst == nullptr) return {};
    if (mFirstSize >= needed && (mBytes != mFirst || mSize != mFirstSize))
      return "replaced the caller's buffer";
    return mSize >= needed ? std::string() : "left the caller's buffer too small";
  }

 private:
  unsigned char* mBytes = nullptr;
  unsigned char* mFirst = nullptr;
  std::uint32_t mSize = 0, mFirstSize = 0;
};

std::string Convert(const PixelConverter& converter, const Case& conversion, std::uint32_t intermediateSize,
                    const std::uint8_t* source, std::uint8_t* destination) {
  const Model::Call& call = conversion.call;
  CallersBuffer between(conversion);
  const auto convert = [&](const auto&... arguments) {
    return conversion.lineByLine ? converter.PixelConverter::Convert(arguments...)
                                 : converter.Convert(arguments...);
  };
  const std::uint32_t code = convert(source, call.sourceWidth, call.sourceHeight, destination,
                                     call.destinationWidth, call.destinationHeight, call.width, call.height,
                                     call.flags, call.destinationPadding, between.Bytes(), between.Size(),
                                     call.sourcePadding, call.flip, GetFilter(conversion.filter).object.get())
                                 .GetCode();
  return code != 0 ? "the result code is " + std::to_string(code) : between.FindFault(intermediateSize);
}

std::string TellDifference(const Expectation& expected, std::span<const std::uint8_t> actual, std::size_t at,
                           std::size_t count) {
  const std::ptrdiff_t offset = expected.destinationBegin + static_cast<std::ptrdiff_t>(at);
  const std::ptrdiff_t stride = std::max<std::ptrdiff_t>(expected.destinationStride, 1);
  char text[160];
  std::snprintf(text, sizeof text,
                "byte %td (line %td, byte %td of it) is %02x, not %02x as the model has it; %zu differ",
                offset, offset / stride, offset % stride, actual[at], expected.after[at], count);
  return text;
}

std::string FindDifference(const Expectation& expected, std::span<const std::uint8_t> actual) {
  if (std::ranges::equal(actual, expected.after)) return {};
  std::size_t first = actual.size(), count = 0;
  for (std::size_t i = 0; i < actual.size(); ++i) {
    const bool owed = expected.undefined.empty() || !expected.undefined[i];
    if (!owed || actual[i] == expected.after[i]) continue;
    first = std::min(first, i);
    ++count;
  }
  return count == 0 ? std::string() : TellDifference(expected, actual, first, count);
}

}  // namespace

Checker::Checker() : mSource(kCapacity), mDestination(kCapacity) {
  for (const int signal : {SIGSEGV, SIGBUS, SIGILL, SIGFPE}) std::signal(signal, TellCrash);
}

std::string Checker::Check(const PixelConverter& converter, const Case& conversion,
                           const Expectation& expected) {
  const auto source = mSource.Place(expected.source, conversion.source);
  const auto destination = mDestination.Place(expected.before, conversion.destination);
  sConverter = &converter;
  sCase = &conversion;
  const std::string refusal =
      Convert(converter, conversion, expected.intermediateSize, source.data() - expected.sourceBegin,
              destination.data() - expected.destinationBegin);
  sCase = nullptr;
  const std::string difference = FindFault(expected, source, destination);
  const std::string& fault = difference.empty() ? refusal : difference;
  return fault.empty() ? fault : NameOf(converter) + ": " + fault + "; " + Describe(conversion);
}

std::string Checker::FindFault(const Expectation& expected, std::span<const std::uint8_t> source,
                               std::span<const std::uint8_t> destination) const {
  if (const auto at = mDestination.FirstDamage())
    return "wrote outside the owed bytes, at " + std::to_string(*at) + " of " +
           std::to_string(destination.size());
  if (mSource.FirstDamage() || !std::ranges::equal(source, expected.source)) return "wrote to the source";
  return FindDifference(expected, destination);
}

}  // namespace Matrix
