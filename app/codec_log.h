// The diagnostic log's entry for a codec device, with the report on the product's audio processing
// objects.
#pragma once

#include <string_view>

#include "platform/files.h"
#include "platform/registry.h"

namespace app {

// Appends the entry, which is the device's identification string followed by its family label, and
// one report for each of the five processing-object classes; nothing when the log cannot be opened.
// An identification that leaves the label no room in the entry's record is cut.
void LogCodecDevice(std::u16string_view identification, std::u16string_view familyLabel,
                    platform::FileSystem& files, platform::Registry& registry);

}  // namespace app
