#include "tests/faults/busy_panel.h"

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <map>
#include <optional>
#include <random>
#include <thread>

#include "dsp/eq_model.h"
#include "endpoints/registry_watcher.h"
#include "engine_link/active_setting.h"
#include "engine_link/engine_signals.h"
#include "platform/fake/fake_audio_devices.h"
#include "platform/linux/events/fifo_events.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "store/active_mode.h"
#include "store/registry_layout.h"
#include "tests/faults/rounds.h"
#include "tests/support/registry_tree.h"

namespace faults {
namespace {

using std::chrono::steady_clock;

class BusyPanel {
 public:
  explicit BusyPanel(const PanelOrder& order)
      : order_(order),
        registry_(order.state),
        events_(order.state / "events"),
        random_(order.seed) {
    const std::u16string guid = platform::FromUtf8(kEndpoint);
    audioDevices_.Add({.id = guid,
                       .guid = guid,
                       .jackSubType = kSpeakerRoute,
                       .adapter = u"Realtek High Definition Audio"});
    audioDevices_.SetDefault(guid);
    Reload();
    watcher_.Start({platform::FromUtf8(kEndpoint), store::OutputPath::InternalSpeaker, mode_},
                   [this](store::OutputPath) { isPosted_ = true; });
    watcher_.Wake();
  }

  void Work() {
    const auto end = steady_clock::now() + order_.duration;
    int rounds = 0;
    while (steady_clock::now() < end) {
      Follow();
      if (Between(random_, 0, 9) == 0) {
        ChangeMode();
      } else {
        Edit();
      }
      CountOne();
      ++rounds;
    }
    support::PutDword(registry_, kCounterKey, u"rounds" + Own(),
                      static_cast<std::uint32_t>(rounds));
  }

  // The watcher's last post may be on its way; it never comes when a change was missed.
  bool SeesWhatIsStored() {
    constexpr std::chrono::seconds kPatience(8);
    const auto end = steady_clock::now() + kPatience;
    while (steady_clock::now() < end) {
      Follow();
      if (store::ReadActiveModeIndex(registry_, kSpeakerRoute) == mode_) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
  }

  bool FindsItsEdits() {
    for (const auto& [setting, value] : edits_) {
      const std::u16string path =
          store::SettingKeyPath(store::Tree::Parameters, kSpeakerRoute, setting);
      if (support::GetFloat(registry_, path, Name()) != value) return false;
    }
    return true;
  }

 private:
  std::u16string_view Name() const {
    return store::ParameterName(static_cast<std::size_t>(order_.parameter));
  }
  std::u16string Own() const { return platform::FromUtf8(std::to_string(order_.parameter)); }

  void Reload() {
    static_cast<void>(store::LoadActiveSet(registry_, kSpeakerRoute, set_));
    mode_ = store::ModeIndexFromSetting(set_.activeSetting);
  }

  void Follow() {
    if (isPosted_.exchange(false)) Reload();
  }

  void ChangeMode() {
    const int mode = Between(random_, 0, 5);
    if (engine_link::WriteActiveSetting(engine_, static_cast<std::uint32_t>(mode), nullptr)) {
      engine_link::SignalModeChange(engine_);
    }
  }

  void Edit() {
    const float value = 0.3F + static_cast<float>(Between(random_, 0, 3000)) / 1000.0F;
    set_.values[dsp::ParameterIndex(order_.parameter)] = value;
    edits_[set_.activeSetting] = value;
    engine_link::SignalParameterChange(engine_, set_);
  }

  void CountOne() {
    const auto scope = registry_.BeginWrite();
    const auto count = support::GetValue(registry_, kCounterKey, u"count");
    std::uint32_t number = 0;
    if (count) std::memcpy(&number, count->bytes.data(), sizeof(number));
    support::PutDword(registry_, kCounterKey, u"count", number + 1);
    static_cast<void>(scope->Commit());
  }

  const PanelOrder order_;
  platform::SqliteRegistry registry_;
  platform::FifoEvents events_;
  platform::FakeAudioDevices audioDevices_;
  engine_link::EngineLink engine_{registry_, events_, audioDevices_};
  std::mt19937 random_;
  store::ParameterStore set_;
  std::int32_t mode_ = 0;
  std::map<std::u16string, float> edits_;  // the last one of each setting
  std::atomic<bool> isPosted_ = false;
  endpoints::RegistryWatcher watcher_{registry_, audioDevices_, nullptr};
};

}  // namespace

std::unique_ptr<support::ForkedProcess> StartPanel(const PanelOrder& order) {
  return std::make_unique<support::ForkedProcess>([order](const support::Line& parent) {
    if (std::freopen(order.errors.c_str(), "w", stderr) == nullptr) _exit(1);
    if (order.user != geteuid() && (setgid(order.user) != 0 || setuid(order.user) != 0)) _exit(1);
    BusyPanel panel(order);
    parent.Hear();
    panel.Work();
    parent.Say('d');
    parent.Hear();
    parent.Say(panel.SeesWhatIsStored() ? 'y' : 'n');
    parent.Say(panel.FindsItsEdits() ? 'y' : 'n');
  });
}

}  // namespace faults
