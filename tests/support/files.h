// A file's bytes, whole.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace support {

// Nothing of one that is not there.
inline std::string ReadFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace support
