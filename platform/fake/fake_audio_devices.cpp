#include "platform/fake/fake_audio_devices.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "platform/endpoint_list.h"
#include "platform/endpoint_notifier.h"

namespace platform {

struct FakeAudioDevices::State {
  std::mutex mutex;
  std::vector<FakeEndpoint> endpoints;
  std::u16string defaultId;
  std::set<AudioStep> failures;
  std::array<int, kAudioStepCount> calls{};
  int liveObjects = 0;
  EndpointNotifier notifier;

  FakeEndpoint* Find(std::u16string_view id) {
    const auto found =
        std::find_if(endpoints.begin(), endpoints.end(),
                     [&](const FakeEndpoint& endpoint) { return endpoint.id == id; });
    return found == endpoints.end() ? nullptr : &*found;
  }

  // Counts the step and tells whether it works. Call with the lock held.
  bool Begin(AudioStep step) {
    ++calls.at(static_cast<std::size_t>(step));
    return !failures.contains(step);
  }

  // The endpoint with this ID when the step works on it; an endpoint that is gone fails every step.
  FakeEndpoint* Begin(AudioStep step, std::u16string_view id) {
    FakeEndpoint* endpoint = Find(id);
    if (!Begin(step) || endpoint == nullptr || endpoint->failures.contains(step)) return nullptr;
    return endpoint;
  }
};

namespace {

using SharedState = std::shared_ptr<FakeAudioDevices::State>;

// Every object of the service carries one of these.
class Lease {
 public:
  explicit Lease(SharedState state) : state_(std::move(state)) { Count(1); }
  ~Lease() { Count(-1); }
  Lease(const Lease&) = delete;
  Lease& operator=(const Lease&) = delete;

  FakeAudioDevices::State& State() { return *state_; }
  const SharedState& Shared() const { return state_; }

 private:
  void Count(int change) {
    const std::lock_guard lock(state_->mutex);
    state_->liveObjects += change;
  }

  SharedState state_;
};

class FakePropertyStore : public PropertyStore {
 public:
  FakePropertyStore(const SharedState& state, std::u16string id)
      : lease_(state), id_(std::move(id)) {}

  std::optional<std::u16string> GetString(const PropertyKey& key) override {
    FakeAudioDevices::State& state = lease_.State();
    const std::lock_guard lock(state.mutex);
    const FakeEndpoint* endpoint = state.Begin(AudioStep::GetString, id_);
    if (endpoint == nullptr) return std::nullopt;
    if (key == kEndpointGuidProperty) return endpoint->guid;
    if (key == kEndpointJackSubTypeProperty) return endpoint->jackSubType;
    if (key == kDeviceInterfaceFriendlyNameProperty) return endpoint->adapter;
    return std::nullopt;
  }

 private:
  Lease lease_;
  std::u16string id_;
};

class FakeMeter : public AudioMeter {
 public:
  FakeMeter(const SharedState& state, std::u16string id) : lease_(state), id_(std::move(id)) {}

  std::optional<float> PeakValue() override {
    FakeAudioDevices::State& state = lease_.State();
    const std::lock_guard lock(state.mutex);
    const FakeEndpoint* endpoint = state.Begin(AudioStep::PeakValue, id_);
    if (endpoint == nullptr) return std::nullopt;
    return endpoint->peak;
  }

 private:
  Lease lease_;
  std::u16string id_;
};

class FakeDevice : public AudioDevice {
 public:
  FakeDevice(const SharedState& state, std::u16string id) : lease_(state), id_(std::move(id)) {}

  std::optional<std::u16string> Id() override {
    if (!Works(AudioStep::Id)) return std::nullopt;
    return id_;
  }

  std::optional<std::uint32_t> State() override {
    FakeAudioDevices::State& state = lease_.State();
    const std::lock_guard lock(state.mutex);
    const FakeEndpoint* endpoint = state.Begin(AudioStep::State, id_);
    if (endpoint == nullptr) return std::nullopt;
    return endpoint->state;
  }

  std::unique_ptr<PropertyStore> OpenPropertyStore() override {
    if (!Works(AudioStep::OpenPropertyStore)) return nullptr;
    return std::make_unique<FakePropertyStore>(lease_.Shared(), id_);
  }

  std::unique_ptr<AudioMeter> ActivateMeter() override {
    if (!Works(AudioStep::ActivateMeter)) return nullptr;
    return std::make_unique<FakeMeter>(lease_.Shared(), id_);
  }

 private:
  bool Works(AudioStep step) {
    FakeAudioDevices::State& state = lease_.State();
    const std::lock_guard lock(state.mutex);
    return state.Begin(step, id_) != nullptr;
  }

  Lease lease_;
  std::u16string id_;
};

class FakeCollection : public AudioDeviceCollection {
 public:
  FakeCollection(const SharedState& state, std::vector<std::u16string> ids)
      : lease_(state), ids_(std::move(ids)) {}

  std::uint32_t Count() override { return static_cast<std::uint32_t>(ids_.size()); }

  std::unique_ptr<AudioDevice> Item(std::uint32_t index) override {
    FakeAudioDevices::State& state = lease_.State();
    {
      const std::lock_guard lock(state.mutex);
      if (index >= ids_.size() || state.Begin(AudioStep::Item, ids_[index]) == nullptr) {
        return nullptr;
      }
    }
    return std::make_unique<FakeDevice>(lease_.Shared(), ids_[index]);
  }

 private:
  Lease lease_;
  std::vector<std::u16string> ids_;
};

class FakeEnumerator : public AudioDeviceEnumerator {
 public:
  explicit FakeEnumerator(const SharedState& state) : lease_(state) {}

  std::unique_ptr<AudioDeviceCollection> EnumerateEndpoints(DataFlow flow,
                                                            std::uint32_t stateMask) override {
    FakeAudioDevices::State& state = lease_.State();
    std::vector<std::u16string> ids;
    {
      const std::lock_guard lock(state.mutex);
      if (!state.Begin(AudioStep::EnumerateEndpoints)) return nullptr;
      for (const FakeEndpoint& endpoint : state.endpoints) {
        if (flow == DataFlow::Render && (endpoint.state & stateMask) != 0) {
          ids.push_back(endpoint.id);
        }
      }
    }
    return std::make_unique<FakeCollection>(lease_.Shared(), std::move(ids));
  }

  std::unique_ptr<AudioDevice> DefaultEndpoint(DataFlow flow, DeviceRole role) override {
    FakeAudioDevices::State& state = lease_.State();
    std::u16string id;
    {
      const std::lock_guard lock(state.mutex);
      if (!state.Begin(AudioStep::DefaultEndpoint) || flow != DataFlow::Render ||
          role != DeviceRole::Console) {
        return nullptr;
      }
      const FakeEndpoint* endpoint = state.Find(state.defaultId);
      if (endpoint == nullptr || endpoint->state != kDeviceStateActive) return nullptr;
      id = endpoint->id;
    }
    return std::make_unique<FakeDevice>(lease_.Shared(), std::move(id));
  }

  HResult RegisterCallback(EndpointNotificationSink& sink) override {
    if (!Works(AudioStep::RegisterCallback)) return HResult::Fail;
    return lease_.State().notifier.Register(sink);
  }

  HResult UnregisterCallback(EndpointNotificationSink& sink) override {
    if (!Works(AudioStep::UnregisterCallback)) return HResult::Fail;
    return lease_.State().notifier.Unregister(sink);
  }

 private:
  bool Works(AudioStep step) {
    const std::lock_guard lock(lease_.State().mutex);
    return lease_.State().Begin(step);
  }

  Lease lease_;
};

}  // namespace

FakeAudioDevices::FakeAudioDevices() : state_(std::make_shared<State>()) {}

FakeAudioDevices::~FakeAudioDevices() = default;

std::unique_ptr<AudioDeviceEnumerator> FakeAudioDevices::CreateEnumerator() {
  {
    const std::lock_guard lock(state_->mutex);
    if (!state_->Begin(AudioStep::CreateEnumerator)) return nullptr;
  }
  return std::make_unique<FakeEnumerator>(state_);
}

void FakeAudioDevices::Add(FakeEndpoint endpoint) {
  const std::u16string id = endpoint.id;
  {
    const std::lock_guard lock(state_->mutex);
    state_->endpoints.push_back(std::move(endpoint));
  }
  state_->notifier.Post({EndpointReportKind::Added, id});
}

void FakeAudioDevices::Remove(std::u16string_view id) {
  {
    const std::lock_guard lock(state_->mutex);
    std::erase_if(state_->endpoints,
                  [&](const FakeEndpoint& endpoint) { return endpoint.id == id; });
  }
  state_->notifier.Post({EndpointReportKind::Removed, std::u16string(id)});
}

void FakeAudioDevices::SetState(std::u16string_view id, std::uint32_t state) {
  {
    const std::lock_guard lock(state_->mutex);
    FakeEndpoint* endpoint = state_->Find(id);
    if (endpoint == nullptr) return;
    endpoint->state = state;
  }
  state_->notifier.Post({EndpointReportKind::StateChanged, std::u16string(id), state});
}

void FakeAudioDevices::SetPeak(std::u16string_view id, float peak) {
  {
    const std::lock_guard lock(state_->mutex);
    FakeEndpoint* endpoint = state_->Find(id);
    if (endpoint == nullptr) return;
    endpoint->peak = peak;
  }
  state_->notifier.Post(
      {EndpointReportKind::PropertyChanged, std::u16string(id), 0, kEndpointLevelProperty});
}

void FakeAudioDevices::SetDefault(std::u16string_view id) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->defaultId = id;
  }
  state_->notifier.Post({EndpointReportKind::DefaultChanged, std::u16string(id)});
}

void FakeAudioDevices::Fail(AudioStep step) {
  const std::lock_guard lock(state_->mutex);
  state_->failures.insert(step);
}

void FakeAudioDevices::Heal(AudioStep step) {
  const std::lock_guard lock(state_->mutex);
  state_->failures.erase(step);
}

int FakeAudioDevices::Calls(AudioStep step) const {
  const std::lock_guard lock(state_->mutex);
  return state_->calls.at(static_cast<std::size_t>(step));
}

int FakeAudioDevices::LiveObjects() const {
  const std::lock_guard lock(state_->mutex);
  return state_->liveObjects;
}

bool FakeAudioDevices::HasSinks() const {
  return state_->notifier.HasSinks();
}

void FakeAudioDevices::WaitUntilDelivered() {
  state_->notifier.WaitUntilDelivered();
}

}  // namespace platform
