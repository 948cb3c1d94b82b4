// The hand on the panel's controls, and what then arrives at the sink.
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "tests/e2e/panel_fixture.h"
#include "tests/engine/engine_session.h"
#include "tests/engine/player.h"
#include "tests/support/registry_tree.h"

namespace e2e {
namespace {

// The audio's half; the panel's is the test's own.
class Sound : public engine::EngineSession {
  void TestBody() override {}
};

class HeardEditsTest : public AdvancedDialogTest {
 protected:
  using Values = std::array<float, dsp::kParameterCount>;

  Values StoredSet() {
    platform::SqliteRegistry registry(folder_ / "state");
    const std::string path =
        kSettingsKey + kSpeakerKey + "\\Settings\\" + ActiveSetting(kSpeakerKey);
    Values values = dsp::InitialParameters();
    for (int number = 1; number <= 250; ++number) {
      float& value = values[dsp::ParameterIndex(number)];
      value = support::GetFloat(registry, platform::FromUtf8(path),
                                platform::FromUtf8("Param" + std::to_string(number)))
                  .value_or(value);
    }
    return values;
  }

  // What the panel draws, and the knobs as the engine's page describes them.
  static double Expected(const Values& values, int tone) {
    const auto at = [&](int number) {
      return static_cast<double>(values[dsp::ParameterIndex(number)]);
    };
    double level = at(117) > 0.0 ? engine::PanelDecibels(values, tone) : 0.0;
    // Far enough from the shelves' corners.
    if (tone < 50) level += 24.0 * (at(232) - 0.5);
    if (tone > 15000) level += 24.0 * (at(250) - 0.5);
    // The right channel has half of the left one's sound.
    if (at(5) > 0.0) level += 20.0 * std::log10(1.0 + 0.25 * at(6));
    return level;
  }

  // With the shelves only where they give all or nothing.
  static bool IsHeard(const Values& values, const engine::Recording& recording) {
    const bool hasShelves =
        values[dsp::ParameterIndex(232)] != 0.5F || values[dsp::ParameterIndex(250)] != 0.5F;
    return std::ranges::all_of(engine::kTones, [&](int tone) {
      const bool isUnsure = hasShelves && tone > 50 && tone < 15000 && tone != 1000;
      return isUnsure || std::abs(recording.Level(tone, 1.0) - Expected(values, tone)) < 0.5;
    });
  }

  void Turn(std::uint16_t knob) {
    const ScreenRect rect = Control(knob);
    const ScreenPoint from{rect.width / 2 - 25, rect.height / 2 - 25};
    Drag(knob, from, {from.x + 50, from.y}, 10);
    std::this_thread::sleep_for(milliseconds(200));
  }

  Sound sound_;
};

TEST_F(HeardEditsTest, EveryControlIsHeard) {
  UseLaptop("layers");
  const auto engine = sound_.StartEngine(environment_);
  const auto player = sound_.Play();
  const auto recording = sound_.Record("speakers");
  const auto expectHeard = [&](const std::string& what) {
    const Values values = StoredSet();
    EXPECT_TRUE(Eventually([&] { return IsHeard(values, *recording); })) << what;
  };
  StartPanel();
  const double music = recording->Level(160);
  ClickMode(0);
  expectHeard("the mode that does nothing");
  EXPECT_GT(std::abs(recording->Level(160) - music), 1.0) << "after one that does something";
  ClickAdvancedEntry();
  std::this_thread::sleep_for(milliseconds(400));
  Expand();

  // Of band 1; what stands in the last column is what the control must have written.
  const struct {
    std::uint16_t control;
    int parameter;
    float value;
  } edits[] = {{resources::kEqualizerEnable, 117, 1.0F}, {resources::kGainSlider, 121, 3.98107195F},
               {resources::kTypeLowShelving, 119, 4.0F}, {resources::kTypeHighPass, 119, 3.0F},
               {resources::kTypePeaking, 119, 1.0F},     {resources::kBandwidthSlider, 122, 0.1F},
               {resources::kFrequencySlider, 120, 2e4F}, {resources::kBandEnable, 118, 0.0F}};
  for (const auto& edit : edits) {
    edit.parameter >= 120 ? ClickSlider(edit.control, SliderEnd::Last) : ClickControl(edit.control);
    ASSERT_TRUE(BecomesStored(edit.parameter, edit.value)) << edit.parameter;
    expectHeard(std::to_string(edit.parameter));
  }
  Drag(resources::kPlot, MarkerOf(6), {MarkerOf(6).x, MarkerOf(6).y + 20});
  ASSERT_TRUE(Eventually([&] { return Stored(146) < 0.9F; }));
  expectHeard("band 6 is pulled down");
  ClickControl(resources::kEqualizerEnable);
  ASSERT_TRUE(BecomesStored(117, 0.0F));
  expectHeard("the equalizer is off");

  for (const std::uint16_t knob :
       {resources::kKnobWidener, resources::kKnobBass, resources::kKnobTreble}) {
    Turn(knob);
    expectHeard("a knob is turned");
  }
  EXPECT_TRUE(Stored(6) > 0.1F && Stored(232) != 0.5F && Stored(250) != 0.5F);
  const double before = recording->Level(31, 1.0);
  Turn(resources::kKnobLoudness);
  EXPECT_TRUE(Stored(221) > 0.0F && Stored(223) > 0.1F);
  EXPECT_TRUE(Eventually([&] { return recording->Level(31, 1.0) > before + 1.0; }))
      << "quiet sound gets more bass";
}

}  // namespace
}  // namespace e2e
