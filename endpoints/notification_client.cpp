#include "endpoints/notification_client.h"

#include <chrono>
#include <memory>

#include "platform/com_apartment.h"

namespace endpoints {
namespace {

using platform::HResult;

constexpr platform::Guid kUnknownInterface{
    0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr platform::Guid kNotificationClientInterface{
    0x7991EEC9, 0x7E89, 0x4D85, {0x83, 0x90, 0x6C, 0x70, 0x3C, 0xEC, 0x60, 0xC0}};

// An endpoint that was just reported needs a moment until its properties and its peak are right.
constexpr std::chrono::milliseconds kSettlingTime{100};

}  // namespace

CMMNotificationClient::CMMNotificationClient(platform::AudioDevices& audioDevices,
                                             platform::Clock& clock)
    : audioDevices_(audioDevices), clock_(clock) {}

CMMNotificationClient::~CMMNotificationClient() {
  Unregister();
}

HResult CMMNotificationClient::Register() {
  {
    const auto enumerator = audioDevices_.CreateEnumerator();
    if (!enumerator) return HResult::Fail;
    const HResult result = enumerator->RegisterCallback(*this);
    if (result != HResult::Ok) return result;
    registered_ = true;
  }
  return OnDefaultDeviceChanged(platform::DataFlow::Render, platform::DeviceRole::Console, {});
}

void CMMNotificationClient::Unregister() {
  if (!registered_) return;
  if (const auto enumerator = audioDevices_.CreateEnumerator()) {
    static_cast<void>(enumerator->UnregisterCallback(*this));
  }
  registered_ = false;
}

HResult CMMNotificationClient::QueryInterface(const platform::Guid& interfaceId, void** object) {
  if (interfaceId != kUnknownInterface && interfaceId != kNotificationClientInterface) {
    *object = nullptr;
    return HResult::NoInterface;
  }
  AddRef();
  *object = static_cast<platform::EndpointNotificationSink*>(this);
  return HResult::Ok;
}

std::uint32_t CMMNotificationClient::AddRef() {
  return ++referenceCount_;
}

std::uint32_t CMMNotificationClient::Release() {
  const std::uint32_t count = --referenceCount_;
  if (count == 0) delete this;
  return count;
}

HResult CMMNotificationClient::OnDeviceStateChanged(std::u16string_view deviceId,
                                                    std::uint32_t /*newState*/) {
  return OnDefaultDeviceChanged(platform::DataFlow::Render, platform::DeviceRole::Console,
                                deviceId);
}

HResult CMMNotificationClient::OnDeviceAdded(std::u16string_view deviceId) {
  return OnDefaultDeviceChanged(platform::DataFlow::Render, platform::DeviceRole::Console,
                                deviceId);
}

HResult CMMNotificationClient::OnDeviceRemoved(std::u16string_view deviceId) {
  return OnDefaultDeviceChanged(platform::DataFlow::Render, platform::DeviceRole::Console,
                                deviceId);
}

HResult CMMNotificationClient::OnDefaultDeviceChanged(platform::DataFlow /*flow*/,
                                                      platform::DeviceRole /*role*/,
                                                      std::u16string_view /*deviceId*/) {
  const platform::ComApartment apartment;
  clock_.Sleep(kSettlingTime);
  endpointWarning = EvaluateEndpointSupport(audioDevices_);
  return HResult::Ok;
}

HResult CMMNotificationClient::OnPropertyValueChanged(std::u16string_view deviceId,
                                                      const platform::PropertyKey& /*key*/) {
  return OnDefaultDeviceChanged(platform::DataFlow::Render, platform::DeviceRole::Console,
                                deviceId);
}

}  // namespace endpoints
