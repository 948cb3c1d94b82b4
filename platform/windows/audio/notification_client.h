// The COM object that the multimedia device service calls.
#pragma once

#include <mmdeviceapi.h>

#include <atomic>
#include <mutex>

#include "platform/endpoint_notifier.h"

namespace platform {

// Hands every report to a notifier, on whose thread the sinks are called: they may take their time
// and leave whenever they like. Lives as long as the service refers to it; the notifier only until
// `Detach`.
class NotificationClient final : public IMMNotificationClient {
 public:
  explicit NotificationClient(EndpointNotifier& notifier) : notifier_(&notifier) {}

  // No report reaches the notifier after it. Any thread.
  void Detach();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE OnDeviceStateChanged(LPCWSTR deviceId, DWORD newState) override;
  HRESULT STDMETHODCALLTYPE OnDeviceAdded(LPCWSTR deviceId) override;
  HRESULT STDMETHODCALLTYPE OnDeviceRemoved(LPCWSTR deviceId) override;
  HRESULT STDMETHODCALLTYPE OnDefaultDeviceChanged(EDataFlow flow, ERole role,
                                                   LPCWSTR deviceId) override;
  HRESULT STDMETHODCALLTYPE OnPropertyValueChanged(LPCWSTR deviceId,
                                                   const PROPERTYKEY key) override;

 private:
  ~NotificationClient() = default;
  HRESULT Post(EndpointReport report);

  std::atomic<ULONG> references_ = 1;
  std::mutex mutex_;
  EndpointNotifier* notifier_;
};

}  // namespace platform
