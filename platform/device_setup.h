// Device setup: the devices that are present, with their identification properties.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace platform {

// Properties of a device node, with the original platform's numbers.
enum class DeviceProperty : std::uint32_t {
  DeviceDescription = 0,
  HardwareId = 1,
  Class = 7,
  ClassGuid = 8,
};

enum class DevicePropertyStatus { Success, InsufficientBuffer, Failure };

// The set of present devices at the moment it was taken; devices are numbered from 0 in
// enumeration order.
class DeviceInfoSet {
 public:
  virtual ~DeviceInfoSet() = default;

  virtual bool HasDevice(std::uint32_t index) const = 0;

  // Whether the status query of the device node succeeds.
  virtual bool QueryStatus(std::uint32_t index) const = 0;

  // Copies the property's text, NUL-terminated UTF-16 (a list of strings for the hardware ID, one
  // NUL after each and one after the last), into `buffer`. `requiredBytes` tells the property's
  // size in bytes when the buffer is too small.
  virtual DevicePropertyStatus ReadProperty(std::uint32_t index, DeviceProperty property,
                                            std::span<char16_t> buffer,
                                            std::uint32_t* requiredBytes) const = 0;
};

class DeviceSetup {
 public:
  virtual ~DeviceSetup() = default;

  // Null when the set cannot be obtained.
  virtual std::unique_ptr<DeviceInfoSet> PresentDevices() = 0;
};

}  // namespace platform
