// The diagnostic log's entry for a codec device, with the report on the product's audio processing
// objects.
#pragma once

#include <string_view>

#include "platform/files.h"
#include "platform/registry.h"

namespace app {

// `deviceText` is the device's identification string followed by its family label. Appends the
// entry and one report for each of the five processing-object classes; nothing when the log cannot
// be opened.
void LogCodecDevice(std::u16string_view deviceText, platform::FileSystem& files,
                    platform::Registry& registry);

}  // namespace app
