// The machine's own audio codecs, with their identification in the original platform's form.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/device_setup.h"

namespace platform {

// Reads what the kernel publishes about its HD Audio and ACPI buses. HD Audio codecs come first,
// then the codecs on ACPI, each in the order of their names. May be used from any thread.
class SysfsDeviceSetup : public DeviceSetup {
 public:
  explicit SysfsDeviceSetup(std::filesystem::path sysfsRoot = "/sys");

  // Null when there is no such root. A device whose identification cannot be read is left out.
  std::unique_ptr<DeviceInfoSet> PresentDevices() override;

 private:
  std::filesystem::path sysfsRoot_;
};

}  // namespace platform
