// Boxes and file dialogs, operated by keyboard.
#include "platform/shell.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/text.h"
#include "tests/support/lacks.h"
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

class MessageBoxes : public support::SkipsWhatLacks {
 protected:
  static void ExpectAnswer(MessageBoxKind kind, const std::string& key, std::int32_t answer,
                           const std::function<void(X11Desktop&)>& before = {}) {
    EXPECT_EQ(Beside([&] { return ShowMessageBox(0, u"Text", u"Box", kind); },
                     [&](X11Desktop& desktop) {
                       WaitActive(desktop, "Box");
                       if (before) before(desktop);
                       desktop.PressKey(key);
                       EXPECT_TRUE(desktop.WaitUntilGone("Box", seconds(5)));
                     }),
              answer);
  }
};

TEST_F(MessageBoxes, KeysAnswer) {
  ExpectAnswer(MessageBoxKind::YesNoDefaultNo, "Return", kIdNo);
  ExpectAnswer(MessageBoxKind::YesNoDefaultNo, "Alt+y", kIdYes);
  ExpectAnswer(MessageBoxKind::SystemError, "Return", kIdOk);
  ExpectAnswer(MessageBoxKind::Exclamation, "Escape", kIdOk);
}

TEST_F(MessageBoxes, AQuestionCannotBeDismissed) {
  ExpectAnswer(MessageBoxKind::YesNoDefaultNo, "Alt+y", kIdYes, [](X11Desktop& desktop) {
    desktop.PressKey("Escape");
    desktop.RequestClose("Box");
    EXPECT_FALSE(desktop.WaitUntilGone("Box", milliseconds(300)));
  });
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
          EXPECT_TRUE(Eventually([&] { return desktop.StackedTitles().size() == 2; }))
              << "the question stands above the dialog";
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

}  // namespace
}  // namespace platform
