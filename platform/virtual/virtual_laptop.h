// The virtual laptop as it stands in its file at this moment.
#pragma once

#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/virtual/laptop_file.h"

namespace platform {

// Shared by all that the laptop consists of, so that a bad file is reported once. Any thread.
class VirtualLaptop {
 public:
  using ReportLine = std::function<void(std::string_view line)>;

  // `report` gets one line without its end, on the thread that reads.
  VirtualLaptop(std::filesystem::path file, ReportLine report);

  // Reads the file anew. A file that cannot be read or parsed is reported, unless the same was
  // reported last, and is a machine without devices and endpoints.
  LaptopFile Read();

  // Whether the laptop, and not the machine it runs on, supplies these.
  bool HasDevices() { return Read().devices.has_value(); }
  bool HasEndpoints() { return Read().endpoints.has_value(); }

 private:
  void Report(const std::string& line);

  const std::filesystem::path file_;
  const ReportLine report_;
  std::mutex mutex_;
  std::string lastReport_;
};

}  // namespace platform
