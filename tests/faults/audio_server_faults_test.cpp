// The audio server under an open panel: killed, silent, halted, without its sink. The panel answers
// all the time and finds back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <thread>

#include "engine_link/event_names.h"
#include "platform/linux/audio/pulse_endpoints.h"
#include "platform/linux/events/fifo_event_listener.h"
#include "tests/audio/pulse_daemon.h"
#include "tests/e2e/dialog_fixture.h"
#include "tests/faults/process_numbers.h"
#include "tests/faults/rounds.h"
#include "tests/faults/silent_server.h"

namespace faults {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::Eventually;

// Halts of the machine may be long; a panel that hangs, hangs for ever.
constexpr seconds kPatience(20);

constexpr std::array<const char*, 2> kSinks = {"first", "second"};

class AudioServerFaults : public e2e::AdvancedDialogTest {
 protected:
  // A laptop whose codec is there, and whose endpoints are the server's.
  void StartOnServer() {
    UseLaptop("layers");
    auto laptop = nlohmann::json::parse(std::ifstream(laptopFile_));
    laptop.erase("endpoints");
    laptop.erase("defaultEndpoint");
    std::ofstream(laptopFile_) << laptop;
    environment_["PULSE_SERVER"] = server_.Server();
    for (const char* sink : kSinks) {
      for (const std::u16string_view kind : engine_link::kEndpointEvents) {
        ASSERT_TRUE(events_.Create(engine_link::EndpointEventName(kind, platform::SinkGuid(sink))));
      }
    }
    StartPanel();
  }

  // The sinks whose endpoints received something since the last look.
  std::set<std::string> SignalledSinks() {
    std::set<std::string> sinks;
    for (auto sets = events_.Wait(milliseconds(400)); !sets.empty();
         sets = events_.Wait(milliseconds(400))) {
      for (const auto& set : sets)
        sinks.insert(kSinks.at(set.event / engine_link::kEndpointEvents.size()));
    }
    return sinks;
  }

  void OpenDialog() {
    ClickSkin({80, 416});
    const auto dialog = desktop_.WaitForWindow(e2e::kDialogTitle, kPatience);
    ASSERT_TRUE(dialog);
    window_ = *dialog;
  }

  void CloseDialog() {
    ClickControl(resources::kCloseButton);
    const auto main = desktop_.WaitForWindow("Tonalyx", kPatience);
    ASSERT_TRUE(main);
    window_ = *main;
  }

  // Opens the dialog and closes it: both windows live.
  void ExpectAnswers() {
    OpenDialog();
    CloseDialog();
  }

  // A click on a mode is stored sooner or later, as it is with a server.
  void ExpectClicksAreStored() {
    EXPECT_TRUE(Eventually(
        [&] {
          mode_ = mode_ % 5 + 1;
          ClickMode(mode_);
          const std::string setting = std::to_string(mode_ + 1);
          return Eventually([&] { return ActiveSetting(e2e::kSpeakerKey) == setting; },
                            milliseconds(700));
        },
        kPatience));
  }

  // What is done sooner or later reaches these sinks' endpoints, and never another's. A busy server
  // may keep the panel waiting for longer than it waits; that change then reaches nobody.
  void ExpectSignals(const std::set<std::string>& sinks, const std::function<void()>& act) {
    SignalledSinks();
    EXPECT_TRUE(Eventually(
        [&] {
          act();
          const std::set<std::string> signalled = SignalledSinks();
          EXPECT_TRUE(std::ranges::includes(sinks, signalled));
          return signalled == sinks;
        },
        kPatience));
  }

  void ExpectNoBusyLoop() {
    const milliseconds before = ProcessorTime(panel_->Pid());
    std::this_thread::sleep_for(seconds(1));
    const milliseconds used = ProcessorTime(panel_->Pid()) - before;
    RecordProperty("milliseconds", static_cast<int>(used.count()));
    EXPECT_LT(used, milliseconds(500));
  }

  void ExpectEnd() {
    desktop_.RequestClose("Tonalyx");
    EXPECT_EQ(panel_->WaitForExit(kPatience), 0);
  }

  support::PulseDaemon server_{{kSinks.begin(), kSinks.end()}};
  platform::FifoEventListener events_{folder_ / "state/events"};
  int mode_ = 1;
  // The number of the module that carries the first sink.
  std::string firstModule_ = "0";
};

TEST_F(AudioServerFaults, AServerThatIsKilledAndStartedAgain) {
  StartOnServer();
  const int rounds = Rounds(0.4);
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    ExpectClicksAreStored();
    server_.Kill();
    ExpectAnswers();
    const std::string setting = ActiveSetting(e2e::kSpeakerKey);
    ClickMode(mode_ % 5 + 1);
    ExpectAnswers();
    EXPECT_EQ(ActiveSetting(e2e::kSpeakerKey), setting) << "no endpoint to set it for";
    if (round == 0) ExpectNoBusyLoop();
    server_.Start();
  }
  ExpectSignals({"first", "second"}, [&] { ExpectClicksAreStored(); });
  ExpectEnd();
}

TEST_F(AudioServerFaults, AServerThatIsGoneWhileTheDialogIsOpen) {
  StartOnServer();
  OpenDialog();
  const support::ScreenRect knob = Control(resources::kKnobBass);
  const support::ScreenPoint left{knob.width / 2 - 25, knob.height / 2 - 25};
  const support::ScreenPoint right{knob.width / 2 + 25, knob.height / 2 - 25};
  const int rounds = Rounds(0.2);
  for (int round = 0; round < rounds; ++round) {
    float before = Stored(232);
    Drag(resources::kKnobBass, left, right);
    EXPECT_TRUE(Eventually([&] { return Stored(232) > before; })) << "with a server";
    server_.Kill();
    before = Stored(232);
    Drag(resources::kKnobBass, right, left);
    EXPECT_TRUE(Eventually([&] { return Stored(232) < before; })) << "without a server";
    server_.Start();
  }
  CloseDialog();
  ExpectEnd();
}

TEST_F(AudioServerFaults, AServerThatAcceptsAndNeverAnswers) {
  server_.Kill();
  auto silent = std::make_unique<SilentServer>(server_.Server().substr(5));
  const auto start = std::chrono::steady_clock::now();
  StartOnServer();
  RecordProperty("start_milliseconds",
                 static_cast<int>((std::chrono::steady_clock::now() - start) / milliseconds(1)));
  ExpectAnswers();
  ExpectNoBusyLoop();
  EXPECT_GE(silent->Connections(), 1);

  silent.reset();
  server_.Start();
  ExpectClicksAreStored();

  server_.Kill();
  silent = std::make_unique<SilentServer>(server_.Server().substr(5));
  ExpectAnswers();
  ExpectEnd();
}

TEST_F(AudioServerFaults, AServerThatSleeps) {
  StartOnServer();
  const int rounds = Rounds(0.2);
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    server_.Halt();
    ExpectAnswers();
    if (round == 0) ExpectNoBusyLoop();
    server_.Continue();
    ExpectClicksAreStored();
  }
  server_.Halt();
  ExpectEnd();
  server_.Continue();
}

// The whole machine was asleep: meanwhile the sink has gone.
TEST_F(AudioServerFaults, APanelThatSleepsWakesUpToTheSinksOfThen) {
  StartOnServer();
  ExpectClicksAreStored();
  const int rounds = Rounds(0.2);
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    panel_->Kill(SIGSTOP);
    server_.Control({"unload-module", firstModule_});
    if (round % 2 == 1) {
      server_.Kill();
      server_.Start();
      server_.Control({"unload-module", "0"});
    }
    panel_->Kill(SIGCONT);
    ExpectClicksAreStored();
    ExpectSignals({"second"}, [&] { ExpectClicksAreStored(); });
    if (round == 0) ExpectNoBusyLoop();
    firstModule_ = server_.AddSink("first");
    server_.Control({"set-default-sink", "first"});
  }
  ExpectEnd();
}

TEST_F(AudioServerFaults, ASinkIsPulledWhileTheDialogIsOpen) {
  StartOnServer();
  OpenDialog();
  Expand();
  const support::ScreenRect slider = Control(resources::kFrequencySlider);
  int part = 4;
  const auto edit = [&] {
    part = 11 - part;
    const float before = Stored(120);
    desktop_.Click(slider.x + slider.width * part / 8, slider.y + slider.height * 3 / 4);
    EXPECT_TRUE(Eventually([&] { return Stored(120) != before; }, kPatience));
  };
  const int rounds = Rounds(0.2);
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    ExpectSignals({"first", "second"}, edit);
    server_.Control({"unload-module", firstModule_});
    // What the panel asks from now on is answered without the sink.
    ExpectSignals({"second"}, edit);
    firstModule_ = server_.AddSink("first");
    server_.Control({"set-default-sink", "first"});
  }
  CloseDialog();
  ExpectEnd();
}

}  // namespace
}  // namespace faults
