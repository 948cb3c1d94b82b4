// The program's pictures by what the artwork's own list says that they are.
#pragma once

#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace ui {

// Role, such as "studio mode off, selected", to the id of the resource.
inline std::map<std::string, std::uint16_t> ArtworkRoles() {
  std::map<std::string, std::uint16_t> roles;
  std::ifstream list(TONALYX_SOURCE_DIR "/resources/art/manifest.txt");
  for (std::string line; std::getline(list, line);) {
    if (line.empty() || line.front() == '#') continue;
    std::istringstream fields(line);
    std::uint16_t id = 0;
    fields >> id;
    std::string word;
    for (int field = 0; field < 6; ++field) fields >> word;
    std::string role;
    std::getline(fields >> std::ws, role);
    roles[role] = id;
  }
  return roles;
}

}  // namespace ui
