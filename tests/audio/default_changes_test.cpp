// Watchers of open windows on a real audio server whose default sink changes.
#include <gtest/gtest.h>

#include <atomic>
#include <list>

#include "endpoints/enumeration.h"
#include "endpoints/notification_client.h"
#include "endpoints/registry_watcher.h"
#include "endpoints/route_detection.h"
#include "platform/fake/fake_clock.h"
#include "platform/fake/fake_registry.h"
#include "platform/linux/audio/jack_state_publisher.h"
#include "platform/linux/audio/pulse_audio_devices.h"
#include "platform/linux/audio/pulse_endpoints.h"
#include "tests/audio/pulse_daemon.h"
#include "tests/support/failing_registry.h"
#include "tests/support/registry_tree.h"

namespace support {
namespace {

using platform::JackProperty;
using store::OutputPath;

const std::map<std::string, OutputPath> kRoutes = {{"speaker", OutputPath::InternalSpeaker},
                                                   {"phones", OutputPath::Headphone},
                                                   {"silent", OutputPath::SpeakerWithSubwoofer}};

// The sinks have no ports, so their jack state is put where a driver would: "silent" has none, and
// the hint alone speaks for it.
class Machine {
 public:
  Machine() {
    PutDword(registry, u"SOFTWARE\\Norvane\\Velsona", u"HardwareOutputPath", 3);
    PutJack("speaker", JackProperty::Speaker);
    PutJack("phones", JackProperty::Headphone);
    client.Register();
  }

  void MakeDefault(const std::string& sink) { daemon.Control({"set-default-sink", sink}); }

  PulseDaemon daemon{{"speaker", "phones", "silent"}};
  platform::FakeRegistry registry;
  platform::JackStatePublisher publisher{registry};
  platform::PulseAudioDevices devices{
      [this](const platform::PulseState& state) { publisher.Publish(state); }, daemon.Server()};
  platform::FakeClock clock;
  endpoints::CMMNotificationClient client{devices, clock};

 private:
  void PutJack(const std::string& sink, JackProperty property) {
    const platform::JackValue value{property, 1};
    WriteJackValues(registry, platform::SinkGuid(sink), {&value, 1});
  }
};

class OpenWindow {
 public:
  explicit OpenWindow(Machine& machine) : registry_(machine.registry) {
    endpoints::DefaultEndpointInfo endpoint;
    EXPECT_TRUE(Soon([&] { return GetDefaultEndpointInfo(machine.devices, endpoint); }));
    route_ = endpoints::DetectOutputPath(machine.registry, endpoint.endpointGuid);
    registry_.SetFault([this](RegistryStep step, std::u16string_view, std::u16string_view) {
      if (step == RegistryStep::Watch) ++watches_;
      return false;
    });
    watcher_.emplace(registry_, machine.devices, nullptr);
    watcher_->Start({endpoint.endpointGuid, route_, 1}, [this](OutputPath path) { route_ = path; });
    // The hint's key and the endpoint's.
    EXPECT_TRUE(Soon([this] { return watches_ >= 2; }));
  }

  bool ArrivesAt(OutputPath route) const {
    return Soon([&] { return route_ == route; });
  }

 private:
  template <class Condition>
  static bool Soon(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!condition() && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return condition();
  }

  FailingRegistry registry_;
  std::atomic<int> watches_ = 0;
  std::atomic<OutputPath> route_;
  std::optional<endpoints::RegistryWatcher> watcher_;
};

TEST(DefaultChanges, EveryOpenWindowArrivesAtTheRouteOfTheDefault) {
  Machine machine;
  for (const std::vector<std::string>& sequence :
       {std::vector<std::string>{"speaker", "phones", "speaker", "phones", "speaker"},
        {"silent", "speaker", "silent", "phones", "speaker", "silent"},
        {"phones", "silent", "speaker", "phones"}}) {
    std::list<OpenWindow> windows;
    for (const std::string& sink : sequence) {
      machine.MakeDefault(sink);
      for (const OpenWindow& window : windows) {
        EXPECT_TRUE(window.ArrivesAt(kRoutes.at(sink))) << sink;
      }
      windows.emplace_back(machine);
    }
    // Quicker than anyone looks.
    for (const std::string& sink : sequence) machine.MakeDefault(sink);
    for (const OpenWindow& window : windows) {
      EXPECT_TRUE(window.ArrivesAt(kRoutes.at(sequence.back())));
    }
  }
}

}  // namespace
}  // namespace support
