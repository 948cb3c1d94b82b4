// The devices that the system's own setup interface and configuration manager know.
#pragma once

#include <memory>

#include "platform/device_setup.h"

namespace platform {

class SetupDevices : public DeviceSetup {
 public:
  std::unique_ptr<DeviceInfoSet> PresentDevices() override;
};

}  // namespace platform
