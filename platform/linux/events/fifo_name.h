// How the named events lie in their folder: a FIFO for each, the name escaped.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/linux/files/file_descriptor.h"

namespace platform {

// The event's name in UTF-8, each byte outside A-Z a-z 0-9 { } . _ - as "%" and two upper-case hex
// digits.
std::string FifoName(std::u16string_view eventName);

// A handle that only names the folder, for the calls that take a folder and a name; not open when
// there is no folder or a link stands in its place.
FileDescriptor OpenEventsFolder(const std::filesystem::path& folder);

// Whether the descriptor is one of a FIFO.
bool IsFifo(const FileDescriptor& descriptor);

}  // namespace platform
