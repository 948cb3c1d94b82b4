// The equalizer dialog as a hand feels it: on a real display, with a real store, three active
// endpoints of a virtual laptop and an engine that listens. Started with a display (96 dots per
// inch is the resolution that the budgets are meant for).
#include <benchmark/benchmark.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <utility>

#include "dsp/eq_model.h"
#include "dsp/response.h"
#include "endpoints/registry_watcher.h"
#include "engine_link/engine_signals.h"
#include "platform/host.h"
#include "platform/linux/events/fifo_event_listener.h"
#include "platform/shell.h"
#include "resources/resource_ids.h"
#include "store/parameter_store.h"
#include "store/path_key.h"
#include "store/registry_layout.h"
#include "tests/support/no_instance.h"
#include "tests/support/temporary_folder.h"
#include "ui/controls/plot/freq_plot.h"
#include "ui/controls/shared/control_window.h"
#include "ui/eq/kel_control_dlg.h"

namespace {

using platform::MakeWParam;
using Clock = std::chrono::steady_clock;

constexpr std::u16string_view kSpeaker = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
constexpr std::array<std::u16string_view, 3> kEndpointGuids = {u"{one}", u"{two}", u"{three}"};
constexpr const char* kLaptop = R"({"devices": [], "defaultEndpoint": "1", "endpoints": [
{"id": "1", "guid": "{one}", "jackSubType": "{DFF21CE1-F70F-11D0-B917-00A0C9223196}"},
{"id": "2", "guid": "{two}"}, {"id": "3", "guid": "{three}"}]})";

// The machine's files and the environment that leads the backend to them.
class Machine {
 public:
  Machine() {
    std::ofstream(LaptopFile()) << kLaptop;
    setenv("TONALYX_ROOT", folder_.Path().c_str(), 1);
    setenv("TONALYX_LAPTOP", LaptopFile().c_str(), 1);
  }

  std::filesystem::path EventsFolder() const { return folder_.Path() / "events"; }

 private:
  std::filesystem::path LaptopFile() const { return folder_.Path() / "laptop.json"; }

  support::TemporaryFolder folder_;
};

// Takes every signal as it comes.
class Engine {
 public:
  explicit Engine(const std::filesystem::path& eventsFolder) : listener_(eventsFolder) {
    for (const std::u16string_view guid : kEndpointGuids) {
      for (const std::u16string_view kind : {u"GFX", u"MFX", u"EFX"}) {
        std::u16string name = u"Global\\Velsona";
        listener_.Create(name.append(kind).append(u"PropEvent").append(guid));
      }
    }
    thread_ = std::thread([this] {
      while (running_) listener_.Wait(std::chrono::seconds(1));
    });
  }
  ~Engine() {
    running_ = false;
    listener_.Interrupt();
    thread_.join();
  }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

 private:
  platform::FifoEventListener listener_;
  std::atomic<bool> running_{true};
  std::thread thread_;
};

void StoreInitialSet(platform::Registry& registry) {
  store::ParameterStore set;
  set.values = dsp::InitialParameters();
  set.committed.fill(-1.0F);
  set.pathKey = kSpeaker;
  set.activeSetting = std::u16string(1, u'1');
  store::CommitChanges(registry, set);
  const std::u16string active(u"1\0", 2);
  registry
      .CreateKey(platform::RegistryRoot::LocalMachine, store::SettingsKeyPath(kSpeaker),
                 store::kWriteAccess)
      ->SetValue(store::kActiveSettingValue, platform::RegistryType::String,
                 std::as_bytes(std::span(active)));
}

// Runs an action once the dialog has come to rest on the screen, and ends.
class VisitedDialog : public ui::CKelControlDlg {
 public:
  using Visit = std::function<void(VisitedDialog&)>;

  VisitedDialog(const platform::Platform& platform, std::chrono::milliseconds rest, Visit visit)
      : CKelControlDlg(platform, {.threeGuiLayers = true, .davrinModel = false}),
        rest_(rest),
        visit_(std::move(visit)) {}

 protected:
  platform::LResult WindowProc(std::uint32_t message, platform::WParam wParam,
                               platform::LParam lParam) override {
    if (message == kVisitMessage || message == platform::message::kTimer) {
      visit_(*this);
      EndDialog(platform::kIdOk);
      return 0;
    }
    const platform::LResult result = CKelControlDlg::WindowProc(message, wParam, lParam);
    if (message == platform::message::kPaint && !painted_) {
      painted_ = true;
      if (rest_.count() == 0) {
        platform::PostToWindow(Handle(), kVisitMessage, 0, 0);
      } else {
        Send(platform::message::kCommand, MakeWParam(resources::kExpandButton, 0), 0);
        StartTimer(1, static_cast<std::uint32_t>(rest_.count()));
      }
    }
    return result;
  }

 private:
  static constexpr std::uint32_t kVisitMessage = platform::message::kUser + 100;

  std::chrono::milliseconds rest_;
  Visit visit_;
  bool painted_ = false;
};

void Drag(VisitedDialog& dialog, float gainDb) {
  dsp::BandMarker marker{250.0F, gainDb};
  dialog.Send(ui::kBandDraggedMessage, 1, reinterpret_cast<platform::LParam>(&marker));
}

// The notification of the gain slider, whose value differs from the stored one.
void GainEdit(benchmark::State& state, VisitedDialog& dialog) {
  float gain = 3.05F;
  while (state.KeepRunning()) {
    state.PauseTiming();
    gain = -gain;
    Drag(dialog, gain);
    state.ResumeTiming();
    dialog.Send(platform::message::kCommand,
                MakeWParam(resources::kGainSlider, ui::PSN_VALUECHANGED), 0);
  }
}

void MarkerDrag(benchmark::State& state, VisitedDialog& dialog) {
  float gain = 3.0F;
  while (state.KeepRunning()) Drag(dialog, gain = -gain);
}

void TypeEdit(benchmark::State& state, VisitedDialog& dialog) {
  bool shelving = false;
  while (state.KeepRunning()) {
    shelving = !shelving;
    dialog.Send(platform::message::kCommand,
                MakeWParam(shelving ? resources::kTypeLowShelving : resources::kTypePeaking,
                           platform::kNotifyClicked),
                0);
  }
}

void Reload(benchmark::State& state, VisitedDialog& dialog) {
  while (state.KeepRunning()) {
    dialog.Send(endpoints::UM_SETTING_CHANGED, 0,
                static_cast<platform::LParam>(store::OutputPath::InternalSpeaker));
  }
}

// The part of an edit that leaves the program: two values to the store, nine signals.
void StoreAndEvents(benchmark::State& state, const platform::Platform& platform) {
  const engine_link::EngineLink engine{platform.registry, platform.events, platform.audioDevices};
  store::ParameterStore set;
  store::LoadActiveSet(platform.registry, kSpeaker, set);
  float& gain = set.values[dsp::ParameterIndex(dsp::kFirstBandParameter + 3)];
  while (state.KeepRunning()) {
    gain = gain == 2.0F ? 1.0F : 2.0F;
    engine_link::SignalParameterChange(engine, set);
  }
}

// From nothing to the first whole picture.
void OpenDialog(benchmark::State& state, const platform::Platform& platform) {
  while (state.KeepRunning()) {
    const Clock::time_point begin = Clock::now();
    Clock::time_point shown;
    VisitedDialog dialog(platform, std::chrono::milliseconds(0),
                         [&shown](VisitedDialog&) { shown = Clock::now(); });
    dialog.DoModal();
    state.SetIterationTime(std::chrono::duration<double>(shown - begin).count());
  }
}

void RegisterBenchmarks(const platform::Platform& platform, VisitedDialog& dialog) {
  const auto add = [&dialog](const char* name, void (*run)(benchmark::State&, VisitedDialog&)) {
    benchmark::RegisterBenchmark(name, [&dialog, run](benchmark::State& state) {
      run(state, dialog);
    })->Unit(benchmark::kMicrosecond);
  };
  add("GainEdit", GainEdit);
  add("MarkerDrag", MarkerDrag);
  add("TypeEdit", TypeEdit);
  add("Reload", Reload);
  benchmark::RegisterBenchmark("StoreAndEvents", [&platform](benchmark::State& state) {
    StoreAndEvents(state, platform);
  })->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark(
      "OpenDialog", [&platform](benchmark::State& state) { OpenDialog(state, platform); })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): without its folder it has nothing to measure
int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const Machine machine;
  platform::Host host;
  const platform::Platform& platform = host.Get();
  StoreInitialSet(platform.registry);
  const Engine engine(machine.EventsFolder());
  support::NoInstance instance;
  const platform::UserInterfaceSession session(instance);

  VisitedDialog dialog(platform, std::chrono::milliseconds(500), [&](VisitedDialog& open) {
    RegisterBenchmarks(platform, open);
    benchmark::RunSpecifiedBenchmarks();
  });
  dialog.DoModal();
  return 0;
}
