#pragma once

#include <filesystem>
#include <string_view>

namespace platform {

// Puts a whole file in the path's place in one step, so that no reader meets half of it. False when
// it cannot be written; what was there then stays as it was.
bool ReplaceWholeFile(const std::filesystem::path& path, std::string_view bytes);

}  // namespace platform
