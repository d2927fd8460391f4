#include "Machine.h"

#include <sys/utsname.h>

#include <ctime>
#include <fstream>
#include <thread>

namespace Bench {
namespace {

std::string FirstLine(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

std::string CpuInfo(const std::string& key) {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);)
    if (line.starts_with(key)) return line.substr(line.find(':') + 2);
  return "unknown";
}

std::string Caches() {
  std::string text;
  for (int index = 0;; ++index) {
    const std::string directory = "/sys/devices/system/cpu/cpu0/cache/index" + std::to_string(index) + "/";
    const std::string size = FirstLine(directory + "size");
    if (size.empty()) return text.empty() ? "unknown" : text;
    text.append(text.empty() ? "L" : ", L").append(FirstLine(directory + "level"));
    text.append(" ").append(FirstLine(directory + "type")).append(" ").append(size);
  }
}

std::string System() {
  utsname names{};
  uname(&names);
  return std::string(names.sysname) + " " + names.release + " " + names.machine;
}

std::string Date() {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M UTC", &utc);
  return text;
}

std::string Compiler() {
#ifdef __clang__
  return "Clang " __clang_version__;
#else
  return "GCC " __VERSION__;
#endif
}

}  // namespace

Facts DescribeMachine() {
  return {{"Date", Date()},
          {"Processor", CpuInfo("model name") + ", family " + CpuInfo("cpu family") + ", model " +
                            CpuInfo("model\t") + ", " + std::to_string(std::thread::hardware_concurrency()) +
                            " processors"},
          {"Caches of a processor", Caches()},
          {"System", System()},
          {"Load when done", FirstLine("/proc/loadavg")},
          {"Compiler", Compiler()}};
}

}  // namespace Bench
