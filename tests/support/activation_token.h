// What a launcher hands to the programs that it starts on a Wayland desktop.
#pragma once

#include <string>

namespace support {

// A new right to bring a window forward; empty where the desktop gives none.
std::string RequestActivationToken();

}  // namespace support
