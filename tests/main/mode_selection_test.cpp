#include "ui/main/mode_selection.h"

#include "tests/main/mode_fixture.h"

namespace ui {
namespace {

using store::OutputPath;

class ModeSelectionTest : public ModeFixture {
 protected:
  ModeSelection modes_{machine_.platform};
};

TEST_F(ModeSelectionTest, LoadsTheModeOfTheCurrentRoute) {
  const struct {
    std::uint32_t hint;
    std::u16string_view key;
    std::u16string setting;
    std::int32_t mode;
    OutputPath route;
  } cases[] = {{1, kSpeakerPathKey, u"3", 2, OutputPath::InternalSpeaker},
               {3, kSubwooferPathKey, u"6", 5, OutputPath::SpeakerWithSubwoofer},
               {2, kHeadphonesPathKey, u"9", 8, OutputPath::Headphone}};
  for (const auto& c : cases) {
    WriteSetting(c.key, c.setting);
    machine_.SetRoute(c.hint);
    const auto start = modes_.Load();
    ASSERT_TRUE(start);
    EXPECT_EQ(start->endpointGuid, u"speaker");
    EXPECT_EQ(start->outputPath, c.route);
    EXPECT_EQ(start->settingIndex, c.mode);
    EXPECT_EQ(modes_.SelectedMode(), c.mode);
    EXPECT_FALSE(modes_.ApplyFirstModeIfUnknown());
  }
  // A setting that is no mode is never written back, and any mode is a change.
  EXPECT_FALSE(modes_.Apply());
  EXPECT_EQ(ReadSetting(kHeadphonesPathKey), u"9");
  EXPECT_TRUE(modes_.Select(0));
  EXPECT_TRUE(machine_.events.Calls().empty()) << "looking changes nothing";
}

TEST_F(ModeSelectionTest, WithoutASettingTheFirstModeIsAppliedWhereThereIsAnEndpoint) {
  for (const bool made : {true, false}) {  // the key, by the write
    if (!made) WriteSetting(kSpeakerPathKey, u"0");
    machine_.events.ClearCalls();
    ASSERT_TRUE(modes_.Load());
    EXPECT_EQ(modes_.SelectedMode(), -1);
    EXPECT_EQ(modes_.ApplyFirstModeIfUnknown(), made);
    EXPECT_EQ(modes_.SelectedMode(), 0);
    EXPECT_EQ(ReadSetting(kSpeakerPathKey), u"1");
    EXPECT_EQ(machine_.events.Sets(), ModeChangeEvents());
  }
  WriteSetting(kSpeakerPathKey, u"3");
  machine_.events.ClearCalls();
  machine_.audioDevices.SetDefault(u"");
  EXPECT_FALSE(modes_.Load());
  EXPECT_FALSE(modes_.ApplyFirstModeIfUnknown());
  EXPECT_EQ(modes_.SelectedMode(), 0);
  EXPECT_EQ(ReadSetting(kSpeakerPathKey), u"3");
  EXPECT_TRUE(machine_.events.Calls().empty());
}

TEST_F(ModeSelectionTest, AClickWritesOnceAndToTheRouteThatIsCurrentThen) {
  WriteSetting(kSpeakerPathKey, u"1");
  ASSERT_TRUE(modes_.Load());
  EXPECT_FALSE(modes_.Select(0)) << "already selected";
  EXPECT_TRUE(modes_.Select(2));
  EXPECT_TRUE(modes_.Apply());
  EXPECT_EQ(ReadSetting(kSpeakerPathKey), u"3");
  EXPECT_EQ(machine_.events.Sets(), ModeChangeEvents());

  machine_.SetRoute(2);
  EXPECT_TRUE(modes_.Select(5));
  EXPECT_TRUE(modes_.Apply());
  EXPECT_EQ(ReadSetting(kHeadphonesPathKey), u"6");
  EXPECT_EQ(ReadSetting(kSpeakerPathKey), u"3");
  EXPECT_EQ(modes_.OutputPath(), OutputPath::Headphone);
}

TEST_F(ModeSelectionTest, FollowsAChangeWithoutWriting) {
  WriteSetting(kSpeakerPathKey, u"1");
  WriteSetting(kHeadphonesPathKey, u"5");
  ASSERT_TRUE(modes_.Load());
  const auto expect = [this](std::int32_t mode, OutputPath route) {
    EXPECT_EQ(modes_.SelectedMode(), mode);
    EXPECT_EQ(modes_.OutputPath(), route);
  };
  EXPECT_TRUE(modes_.Follow(OutputPath::Headphone)) << "the route that is reported counts";
  expect(4, OutputPath::Headphone);
  EXPECT_FALSE(modes_.Follow(OutputPath::LineOut)) << "a route without settings";
  expect(4, OutputPath::LineOut);
  EXPECT_TRUE(modes_.Refresh()) << "back to the route that is current";
  expect(0, OutputPath::InternalSpeaker);
  machine_.audioDevices.SetDefault(u"");
  EXPECT_FALSE(modes_.Follow(OutputPath::Headphone));
  EXPECT_FALSE(modes_.Refresh());
  EXPECT_EQ(modes_.SelectedMode(), 0);
  EXPECT_TRUE(machine_.events.Calls().empty());
  EXPECT_EQ(ReadSetting(kHeadphonesPathKey), u"5");
}

}  // namespace
}  // namespace ui
