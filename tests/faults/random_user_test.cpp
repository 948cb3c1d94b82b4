// Thousands of actions in any order. Afterwards what the windows show, what the store holds and
// what an engine was told are the same, and nobody has complained.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "dsp/eq_model.h"
#include "tests/engine/engine_example.h"
#include "tests/faults/random_user.h"
#include "tests/faults/rounds.h"

namespace faults {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::Eventually;

constexpr seconds kPatience(30);

// What the conversions between values and pixels may lose.
constexpr int kPixelsOfTruncation = 600;
constexpr int kKnobPixelsOfTruncation = 1000;

class RandomUserTest : public RandomUser {
 protected:
  void StartExampleEngine() {
    const auto laptop = nlohmann::json::parse(std::ifstream(laptopFile_));
    const std::string guid = laptop["endpoints"][0]["guid"];
    engine_ = std::make_unique<support::ChildProcess>(
        std::vector<std::string>{engine::BuildExample(folder_).native(), e2e::kSpeakerKey, guid},
        environment_);
  }

  // Keeps what the engine printed last; its pipe must not fill up.
  void ListenToTheEngine(milliseconds quiet) {
    for (std::string& line : engine_->ReadLinesUntilQuiet(quiet)) {
      if (line.starts_with("setting ")) printed_.clear();
      printed_.push_back(std::move(line));
    }
  }

  std::vector<std::string> StoredLines() {
    std::array<float, dsp::kParameterCount> values{};
    for (int number = dsp::kEqualizerEnable; number < dsp::kFirstMirrorParameter; ++number) {
      values[dsp::ParameterIndex(number)] = Stored(number);
    }
    return engine::ExpectedLines(ActiveSetting(e2e::kSpeakerKey), values);
  }

  std::vector<std::uint32_t> QuietPicture() {
    desktop_.MovePointer(window_.x + 5, window_.y + window_.height - 5);
    std::this_thread::sleep_for(milliseconds(300));
    return Picture();
  }

  // The dialog loads the set that it has open once more, by way of another.
  void MakeItReload() {
    const std::string setting = ActiveSetting(e2e::kSpeakerKey);
    const auto before = QuietPicture();
    SetActiveSetting(e2e::kSpeakerKey, setting == "5" ? "6" : "5");
    EXPECT_TRUE(Eventually([&] { return Picture() != before; }, kPatience));
    std::this_thread::sleep_for(milliseconds(300));
    const auto between = QuietPicture();
    SetActiveSetting(e2e::kSpeakerKey, setting);
    EXPECT_TRUE(Eventually([&] { return Picture() != between; }, kPatience));
    std::this_thread::sleep_for(milliseconds(300));
  }

  // The part of the window that does not depend on the selected band.
  int DifferenceOfKnobs(const std::vector<std::uint32_t>& left,
                        const std::vector<std::uint32_t>& right) {
    int different = 0;
    const std::size_t pixels = static_cast<std::size_t>(window_.width) *
                               static_cast<std::size_t>(Control(resources::kPlot).y - window_.y);
    for (std::size_t i = 0; i < pixels; ++i) different += left[i] == right[i] ? 0 : 1;
    return different;
  }

  std::vector<std::string> printed_;
};

TEST_F(RandomUserTest, WindowsStoreAndEngineAgreeInTheEnd) {
  UseLaptop("layers");
  StartExampleEngine();
  Begin();
  std::mt19937 random = Random();
  const int actions = Rounds(30);
  for (int action = 0; action < actions && !HasFailure(); ++action) {
    SCOPED_TRACE("action " + std::to_string(action));
    Act(random);
    if (action % 50 == 0) ListenToTheEngine(milliseconds(0));
    ASSERT_FALSE(panel_->WaitForExit(milliseconds(0))) << panel_->RestOfErrors();
  }

  Laptop({"unplug"});
  OpenInFull();
  std::this_thread::sleep_for(milliseconds(500));
  for (const std::uint16_t knob : {resources::kKnobBass, resources::kKnobTreble,
                                   resources::kKnobWidener, resources::kKnobLoudness}) {
    const auto rect = Control(knob);
    const auto anywhere = [&] {
      return support::ScreenPoint{Between(random, 0, rect.width), Between(random, 0, rect.height)};
    };
    Drag(knob, {rect.width / 2 - 25, rect.height / 2 - 25}, anywhere());
  }
  const auto edited = QuietPicture();
  MakeItReload();
  const int knobs = DifferenceOfKnobs(edited, QuietPicture());
  RecordProperty("knob_pixels", knobs);
  EXPECT_LT(knobs, kKnobPixelsOfTruncation) << "the knobs showed what was stored";

  // Band 1 is selected now; what its sliders and buttons do shows again after a load.
  for (int edit = 0; edit < 20; ++edit) {
    constexpr std::array kControls = {resources::kGainSlider, resources::kFrequencySlider,
                                      resources::kBandwidthSlider, resources::kTypeHighShelving,
                                      resources::kBandEnable};
    const auto rect = Control(kControls.at(static_cast<std::size_t>(edit) % kControls.size()));
    desktop_.Click(rect.x + Between(random, 2, rect.width - 3), rect.y + rect.height * 3 / 4);
  }
  ClickControl(resources::kTypePeaking);
  EXPECT_TRUE(BecomesStored(119, 1.0F));
  ListenToTheEngine(milliseconds(500));
  EXPECT_EQ(printed_, StoredLines());
  const auto shown = QuietPicture();
  MakeItReload();
  QuietPicture();
  const int difference = Difference(shown);
  RecordProperty("pixels", difference);
  EXPECT_LT(difference, kPixelsOfTruncation) << "the dialog showed what was stored";

  ClickControl(resources::kCloseButton);
  ASSERT_TRUE(desktop_.WaitForWindow("Tonalyx", kPatience));
  EXPECT_EQ(ClosePanel(), 0);
  EXPECT_EQ(panel_->RestOfErrors(), "");
}

}  // namespace
}  // namespace faults
