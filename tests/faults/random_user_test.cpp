// Somebody who does anything that can be done to the panel's windows, in any order, while others
// plug something in and write to the store. Afterwards what the store holds and what an engine was
// told are the same, and nobody has complained.
#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <fstream>
#include <nlohmann/json.hpp>
#include <thread>

#include "dsp/eq_model.h"
#include "tests/e2e/panel_fixture.h"
#include "tests/engine/engine_example.h"
#include "tests/faults/machine.h"

namespace faults {
namespace {

using std::chrono::milliseconds;
using support::Eventually;
using support::ScreenPoint;

constexpr std::chrono::seconds kPatience(30);
constexpr milliseconds kMoment(300);

constexpr std::array kEditing = {
    resources::kKnobBass,     resources::kKnobTreble,       resources::kKnobWidener,
    resources::kKnobLoudness, resources::kEqualizerEnable,  resources::kPlot,
    resources::kGainSlider,   resources::kFrequencySlider,  resources::kBandwidthSlider,
    resources::kTypePeaking,  resources::kTypeHighShelving, resources::kTypeLowShelving,
    resources::kTypeHighPass, resources::kTypeLowPass,      resources::kBandEnable};

// Neither Return nor Escape, which end the dialog, nor what presses the button that has the focus,
// which may be the menu's.
constexpr std::array kKeys = {"a", "Left", "Right", "Up", "Prior", "End", "F1", "plus", "Tab"};

class RandomUserTest : public e2e::AdvancedDialogTest {
 protected:
  int Number(int low, int high) { return Between(random_, low, high); }
  template <class List>
  const auto& OneOf(const List& items) {
    return items.at(static_cast<std::size_t>(Number(0, static_cast<int>(items.size()) - 1)));
  }

  // Has the dialog open in full, whatever was done before.
  void OpenInFull() {
    if (!desktop_.FindWindow(e2e::kDialogTitle)) {
      const auto main = desktop_.WaitForWindow("Tonalyx", kPatience);
      ASSERT_TRUE(main);
      window_ = *main;
      ClickSkin({80, 416});
      ASSERT_TRUE(desktop_.WaitForWindow(e2e::kDialogTitle, kPatience));
    }
    const auto isFull = [&] {
      window_ = desktop_.FindWindow(e2e::kDialogTitle).value_or(window_);
      return window_.height > window_.width / 2;
    };
    if (isFull()) return;
    ClickControl(resources::kExpandButton);
    ASSERT_TRUE(Eventually(isFull, kPatience));
  }

  void Act() {
    const int action = Number(0, 99);
    const auto rect = Control(OneOf(kEditing));
    const ScreenPoint point{rect.x + Number(0, rect.width - 1),
                            rect.y + Number(0, rect.height - 1)};
    if (action < 40) {
      desktop_.Click(point.x, point.y);
    } else if (action < 70) {
      // Also to where the control is not.
      desktop_.Drag(point,
                    {window_.x + Number(-50, window_.width + 50),
                     window_.y + Number(-50, window_.height + 50)},
                    Number(1, 8));
    } else if (action < 85) {
      desktop_.MovePointer(point.x, point.y);
      Number(0, 1) == 0 ? desktop_.Scroll(Number(-3, 3)) : desktop_.PressKeyAtOnce(OneOf(kKeys));
    } else if (action < 90) {
      ClickControl(resources::kCloseButton);
      const auto main = desktop_.WaitForWindow("Tonalyx", kPatience);
      ASSERT_TRUE(main);
      window_ = *main;
      for (int clicks = Number(0, 5); clicks > 0; --clicks) ClickMode(Number(0, 5));
      OpenInFull();
    } else if (action < 95) {
      const std::array plugs = {"headphones", "lineout", "subwoofer", ""};
      const std::string plug = OneOf(plugs);
      plug.empty() ? Laptop({"unplug"}) : Laptop({"plug", plug});
    } else {
      const std::array routes = {e2e::kSpeakerKey, e2e::kHeadphoneKey, e2e::kSubwooferKey};
      SetActiveSetting(OneOf(routes), std::to_string(Number(1, 6)));
    }
  }

  // Keeps what the engine printed last; its pipe must not fill up.
  void ListenToTheEngine(milliseconds quiet) {
    for (std::string& line : engine_->ReadLinesUntilQuiet(quiet)) {
      if (line.starts_with("setting ")) printed_.clear();
      printed_.push_back(std::move(line));
    }
  }

  void Activate(const std::string& setting) {
    SetActiveSetting(e2e::kSpeakerKey, setting);
    std::this_thread::sleep_for(4 * kMoment);
  }

  std::mt19937 random_ = Random();
  std::vector<std::string> printed_;
};

TEST_F(RandomUserTest, WindowsStoreAndEngineAgreeInTheEnd) {
  UseLaptop("layers");
  const auto laptop = nlohmann::json::parse(std::ifstream(laptopFile_));
  const std::string guid = laptop["endpoints"][0]["guid"];
  engine_ = std::make_unique<support::ChildProcess>(
      std::vector<std::string>{engine::BuildExample(folder_).native(), e2e::kSpeakerKey, guid},
      environment_);
  StartPanel();
  OpenInFull();
  const int actions = Rounds(30);
  for (int action = 0; action < actions && !HasFailure(); ++action) {
    SCOPED_TRACE("action " + std::to_string(action));
    Act();
    if (action % 50 == 0) ListenToTheEngine(milliseconds(0));
    ASSERT_FALSE(panel_->WaitForExit(milliseconds(0))) << panel_->RestOfErrors();
  }

  Laptop({"unplug"});
  OpenInFull();
  std::this_thread::sleep_for(2 * kMoment);
  // Another set and back selects the first band; what is edited then shows again after a load.
  const std::string setting = ActiveSetting(e2e::kSpeakerKey);
  const std::string other = setting == "5" ? "6" : "5";
  Activate(other);
  Activate(setting);
  ClickControl(resources::kTypePeaking);
  for (const auto control : {resources::kGainSlider, resources::kFrequencySlider,
                             resources::kBandwidthSlider, resources::kKnobBass}) {
    const auto rect = Control(control);
    Drag(control, {rect.width / 2, rect.height * 3 / 4}, {Number(2, rect.width), rect.height / 2});
  }
  EXPECT_TRUE(BecomesStored(119, 1.0F));
  ListenToTheEngine(milliseconds(500));
  std::array<float, dsp::kParameterCount> values{};
  for (int number = dsp::kEqualizerEnable; number < dsp::kFirstMirrorParameter; ++number) {
    values[dsp::ParameterIndex(number)] = Stored(number);
  }
  EXPECT_EQ(printed_, engine::ExpectedLines(setting, values));

  ClickControl(resources::kCloseButton);
  ASSERT_TRUE(desktop_.WaitForWindow("Tonalyx", kPatience));
  EXPECT_EQ(ClosePanel(), 0);
  EXPECT_EQ(panel_->RestOfErrors(), "");
}

}  // namespace
}  // namespace faults
