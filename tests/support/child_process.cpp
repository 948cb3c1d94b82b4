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

using std::chrono::milliseconds;
using std::chrono::steady_clock;

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::map<std::string, std::string>& environment) {
  std::array<int, 2> out{};
  std::array<int, 2> err{};
  if (pipe2(out.data(), O_CLOEXEC) != 0 || pipe2(err.data(), O_CLOEXEC) != 0 ||
      (pid_ = fork()) < 0) {
    throw std::runtime_error("no process");
  }
  if (pid_ == 0) {
    dup2(out[1], STDOUT_FILENO);
    dup2(err[1], STDERR_FILENO);
    for (const auto& [name, value] : environment) {
      value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<char*> arguments;
    for (const std::string& each : command) arguments.push_back(const_cast<char*>(each.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  close(out[1]);
  close(err[1]);
  output_ = out[0];
  errors_ = err[0];
}

ChildProcess::~ChildProcess() {
  if (!status_) {
    Kill(SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  close(output_);
  close(errors_);
}

void ChildProcess::Kill(int signal) {
  kill(pid_, signal);
}

bool ChildProcess::Fill(int descriptor, milliseconds timeout, std::string* text) {
  pollfd waiting{descriptor, POLLIN, 0};
  std::array<char, 4096> block{};
  if (poll(&waiting, 1, static_cast<int>(timeout.count())) <= 0) return false;
  const ssize_t size = read(descriptor, block.data(), block.size());
  if (size > 0) text->append(block.data(), static_cast<std::size_t>(size));
  return size > 0;
}

std::optional<std::string> ChildProcess::ReadLine(milliseconds timeout) {
  const auto end = steady_clock::now() + timeout;
  std::size_t newline = 0;
  while ((newline = buffer_.find('\n')) == std::string::npos) {
    const auto left = std::chrono::duration_cast<milliseconds>(end - steady_clock::now());
    if (left.count() < 0 || !Fill(output_, left, &buffer_)) return std::nullopt;
  }
  std::string line = buffer_.substr(0, newline);
  buffer_.erase(0, newline + 1);
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

std::vector<std::string> ChildProcess::ReadLinesUntilQuiet(milliseconds quiet) {
  std::vector<std::string> lines;
  while (std::optional<std::string> line = ReadLine(quiet)) lines.push_back(*line);
  return lines;
}

std::optional<int> ChildProcess::WaitForExit(milliseconds timeout) {
  const auto end = steady_clock::now() + timeout;
  for (int status = 0; !status_; std::this_thread::sleep_for(milliseconds(2))) {
    if (waitpid(pid_, &status, WNOHANG) == pid_) {
      status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
      break;
    }
    if (steady_clock::now() > end) break;
  }
  return status_;
}

std::string ChildProcess::RestOfErrors() {
  std::string text;
  while (Fill(errors_, milliseconds(-1), &text)) {
  }
  return text;
}

ProcessResult RunProcess(const std::vector<std::string>& command,
                         const std::map<std::string, std::string>& environment) {
  ChildProcess child(command, environment);
  // Errors are few in these programs, so reading one stream after the other cannot block them.
  while (ChildProcess::Fill(child.output_, milliseconds(-1), &child.buffer_)) {
  }
  std::string errors = child.RestOfErrors();
  const int status = child.WaitForExit(std::chrono::seconds(30)).value_or(-1);
  return {status, std::move(child.buffer_), std::move(errors)};
}

}  // namespace support
