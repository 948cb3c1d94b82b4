#pragma once

#include <memory>

#include "platform/files.h"

namespace store {

// Opens the diagnostic log for one writer, who closes it at once when its lines are written; made
// when it is missing, never emptied. Null when another holds it or it cannot be had: the writer
// then drops its lines.
std::unique_ptr<platform::File> OpenDiagnosticLog(platform::FileSystem& files);

}  // namespace store
