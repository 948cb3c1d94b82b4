// The system that the programs under test were built for: this one, or Windows with Wine in
// between.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace e2e {

struct TestedHome {
  std::filesystem::path programs;
  std::vector<std::string> starter;  // words before a program's path
  std::string programEnd;            // of the programs' file names

  bool IsWindows() const { return !starter.empty(); }
  std::vector<std::string> Command(const std::filesystem::path& folder,
                                   const std::string& program) const {
    std::vector<std::string> command = starter;
    command.push_back((folder / (program + programEnd)).string());
    return command;
  }
  // A file as a person names it there.
  std::string NameOf(const std::filesystem::path& file) const {
    if (!IsWindows()) return file.string();
    std::string name = "z:" + file.string();
    for (char& letter : name) letter = letter == '/' ? '\\' : letter;
    return name;
  }
};

inline TestedHome NativeHome() {
  return {TONALYX_BIN_DIR, {}, ""};
}

// TONALYX_WINDOWS_PROGRAMS: the folder with the programs for Windows.
inline TestedHome WindowsHome() {
  return {std::getenv("TONALYX_WINDOWS_PROGRAMS"), {"wine"}, ".exe"};
}

inline TestedHome HomeOfEnvironment() {
  return std::getenv("TONALYX_WINDOWS_PROGRAMS") == nullptr ? NativeHome() : WindowsHome();
}

}  // namespace e2e
