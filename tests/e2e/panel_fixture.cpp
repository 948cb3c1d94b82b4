#include "tests/e2e/panel_fixture.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

namespace e2e {
namespace {

using std::chrono::milliseconds;
using support::Eventually;

const std::string kSettingsKey = "HKLM\\SOFTWARE\\Norvane\\Velsona\\Parameters\\";

std::filesystem::path MakeFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "panel-XXXXXX").string();
  return mkdtemp(pattern.data());
}

// Words of TONALYX_PANEL_RUNNER: a program that runs the panel under its eyes.
std::vector<std::string> Runner() {
  const char* text = std::getenv("TONALYX_PANEL_RUNNER");
  std::istringstream words(text == nullptr ? "" : text);
  return {std::istream_iterator<std::string>(words), {}};
}

}  // namespace

PanelTest::PanelTest() : folder_(MakeFolder()), laptopFile_(folder_ / "laptop.json") {
  environment_ = {{"TONALYX_ROOT", (folder_ / "state").string()},
                  {"TONALYX_LAPTOP", laptopFile_.string()}};
  std::filesystem::create_directory(folder_ / "program");
  std::filesystem::copy(TONALYX_BIN_DIR "/tonalyx", folder_ / "program" / "tonalyx");
}

PanelTest::~PanelTest() {
  panel_.reset();
  engine_.reset();
  std::filesystem::remove_all(folder_);
}

support::ProcessResult PanelTest::Run(const std::string& program,
                                      std::vector<std::string> arguments) {
  const bool own = program == "tonalyx";
  arguments.insert(arguments.begin(), own ? (folder_ / "program" / program).string()
                                          : std::string(TONALYX_BIN_DIR "/") + program);
  return support::RunProcess(arguments, environment_);
}

void PanelTest::Laptop(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), laptopFile_.string());
  const support::ProcessResult result = Run("laptopctl", arguments);
  ASSERT_EQ(result.exitStatus, 0) << result.errors;
}

void PanelTest::UseLaptop(const std::string& kind) {
  Laptop({"new", kind});
  const support::ProcessResult made =
      Run("vtdmake", {TONALYX_SOURCE_DIR "/resources/samples/sample.json",
                      (folder_ / "program" / "0.vtd").string()});
  ASSERT_EQ(made.exitStatus, 0) << made.errors;
  const support::ProcessResult installed = Run("tonalyx", {"/init"});
  ASSERT_EQ(installed.exitStatus, 0) << installed.errors;
}

void PanelTest::StartEngine() {
  engine_ = std::make_unique<support::ChildProcess>(
      std::vector<std::string>{TONALYX_BIN_DIR "/enginemon"}, environment_);
  ASSERT_EQ(engine_->ReadLine(std::chrono::seconds(5)), "ready");
}

void PanelTest::StartPanel() {
  std::vector<std::string> command = Runner();
  command.push_back((folder_ / "program" / "tonalyx").string());
  panel_ = std::make_unique<support::ChildProcess>(command, environment_);
  const auto window = desktop_.WaitForWindow("Tonalyx", std::chrono::seconds(30));
  ASSERT_TRUE(window);
  window_ = *window;
  ParkPointer();
}

int PanelTest::ClosePanel() {
  desktop_.RequestClose("Tonalyx");
  return panel_->WaitForExit(std::chrono::seconds(5)).value_or(-1);
}

std::string PanelTest::ActiveSetting(const std::string& pathKey) {
  const support::ProcessResult result =
      Run("regtool", {"query", kSettingsKey + pathKey + "\\Settings", "/v", "ActiveSetting"});
  const std::string start = "    ActiveSetting    REG_SZ    ";
  const std::size_t found = result.output.find(start);
  if (found == std::string::npos) return {};
  const std::string rest = result.output.substr(found + start.size());
  return rest.substr(0, rest.find('\n'));
}

void PanelTest::SetActiveSetting(const std::string& pathKey, const std::string& setting) {
  const support::ProcessResult result = Run(
      "regtool",
      {"add", kSettingsKey + pathKey + "\\Settings", "/v", "ActiveSetting", "/d", setting, "/f"});
  ASSERT_EQ(result.exitStatus, 0) << result.errors;
}

std::vector<std::string> PanelTest::ReceivedEvents() {
  if (!engine_) return {};
  return engine_->ReadLinesUntilQuiet(milliseconds(400));
}

std::vector<std::string> PanelTest::EndpointEvents(const std::vector<std::string>& kinds) const {
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

std::vector<std::string> PanelTest::ModeChangeEvents() const {
  std::vector<std::string> names = EndpointEvents({"GFX", "MFX", "EFX", "SFX"});
  names.emplace_back("Global\\VelsonaServiceParameterUpdateEvent");
  return names;
}

std::vector<std::string> PanelTest::ParameterChangeEvents() const {
  return EndpointEvents({"GFX", "MFX", "EFX"});
}

support::ScreenRect PanelTest::SkinRect(SkinPoint topLeft, SkinPoint size) {
  const double scale = desktop_.Dpi() / 96.0;
  return {window_.x + static_cast<int>(topLeft.x * scale),
          window_.y + static_cast<int>(topLeft.y * scale), static_cast<int>(size.x * scale),
          static_cast<int>(size.y * scale)};
}

void PanelTest::ClickSkin(SkinPoint point) {
  const support::ScreenRect rect = SkinRect(point, {1, 1});
  desktop_.Click(rect.x, rect.y);
}

void PanelTest::ClickMode(int mode) {
  constexpr SkinPoint kMiddles[] = {{126, 199}, {325, 199}, {524, 199},
                                    {126, 303}, {325, 303}, {524, 303}};
  ClickSkin(kMiddles[mode]);
}

void PanelTest::ParkPointer() {
  const support::ScreenRect rect = SkinRect({300, 60}, {1, 1});
  desktop_.MovePointer(rect.x, rect.y);
}

std::vector<std::uint32_t> PanelTest::Picture() {
  return desktop_.Pixels(window_);
}

bool PanelTest::ShowsPicture(const std::vector<std::uint32_t>& picture) {
  return Eventually([&] { return Picture() == picture; });
}

std::vector<std::uint32_t> PanelTest::PictureOfMode(int mode) {
  ClickMode(mode);
  ParkPointer();
  // Long enough for the hover highlight to go and for the compositor to have shown it.
  std::this_thread::sleep_for(milliseconds(300));
  return Picture();
}

std::string PanelTest::Log() const {
  std::ifstream file(folder_ / "state" / "Velsona.txt", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace e2e
