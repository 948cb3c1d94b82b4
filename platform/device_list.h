// Devices held as a list: what a backend read, served through the device setup contract.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/device_setup.h"

namespace platform {

// A present device. An empty text, and an empty list of hardware IDs, is a property that the device
// does not have.
struct DeviceRecord {
  enum class Status { Ok, QueryFails };

  std::vector<std::u16string> hardwareIds = {};
  std::u16string description = {};
  std::u16string deviceClass = {};
  std::u16string classGuid = {};
  Status status = Status::Ok;
};

class DeviceList : public DeviceInfoSet {
 public:
  explicit DeviceList(std::vector<DeviceRecord> devices);

  bool HasDevice(std::uint32_t index) const override;
  bool QueryStatus(std::uint32_t index) const override;
  DevicePropertyStatus ReadProperty(std::uint32_t index, DeviceProperty property,
                                    std::span<char16_t> buffer,
                                    std::uint32_t* requiredBytes) const override;

 private:
  std::vector<DeviceRecord> devices_;
};

}  // namespace platform
