#include "platform/device_list.h"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

// The property as the platform stores it, with its terminators; empty when there is none.
std::u16string StoredText(const DeviceRecord& device, DeviceProperty property) {
  std::u16string text;
  switch (property) {
    case DeviceProperty::HardwareId:
      for (const std::u16string& id : device.hardwareIds) {
        if (!id.empty()) text.append(id).push_back(u'\0');
      }
      break;
    case DeviceProperty::DeviceDescription:
      text = device.description;
      break;
    case DeviceProperty::Class:
      text = device.deviceClass;
      break;
    case DeviceProperty::ClassGuid:
      text = device.classGuid;
      break;
  }
  if (!text.empty()) text.push_back(u'\0');
  return text;
}

}  // namespace

DeviceList::DeviceList(std::vector<DeviceRecord> devices) : devices_(std::move(devices)) {}

bool DeviceList::HasDevice(std::uint32_t index) const {
  return index < devices_.size();
}

bool DeviceList::QueryStatus(std::uint32_t index) const {
  return HasDevice(index) && devices_[index].status == DeviceRecord::Status::Ok;
}

DevicePropertyStatus DeviceList::ReadProperty(std::uint32_t index, DeviceProperty property,
                                              std::span<char16_t> buffer,
                                              std::uint32_t* requiredBytes) const {
  if (!HasDevice(index)) return DevicePropertyStatus::Failure;
  const std::u16string text = StoredText(devices_[index], property);
  if (text.empty()) return DevicePropertyStatus::Failure;
  if (requiredBytes != nullptr) {
    *requiredBytes = static_cast<std::uint32_t>(text.size() * sizeof(char16_t));
  }
  if (text.size() > buffer.size()) return DevicePropertyStatus::InsufficientBuffer;
  std::ranges::copy(text, buffer.begin());
  return DevicePropertyStatus::Success;
}

}  // namespace platform
