// Boxes, file dialogs and the browser, operated by keyboard.
#include "platform/shell.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

#include "platform/text.h"
#include "tests/platform/window_fixture.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::Eventually;
using support::X11Desktop;

// Runs `hands` beside what blocks this thread.
class Hands {
 public:
  explicit Hands(const std::function<void(X11Desktop&)>& hands)
      : thread_([hands] {
          X11Desktop desktop;
          hands(desktop);
        }) {}
  ~Hands() { thread_.join(); }
  Hands(const Hands&) = delete;
  Hands& operator=(const Hands&) = delete;

 private:
  std::thread thread_;
};

void WaitActive(X11Desktop& desktop, const std::string& title) {
  ASSERT_TRUE(desktop.WaitForWindow(title, seconds(5)));
  ASSERT_TRUE(Eventually([&] { return desktop.ActiveTitle() == title; }));
}

TEST(MessageBoxes, KeysAnswerAndAQuestionCannotBeDismissed) {
  struct Case {
    MessageBoxKind kind;
    std::string dismissal;
    std::string key;
    std::int32_t answer;
  };
  for (const Case& each : {Case{MessageBoxKind::YesNoDefaultNo, "Escape", "Alt+n", kIdNo},
                           Case{MessageBoxKind::SystemError, "", "Return", kIdOk},
                           Case{MessageBoxKind::Exclamation, "", "Escape", kIdOk}}) {
    const Hands hands([&](X11Desktop& desktop) {
      WaitActive(desktop, "Box");
      if (!each.dismissal.empty()) {
        desktop.PressKey(each.dismissal);
        desktop.RequestClose("Box");
        EXPECT_FALSE(desktop.WaitUntilGone("Box", milliseconds(300)));
      }
      desktop.PressKey(each.key);
      EXPECT_TRUE(desktop.WaitUntilGone("Box", seconds(5)));
    });
    EXPECT_EQ(ShowMessageBox(0, u"Text", u"Box", each.kind), each.answer);
  }
}

TEST(MessageBoxes, BoxBelongsToItsOwner) {
  constexpr std::uint32_t kAsk = message::kUser + 60;
  NotingDialog owner(kSkinnedTest);
  owner.onMessage[kAsk] = [&] {
    EXPECT_EQ(ActiveWindow(), owner.Handle());
    ShowMessageBox(owner.Handle(), u"Text", u"Owned box", MessageBoxKind::Exclamation);
  };
  RunWithHands(owner, [&](X11Desktop& desktop) {
    WaitActive(desktop, "Test dialog");
    ASSERT_TRUE(owner.log.WaitFor("first: paint"));
    PostToWindow(owner.Handle(), kAsk, 0, 0);
    WaitActive(desktop, "Owned box");
    owner.log.Take();
    const Point blocked = owner.first.ClientToScreen({3, 3});
    desktop.Click(blocked.x, blocked.y);
    // The window manager holds the click back for a moment; keys would overtake it.
    std::this_thread::sleep_for(milliseconds(150));
    WaitActive(desktop, "Owned box");
    desktop.PressKey("Return");
    EXPECT_TRUE(desktop.WaitUntilGone("Owned box", seconds(5)));
  });
  EXPECT_EQ(owner.log.Count("first: down 3,3"), 0);
}

class FileDialogs : public testing::Test {
 protected:
  static constexpr std::u16string_view kFilter =
      u"User settings (*.tus)|*.tus|All files (*.*)|*.*||";

  std::string Path(const std::string& name) const { return (folder_.Path() / name).string(); }
  void Put(const std::string& name) const { std::ofstream(Path(name)) << "x"; }

  // Types a whole path into the dialog and confirms it.
  static void Enter(X11Desktop& desktop, const std::string& title, const std::string& path) {
    WaitActive(desktop, title);
    desktop.Type(path);
    desktop.PressKey("Return");
  }

  support::TemporaryFolder folder_;
};

std::optional<std::string> Ask(FileDialogKind kind, std::u16string_view filter) {
  const auto chosen = ShowFileDialog(0, kind, u".tus", filter);
  return chosen ? std::optional(ToUtf8(*chosen)) : std::nullopt;
}

TEST_F(FileDialogs, SaveAppendsTheExtensionWhateverTheFilterWhenNoneWasTyped) {
  for (const auto& [typed, expected] :
       {std::pair("plain", "plain.tus"), std::pair("named.dat", "named.dat")}) {
    const Hands hands([&, name = std::string(typed)](X11Desktop& desktop) {
      Enter(desktop, "Save As", Path(name));
    });
    EXPECT_EQ(Ask(FileDialogKind::Save, u"All files (*.*)|*.*||"), Path(expected));
  }
}

TEST_F(FileDialogs, OpenAppendsTheExtensionUnlessTheBareNameExists) {
  for (const char* name : {"old.tus", "bare", "bare.tus"}) Put(name);
  for (const auto& [typed, expected] :
       {std::pair("old", "old.tus"), {"bare", "bare"}, {"old.tus", "old.tus"}}) {
    const Hands hands([&, name = std::string(typed)](X11Desktop& desktop) {
      Enter(desktop, "Open", Path(name));
    });
    EXPECT_EQ(Ask(FileDialogKind::Open, u"All files (*.*)|*.*||"), Path(expected));
  }
}

TEST_F(FileDialogs, SaveAsksBeforeItOverwritesTheFinalName) {
  Put("old.tus");
  const Hands hands([&](X11Desktop& desktop) {
    Enter(desktop, "Save As", Path("old"));
    // The question stands above the dialog under the same title.
    EXPECT_TRUE(Eventually([&] {
      const std::vector<std::string> titles = desktop.StackedTitles();
      return std::count(titles.begin(), titles.end(), "Save As") == 2;
    }));
    EXPECT_TRUE(Eventually([&] {
      desktop.PressKey("Alt+y");
      return desktop.StackedTitles().empty();
    }));
  });
  EXPECT_EQ(Ask(FileDialogKind::Save, kFilter), Path("old.tus"));
}

TEST_F(FileDialogs, EscapeCancels) {
  const Hands hands([](X11Desktop& desktop) {
    WaitActive(desktop, "Open");
    desktop.PressKey("Escape");
  });
  EXPECT_EQ(Ask(FileDialogKind::Open, kFilter), std::nullopt);
}

TEST(Browser, OpensThroughTheDesktopAndStaysSilent) {
  const support::TemporaryFolder folder;
  const std::filesystem::path opened = folder.Path() / "opened";
  const std::filesystem::path opener = folder.Path() / "xdg-open";
  std::ofstream(opener) << "#!/bin/sh\necho \"$1\" > '" << opened.string() << "'\n";
  std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
  const char* current = std::getenv("PATH");
  const std::string path = current != nullptr ? current : "/usr/bin";
  setenv("PATH", (folder.Path().string() + ":" + path).c_str(), 1);
  OpenInBrowser(u"https://www.example/");
  const auto read = [&] {
    std::stringstream text;
    text << std::ifstream(opened).rdbuf();
    return text.str();
  };
  EXPECT_TRUE(Eventually([&] { return read() == "https://www.example/\n"; }));
  setenv("PATH", folder.Path().c_str(), 1);
  std::filesystem::remove(opener);
  OpenInBrowser(u"https://www.example/");
  setenv("PATH", path.c_str(), 1);
}

}  // namespace
}  // namespace platform
