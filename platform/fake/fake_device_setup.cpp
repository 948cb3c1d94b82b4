#include "platform/fake/fake_device_setup.h"

#include <utility>

namespace platform {

FakeDeviceSetup::FakeDeviceSetup(std::vector<DeviceRecord> devices)
    : devices_(std::move(devices)) {}

void FakeDeviceSetup::SetDevices(std::vector<DeviceRecord> devices) {
  devices_ = std::move(devices);
}

void FakeDeviceSetup::FailRequests(int count) {
  failures_ = count;
}

std::unique_ptr<DeviceInfoSet> FakeDeviceSetup::PresentDevices() {
  ++requests_;
  if (failures_ > 0) {
    --failures_;
    return nullptr;
  }
  return std::make_unique<DeviceList>(devices_);
}

}  // namespace platform
