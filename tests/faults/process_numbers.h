// What the kernel counts for a process.
#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace faults {

// Processor time used so far, of all its threads.
inline std::chrono::milliseconds ProcessorTime(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string text(std::istreambuf_iterator<char>(file), {});
  // The second field is a name in parentheses; user and system time are the 14th and the 15th.
  std::istringstream fields(text.substr(text.rfind(')') + 1));
  std::string skipped;
  for (int field = 3; field < 14; ++field) fields >> skipped;
  long user = 0;
  long system = 0;
  fields >> user >> system;
  return std::chrono::milliseconds((user + system) * 1000 / sysconf(_SC_CLK_TCK));
}

inline int CountEntries(const std::string& folder) {
  return static_cast<int>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

inline int Descriptors(const std::string& process) {
  return CountEntries("/proc/" + process + "/fd");
}

inline int Threads(const std::string& process) {
  return CountEntries("/proc/" + process + "/task");
}

}  // namespace faults
