// Files that are read and replaced by several programs at once.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Puts a whole file in the path's place in one step, so that no reader meets half of it. False when
// it cannot be written; what was there then stays as it was.
bool ReplaceWholeFile(const std::filesystem::path& path, std::string_view bytes);

// Everything in it; hinders nobody from replacing or removing it meanwhile. Nothing when it cannot
// be read.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path);

}  // namespace platform
