// Device setup whose devices the test names.
#pragma once

#include <memory>
#include <vector>

#include "platform/device_list.h"
#include "platform/device_setup.h"

namespace platform {

class FakeDeviceSetup : public DeviceSetup {
 public:
  explicit FakeDeviceSetup(std::vector<DeviceRecord> devices = {});

  void SetDevices(std::vector<DeviceRecord> devices);

  // The next `count` requests for the device set fail.
  void FailRequests(int count);

  // How often the set was asked for.
  int Requests() const { return requests_; }

  std::unique_ptr<DeviceInfoSet> PresentDevices() override;

 private:
  std::vector<DeviceRecord> devices_;
  int requests_ = 0;
  int failures_ = 0;
};

}  // namespace platform
