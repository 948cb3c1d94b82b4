// The virtual laptop's present devices.
#pragma once

#include <memory>

#include "platform/device_setup.h"
#include "platform/virtual/virtual_laptop.h"

namespace platform {

class VirtualDeviceSetup : public DeviceSetup {
 public:
  explicit VirtualDeviceSetup(VirtualLaptop& laptop) : laptop_(laptop) {}

  std::unique_ptr<DeviceInfoSet> PresentDevices() override;

 private:
  VirtualLaptop& laptop_;
};

}  // namespace platform
