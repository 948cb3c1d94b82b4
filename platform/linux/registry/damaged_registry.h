// What becomes of a registry's database that is damaged.
#pragma once

#include <filesystem>
#include <optional>

namespace platform {

// Reads the database of the folder, all of it. When it is damaged, renames it and its companions,
// so that the next to write makes a new one; the new name. Nothing is removed or overwritten, and
// who does it again after having been killed on the way completes it. Two processes at once do it
// once; the wait for the other is bounded.
std::optional<std::filesystem::path> SetDamagedRegistryAside(const std::filesystem::path& folder);

}  // namespace platform
