#include "platform/windows/audio/multimedia_devices.h"

#include <windows.h>

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "platform/windows/audio/endpoint_reader.h"
#include "platform/windows/audio/notification_client.h"
#include "platform/worker_thread.h"

namespace platform {
namespace {

constexpr std::chrono::milliseconds kLongestCall(1000);

}  // namespace

class MultimediaDevices::Meter : public AudioMeter {
 public:
  Meter(const BoundedCalls& calls, std::u16string endpointId)
      : calls_(calls), endpointId_(std::move(endpointId)) {}

  std::optional<float> PeakValue() override {
    const auto peak = std::make_shared<std::optional<float>>();
    if (!calls_.Run([peak, id = endpointId_] { *peak = ReadPeak(id); })) return std::nullopt;
    return *peak;
  }

 private:
  const BoundedCalls& calls_;
  const std::u16string endpointId_;
};

class MultimediaDevices::Enumerator : public AudioDeviceEnumerator {
 public:
  Enumerator(MultimediaDevices& devices, EndpointList endpoints)
      : devices_(devices), endpoints_(std::move(endpoints)) {}

  std::unique_ptr<AudioDeviceCollection> EnumerateEndpoints(DataFlow flow,
                                                            std::uint32_t stateMask) override {
    return SelectEndpoints(endpoints_, flow, stateMask, MeterMakerOfCalls());
  }

  std::unique_ptr<AudioDevice> DefaultEndpoint(DataFlow flow, DeviceRole /*role*/) override {
    return SelectDefault(endpoints_, flow, MeterMakerOfCalls());
  }

  HResult RegisterCallback(EndpointNotificationSink& sink) override {
    return devices_.Register(sink);
  }

  HResult UnregisterCallback(EndpointNotificationSink& sink) override {
    return devices_.notifier_.Unregister(sink);
  }

 private:
  MeterMaker MeterMakerOfCalls() {
    return [&calls = devices_.calls_](const ListedEndpoint& endpoint) {
      return std::make_unique<Meter>(calls, endpoint.id);
    };
  }

  MultimediaDevices& devices_;
  const EndpointList endpoints_;
};

// Our client at the service, as long as the object lives. Its own calls may hang.
class MultimediaDevices::Registration {
 public:
  explicit Registration(EndpointNotifier& notifier) : client_(new NotificationClient(notifier)) {
    CoIncrementMTAUsage(&apartment_);
  }
  ~Registration() {
    if (begun_) enumerator_->UnregisterEndpointNotificationCallback(client_.Get());
    enumerator_ = {};
    CoDecrementMTAUsage(apartment_);
  }
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

  void Begin() {
    enumerator_ = MakeDeviceEnumerator();
    begun_ =
        enumerator_ && SUCCEEDED(enumerator_->RegisterEndpointNotificationCallback(client_.Get()));
  }
  bool HasBegun() const { return begun_; }
  void Detach() { client_->Detach(); }

 private:
  // Keeps the apartment in existence while no thread of ours is in it.
  CO_MTA_USAGE_COOKIE apartment_ = nullptr;
  ComPointer<NotificationClient> client_;
  ComPointer<IMMDeviceEnumerator> enumerator_;
  bool begun_ = false;
};

MultimediaDevices::MultimediaDevices() : calls_(kLongestCall) {}

MultimediaDevices::~MultimediaDevices() {
  if (!registration_) return;
  registration_->Detach();
  WorkerThread worker(
      [registration = std::move(registration_)]() mutable { registration.reset(); });
  worker.WaitForEnd(kLongestCall);
}

std::unique_ptr<AudioDeviceEnumerator> MultimediaDevices::CreateEnumerator() {
  const auto endpoints = std::make_shared<std::optional<EndpointList>>();
  if (!calls_.Run([endpoints] { *endpoints = ReadRenderEndpoints(); }) || !*endpoints) {
    return nullptr;
  }
  return std::make_unique<Enumerator>(*this, std::move(**endpoints));
}

HResult MultimediaDevices::Register(EndpointNotificationSink& sink) {
  const std::lock_guard lock(mutex_);
  if (!registration_) {
    auto registration = std::make_shared<Registration>(notifier_);
    if (!calls_.Run([registration] { registration->Begin(); })) {
      registration->Detach();
      return HResult::Fail;
    }
    if (!registration->HasBegun()) return HResult::Fail;
    registration_ = std::move(registration);
  }
  return notifier_.Register(sink);
}

}  // namespace platform
