// Unpacks a recorded tree of the kernel's device file system. A line is "path = content" for an
// attribute or "path -> target" for a link; "#" begins a remark.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace support {

inline void UnpackSysfsTree(const std::filesystem::path& recording,
                            const std::filesystem::path& folder) {
  std::ifstream lines(recording);
  if (!lines) throw std::runtime_error("no recording " + recording.string());
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == '#') continue;
    const std::size_t attribute = line.find(" =");
    const std::size_t link = line.find(" -> ");
    const std::filesystem::path path = folder / line.substr(0, std::min(attribute, link));
    std::filesystem::create_directories(path.parent_path());
    if (link < attribute) {
      std::filesystem::create_symlink(line.substr(link + 4), path);
    } else {
      const std::size_t content = line.find_first_not_of(' ', attribute + 2);
      std::ofstream(path) << (content == std::string::npos ? "" : line.substr(content)) << '\n';
    }
  }
}

}  // namespace support
