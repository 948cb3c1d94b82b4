// A laptop, an engine and the program itself, as separate processes on a real desktop.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/x11_desktop.h"

namespace e2e {

inline const std::string kSpeakerKey = "{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
inline const std::string kHeadphoneKey = "{DFF21CE2-F70F-11D0-B917-00A0C9223196}";
inline const std::string kSubwooferKey = "{765D256B-701A-44F8-BA7A-4A95AFA7C762}";

// A position in the skin's 96-DPI units.
struct SkinPoint {
  double x;
  double y;
};

class PanelTest : public testing::Test {
 protected:
  PanelTest();
  ~PanelTest() override;

  // Makes the virtual laptop and imports the sample tuning with /init.
  void UseLaptop(const std::string& kind);
  void StartEngine();
  void StartPanel();
  // Presses the window's close element's key and waits for the end; the exit status.
  int ClosePanel();

  support::ProcessResult Run(const std::string& program, std::vector<std::string> arguments);
  void Laptop(std::vector<std::string> arguments);

  // The text of the route's "ActiveSetting"; empty when there is none.
  std::string ActiveSetting(const std::string& pathKey);
  void SetActiveSetting(const std::string& pathKey, const std::string& setting);

  // Names of the events that the engine, if there is one, received since the last look.
  std::vector<std::string> ReceivedEvents();
  // What one change of the mode, or of parameters, must send to the active endpoints.
  std::vector<std::string> ModeChangeEvents() const;
  std::vector<std::string> ParameterChangeEvents() const;
  std::vector<std::string> EndpointEvents(const std::vector<std::string>& kinds) const;

  void ClickSkin(SkinPoint point);
  void ClickMode(int mode);
  // Takes the pointer away from every element of the main window.
  void ParkPointer();
  support::ScreenRect SkinRect(SkinPoint topLeft, SkinPoint size);
  // The main window as it is on the screen.
  std::vector<std::uint32_t> Picture();
  bool ShowsPicture(const std::vector<std::uint32_t>& picture);
  // Clicks the mode and keeps what the window then looks like.
  std::vector<std::uint32_t> PictureOfMode(int mode);

  std::string Log() const;

  std::filesystem::path folder_;
  std::filesystem::path laptopFile_;
  std::map<std::string, std::string> environment_;
  support::X11Desktop desktop_;
  std::unique_ptr<support::ChildProcess> engine_;
  std::unique_ptr<support::ChildProcess> panel_;
  support::ScreenRect window_;
};

}  // namespace e2e
