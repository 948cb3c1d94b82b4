#pragma once

#include <string>
#include <string_view>

namespace tools {

// Puts a whole file in the path's place in one step, so that no reader meets half of it. False when
// it cannot be written; what was there then stays as it was.
bool ReplaceFile(const std::string& path, std::string_view bytes);

}  // namespace tools
