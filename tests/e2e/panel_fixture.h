// A laptop, an engine and the program itself, as separate processes on a real desktop.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/dialog_units.h"
#include "resources/templates.h"
#include "tests/e2e/tested_home.h"
#include "tests/support/child_process.h"
#include "tests/support/files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x11_desktop.h"
#include "ui/controls/plot/plot_geometry.h"

namespace e2e {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::Eventually;
using support::ScreenPoint;
using support::ScreenRect;

inline const std::string kSpeakerKey = "{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
inline const std::string kHeadphoneKey = "{DFF21CE2-F70F-11D0-B917-00A0C9223196}";
inline const std::string kSubwooferKey = "{765D256B-701A-44F8-BA7A-4A95AFA7C762}";
inline const std::string kSettingsKey = "SOFTWARE\\Norvane\\Velsona\\Parameters\\";
inline const std::string kDialogTitle = "Velsona";

// A position in the skin's 96-DPI units.
struct SkinPoint {
  double x;
  double y;
};

// Words of TONALYX_PANEL_RUNNER: a program that runs the panel under its eyes.
inline std::vector<std::string> Runner() {
  const char* text = std::getenv("TONALYX_PANEL_RUNNER");
  std::istringstream words(text == nullptr ? "" : text);
  return {std::istream_iterator<std::string>(words), {}};
}

class PanelTest : public testing::Test {
 protected:
  PanelTest() { UseHome(HomeOfEnvironment()); }

  // A machine that knows nothing yet.
  void UseHome(const TestedHome& home) {
    home_ = home;
    environment_ = {{"TONALYX_ROOT", (folder_ / "state").string()},
                    {"TONALYX_LAPTOP", laptopFile_.string()}};
    std::filesystem::create_directory(folder_ / "program");
    const std::string program = "tonalyx" + home.programEnd;
    std::filesystem::copy(home.programs / program, folder_ / "program" / program);
    if (!home.IsWindows()) return;
    std::filesystem::create_directories(LogFile().parent_path());
    std::filesystem::remove(LogFile());
    Run("regtool", {"delete", "HKLM\\SOFTWARE\\Norvane", "/f"});
  }

  void UseLaptop(const std::string& kind) {
    Laptop({"new", kind});
    ImportSample();
  }
  // With /init.
  void ImportSample() {
    const support::ProcessResult made =
        Run("vtdmake", {TONALYX_SOURCE_DIR "/resources/samples/sample.json",
                        (folder_ / "program" / "0.vtd").string()});
    ASSERT_EQ(made.exitStatus, 0) << made.errors;
    const support::ProcessResult installed = Run("tonalyx", {"/init"});
    ASSERT_EQ(installed.exitStatus, 0) << installed.errors;
  }
  void StartEngine() {
    engine_ = std::make_unique<support::ChildProcess>(home_.Command(home_.programs, "enginemon"),
                                                      environment_);
    ASSERT_EQ(engine_->ReadLine(seconds(10)), "ready");
  }
  void StartPanel() {
    std::vector<std::string> command = Runner();
    for (const std::string& word : PanelCommand()) command.push_back(word);
    panel_ = std::make_unique<support::ChildProcess>(command, environment_);
    UseWindow("Tonalyx", seconds(30));
    ParkPointer();
  }
  void UseWindow(const std::string& title, milliseconds patience = seconds(5)) {
    const auto shown = desktop_.WaitForWindow(title, patience);
    ASSERT_TRUE(shown) << title;
    window_ = *shown;
    if (home_.IsWindows()) TellItsPlace(title);
  }
  // Wine may believe that a window that has just come up is in the corner of the screen, and then
  // takes every click for one beside it, until the window manager moves the window.
  void TellItsPlace(const std::string& title) {
    std::this_thread::sleep_for(milliseconds(300));
    const ScreenRect shown = desktop_.FindWindow(title).value_or(window_);
    desktop_.RequestMove(title, {shown.x + 8, shown.y});
    EXPECT_TRUE(Eventually([&] {
      window_ = desktop_.FindWindow(title).value_or(shown);
      return window_.x != shown.x;
    }));
    std::this_thread::sleep_for(milliseconds(100));
  }
  // Takes hold of the window and lets go of it elsewhere.
  void DragWindow(ScreenPoint from, ScreenPoint to) {
    // The pointer's way begins where the program finds it when it hands the move on.
    desktop_.Drag(from, to, 10, milliseconds(home_.IsWindows() ? 800 : 150));
  }
  // Presses the window's close element's key and waits for the end; the exit status.
  int ClosePanel() {
    desktop_.RequestClose("Tonalyx");
    return panel_->WaitForExit(seconds(5)).value_or(-1);
  }

  support::ProcessResult Run(const std::string& program, std::vector<std::string> arguments) {
    std::vector<std::string> command =
        program == "tonalyx" ? PanelCommand() : home_.Command(home_.programs, program);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return support::RunProcess(command, environment_);
  }
  std::vector<std::string> PanelCommand() const {
    return home_.Command(folder_ / "program", "tonalyx");
  }
  void Laptop(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), laptopFile_.string());
    const support::ProcessResult result = Run("laptopctl", arguments);
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
  }

  // The data of a value as the registry's tool shows it; empty when there is none.
  std::string Data(const std::string& key, const std::string& name, const std::string& type) {
    const support::ProcessResult result = Run("regtool", {"query", key, "/v", name});
    const std::string start = "    " + name + "    " + type + "    ";
    const std::size_t found = result.output.find(start);
    if (found == std::string::npos) return {};
    const std::string rest = result.output.substr(found + start.size());
    return rest.substr(0, rest.find_first_of("\r\n"));
  }
  std::string SettingsOf(const std::string& pathKey) const {
    return "HKLM\\" + kSettingsKey + pathKey + "\\Settings";
  }
  // The text of the route's "ActiveSetting"; empty when there is none.
  std::string ActiveSetting(const std::string& pathKey) {
    return Data(SettingsOf(pathKey), "ActiveSetting", "REG_SZ");
  }
  void SetActiveSetting(const std::string& pathKey, const std::string& setting) {
    const support::ProcessResult result =
        Run("regtool", {"add", SettingsOf(pathKey), "/v", "ActiveSetting", "/d", setting, "/f"});
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
  }

  // Names of the events that the engine, if there is one, received since the last look.
  std::vector<std::string> ReceivedEvents() {
    if (!engine_) return {};
    return engine_->ReadLinesUntilQuiet(milliseconds(400));
  }
  // What one change of the mode, or of parameters, must send to the active endpoints.
  std::vector<std::string> ModeChangeEvents() const {
    std::vector<std::string> names = EndpointEvents({"GFX", "MFX", "EFX", "SFX"});
    names.emplace_back("Global\\VelsonaServiceParameterUpdateEvent");
    return names;
  }
  std::vector<std::string> ParameterChangeEvents() const {
    return EndpointEvents({"GFX", "MFX", "EFX"});
  }
  std::vector<std::string> EndpointEvents(const std::vector<std::string>& kinds) const {
    std::vector<std::string> names;
    const auto laptop = nlohmann::json::parse(std::ifstream(laptopFile_));
    for (const auto& endpoint : laptop["endpoints"]) {
      if (endpoint.value("state", "active") != "active") continue;
      for (const std::string& kind : kinds) {
        names.push_back("Global\\Velsona" + kind + "PropEvent" + endpoint.value("guid", ""));
      }
    }
    return names;
  }

  void ClickSkin(SkinPoint point) {
    const ScreenRect rect = SkinRect(point, {1, 1});
    desktop_.Click(rect.x, rect.y);
  }
  void ClickMode(int mode) {
    constexpr SkinPoint kMiddles[] = {{126, 199}, {325, 199}, {524, 199},
                                      {126, 303}, {325, 303}, {524, 303}};
    ClickSkin(kMiddles[mode]);
  }
  // Takes the pointer away from every element of the main window.
  void ParkPointer() {
    const ScreenRect rect = SkinRect({300, 60}, {1, 1});
    desktop_.MovePointer(rect.x, rect.y);
  }
  ScreenRect SkinRect(SkinPoint topLeft, SkinPoint size) {
    const double scale = desktop_.Dpi() / 96.0;
    return {window_.x + static_cast<int>(topLeft.x * scale),
            window_.y + static_cast<int>(topLeft.y * scale), static_cast<int>(size.x * scale),
            static_cast<int>(size.y * scale)};
  }
  // The main window as it is on the screen.
  std::vector<std::uint32_t> Picture() { return desktop_.Pixels(window_); }
  bool ShowsPicture(const std::vector<std::uint32_t>& picture) {
    return Eventually([&] { return Picture() == picture; });
  }
  bool ShowsWarning() {
    const std::vector<std::uint32_t> pixels = desktop_.Pixels(SkinRect({160, 362}, {440, 24}));
    return std::count(pixels.begin(), pixels.end(), 0xE3C69CU) > 20;
  }
  // Clicks the mode and keeps what the window then looks like.
  std::vector<std::uint32_t> PictureOfMode(int mode) {
    ClickMode(mode);
    ParkPointer();
    // The hover highlight goes, and the compositor shows it, when the machine finds the time.
    std::vector<std::uint32_t> picture;
    for (int same = 0; same < 3;) {
      std::this_thread::sleep_for(milliseconds(150));
      auto next = Picture();
      same = next == picture ? same + 1 : 0;
      picture = std::move(next);
    }
    return picture;
  }

  std::filesystem::path LogFile() const {
    if (!home_.IsWindows()) return folder_ / "state" / "Velsona.txt";
    return std::filesystem::path(std::getenv("WINEPREFIX")) / "drive_c" / "Program Files (x86)" /
           "Norvane" / "Tonalyx" / "Velsona.txt";
  }
  std::string Log() const { return support::ReadFile(LogFile()); }

  support::TemporaryFolder temporary_;
  const std::filesystem::path folder_ = temporary_.Path();
  const std::filesystem::path laptopFile_ = folder_ / "laptop.json";
  TestedHome home_;
  std::map<std::string, std::string> environment_;
  support::X11Desktop desktop_;
  std::unique_ptr<support::ChildProcess> engine_;
  std::unique_ptr<support::ChildProcess> panel_;
  ScreenRect window_;
};

// The advanced dialog on the screen, with its controls found by their places.
class AdvancedDialogTest : public PanelTest {
 protected:
  // Laptop with three layers, engine, panel, dialog opened through the main window's entry.
  void OpenDialog() {
    UseLaptop("layers");
    StartEngine();
    StartPanel();
    ClickAdvancedEntry();
  }
  void ClickAdvancedEntry() {
    ClickSkin({80, 416});
    UseWindow(kDialogTitle);
    ASSERT_TRUE(desktop_.WaitUntilGone("Tonalyx", seconds(2)));
    ReceivedEvents();
  }
  // Opens the lower part.
  void Expand() {
    const int collapsed = window_.height;
    ClickControl(resources::kExpandButton);
    ASSERT_TRUE(Eventually([&] {
      const auto rect = desktop_.FindWindow(kDialogTitle);
      return rect && rect->height > 2 * collapsed;
    }));
    window_ = *desktop_.FindWindow(kDialogTitle);
  }

  // Gives the selected band the type with which all of its sliders work.
  void UsePeakingBand() {
    ClickControl(resources::kTypePeaking);
    ASSERT_TRUE(BecomesStored(119, 1.0F));
    ReceivedEvents();
  }

  ScreenRect Control(std::uint16_t id) {
    const auto& controls = resources::kAdvancedControls;
    const auto control = std::find_if(controls.begin(), controls.end(),
                                      [id](const auto& row) { return row.id == id; });
    const platform::Rect place = platform::FromDialogUnits(
        *control, platform::BaseUnitsAt(static_cast<std::uint32_t>(desktop_.Dpi())));
    return {window_.x + place.left, window_.y + place.top, place.Width(), place.Height()};
  }
  void ClickControl(std::uint16_t id) {
    const ScreenRect rect = Control(id);
    desktop_.Click(rect.x + rect.width / 2, rect.y + rect.height / 2);
  }
  // Presses at the control's client point, moves in steps, releases.
  void Drag(std::uint16_t id, ScreenPoint from, ScreenPoint to, int steps = 8) {
    const ScreenRect rect = Control(id);
    desktop_.Drag({rect.x + from.x, rect.y + from.y}, {rect.x + to.x, rect.y + to.y}, steps);
  }

  enum class SliderEnd { First, Last };
  void ClickSlider(std::uint16_t id, SliderEnd end) {
    const ScreenRect slider = Control(id);
    const int x = end == SliderEnd::First ? 1 : slider.width - 2;
    desktop_.Click(slider.x + x, slider.y + slider.height * 3 / 4);
  }
  // By the letter that the entry's name has for it.
  void ChooseFromMenu(const std::string& letter) {
    ClickControl(resources::kMenuButton);
    std::this_thread::sleep_for(milliseconds(300));
    desktop_.PressKey(letter);
  }
  void NameFile(const std::string& dialog, const std::filesystem::path& file) {
    ASSERT_TRUE(Eventually([&] { return desktop_.ActiveTitle() == dialog; }));
    desktop_.Type(home_.NameOf(file));
    desktop_.PressKey("Return");
    ASSERT_TRUE(desktop_.WaitUntilGone(dialog, seconds(5)));
  }

  // The mapping of the plot as it stands in the window.
  dsp::PlotMapping Plot() {
    const ScreenRect rect = Control(resources::kPlot);
    return ui::MakePlotMapping({rect.width, rect.height},
                               static_cast<float>(desktop_.Dpi() / 96.0));
  }
  ScreenPoint MarkerOf(int band) {
    const dsp::PlotMapping plot = Plot();
    const int first = 118 + 5 * (band - 1);
    const float gain = 20.0F * std::log10(Stored(first + 3));
    return {static_cast<int>(plot.X(Stored(first + 2))), static_cast<int>(plot.Y(gain))};
  }

  // A parameter of the set that is active on the route, as stored.
  float Stored(int parameter, const std::string& pathKey = kSpeakerKey) {
    const std::string data = Data(SettingsOf(pathKey) + "\\" + ActiveSetting(pathKey),
                                  "Param" + std::to_string(parameter), "REG_BINARY");
    std::uint32_t bits = 0;
    const auto parsed = std::from_chars(data.data(), data.data() + data.size(), bits, 16);
    if (data.size() != 8 || parsed.ec != std::errc()) return NAN;
    return std::bit_cast<float>(__builtin_bswap32(bits));
  }
  // Waits until the stored parameter is this very value.
  bool BecomesStored(int parameter, float value, const std::string& pathKey = kSpeakerKey) {
    return Eventually([&] { return Stored(parameter, pathKey) == value; }, seconds(3));
  }
  // The signals of as many edits as the events received make; -1 when they make none.
  int ReceivedEdits() {
    const std::vector<std::string> received = ReceivedEvents();
    const std::vector<std::string> edit = ParameterChangeEvents();
    if (received.size() % edit.size() != 0) return -1;
    for (std::size_t i = 0; i < received.size(); ++i) {
      if (received[i] != edit[i % edit.size()]) return -1;
    }
    return static_cast<int>(received.size() / edit.size());
  }
};

}  // namespace e2e
