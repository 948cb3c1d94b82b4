// The virtual laptop's endpoints.
#pragma once

#include <memory>
#include <mutex>
#include <thread>

#include "platform/audio_devices.h"
#include "platform/endpoint_list.h"
#include "platform/endpoint_notifier.h"
#include "platform/virtual/file_watcher.h"
#include "platform/virtual/virtual_laptop.h"

namespace platform {

// Each enumerator reads the file once and answers from that. The file is watched, on a thread of
// its own, from the first registered sink to the object's end; enumerators must not outlive it.
class VirtualAudioDevices : public AudioDevices {
 public:
  VirtualAudioDevices(VirtualLaptop& laptop, std::unique_ptr<FileWatcher> watcher);
  ~VirtualAudioDevices() override;

  std::unique_ptr<AudioDeviceEnumerator> CreateEnumerator() override;

 private:
  class Enumerator;

  EndpointList ReadEndpoints();
  HResult Register(EndpointNotificationSink& sink);
  void Watch(EndpointList known);

  VirtualLaptop& laptop_;
  const std::unique_ptr<FileWatcher> watcher_;
  EndpointNotifier notifier_;
  std::mutex mutex_;
  std::thread thread_;
};

}  // namespace platform
