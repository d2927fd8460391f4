#include "File.h"

#include "Error.h"

namespace zrconvert {

File::File(const std::string& path, const char* mode) : mPath(path), mFile(std::fopen(path.c_str(), mode)) {
  if (!mFile) throw Failure(WithSystemReason("cannot open '" + path + "'"));
}

void File::Write(std::span<const unsigned char> bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), mFile.get()) != bytes.size()) Fail();
}

void File::Write(const std::string& text) {
  if (std::fwrite(text.data(), 1, text.size(), mFile.get()) != text.size()) Fail();
}

void File::Close() {
  if (std::fclose(mFile.release()) != 0) Fail();
}

void File::Fail() const {
  throw Failure(WithSystemReason("cannot write '" + mPath + "'"));
}

}  // namespace zrconvert
