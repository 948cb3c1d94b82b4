#include "platform/windows/devices/setup_devices.h"

#include <windows.h>

// These two need the one above.
#include <cfgmgr32.h>
#include <setupapi.h>

#include <algorithm>

namespace platform {
namespace {

class SetupDeviceSet : public DeviceInfoSet {
 public:
  explicit SetupDeviceSet(HDEVINFO devices) : devices_(devices) {}
  ~SetupDeviceSet() override { SetupDiDestroyDeviceInfoList(devices_); }
  SetupDeviceSet(const SetupDeviceSet&) = delete;
  SetupDeviceSet& operator=(const SetupDeviceSet&) = delete;

  bool HasDevice(std::uint32_t index) const override {
    SP_DEVINFO_DATA device;
    return Find(index, &device);
  }

  bool QueryStatus(std::uint32_t index) const override {
    SP_DEVINFO_DATA device;
    ULONG status = 0;
    ULONG problem = 0;
    return Find(index, &device) &&
           CM_Get_DevNode_Status(&status, &problem, device.DevInst, 0) == CR_SUCCESS;
  }

  DevicePropertyStatus ReadProperty(std::uint32_t index, DeviceProperty property,
                                    std::span<char16_t> buffer,
                                    std::uint32_t* requiredBytes) const override {
    SP_DEVINFO_DATA device;
    if (!Find(index, &device)) return DevicePropertyStatus::Failure;
    // A property is what a driver put into the registry: it may be empty or lack its end.
    std::ranges::fill(buffer, u'\0');
    const std::size_t offered = buffer.empty() ? 0 : buffer.size_bytes() - sizeof(char16_t);
    DWORD required = 0;
    if (SetupDiGetDeviceRegistryPropertyW(devices_, &device, static_cast<DWORD>(property), nullptr,
                                          reinterpret_cast<BYTE*>(buffer.data()),
                                          static_cast<DWORD>(offered), &required) != FALSE) {
      return DevicePropertyStatus::Success;
    }
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return DevicePropertyStatus::Failure;
    if (requiredBytes != nullptr) *requiredBytes = required + sizeof(char16_t);
    return DevicePropertyStatus::InsufficientBuffer;
  }

 private:
  bool Find(std::uint32_t index, SP_DEVINFO_DATA* device) const {
    *device = {};
    device->cbSize = sizeof(*device);
    return SetupDiEnumDeviceInfo(devices_, index, device) != FALSE;
  }

  HDEVINFO devices_;
};

}  // namespace

std::unique_ptr<DeviceInfoSet> SetupDevices::PresentDevices() {
  const HDEVINFO devices =
      SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES);
  if (devices == INVALID_HANDLE_VALUE) return nullptr;
  return std::make_unique<SetupDeviceSet>(devices);
}

}  // namespace platform
