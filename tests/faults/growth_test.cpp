// Work that is done for hours leaves nothing behind: memory, descriptors and threads come back to
// what they were.
#include <gtest/gtest.h>
#include <malloc.h>

#include <array>
#include <barrier>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "engine_link/event_names.h"
#include "platform/host.h"
#include "platform/linux/events/fifo_event_listener.h"
#include "platform/text.h"
#include "resources/resource_ids.h"
#include "tests/faults/machine.h"
#include "tests/faults/process_numbers.h"
#include "tests/faults/rounds.h"
#include "tests/support/scripted_window.h"
#include "ui/controls/shared/control_window.h"
#include "ui/eq/kel_control_dlg.h"

namespace faults {
namespace {

using platform::MakeWParam;

struct Command {
  std::uint16_t control;
  std::uint16_t notification;
};

// Every kind of edit, as the controls report it.
constexpr std::array kEdits = {
    Command{resources::kEqualizerEnable, platform::kNotifyClicked},
    Command{resources::kTypeHighShelving, platform::kNotifyClicked},
    Command{resources::kBandEnable, platform::kNotifyClicked},
    Command{resources::kGainSlider, ui::PSN_VALUECHANGED},
    Command{resources::kTypeLowPass, platform::kNotifyClicked},
    Command{resources::kFrequencySlider, ui::PSN_VALUECHANGED},
    Command{resources::kTypePeaking, platform::kNotifyClicked},
    Command{resources::kBandwidthSlider, ui::PSN_VALUECHANGED},
    Command{resources::kKnobBass, ui::POTN_VALUECHANGED},
    Command{resources::kKnobWidener, ui::POTN_VALUECHANGED},
};

struct Footprint {
  std::size_t heap;  // bytes in use
  int descriptors;
  int threads;
};

Footprint Measure() {
  const auto memory = mallinfo2();
  return {memory.uordblks + memory.hblkhd, Descriptors("self"), Threads("self")};
}

// The same once the threads of windows that have gone have ended, for which nobody waits.
Footprint MeasureAtRest(const Footprint& expected) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  Footprint now = Measure();
  while (now.threads != expected.threads && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    now = Measure();
  }
  return now;
}

class GrowthTest : public testing::Test {
 protected:
  GrowthTest() : machine_(Tuning::Small) {
    machine_.PutTuning();
    EXPECT_EQ(machine_.Install().exitStatus, 0);
    for (const auto& [name, value] : machine_.Environment()) setenv(name.c_str(), value.c_str(), 1);
    host_ = std::make_unique<platform::Host>();
    engine_ = std::make_unique<platform::FifoEventListener>(machine_.State() / "events");
    OpenEveryConnection();
    EXPECT_TRUE(engine_->Create(engine_link::EndpointEventName(
        engine_link::kGfxEvent, u"{5B1C9E70-3A54-4D0F-8C26-7F1E02A9D401}")));
  }

  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer keeps what is freed";
#endif
  }

  // The store keeps a connection for as many threads as ever used it at once, and each keeps what
  // it has read. Seldom do all of a panel's meet; here they do before anything is measured.
  void OpenEveryConnection() {
    constexpr int kThreads = 5;
    std::barrier together(kThreads);
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&] {
        const auto scope = host_->Get().registry.BeginRead();
        support::ReadTree(host_->Get().registry, std::u16string(kVendor));
        together.arrive_and_wait();
      });
    }
  }

  // A dialog with this many edits, as fast as the program takes them, from its opening to its end.
  // `onEdit` is told after each how many were made.
  void RunDialog(
      int edits, const std::function<void(int)>& onEdit = [](int) {}) {
    support::Scripted<ui::CKelControlDlg> dialog(host_->Get(), store::ModelFlags{true, false});
    dialog.AllowTime(std::chrono::minutes(15));
    dialog.Then([&] { return dialog.Received(platform::message::kPaint) > 0; });
    dialog.ThenDo([&] {
      dialog.Send(platform::message::kCommand, MakeWParam(resources::kExpandButton, 0), 0);
    });
    int made = 0;
    dialog.Then([&] {
      const Command& edit = kEdits.at(static_cast<std::size_t>(made) % kEdits.size());
      dialog.Send(platform::message::kCommand, MakeWParam(edit.control, edit.notification), 0);
      received_ += engine_->Wait(std::chrono::milliseconds(0)).size();
      onEdit(++made);
      return made == edits;
    });
    EXPECT_EQ(dialog.DoModal(), support::kScriptEnded);
  }

  static void ExpectNoGrowth(const Footprint& before, const Footprint& after) {
    RecordProperty("heap_before", std::to_string(before.heap));
    RecordProperty("heap_after", std::to_string(after.heap));
    EXPECT_LE(static_cast<double>(after.heap), 1.01 * static_cast<double>(before.heap));
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_EQ(after.threads, before.threads);
  }

  Machine machine_;
  std::unique_ptr<platform::Host> host_;
  std::unique_ptr<platform::FifoEventListener> engine_;
  std::size_t received_ = 0;
};

TEST_F(GrowthTest, Edits) {
  constexpr int kWarmUp = 200;
  const int edits = Rounds(50);
  Footprint before{};
  Footprint after{};
  RunDialog(kWarmUp + edits, [&](int made) {
    if (made == kWarmUp) before = Measure();
    if (made == kWarmUp + edits) after = MeasureAtRest(before);
  });
  EXPECT_EQ(received_, static_cast<std::size_t>(kWarmUp + edits)) << "each reached the engine";
  ExpectNoGrowth(before, after);
}

// While it is open. The system's X library keeps some hundred bytes of each window for ever.
TEST_F(GrowthTest, OpeningsOfTheDialog) {
  constexpr int kWarmUp = 5;
  constexpr int kEditsOfEach = 3;
  const int openings = Rounds(2);
  Footprint before{};
  Footprint after{};
  for (int opening = 1; opening <= kWarmUp + openings; ++opening) {
    RunDialog(kEditsOfEach, [&](int made) {
      if (made != kEditsOfEach) return;
      if (opening == kWarmUp) before = Measure();
      if (opening == kWarmUp + openings) after = MeasureAtRest(before);
    });
  }
  ExpectNoGrowth(before, after);
}

}  // namespace
}  // namespace faults
