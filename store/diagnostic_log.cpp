#include "store/diagnostic_log.h"

#include <string>

namespace store {

std::unique_ptr<platform::File> OpenDiagnosticLog(platform::FileSystem& files) {
  const std::u16string path = files.DiagnosticLogPath();
  std::unique_ptr<platform::File> log = files.OpenExisting(path, platform::FileAccess::Append);
  if (!log) log = files.CreateAlways(path);
  return log;
}

}  // namespace store
