// The same file imported and the same things done on both systems leave the same in the store.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/e2e/panel_fixture.h"

namespace e2e {
namespace {

using testing::IsEmpty;
using Lines = std::vector<std::string>;

class SameStoreTest : public AdvancedDialogTest {
 protected:
  void PlaySession() {
    std::filesystem::remove(folder_ / "session.tus");
    UseLaptop("layers");
    StartPanel();
    for (const int mode : {2, 5, 4}) ClickMode(mode);
    ClickAdvancedEntry();
    Expand();
    for (const std::uint16_t knob : {resources::kKnobBass, resources::kKnobWidener}) {
      const ScreenRect rect = Control(knob);
      Drag(knob, {rect.width / 2 - 25, rect.height / 2 - 25},
           {rect.width / 2 + 20, rect.height / 3});
    }
    UsePeakingBand();
    ClickSlider(resources::kGainSlider, SliderEnd::Last);
    for (const std::uint16_t slider : {resources::kFrequencySlider, resources::kBandwidthSlider}) {
      const ScreenRect rect = Control(slider);
      Drag(slider, {rect.width / 5, rect.height * 3 / 4},
           {rect.width * 2 / 3, rect.height * 3 / 4});
    }
    for (const int band : {3, 8}) {
      const ScreenPoint marker = MarkerOf(band);
      Drag(resources::kPlot, marker, {marker.x + 37, marker.y - 11});
    }
    ClickControl(resources::kTypeLowShelving);
    ChooseFromMenu("s");
    NameFile("Save As", folder_ / "session.tus");
    Laptop({"plug", "headphones"});
    std::this_thread::sleep_for(milliseconds(600));
    ChooseFromMenu("l");
    NameFile("Open", folder_ / "session.tus");
    ClickControl(resources::kEqualizerEnable);
    EXPECT_TRUE(BecomesStored(117, 0.0F, kHeadphoneKey));
    ClickControl(resources::kCloseButton);
    ASSERT_TRUE(desktop_.WaitForWindow("Tonalyx", seconds(5)));
    EXPECT_EQ(ClosePanel(), 0);
  }

  // Every value with its key before it. Systems spell the first key differently.
  static Lines Values(const std::string& listing) {
    Lines values;
    std::string key;
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);) {
      if (line.ends_with('\r')) line.pop_back();
      if (line.starts_with("    ")) {
        values.push_back(key + line);
      } else if (line.size() > kRoot.size()) {
        key = line.substr(kRoot.size());
      }
    }
    std::sort(values.begin(), values.end());
    return values;
  }
  // What only one of them has.
  static Lines Difference(const Lines& left, const Lines& right) {
    Lines difference;
    std::set_symmetric_difference(left.begin(), left.end(), right.begin(), right.end(),
                                  std::back_inserter(difference));
    return difference;
  }
  Lines StoredValues() {
    return Values(Run("regtool", {"query", "HKLM\\SOFTWARE\\Norvane", "/s"}).output);
  }

  static inline const std::string kRoot = "HKEY_LOCAL_MACHINE\\SOFTWARE\\";
};

TEST_F(SameStoreTest, AfterTheSameSession) {
  PlaySession();
  const Lines onWindows = StoredValues();
  EXPECT_GT(onWindows.size(), 5000U);
  const support::ProcessResult systemsOwn =
      support::RunProcess({"wine", "reg", "query", "HKLM\\SOFTWARE\\Norvane", "/s"}, environment_);
  EXPECT_THAT(Difference(Values(systemsOwn.output), onWindows), IsEmpty());
  UseHome(NativeHome());
  PlaySession();
  EXPECT_THAT(Difference(StoredValues(), onWindows), IsEmpty());
}

}  // namespace
}  // namespace e2e
