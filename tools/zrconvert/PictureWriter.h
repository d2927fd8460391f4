// Writes the pictures of a sequence: into numbered files, one after another into one file, or one only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Containers.h"
#include "OutputFile.h"

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
  PictureWriter(const std::string& output, Container container);

  // False when one picture is all that the output takes.
  bool TakesSequence() const;

  void Write(const Picture& picture, std::uint64_t number);

  // Gives the one file of a sequence its name.
  void Finish();

 private:
  bool IsStandardOutput() const { return mName.At(0) == "-"; }

  OutputName mName;
  Container mContainer;
  std::unique_ptr<OutputFile> mFile;
};

}  // namespace zrconvert
