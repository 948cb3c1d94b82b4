// Boxes, file dialogs and the browser, operated by keyboard.
#include "platform/shell.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "platform/text.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x11_desktop.h"

namespace platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::Eventually;
using support::X11Desktop;

// What the call, which blocks, answers while hands work beside it.
template <class Call>
auto Beside(Call call, const std::function<void(X11Desktop&)>& hands) {
  const std::jthread worker([&] {
    X11Desktop desktop;
    hands(desktop);
  });
  return call();
}

void WaitActive(X11Desktop& desktop, const std::string& title) {
  ASSERT_TRUE(desktop.WaitForWindow(title, seconds(5)));
  ASSERT_TRUE(Eventually([&] { return desktop.ActiveTitle() == title; }));
}

TEST(MessageBoxes, KeysAnswerAndAQuestionCannotBeDismissed) {
  const struct {
    MessageBoxKind kind;
    std::string dismissal;
    std::string key;
    std::int32_t answer;
  } cases[] = {{MessageBoxKind::YesNoDefaultNo, "Escape", "Return", kIdNo},
               {MessageBoxKind::YesNoDefaultNo, "Escape", "Alt+y", kIdYes},
               {MessageBoxKind::SystemError, "", "Return", kIdOk},
               {MessageBoxKind::Exclamation, "", "Escape", kIdOk}};
  for (const auto& each : cases) {
    const auto ask = [&] { return ShowMessageBox(0, u"Text", u"Box", each.kind); };
    EXPECT_EQ(Beside(ask,
                     [&](X11Desktop& desktop) {
                       WaitActive(desktop, "Box");
                       if (!each.dismissal.empty()) {
                         desktop.PressKey(each.dismissal);
                         desktop.RequestClose("Box");
                         EXPECT_FALSE(desktop.WaitUntilGone("Box", milliseconds(300)));
                       }
                       desktop.PressKey(each.key);
                       EXPECT_TRUE(desktop.WaitUntilGone("Box", seconds(5)));
                     }),
              each.answer);
  }
}

TEST(FileDialogs, SaveAppendsTheExtensionAndAsksBeforeItOverwritesAndEscapeCancels) {
  const support::TemporaryFolder folder;
  const auto path = [&](const char* name) { return (folder.Path() / name).string(); };
  const auto ask = [](FileDialogKind kind) {
    return [kind] {
      const auto chosen = ShowFileDialog(0, kind, u".tus", u"All files (*.*)|*.*||");
      return chosen ? ToUtf8(*chosen) : "cancelled";
    };
  };
  std::ofstream(path("old.tus")) << "x";
  for (const auto& [typed, expected] :
       {std::pair("plain", "plain.tus"), std::pair("named.dat", "named.dat"),
        std::pair("old", "old.tus")}) {
    const auto answer =
        Beside(ask(FileDialogKind::Save), [&, name = std::string(typed)](X11Desktop& desktop) {
          WaitActive(desktop, "Save As");
          desktop.Type(path(name.c_str()));
          desktop.PressKey("Return");
          if (name != "old") return;
          // The question stands above the dialog under the same title.
          EXPECT_TRUE(Eventually([&] {
            const auto titles = desktop.StackedTitles();
            return std::count(titles.begin(), titles.end(), "Save As") == 2;
          }));
          EXPECT_TRUE(Eventually([&] {
            desktop.PressKey("Alt+y");
            return desktop.StackedTitles().empty();
          }));
        });
    EXPECT_EQ(answer, path(expected));
  }
  EXPECT_EQ(Beside(ask(FileDialogKind::Open),
                   [](X11Desktop& desktop) {
                     WaitActive(desktop, "Open");
                     desktop.PressKey("Escape");
                   }),
            "cancelled");
}

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
