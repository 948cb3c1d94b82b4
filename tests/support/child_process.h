// A program run by a test: its arguments and environment, its output line by line, its end.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace support {

struct ProcessResult {
  int exitStatus;  // 128 + signal when it was killed
  std::string output;
  std::string errors;
};

class ChildProcess {
 public:
  // Starts at once. `environment` is added to the test's own; an empty value unsets the variable.
  ChildProcess(const std::vector<std::string>& command,
               const std::map<std::string, std::string>& environment = {});
  // Kills what still runs.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t Pid() const { return pid_; }
  void Kill(int signal);

  // The next line of standard output without its end (of any system); nothing when none comes in
  // time.
  std::optional<std::string> ReadLine(std::chrono::milliseconds timeout);
  // Every line that comes until none has for `quiet`.
  std::vector<std::string> ReadLinesUntilQuiet(std::chrono::milliseconds quiet);

  // The exit status, 128 + signal when killed; nothing when it still runs after `timeout`.
  std::optional<int> WaitForExit(std::chrono::milliseconds timeout);

  // Everything, until the program closes the stream.
  std::string RestOfErrors();

 private:
  friend ProcessResult RunProcess(const std::vector<std::string>& command,
                                  const std::map<std::string, std::string>& environment);

  // Adds what comes next; false at the end and when nothing comes in time.
  static bool Fill(int descriptor, std::chrono::milliseconds timeout, std::string* text);

  pid_t pid_ = -1;
  int output_ = -1;
  int errors_ = -1;
  std::string buffer_;
  std::optional<int> status_;
};

// Runs a program to its end (at most 30 s).
ProcessResult RunProcess(const std::vector<std::string>& command,
                         const std::map<std::string, std::string>& environment = {});

}  // namespace support
