#include "platform/linux/audio/pulse_audio_devices.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/linux/audio/pulse_endpoints.h"

namespace platform {

// A sink that nothing plays to is silent: only one that runs is recorded, so that looking at the
// level never wakes a sleeping device.
class PulseAudioDevices::Meter : public AudioMeter {
 public:
  Meter(PulseConnection& connection, std::string monitor)
      : connection_(connection), monitor_(std::move(monitor)) {}

  std::optional<float> PeakValue() override {
    if (monitor_.empty()) return 0.0F;
    return connection_.Peak(monitor_);
  }

 private:
  PulseConnection& connection_;
  const std::string monitor_;
};

class PulseAudioDevices::Enumerator : public AudioDeviceEnumerator {
 public:
  explicit Enumerator(PulseAudioDevices& devices) : devices_(devices) {}

  std::unique_ptr<AudioDeviceCollection> EnumerateEndpoints(DataFlow flow,
                                                            std::uint32_t stateMask) override {
    PulseState state;
    if (devices_.Fetch(&state) != PulseStatus::Answered) return nullptr;
    return SelectEndpoints(SinksToEndpoints(state), flow, stateMask, MeterMakerFor(state));
  }

  std::unique_ptr<AudioDevice> DefaultEndpoint(DataFlow flow, DeviceRole /*role*/) override {
    PulseState state;
    if (devices_.Fetch(&state) != PulseStatus::Answered) return nullptr;
    return SelectDefault(SinksToEndpoints(state), flow, MeterMakerFor(state));
  }

  HResult RegisterCallback(EndpointNotificationSink& sink) override {
    return devices_.Register(sink);
  }

  HResult UnregisterCallback(EndpointNotificationSink& sink) override {
    return devices_.notifier_.Unregister(sink);
  }

 private:
  MeterMaker MeterMakerFor(const PulseState& state) {
    std::map<std::u16string, std::string> monitors;
    for (const PulseSink& sink : state.sinks) {
      if (sink.activity == PulseSink::Activity::Running) {
        monitors.emplace(SinkGuid(sink.name), sink.monitor);
      }
    }
    return [&connection = devices_.connection_,
            monitors = std::move(monitors)](const ListedEndpoint& endpoint) {
      const auto found = monitors.find(endpoint.guid);
      return std::make_unique<Meter>(connection,
                                     found == monitors.end() ? std::string() : found->second);
    };
  }

  PulseAudioDevices& devices_;
};

PulseAudioDevices::PulseAudioDevices(Observer observer, std::string server)
    : observer_(std::move(observer)), connection_(std::move(server), [this](PulseNews news) {
        Request(news == PulseNews::Recovered ? Task::Announce : Task::Compare);
      }) {}

PulseAudioDevices::~PulseAudioDevices() {
  Request(Task::Stop);
  if (thread_.joinable()) thread_.join();
}

std::unique_ptr<AudioDeviceEnumerator> PulseAudioDevices::CreateEnumerator() {
  return std::make_unique<Enumerator>(*this);
}

PulseStatus PulseAudioDevices::Fetch(PulseState* state) {
  const std::lock_guard lock(fetchMutex_);
  const PulseStatus status = connection_.Fetch(state);
  if (observer_) observer_(status == PulseStatus::Answered ? *state : PulseState{});
  return status;
}

HResult PulseAudioDevices::Register(EndpointNotificationSink& sink) {
  // What the first sink can see for itself is where the reports begin.
  PulseState state;
  const bool first = !notifier_.HasSinks();
  if (first) Fetch(&state);
  const std::lock_guard lock(knownMutex_);
  if (first) known_ = SinksToEndpoints(state);
  if (!thread_.joinable()) thread_ = std::thread([this] { Run(); });
  return notifier_.Register(sink);
}

void PulseAudioDevices::Request(Task task) {
  {
    const std::lock_guard lock(taskMutex_);
    task_ = std::max(task_, task);
  }
  taskGiven_.notify_all();
}

void PulseAudioDevices::Run() {
  while (true) {
    Task task = Task::None;
    {
      std::unique_lock lock(taskMutex_);
      taskGiven_.wait(lock, [this] { return task_ != Task::None; });
      if (task_ == Task::Stop) return;
      task = std::exchange(task_, Task::None);
    }
    ReportChanges(task);
  }
}

void PulseAudioDevices::ReportChanges(Task task) {
  PulseState state;
  // A server that hangs may still have every sink; it tells when it is back.
  if (Fetch(&state) == PulseStatus::NoAnswer) return;
  EndpointList present = SinksToEndpoints(state);
  const std::lock_guard lock(knownMutex_);
  std::vector<EndpointReport> reports = Differences(known_, present);
  if (task == Task::Announce && reports.empty()) {
    // Nothing differs, but whoever asked meanwhile was told that there was nothing.
    const ListedEndpoint* endpoint = present.Default();
    reports.push_back(
        {EndpointReportKind::DefaultChanged, endpoint == nullptr ? u"" : endpoint->id});
  }
  for (EndpointReport& report : reports) notifier_.Post(std::move(report));
  known_ = std::move(present);
}

}  // namespace platform
