// Render endpoints of the system's multimedia device service.
#pragma once

#include <memory>
#include <mutex>

#include "platform/audio_devices.h"
#include "platform/endpoint_list.h"
#include "platform/endpoint_notifier.h"
#include "platform/windows/audio/bounded_calls.h"

namespace platform {

// Each enumerator reads all endpoints once and answers from that, so that one bounded call is all
// it takes; enumerators and meters must not outlive the object. From the first sink on the service
// reports to a client of ours.
class MultimediaDevices : public AudioDevices {
 public:
  MultimediaDevices();
  ~MultimediaDevices() override;
  MultimediaDevices(const MultimediaDevices&) = delete;
  MultimediaDevices& operator=(const MultimediaDevices&) = delete;

  std::unique_ptr<AudioDeviceEnumerator> CreateEnumerator() override;

 private:
  class Enumerator;
  class Meter;
  class Registration;

  HResult Register(EndpointNotificationSink& sink);

  const BoundedCalls calls_;
  EndpointNotifier notifier_;
  std::mutex mutex_;
  std::shared_ptr<Registration> registration_;
};

}  // namespace platform
