// A C stream that closes itself and reports every write that falls short.
#pragma once

#include <cstdio>
#include <memory>
#include <span>
#include <string>

namespace zrconvert {

class File {
 public:
  // Throws Failure when the file cannot be opened.
  File(const std::string& path, const char* mode);

  std::FILE* Get() const { return mFile.get(); }
  void Write(std::span<const unsigned char> bytes);
  void Write(const std::string& text);

  // Flushes what is pending; only after this has every byte been handed to the system.
  void Close();

 private:
  [[noreturn]] void Fail() const;

  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::string mPath;
  std::unique_ptr<std::FILE, Closer> mFile;
};

}  // namespace zrconvert
