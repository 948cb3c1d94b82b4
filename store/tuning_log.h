#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/model_flags.h"
#include "store/tuning_file.h"

namespace store {

// The records, each at most 255 bytes, by which the diagnostic log describes an imported file.
// `properties` is null for a file without them.
std::vector<std::string> FormatTuningLog(const TuningHeader& header,
                                         const TuningProperties* properties,
                                         std::uint32_t expectedSsid, ModelFlags model);

}  // namespace store
