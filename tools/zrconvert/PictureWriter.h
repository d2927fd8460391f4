// Writes the pictures of a sequence: into numbered files, one after another into one file, or one only.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Containers.h"
#include "OutputFile.h"
#include "OverwriteGuard.h"

namespace zrconvert {

// The name of an output, which may have one place for a number, as in frame_%04d.png; %% stands for a percent
// sign.
class OutputName {
 public:
  // Throws UsageError when the name has several places for a number, or something else after a percent sign.
  explicit OutputName(const std::string& name);

  bool HasNumber() const { return mHasNumber; }

  // The name with that number in its place.
  std::string At(std::uint64_t number) const;

 private:
  std::string mBefore;
  std::string mAfter;
  std::size_t mDigits = 0;
  bool mHasNumber = false;
};

class PictureWriter {
 public:
  PictureWriter(const std::string& output, Container container, const EncoderOptions& options,
                const OverwriteGuard& guard);

  // False when one picture is all that the output takes.
  bool TakesSequence() const;

  // True when each picture has a file of its own: Write may then be called from several threads at once.
  bool WritesManyFiles() const { return mName.HasNumber(); }

  // Throws, before anything is written, when a picture of the sequence would overwrite what it must not.
  // Without a count only the first picture can be looked at; the others are when they are written.
  void CheckOutputs(std::uint64_t first, std::optional<std::uint64_t> count) const;

  void Write(const Picture& picture, std::uint64_t number);

  // Completes the one file of a sequence.
  void Finish();

 private:
  std::unique_ptr<OutputFile> Open(std::uint64_t number) const;

  OutputName mName;
  Container mContainer;
  EncoderOptions mOptions;
  const OverwriteGuard& mGuard;
  bool mIsStream;  // an output that was open before: standard output, /dev/fd/3
  std::unique_ptr<OutputFile> mFile;
};

}  // namespace zrconvert
