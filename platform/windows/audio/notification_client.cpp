#include "platform/windows/audio/notification_client.h"

#include <utility>

#include "platform/windows/audio/property_key.h"
#include "platform/windows/wide_text.h"

namespace platform {
namespace {

// There is no ID when the last endpoint has gone.
std::u16string IdFrom(const wchar_t* deviceId) {
  return deviceId == nullptr ? std::u16string() : FromWide(deviceId);
}

}  // namespace

void NotificationClient::Detach() {
  const std::lock_guard lock(mutex_);
  notifier_ = nullptr;
}

HRESULT NotificationClient::Post(EndpointReport report) {
  const std::lock_guard lock(mutex_);
  if (notifier_ != nullptr) notifier_->Post(std::move(report));
  return S_OK;
}

HRESULT NotificationClient::QueryInterface(REFIID interfaceId, void** object) {
  if (interfaceId != __uuidof(IUnknown) && interfaceId != __uuidof(IMMNotificationClient)) {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  AddRef();
  *object = static_cast<IMMNotificationClient*>(this);
  return S_OK;
}

ULONG NotificationClient::AddRef() {
  return ++references_;
}

ULONG NotificationClient::Release() {
  const ULONG count = --references_;
  if (count == 0) delete this;
  return count;
}

HRESULT NotificationClient::OnDeviceStateChanged(LPCWSTR deviceId, DWORD newState) {
  return Post({EndpointReportKind::StateChanged, IdFrom(deviceId), newState});
}

HRESULT NotificationClient::OnDeviceAdded(LPCWSTR deviceId) {
  return Post({EndpointReportKind::Added, IdFrom(deviceId)});
}

HRESULT NotificationClient::OnDeviceRemoved(LPCWSTR deviceId) {
  return Post({EndpointReportKind::Removed, IdFrom(deviceId)});
}

// Of the three roles that change together, one says it all.
HRESULT NotificationClient::OnDefaultDeviceChanged(EDataFlow flow, ERole role, LPCWSTR deviceId) {
  if (flow != eRender || role != eConsole) return S_OK;
  return Post({EndpointReportKind::DefaultChanged, IdFrom(deviceId)});
}

HRESULT NotificationClient::OnPropertyValueChanged(LPCWSTR deviceId, const PROPERTYKEY key) {
  return Post({EndpointReportKind::PropertyChanged, IdFrom(deviceId), 0, FromSystem(key)});
}

}  // namespace platform
