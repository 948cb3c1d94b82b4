#include "tests/e2e/dialog_fixture.h"

#include <algorithm>
#include <cmath>

#include "platform/linux/registry/sqlite_registry.h"
#include "store/registry_layout.h"

namespace e2e {
namespace {

using std::chrono::seconds;
using support::Eventually;
using support::ScreenPoint;
using support::ScreenRect;

// Pixels of four horizontal and eight vertical dialog units.
support::ScreenPoint BaseUnits(double dpi) {
  if (dpi < 108) return {6, 13};
  if (dpi < 132) return {8, 16};
  if (dpi < 168) return {9, 20};
  return {12, 25};
}

std::string SettingPath(const std::string& pathKey, const std::string& setting) {
  return "SOFTWARE\\Norvane\\Velsona\\Parameters\\" + pathKey + "\\Settings\\" + setting;
}

}  // namespace

void AdvancedDialogTest::OpenDialog() {
  UseLaptop("layers");
  StartEngine();
  StartPanel();
  ClickAdvancedEntry();
}

void AdvancedDialogTest::ClickAdvancedEntry() {
  ClickSkin({80, 416});
  const auto dialog = desktop_.WaitForWindow(kDialogTitle, seconds(5));
  ASSERT_TRUE(dialog);
  window_ = *dialog;
  ASSERT_TRUE(desktop_.WaitUntilGone("Tonalyx", seconds(2)));
  ReceivedEvents();
}

void AdvancedDialogTest::Expand() {
  const int collapsed = window_.height;
  ClickControl(resources::kExpandButton);
  ASSERT_TRUE(Eventually([&] {
    const auto rect = desktop_.FindWindow(kDialogTitle);
    return rect && rect->height > 2 * collapsed;
  }));
  window_ = *desktop_.FindWindow(kDialogTitle);
}

void AdvancedDialogTest::UsePeakingBand() {
  ClickControl(resources::kTypePeaking);
  ASSERT_TRUE(BecomesStored(119, 1.0F));
  ReceivedEvents();
}

ScreenRect AdvancedDialogTest::Control(std::uint16_t id) {
  const auto& controls = resources::kAdvancedControls;
  const auto control = std::find_if(controls.begin(), controls.end(),
                                    [id](const auto& row) { return row.id == id; });
  const ScreenPoint base = BaseUnits(desktop_.Dpi());
  const auto horizontal = [&](int units) {
    return static_cast<int>(std::lround(units * base.x / 4.0));
  };
  const auto vertical = [&](int units) {
    return static_cast<int>(std::lround(units * base.y / 8.0));
  };
  return {window_.x + horizontal(control->x), window_.y + vertical(control->y),
          horizontal(control->width), vertical(control->height)};
}

void AdvancedDialogTest::ClickControl(std::uint16_t id) {
  const ScreenRect rect = Control(id);
  desktop_.Click(rect.x + rect.width / 2, rect.y + rect.height / 2);
}

void AdvancedDialogTest::Drag(std::uint16_t id, ScreenPoint from, ScreenPoint to, int steps) {
  const ScreenRect rect = Control(id);
  desktop_.Drag({rect.x + from.x, rect.y + from.y}, {rect.x + to.x, rect.y + to.y}, steps);
}

dsp::PlotMapping AdvancedDialogTest::Plot() {
  const ScreenRect rect = Control(resources::kPlot);
  const auto scale = static_cast<float>(desktop_.Dpi() / 96.0);
  return {rect.width,
          rect.height,
          scale,
          static_cast<int>(30 * scale),
          static_cast<int>(15 * scale),
          std::log10(20.0),
          std::log10(20000.0)};
}

ScreenPoint AdvancedDialogTest::MarkerOf(int band) {
  const dsp::PlotMapping plot = Plot();
  const int first = 118 + 5 * (band - 1);
  const float gain = 20.0F * std::log10(Stored(first + 3));
  return {static_cast<int>(plot.X(Stored(first + 2))), static_cast<int>(plot.Y(gain))};
}

float AdvancedDialogTest::Stored(int parameter, const std::string& pathKey) {
  platform::SqliteRegistry registry(folder_ / "state");
  const std::string path = SettingPath(pathKey, ActiveSetting(pathKey));
  const auto key = registry.OpenKey(platform::RegistryRoot::LocalMachine,
                                    std::u16string(path.begin(), path.end()), store::kReadAccess);
  float value = NAN;
  std::uint32_t size = sizeof(value);
  if (key) {
    key->QueryValue(store::ParameterName(static_cast<std::size_t>(parameter)), nullptr, &value,
                    &size);
  }
  return value;
}

bool AdvancedDialogTest::BecomesStored(int parameter, float value, const std::string& pathKey) {
  return Eventually([&] { return Stored(parameter, pathKey) == value; }, seconds(3));
}

int AdvancedDialogTest::ReceivedEdits() {
  const std::vector<std::string> received = ReceivedEvents();
  const std::vector<std::string> edit = ParameterChangeEvents();
  if (received.size() % edit.size() != 0) return -1;
  for (std::size_t i = 0; i < received.size(); ++i) {
    if (received[i] != edit[i % edit.size()]) return -1;
  }
  return static_cast<int>(received.size() / edit.size());
}

}  // namespace e2e
