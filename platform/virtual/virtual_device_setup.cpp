#include "platform/virtual/virtual_device_setup.h"

#include <utility>
#include <vector>

#include "platform/device_list.h"

namespace platform {

std::unique_ptr<DeviceInfoSet> VirtualDeviceSetup::PresentDevices() {
  return std::make_unique<DeviceList>(laptop_.Read().devices.value_or(std::vector<DeviceRecord>()));
}

}  // namespace platform
