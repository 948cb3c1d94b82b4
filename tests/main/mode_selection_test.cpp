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
  struct Case {
    Jack jack;
    std::u16string_view key;
    std::u16string_view setting;
    std::int32_t mode;
    OutputPath route;
  };
  for (const Case& c :
       {Case{Jack::Speaker, kSpeakerKey, u"3", 2, OutputPath::InternalSpeaker},
        Case{Jack::Subwoofer, kSubwooferKey, u"6", 5, OutputPath::SpeakerWithSubwoofer},
        Case{Jack::Headphones, kHeadphonesKey, u"9", 8, OutputPath::Headphone}}) {
    WriteSetting(c.key, c.setting);
    Plug(c.jack);
    const auto start = modes_.Load();
    ASSERT_TRUE(start);
    EXPECT_EQ(start->endpointGuid, kSpeakerGuid);
    EXPECT_EQ(start->outputPath, c.route);
    EXPECT_EQ(start->settingIndex, c.mode);
    EXPECT_EQ(modes_.SelectedMode(), c.mode);
    EXPECT_FALSE(modes_.ApplyFirstModeIfUnknown());
  }
  // A setting that is no mode is never written back, and any mode is a change.
  EXPECT_FALSE(modes_.Apply());
  EXPECT_EQ(ReadSetting(kHeadphonesKey), u"9");
  EXPECT_TRUE(modes_.Select(0));
  EXPECT_TRUE(machine_.events.Calls().empty()) << "looking changes nothing";
}

TEST_F(ModeSelectionTest, WithoutASettingTheFirstModeIsAppliedWhereThereIsAnEndpoint) {
  struct Case {
    std::u16string_view stored;
    bool made;  // the key, by the write
  };
  for (const Case& c : {Case{u"", true}, Case{u"0", false}}) {
    if (!c.stored.empty()) WriteSetting(kSpeakerKey, c.stored);
    machine_.events.ClearCalls();
    ASSERT_TRUE(modes_.Load());
    EXPECT_EQ(modes_.SelectedMode(), -1);
    EXPECT_EQ(modes_.ApplyFirstModeIfUnknown(), c.made);
    EXPECT_EQ(modes_.SelectedMode(), 0);
    EXPECT_EQ(ReadSetting(kSpeakerKey), u"1");
    EXPECT_EQ(machine_.events.Sets(), ModeChangeEvents());
  }
  WriteSetting(kSpeakerKey, u"3");
  machine_.events.ClearCalls();
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

TEST_F(ModeSelectionTest, FollowsAChangeWithoutWriting) {
  WriteSetting(kSpeakerKey, u"1");
  WriteSetting(kHeadphonesKey, u"5");
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
  EXPECT_EQ(ReadSetting(kHeadphonesKey), u"5");
}

}  // namespace
}  // namespace ui
