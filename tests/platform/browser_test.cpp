// The browser, through the desktop's own opener.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/shell.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x11_desktop.h"

namespace platform {
namespace {

using support::Eventually;

TEST(Browser, OpensThroughTheDesktopAndStaysSilent) {
  const support::TemporaryFolder folder;
  const std::filesystem::path opened = folder.Path() / "opened";
  const std::filesystem::path opener = folder.Path() / "xdg-open";
  std::ofstream(opener) << "#!/bin/sh\necho \"$1\" > '" << opened.string() << "'\n";
  std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
  const std::string path = std::getenv("PATH");
  setenv("PATH", (folder.Path().string() + ":" + path).c_str(), 1);
  OpenInBrowser(u"https://www.example/");
  EXPECT_TRUE(Eventually([&] {
    std::stringstream text;
    text << std::ifstream(opened).rdbuf();
    return text.str() == "https://www.example/\n";
  }));
  setenv("PATH", folder.Path().c_str(), 1);
  std::filesystem::remove(opener);
  OpenInBrowser(u"https://www.example/");
  setenv("PATH", path.c_str(), 1);
}

}  // namespace
}  // namespace platform
