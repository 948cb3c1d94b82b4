// What the logo opens, with a browser that writes it down.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/main/mode_fixture.h"
#include "tests/support/scripted_window.h"
#include "tests/support/temporary_folder.h"
#include "ui/main/orvan_dlg.h"

namespace ui {
namespace {

using LogoTest = ModeFixture;

TEST_F(LogoTest, TheLogoOpensTheMakersSite) {
  const support::TemporaryFolder folder;
  const std::filesystem::path opened = folder.Path() / "opened";
  std::ofstream(folder.Path() / "xdg-open") << "#!/bin/sh\necho \"$1\" >" << opened << "\n";
  std::filesystem::permissions(folder.Path() / "xdg-open", std::filesystem::perms::owner_all);
  const std::string path = std::getenv("PATH");
  setenv("PATH", (folder.Path().string() + ":" + path).c_str(), 1);
  support::Scripted<COrvanDlg> window(machine_.platform, store::ModelFlags{}, nullptr);
  std::string location;
  window.ThenDo([&] { window.ClickAt(291, 405); });
  window.Then([&] { return static_cast<bool>(std::ifstream(opened) >> location); });
  EXPECT_EQ(window.DoModal(), support::kScriptEnded);
  setenv("PATH", path.c_str(), 1);
  EXPECT_EQ(location, "https://www.norvane.example/");
}

}  // namespace
}  // namespace ui
