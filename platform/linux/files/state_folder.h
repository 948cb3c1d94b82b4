// Where this system keeps what the product remembers.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace platform {

// The variable's value; one that is empty counts as unset.
std::optional<std::string> EnvironmentValue(const char* name);

// The folder of the registry, the events and the diagnostic log: TONALYX_ROOT; else the machine's
// own when this user can write there; else one in the user's home. Always absolute. Reads the
// environment and the file system, makes nothing.
std::filesystem::path StateFolder();

// Makes the folder with its parents, whatever the umask: the parents readable by everyone, the
// folder itself open to everyone, for every user of the machine works on the one store. A folder
// that exists is left as it is. False when there is no folder afterwards.
bool MakeStateFolder(const std::filesystem::path& folder);

}  // namespace platform
