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

std::vector<std::string> ActiveEndpoints(const std::filesystem::path& laptopFile) {
  std::vector<std::string> guids;
  const auto laptop = nlohmann::json::parse(std::ifstream(laptopFile));
  for (const auto& endpoint : laptop["endpoints"]) {
    if (endpoint.value("state", "active") == "active") guids.push_back(endpoint["guid"]);
  }
  return guids;
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

support::ChildProcess PanelTest::Start(const std::string& program) {
  return support::ChildProcess({(folder_ / "program" / program).string()}, environment_);
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
  std::istringstream lines(result.output);
  for (std::string line; std::getline(lines, line);) {
    const std::string start = "    ActiveSetting    REG_SZ    ";
    if (line.starts_with(start)) return line.substr(start.size());
  }
  return {};
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

std::vector<std::string> PanelTest::ModeChangeEvents() const {
  std::vector<std::string> names;
  for (const std::string& guid : ActiveEndpoints(laptopFile_)) {
    for (const char* kind : {"GFX", "MFX", "EFX", "SFX"}) {
      names.push_back(std::string("Global\\Velsona") + kind + "PropEvent" + guid);
    }
  }
  names.emplace_back("Global\\VelsonaServiceParameterUpdateEvent");
  return names;
}

std::vector<std::string> PanelTest::ParameterChangeEvents() const {
  std::vector<std::string> names;
  for (const std::string& guid : ActiveEndpoints(laptopFile_)) {
    for (const char* kind : {"GFX", "MFX", "EFX"}) {
      names.push_back(std::string("Global\\Velsona") + kind + "PropEvent" + guid);
    }
  }
  return names;
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

int PanelTest::Difference(const std::vector<std::uint32_t>& picture) {
  const std::vector<std::uint32_t> shown = Picture();
  int different = 0;
  for (std::size_t i = 0; i < shown.size(); ++i) different += shown[i] == picture[i] ? 0 : 1;
  return different;
}

std::vector<std::uint32_t> PanelTest::PictureOfMode(int mode) {
  ClickMode(mode);
  ParkPointer();
  // Long enough for the hover highlight to go and for the compositor to have shown it.
  std::this_thread::sleep_for(milliseconds(300));
  return Picture();
}

std::string PanelTest::OtherActiveEndpointId() const {
  const auto laptop = nlohmann::json::parse(std::ifstream(laptopFile_));
  for (const auto& endpoint : laptop["endpoints"]) {
    if (endpoint.value("state", "active") == "active" &&
        endpoint["id"] != laptop["defaultEndpoint"]) {
      return endpoint["id"];
    }
  }
  return {};
}

std::string PanelTest::Log() const {
  std::ifstream file(folder_ / "state" / "Velsona.txt", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace e2e
