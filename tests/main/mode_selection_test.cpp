#include "ui/main/mode_selection.h"

#include <vector>

#include "tests/main/mode_fixture.h"

namespace ui {
namespace {

using store::OutputPath;

class ModeSelectionTest : public ModeFixture {
 protected:
  ModeSelection modes_{machine_.platform};
};

TEST_F(ModeSelectionTest, LoadsTheModeOfTheCurrentRoute) {
  struct Case {
    Jack jack;
    std::u16string_view setting;
    std::int32_t mode;
    OutputPath route;
  };
  WriteSetting(kSpeakerKey, u"3");
  WriteSetting(kSubwooferKey, u"6");
  WriteSetting(kHeadphonesKey, u"9");
  for (const Case& c : {Case{Jack::Speaker, u"3", 2, OutputPath::InternalSpeaker},
                        Case{Jack::Subwoofer, u"6", 5, OutputPath::SpeakerWithSubwoofer},
                        Case{Jack::Headphones, u"9", 8, OutputPath::Headphone}}) {
    Plug(c.jack);
    const auto start = modes_.Load();
    ASSERT_TRUE(start);
    EXPECT_EQ(start->endpointGuid, kSpeakerGuid);
    EXPECT_EQ(start->outputPath, c.route);
    EXPECT_EQ(start->settingIndex, c.mode);
    EXPECT_EQ(modes_.SelectedMode(), c.mode);
    EXPECT_FALSE(modes_.ApplyFirstModeIfUnknown());
  }
  EXPECT_TRUE(machine_.events.Calls().empty()) << "looking changes nothing";
}

TEST_F(ModeSelectionTest, ARouteWithoutSettingsGetsTheFirstMode) {
  const auto start = modes_.Load();
  ASSERT_TRUE(start);
  EXPECT_EQ(start->settingIndex, -1);
  EXPECT_TRUE(modes_.ApplyFirstModeIfUnknown()) << "this made the key";
  EXPECT_EQ(modes_.SelectedMode(), 0);
  EXPECT_EQ(ReadSetting(kSpeakerKey), u"1");
  EXPECT_EQ(machine_.events.Sets(), ModeChangeEvents());
}

TEST_F(ModeSelectionTest, SettingZeroCountsAsMissingButItsKeyWasThere) {
  WriteSetting(kSpeakerKey, u"0");
  ASSERT_TRUE(modes_.Load());
  EXPECT_FALSE(modes_.ApplyFirstModeIfUnknown());
  EXPECT_EQ(modes_.SelectedMode(), 0);
  EXPECT_EQ(ReadSetting(kSpeakerKey), u"1");
  EXPECT_EQ(machine_.events.Sets(), ModeChangeEvents());
}

TEST_F(ModeSelectionTest, WithoutAnEndpointTheFirstModeIsShownAndNothingWritten) {
  WriteSetting(kSpeakerKey, u"3");
  machine_.audioDevices.SetDefault(u"");
  EXPECT_FALSE(modes_.Load());
  EXPECT_FALSE(modes_.ApplyFirstModeIfUnknown());
  EXPECT_EQ(modes_.SelectedMode(), 0);
  EXPECT_EQ(ReadSetting(kSpeakerKey), u"3");
  EXPECT_TRUE(machine_.events.Calls().empty());
}

TEST_F(ModeSelectionTest, AClickWritesOnceAndToTheRouteThatIsCurrentThen) {
  WriteSetting(kSpeakerKey, u"1");
  ASSERT_TRUE(modes_.Load());
  EXPECT_FALSE(modes_.Select(0)) << "already selected";
  EXPECT_TRUE(modes_.Select(2));
  EXPECT_TRUE(modes_.Apply());
  EXPECT_EQ(ReadSetting(kSpeakerKey), u"3");
  EXPECT_EQ(machine_.events.Sets(), ModeChangeEvents());

  Plug(Jack::Headphones);
  EXPECT_TRUE(modes_.Select(5));
  EXPECT_TRUE(modes_.Apply());
  EXPECT_EQ(ReadSetting(kHeadphonesKey), u"6");
  EXPECT_EQ(ReadSetting(kSpeakerKey), u"3");
  EXPECT_EQ(modes_.OutputPath(), OutputPath::Headphone);
}

TEST_F(ModeSelectionTest, ASettingThatIsNoModeIsNeverWrittenBack) {
  WriteSetting(kSpeakerKey, u"7");
  ASSERT_TRUE(modes_.Load());
  EXPECT_EQ(modes_.SelectedMode(), 6);
  EXPECT_FALSE(modes_.ApplyFirstModeIfUnknown());
  EXPECT_FALSE(modes_.Apply());
  EXPECT_EQ(ReadSetting(kSpeakerKey), u"7");
  EXPECT_TRUE(modes_.Select(0)) << "any mode is a change";
}

TEST_F(ModeSelectionTest, FollowsAChangeWithoutWriting) {
  WriteSetting(kSpeakerKey, u"1");
  WriteSetting(kHeadphonesKey, u"5");
  ASSERT_TRUE(modes_.Load());

  EXPECT_TRUE(modes_.Follow(OutputPath::Headphone)) << "the route that is reported counts";
  EXPECT_EQ(modes_.SelectedMode(), 4);
  EXPECT_EQ(modes_.OutputPath(), OutputPath::Headphone);
  EXPECT_FALSE(modes_.Follow(OutputPath::LineOut)) << "a route without settings";
  EXPECT_EQ(modes_.SelectedMode(), 4);
  EXPECT_EQ(modes_.OutputPath(), OutputPath::LineOut);

  EXPECT_TRUE(modes_.Refresh()) << "back to the route that is current";
  EXPECT_EQ(modes_.SelectedMode(), 0);
  EXPECT_EQ(modes_.OutputPath(), OutputPath::InternalSpeaker);

  machine_.audioDevices.SetDefault(u"");
  EXPECT_FALSE(modes_.Follow(OutputPath::Headphone));
  EXPECT_FALSE(modes_.Refresh());
  EXPECT_EQ(modes_.SelectedMode(), 0);
  EXPECT_TRUE(machine_.events.Calls().empty());
  EXPECT_EQ(ReadSetting(kHeadphonesKey), u"5");
}

}  // namespace
}  // namespace ui
