#include "platform/virtual/virtual_laptop.h"

#include <optional>
#include <utility>

#include "platform/replace_file.h"

namespace platform {
namespace {

LaptopFile BareMachine() {
  LaptopFile laptop;
  laptop.devices.emplace();
  laptop.endpoints.emplace();
  return laptop;
}

// For reports: in UTF-8 whatever the system's own form is.
std::string NameOf(const std::filesystem::path& file) {
  const std::u8string name = file.u8string();
  return {name.begin(), name.end()};
}

}  // namespace

VirtualLaptop::VirtualLaptop(std::filesystem::path file, ReportLine report)
    : file_(std::move(file)), report_(std::move(report)) {}

LaptopFile VirtualLaptop::Read() {
  const std::optional<std::string> text = ReadWholeFile(file_);
  if (!text) {
    Report(NameOf(file_) + ": cannot be read");
    return BareMachine();
  }
  LaptopFileError error;
  std::optional<LaptopFile> laptop = ParseLaptopFile(*text, &error);
  if (!laptop) {
    Report(NameOf(file_) + ":" + std::to_string(error.line) + ":" + std::to_string(error.column) +
           ": " + error.message);
    return BareMachine();
  }
  const std::lock_guard lock(mutex_);
  lastReport_.clear();
  return *std::move(laptop);
}

void VirtualLaptop::Report(const std::string& line) {
  {
    const std::lock_guard lock(mutex_);
    if (line == lastReport_) return;
    lastReport_ = line;
  }
  report_(line);
}

}  // namespace platform
