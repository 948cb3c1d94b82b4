#include "tests/faults/random_user.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <thread>

#include "dsp/eq_model.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "store/registry_layout.h"
#include "tests/faults/rounds.h"

namespace faults {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::Eventually;
using support::ScreenPoint;
using support::ScreenRect;

constexpr seconds kPatience(30);
constexpr milliseconds kHand(10);

constexpr std::array<std::uint16_t, 15> kEditing = {
    resources::kKnobBass,     resources::kKnobTreble,       resources::kKnobWidener,
    resources::kKnobLoudness, resources::kEqualizerEnable,  resources::kPlot,
    resources::kGainSlider,   resources::kFrequencySlider,  resources::kBandwidthSlider,
    resources::kTypePeaking,  resources::kTypeHighShelving, resources::kTypeLowShelving,
    resources::kTypeHighPass, resources::kTypeLowPass,      resources::kBandEnable};

// Neither Return nor Escape, which end the dialog, nor what presses the button that has the focus:
// it may be the menu's, whose file dialogs wait for an answer.
constexpr std::array kKeys = {"a",    "Left", "Right", "Up", "Down", "Prior",
                              "Next", "Home", "End",   "F1", "plus", "Tab"};

template <std::size_t kSize, class Item>
const Item& OneOf(const std::array<Item, kSize>& items, std::mt19937& random) {
  return items.at(static_cast<std::size_t>(Between(random, 0, static_cast<int>(kSize) - 1)));
}

}  // namespace

void RandomUser::Begin() {
  StartPanel();
  OpenInFull();
}

void RandomUser::OpenInFull() {
  if (!desktop_.FindWindow(e2e::kDialogTitle)) {
    const auto main = desktop_.WaitForWindow("Tonalyx", kPatience);
    ASSERT_TRUE(main);
    window_ = *main;
    // The first click may only close what is left of a menu.
    ASSERT_TRUE(Eventually(
        [&] {
          ClickSkin({80, 416});
          return desktop_.WaitForWindow(e2e::kDialogTitle, seconds(3)).has_value();
        },
        kPatience));
  }
  window_ = desktop_.FindWindow(e2e::kDialogTitle).value_or(window_);
  const bool isCollapsed = window_.height < window_.width / 2;
  if (!isCollapsed) return;
  ClickControl(resources::kExpandButton);
  ASSERT_TRUE(Eventually(
      [&] {
        window_ = desktop_.FindWindow(e2e::kDialogTitle).value_or(window_);
        return window_.height > window_.width / 2;
      },
      kPatience));
}

void RandomUser::Act(std::mt19937& random) {
  using Action = void (RandomUser::*)(std::mt19937&);
  struct Weighted {
    int weight;
    Action action;
  };
  constexpr std::array kActions = {
      Weighted{40, &RandomUser::ClickSomething},  Weighted{30, &RandomUser::DragSomething},
      Weighted{15, &RandomUser::ScrollOrType},    Weighted{3, &RandomUser::OpenAndCloseTheMenu},
      Weighted{2, &RandomUser::UseTheMainWindow}, Weighted{5, &RandomUser::PlugOrUnplug},
      Weighted{5, &RandomUser::WriteToTheStore}};
  int number = Between(random, 0, 99);
  for (const Weighted& each : kActions) {
    number -= each.weight;
    if (number < 0) return (this->*each.action)(random);
  }
}

ScreenPoint RandomUser::PointOf(std::uint16_t control, std::mt19937& random) {
  const ScreenRect rect = Control(control);
  return {rect.x + Between(random, 0, rect.width - 1),
          rect.y + Between(random, 0, rect.height - 1)};
}

void RandomUser::ClickSomething(std::mt19937& random) {
  const ScreenPoint point = PointOf(OneOf(kEditing, random), random);
  desktop_.Click(point.x, point.y);
}

// Also to where the control is not.
void RandomUser::DragSomething(std::mt19937& random) {
  const ScreenPoint from = PointOf(OneOf(kEditing, random), random);
  const ScreenPoint to{window_.x + Between(random, -50, window_.width + 50),
                       window_.y + Between(random, -50, window_.height + 50)};
  desktop_.MovePointer(from.x, from.y);
  std::this_thread::sleep_for(kHand);
  desktop_.PressButton();
  std::this_thread::sleep_for(kHand);
  const int steps = Between(random, 1, 8);
  for (int step = 1; step <= steps; ++step) {
    desktop_.MovePointer(from.x + (to.x - from.x) * step / steps,
                         from.y + (to.y - from.y) * step / steps);
    std::this_thread::sleep_for(kHand / 2);
  }
  desktop_.ReleaseButton();
  std::this_thread::sleep_for(kHand);
}

void RandomUser::ScrollOrType(std::mt19937& random) {
  const ScreenPoint point = PointOf(OneOf(kEditing, random), random);
  desktop_.MovePointer(point.x, point.y);
  std::this_thread::sleep_for(kHand);
  if (Between(random, 0, 1) == 0) {
    desktop_.Scroll(Between(random, 0, 1) == 0 ? 3 : -3);
  } else {
    desktop_.PressKeyAtOnce(OneOf(kKeys, random));
  }
}

void RandomUser::OpenAndCloseTheMenu(std::mt19937& random) {
  ClickControl(resources::kMenuButton);
  std::this_thread::sleep_for(milliseconds(200));
  if (Between(random, 0, 1) == 0) desktop_.PressKeyAtOnce("Down");
  desktop_.PressKeyAtOnce("Escape");
  std::this_thread::sleep_for(milliseconds(100));
  OpenInFull();
}

void RandomUser::UseTheMainWindow(std::mt19937& random) {
  ClickControl(resources::kCloseButton);
  const auto main = desktop_.WaitForWindow("Tonalyx", kPatience);
  ASSERT_TRUE(main);
  window_ = *main;
  const int clicks = Between(random, 0, 5);
  for (int click = 0; click < clicks; ++click) ClickMode(Between(random, 0, 5));
  OpenInFull();
}

void RandomUser::PlugOrUnplug(std::mt19937& random) {
  constexpr std::array kPlugs = {"headphones", "lineout", "subwoofer"};
  if (Between(random, 0, 1) == 0) {
    Laptop({"unplug"});
  } else {
    Laptop({"plug", OneOf(kPlugs, random)});
  }
}

// Another setting becomes the active one; before that its parameters may change, since nobody has
// it open.
void RandomUser::WriteToTheStore(std::mt19937& random) {
  platform::SqliteRegistry registry(folder_ / "state");
  const std::array kRoutes = {e2e::kSpeakerKey, e2e::kHeadphoneKey, e2e::kSubwooferKey};
  const std::u16string route = platform::FromUtf8(OneOf(kRoutes, random));
  const std::u16string setting(1, static_cast<char16_t>(u'1' + Between(random, 0, 5)));
  if (platform::ToUtf8(setting) != ActiveSetting(platform::ToUtf8(route))) {
    const auto key = registry.OpenKey(
        platform::RegistryRoot::LocalMachine,
        store::SettingKeyPath(store::Tree::Parameters, route, setting), store::kWriteAccess);
    ASSERT_TRUE(key);
    const float amount = static_cast<float>(Between(random, 0, 100)) / 100.0F;
    const std::u16string_view name = store::ParameterName(dsp::kBassAmount);
    EXPECT_EQ(
        key->SetValue(name, platform::RegistryType::Binary, std::as_bytes(std::span(&amount, 1))),
        platform::RegistryStatus::Success);
  }
  SetActiveSetting(platform::ToUtf8(route), platform::ToUtf8(setting));
}

}  // namespace faults
