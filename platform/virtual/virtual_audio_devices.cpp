#include "platform/virtual/virtual_audio_devices.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace platform {
namespace {

class VirtualMeter : public AudioMeter {
 public:
  explicit VirtualMeter(float level) : level_(level) {}

  std::optional<float> PeakValue() override { return level_; }

 private:
  float level_;
};

std::unique_ptr<AudioMeter> MakeMeter(const ListedEndpoint& endpoint) {
  return std::make_unique<VirtualMeter>(endpoint.level);
}

}  // namespace

class VirtualAudioDevices::Enumerator : public AudioDeviceEnumerator {
 public:
  explicit Enumerator(VirtualAudioDevices& devices)
      : devices_(devices), endpoints_(devices.ReadEndpoints()) {}

  std::unique_ptr<AudioDeviceCollection> EnumerateEndpoints(DataFlow flow,
                                                            std::uint32_t stateMask) override {
    return SelectEndpoints(endpoints_, flow, stateMask, MakeMeter);
  }

  std::unique_ptr<AudioDevice> DefaultEndpoint(DataFlow flow, DeviceRole /*role*/) override {
    return SelectDefault(endpoints_, flow, MakeMeter);
  }

  HResult RegisterCallback(EndpointNotificationSink& sink) override {
    return devices_.Register(sink);
  }

  HResult UnregisterCallback(EndpointNotificationSink& sink) override {
    return devices_.notifier_.Unregister(sink);
  }

 private:
  VirtualAudioDevices& devices_;
  EndpointList endpoints_;
};

VirtualAudioDevices::VirtualAudioDevices(VirtualLaptop& laptop,
                                         std::unique_ptr<FileWatcher> watcher)
    : laptop_(laptop), watcher_(std::move(watcher)) {}

VirtualAudioDevices::~VirtualAudioDevices() {
  watcher_->Interrupt();
  if (thread_.joinable()) thread_.join();
}

std::unique_ptr<AudioDeviceEnumerator> VirtualAudioDevices::CreateEnumerator() {
  return std::make_unique<Enumerator>(*this);
}

EndpointList VirtualAudioDevices::ReadEndpoints() {
  LaptopFile laptop = laptop_.Read();
  return {std::move(laptop.endpoints).value_or(std::vector<ListedEndpoint>()),
          std::move(laptop.defaultEndpoint)};
}

HResult VirtualAudioDevices::Register(EndpointNotificationSink& sink) {
  const HResult result = notifier_.Register(sink);
  const std::lock_guard lock(mutex_);
  if (result == HResult::Ok && !thread_.joinable()) {
    watcher_->Begin();
    thread_ = std::thread([this, known = ReadEndpoints()]() mutable { Watch(std::move(known)); });
  }
  return result;
}

void VirtualAudioDevices::Watch(EndpointList known) {
  while (watcher_->WaitForChange()) {
    EndpointList present = ReadEndpoints();
    for (EndpointReport& report : Differences(known, present)) notifier_.Post(std::move(report));
    known = std::move(present);
  }
}

}  // namespace platform
