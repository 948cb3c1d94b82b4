// The example as the engine of the real panel.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "dsp/eq_model.h"
#include "tests/e2e/dialog_fixture.h"
#include "tests/engine/engine_example.h"

namespace engine {
namespace {

using std::chrono::seconds;
using testing::IsEmpty;

class EngineExampleE2e : public e2e::AdvancedDialogTest {
 protected:
  // The example takes the monitor's place.
  void StartExample() {
    const auto laptop = nlohmann::json::parse(std::ifstream(laptopFile_));
    const std::string guid = laptop["endpoints"][0]["guid"];
    engine_ = std::make_unique<support::ChildProcess>(
        std::vector<std::string>{BuildExample(folder_).native(), e2e::kSpeakerKey, guid},
        environment_);
  }

  // What it must have printed last: the bands as they are stored.
  std::vector<std::string> StoredLines() {
    std::array<float, dsp::kParameterCount> values{};
    for (int number = dsp::kEqualizerEnable; number < dsp::kFirstMirrorParameter; ++number) {
      values[dsp::ParameterIndex(number)] = Stored(number);
    }
    return ExpectedLines(ActiveSetting(e2e::kSpeakerKey), values);
  }

  // The bands that it printed last.
  std::vector<std::string> LastPrinted() {
    std::vector<std::string> lines = ReceivedEvents();
    constexpr std::ptrdiff_t kLines = 1 + dsp::kBandCount;
    if (std::ssize(lines) > kLines) lines.erase(lines.begin(), lines.end() - kLines);
    return lines;
  }
};

TEST_F(EngineExampleE2e, PrintsWhatAClickAndAnEditChange) {
  UseLaptop("layers");
  StartExample();
  StartPanel();
  ASSERT_EQ(LastPrinted(), StoredLines());

  ClickMode(2);
  const std::vector<std::string> movie = ReceivedEvents();
  EXPECT_EQ(movie, StoredLines()) << "nine events, one set";
  EXPECT_EQ(movie.front(), "setting 3, equalizer on");

  ClickAdvancedEntry();
  Expand();
  EXPECT_THAT(ReceivedEvents(), IsEmpty());
  UsePeakingBand();
  Drag(resources::kGainSlider, {60, 20}, {200, 20});
  const std::vector<std::string> edited = LastPrinted();
  EXPECT_EQ(edited, StoredLines());
  EXPECT_NE(edited[1], movie[1]);
  EXPECT_THAT(edited[1], testing::HasSubstr("Peaking"));

  ClickControl(resources::kEqualizerEnable);
  EXPECT_EQ(LastPrinted(), StoredLines());
  EXPECT_FALSE(dsp::IsOn(Stored(dsp::kEqualizerEnable)));
}

}  // namespace
}  // namespace engine
