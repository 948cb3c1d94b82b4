#include "tests/support/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace support {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

std::string ReadAll(int descriptor) {
  std::string text;
  std::array<char, 4096> block{};
  for (ssize_t n = 0; (n = read(descriptor, block.data(), block.size())) > 0;) {
    text.append(block.data(), static_cast<std::size_t>(n));
  }
  return text;
}

int ExitStatus(int status) {
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

[[noreturn]] void Execute(const std::vector<std::string>& command,
                          const std::map<std::string, std::string>& environment, int output,
                          int errors) {
  dup2(output, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  for (const auto& [name, value] : environment) {
    if (value.empty()) {
      unsetenv(name.c_str());
    } else {
      setenv(name.c_str(), value.c_str(), 1);
    }
  }
  std::vector<char*> arguments;
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::map<std::string, std::string>& environment) {
  std::array<int, 2> out{};
  std::array<int, 2> err{};
  if (pipe2(out.data(), O_CLOEXEC) != 0 || pipe2(err.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe");
  }
  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("no process");
  if (pid_ == 0) Execute(command, environment, out[1], err[1]);
  close(out[1]);
  close(err[1]);
  output_ = out[0];
  errors_ = err[0];
}

ChildProcess::~ChildProcess() {
  if (!status_) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  close(output_);
  close(errors_);
}

void ChildProcess::Kill(int signal) {
  kill(pid_, signal);
}

bool ChildProcess::Fill(milliseconds timeout) {
  pollfd waiting{output_, POLLIN, 0};
  if (poll(&waiting, 1, static_cast<int>(timeout.count())) <= 0) return false;
  std::array<char, 4096> block{};
  const ssize_t n = read(output_, block.data(), block.size());
  if (n <= 0) return false;
  buffer_.append(block.data(), static_cast<std::size_t>(n));
  return true;
}

std::optional<std::string> ChildProcess::ReadLine(milliseconds timeout) {
  const auto end = steady_clock::now() + timeout;
  for (;;) {
    if (const std::size_t newline = buffer_.find('\n'); newline != std::string::npos) {
      std::string line = buffer_.substr(0, newline);
      buffer_.erase(0, newline + 1);
      return line;
    }
    const auto left = std::chrono::duration_cast<milliseconds>(end - steady_clock::now());
    if (left.count() < 0 || !Fill(left)) return std::nullopt;
  }
}

std::vector<std::string> ChildProcess::ReadLinesUntilQuiet(milliseconds quiet) {
  std::vector<std::string> lines;
  while (std::optional<std::string> line = ReadLine(quiet)) lines.push_back(*line);
  return lines;
}

std::optional<int> ChildProcess::WaitForExit(milliseconds timeout) {
  const auto end = steady_clock::now() + timeout;
  while (!status_) {
    int status = 0;
    if (waitpid(pid_, &status, WNOHANG) == pid_) {
      status_ = ExitStatus(status);
      break;
    }
    if (steady_clock::now() > end) return std::nullopt;
    std::this_thread::sleep_for(milliseconds(2));
  }
  return status_;
}

std::string ChildProcess::RestOfOutput() {
  std::string text = buffer_ + ReadAll(output_);
  buffer_.clear();
  return text;
}

std::string ChildProcess::RestOfErrors() {
  return ReadAll(errors_);
}

ProcessResult RunProcess(const std::vector<std::string>& command,
                         const std::map<std::string, std::string>& environment) {
  ChildProcess child(command, environment);
  // Errors are few in these programs, so reading one stream after the other cannot block them.
  std::string output = child.RestOfOutput();
  std::string errors = child.RestOfErrors();
  const std::optional<int> status = child.WaitForExit(std::chrono::seconds(30));
  return {status.value_or(-1), std::move(output), std::move(errors)};
}

}  // namespace support
