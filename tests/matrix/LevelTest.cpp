#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>
#include <sys/ptrace.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "support/CpuLevels.h"

// Since all levels give the same bytes, equal bytes do not prove that the level asked for is the one that
// ran. The encoding of the executed instructions does: this steps through a conversion and looks at each of
// them.

namespace {

using ZrConvertersLib::PixelConverter;

/// Kinds of instructions that were executed inside the library.
struct Executed {
  std::size_t all = 0;
  std::size_t threeByteSse = 0;  ///< SSSE3 and SSE4, in legacy encoding
  std::size_t ymm = 0;           ///< AVX and AVX2, 256 bits
  std::size_t vex = 0;           ///< AVX of any width, BMI
  std::size_t evex = 0;          ///< AVX-512
};

bool IsLegacyPrefix(std::uint8_t byte) {
  return byte == 0x66 || byte == 0xF2 || byte == 0xF3 || byte == 0x2E || byte == 0x36 || byte == 0x3E ||
         byte == 0x64 || byte == 0x65 || byte == 0x67;
}

/// In 64-bit mode 62 only begins EVEX, and C4 and C5 only VEX. Bit 2 of a VEX prefix's last byte means 256
/// bits.
void Count(const std::uint8_t* code, Executed& executed) {
  ++executed.all;
  while (IsLegacyPrefix(*code)) ++code;
  if (*code == 0x62) ++executed.evex;
  if (*code == 0xC4 || *code == 0xC5) {
    ++executed.vex;
    executed.ymm += (code[*code == 0xC4 ? 2 : 1] & 0x04) != 0;
  }
  if ((*code & 0xF0) == 0x40) ++code;  // REX
  executed.threeByteSse += code[0] == 0x0F && (code[1] == 0x38 || code[1] == 0x3A);
}

/// Addresses of the library's machine code.
class LibraryCode {
 public:
  LibraryCode() {
    Dl_info info{};
    dladdr(reinterpret_cast<const void*>(&ZrConvertersLib::GetCpuLevel), &info);
    mBase = reinterpret_cast<std::uintptr_t>(info.dli_fbase);
    dl_iterate_phdr([](dl_phdr_info* object, std::size_t,
                       void* self) { return static_cast<LibraryCode*>(self)->Take(*object); },
                    this);
  }

  bool Contains(std::uintptr_t address) const { return address >= mBegin && address < mEnd; }

 private:
  int Take(const dl_phdr_info& object) {
    if (object.dlpi_addr != mBase) return 0;
    for (int i = 0; i < object.dlpi_phnum; ++i) {
      const auto& header = object.dlpi_phdr[i];
      if (header.p_type != PT_LOAD || (header.p_flags & PF_X) == 0) continue;
      mBegin = mBase + header.p_vaddr;
      mEnd = mBegin + header.p_memsz;
    }
    return 1;
  }

  std::uintptr_t mBase = 0, mBegin = 0, mEnd = 0;
};

/// The child: converts a small frame once, with the caller's breakpoints on.
[[noreturn]] void ConvertTraced(const PixelConverter& converter, const char* level) {
  std::vector<unsigned char> source(200 * 4 * 8, 0x5A), destination(200 * 4 * 8);
  const TestSupport::ForcedCpuLevel forced(level);
  if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
  std::raise(SIGSTOP);
  converter.Convert(source.data(), 200, 4, destination.data(), 200, 4, 200, 4, 0, 0, nullptr, nullptr, 0,
                    false, nullptr);
  _exit(0);
}

/// Steps the stopped child to its end. It is a copy of this process, so its code can be read here.
Executed StepToEnd(pid_t child) {
  const LibraryCode code;
  Executed executed;
  int status = 0;
  while (ptrace(PTRACE_SINGLESTEP, child, nullptr, nullptr) == 0 && waitpid(child, &status, 0) == child &&
         WIFSTOPPED(status)) {
    user_regs_struct registers{};
    ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    if (code.Contains(registers.rip)) Count(reinterpret_cast<const std::uint8_t*>(registers.rip), executed);
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  return executed;
}

/// Nothing where the system does not allow tracing.
std::optional<Executed> Trace(const PixelConverter& converter, const char* level) {
  const pid_t child = fork();
  if (child == 0) ConvertTraced(converter, level);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFSTOPPED(status)) return std::nullopt;
  return StepToEnd(child);
}

void ExpectLevel(std::string_view level, const Executed& executed) {
  EXPECT_GT(executed.all, 100u);
  if (level == "x86-64") {
    EXPECT_EQ(executed.threeByteSse + executed.vex + executed.evex, 0u);
  } else if (level == "x86-64-v2") {
    EXPECT_GT(executed.threeByteSse, 0u);
    EXPECT_EQ(executed.vex + executed.evex, 0u);
  } else if (level == "x86-64-v3") {
    EXPECT_GT(executed.ymm, 0u);
    EXPECT_EQ(executed.evex, 0u);
  } else {
    EXPECT_EQ(level, "x86-64-v4");
    EXPECT_GT(executed.evex, 0u);
  }
}

/// One source of each kernel file, to RGB8, which needs byte shuffles.
class LevelTest : public testing::TestWithParam<long> {};

TEST_P(LevelTest, ForcedLevelIsTheOneThatRuns) {
  const auto* converter = ZrConvertersLib::PixelTypeFactory::GetConverter(GetParam(), 258);
  for (const char* level : TestSupport::CpuLevels()) {
    SCOPED_TRACE(level);
    const auto executed = Trace(*converter, level);
    if (!executed) GTEST_SKIP() << "this system does not allow tracing";
    ExpectLevel(level, *executed);
  }
}

INSTANTIATE_TEST_SUITE_P(Families, LevelTest, testing::Values(512, 523, 259, 768, 1024, 1280, 1536));

}  // namespace
