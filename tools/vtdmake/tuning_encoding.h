#pragma once

#include <string>

#include "tools/vtdmake/tuning_description.h"

namespace tools {

// The tuning file, byte for byte.
std::string EncodeTuning(const TuningDescription& tuning);

}  // namespace tools
