#include "store/diagnostic_log.h"

#include <string>

namespace store {

std::unique_ptr<platform::File> OpenDiagnosticLog(platform::FileSystem& files) {
  const std::u16string path = files.DiagnosticLogPath();
  std::unique_ptr<platform::File> log = files.OpenExisting(path, platform::FileAccess::Append);
  if (!log) log = files.CreateNew(path);
  // Another program may have made it meanwhile, and its lines stay.
  if (!log) log = files.OpenExisting(path, platform::FileAccess::Append);
  return log;
}

}  // namespace store
