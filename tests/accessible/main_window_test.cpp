// The main window, which has no controls but draws them, as a screen reader sees it.
#include <gmock/gmock.h>

#include <QApplication>
#include <QMenu>
#include <memory>
#include <string>
#include <vector>

#include "endpoints/notification_client.h"
#include "resources/templates.h"
#include "tests/accessible/accessible_tree.h"
#include "tests/main/mode_fixture.h"
#include "tests/support/scripted_window.h"
#include "ui/main/orvan_dlg.h"

namespace ui {
namespace {

using support::AccessibleTree;
using support::kScriptEnded;
using support::Listener;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using ScriptedMainWindow = support::Scripted<COrvanDlg>;
using ScriptedDialog = support::Scripted<platform::Dialog>;

constexpr const char* kWarning = "Warning: This tool can only be used with supported endpoints.";

class AccessibleMainWindow : public ModeFixture {
 protected:
  void SetUp() override {
    ModeFixture::SetUp();
    WriteSetting(kSpeakerKey, u"1");
  }
};

TEST_F(AccessibleMainWindow, TellsWhatEachSkinDraws) {
  const std::string warning = std::string("alert \"") + kWarning + "\" [hidden]";
  struct Case {
    store::ModelFlags model;
    std::vector<std::string> lines;
  };
  const Case cases[] = {
      {{},
       {"radio button \"OFF\" [checked]", "radio button \"Music Mode\" [unchecked]",
        "radio button \"Movie Mode\" [unchecked]", "radio button \"Recording Mode\" [unchecked]",
        "radio button \"Gaming Mode\" [unchecked]", "radio button \"Speech Mode\" [unchecked]",
        "link \"Norvane web site\"", "button \"Done\"", "button \"Minimize\"", "button \"Close\"",
        warning}},
      {{.threeGuiLayers = true, .davrinModel = true},
       {"radio button \"War Room\" [checked]", "radio button \"Battlefield\" [unchecked]",
        "radio button \"Multimedia\" [unchecked]", "radio button \"Action\" [unchecked]",
        "radio button \"Soundscape\" [unchecked]", "radio button \"Off\" [unchecked]",
        "button \"Advanced\"", "link \"Norvane web site\"", "button \"Minimize\"",
        "button \"Close\"", warning}},
  };
  for (const Case& c : cases) {
    ScriptedMainWindow window(machine_.platform, c.model, nullptr);
    window.ThenDo([&] {
      const AccessibleTree tree(window);
      EXPECT_EQ(support::LineOf(tree.Root()), "dialog \"Tonalyx\"");
      EXPECT_THAT(tree.Lines(), ElementsAreArray(c.lines));
    });
    EXPECT_EQ(window.DoModal(), kScriptEnded);
  }
}

TEST_F(AccessibleMainWindow, PartsLieWhereAClickReachesThem) {
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{.threeGuiLayers = true}, nullptr);
  window.ThenDo([&] {
    const AccessibleTree tree(window);
    for (int i = 0; i < tree.Root().childCount(); ++i) {
      QAccessibleInterface& part = *tree.Root().child(i);
      EXPECT_EQ(part.parent(), &tree.Root());
      EXPECT_EQ(tree.Root().indexOfChild(&part), i);
      EXPECT_EQ(part.window(), tree.Root().window());
      if (part.state().invisible) continue;
      const QPoint middle = part.rect().center();
      EXPECT_EQ(tree.Root().childAt(middle.x(), middle.y()), &part) << support::LineOf(part);
    }
    const QRect movie = tree.Find("Movie Mode").rect();
    window.Send(platform::message::kLeftButtonDown, 0,
                platform::PointToLParam({movie.center().x() - window.WindowRect().left,
                                         movie.center().y() - window.WindowRect().top}));
    EXPECT_EQ(tree.Line("Movie Mode"), "radio button \"Movie Mode\" [checked]");
    // Where two rows overlap the lower one is meant.
    const QRect lower = tree.Find("Recording Mode").rect();
    EXPECT_EQ(tree.Root().childAt(lower.left() + 2, lower.top()), &tree.Find("Recording Mode"));
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
}

TEST_F(AccessibleMainWindow, APressedModeIsAClickedMode) {
  Listener listener;
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{}, nullptr);
  window.ThenDo([&] {
    listener.Take();
    AccessibleTree(window).Press("Movie Mode");
  });
  window.Then([&] { return ReadSetting(kSpeakerKey) == u"3"; });
  window.ThenDo([&] {
    EXPECT_EQ(ReadSetting(kSubwooferKey), u"3");
    EXPECT_EQ(machine_.events.Sets(), ModeChangeEvents());
    EXPECT_THAT(listener.Take(), ElementsAre("check: radio button \"OFF\" [unchecked]",
                                             "check: radio button \"Movie Mode\" [checked]"));
    machine_.events.ClearCalls();
    AccessibleTree(window).Press("Movie Mode");
    AccessibleTree(window).Press("Speech Mode");
  });
  window.Then([&] { return ReadSetting(kSpeakerKey) == u"6"; });
  window.ThenDo([&] {
    EXPECT_EQ(machine_.events.Sets(), ModeChangeEvents())
        << "a mode that is selected already writes none";
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
}

class AccessibleFirstStart : public ModeFixture {};

TEST_F(AccessibleFirstStart, AModeThatOthersSelectIsTold) {
  Listener listener;
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{}, nullptr);
  // The first start makes the key, which tells that it is watched.
  window.Then([&] { return window.Received(endpoints::UM_SETTING_CHANGED) > 0; });
  window.ThenDo([&] { WriteSetting(kSpeakerKey, u"2"); });
  window.Then([&] { return listener.Heard("check: radio button \"Music Mode\" [checked]"); });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
}

TEST_F(AccessibleMainWindow, PressingDoneOrCloseEndsTheWindow) {
  for (const char* const name : {"Done", "Close"}) {
    ScriptedMainWindow window(machine_.platform, store::ModelFlags{}, nullptr);
    window.ThenDo([&] { AccessibleTree(window).Press(name); });
    window.Then([] { return false; });
    EXPECT_EQ(window.DoModal(), 0);
  }
}

TEST_F(AccessibleMainWindow, PressingAdvancedOpensTheDialogAndHidesEverything) {
  ScriptedMainWindow* main = nullptr;
  const auto factory = [&]() -> std::unique_ptr<platform::Dialog> {
    auto dialog = std::make_unique<ScriptedDialog>(resources::kMainTemplate);
    dialog->ThenDo([&] {
      const AccessibleTree tree(*main);
      EXPECT_EQ(tree.Line("Movie Mode"), "radio button \"Movie Mode\" [unchecked disabled hidden]");
      tree.Press("Movie Mode");
    });
    return dialog;
  };
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{.threeGuiLayers = true}, factory);
  main = &window;
  window.ThenDo([&] { AccessibleTree(window).Press("Advanced"); });
  window.Then([&] { return window.Received(UM_OPEN_ADVANCED) > 0 && window.IsVisible(); });
  window.ThenDo([&] {
    EXPECT_EQ(ReadSetting(kSpeakerKey), u"1") << "a click could not have reached it either";
    EXPECT_EQ(AccessibleTree(window).Line("Movie Mode"), "radio button \"Movie Mode\" [unchecked]");
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
}

TEST_F(AccessibleMainWindow, TheWarningIsTold) {
  Listener listener;
  for (const bool davrin : {false, true}) {
    ScriptedMainWindow window(machine_.platform, store::ModelFlags{.davrinModel = davrin}, nullptr);
    window.ThenDo([&] {
      machine_.audioDevices.Add({.id = u"unsupported",
                                 .guid = u"{99999999-2222-3333-4444-555555555555}",
                                 .jackSubType = std::u16string(kSpeakerKey),
                                 .adapter = u"Some USB Audio"});
      listener.Take();
      machine_.audioDevices.SetDefault(u"unsupported");
    });
    const std::string line = std::string("alert \"") + kWarning + '"';
    window.Then([&, line] { return listener.Heard("shown: " + line); });
    window.ThenDo([&] {
      const AccessibleTree tree(window);
      const QRect warning = tree.Find(kWarning).rect();
      EXPECT_TRUE(tree.Root().rect().contains(warning));
      EXPECT_GT(warning.width(), 100);
      EXPECT_THAT(tree.Find(kWarning).actionInterface()->actionNames(), IsEmpty());
      machine_.audioDevices.SetDefault(kSpeakerId);
    });
    window.Then([&, line] { return listener.Heard("hidden: " + line + " [hidden]"); });
    EXPECT_EQ(window.DoModal(), kScriptEnded);
  }
}

TEST_F(AccessibleMainWindow, TheSystemMenuOpensByAction) {
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{}, nullptr);
  const auto menu = [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); };
  window.ThenDo([&] {
    auto* actions = AccessibleTree(window).Root().actionInterface();
    ASSERT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::showMenuAction()));
    actions->doAction(QAccessibleActionInterface::showMenuAction());
  });
  window.Then([&] { return menu() != nullptr; });
  window.ThenDo([&] { AccessibleTree(window).Press("Movie Mode"); });
  window.ThenDo([&] {
    EXPECT_EQ(ReadSetting(kSpeakerKey), u"1") << "the menu is in front of the window";
    const AccessibleTree tree(window);
    QAccessibleInterface* entries = tree.Root().child(tree.Root().childCount() - 1);
    EXPECT_EQ(entries->object(), menu());
    EXPECT_EQ(tree.Root().indexOfChild(entries), tree.Root().childCount() - 1);
    AccessibleTree(menu()).Press("Close");
  });
  window.Then([] { return false; });
  EXPECT_NE(window.DoModal(), kScriptEnded);
}

TEST_F(AccessibleMainWindow, NothingIsLeftOfAWindowThatIsGone) {
  Listener listener;
  std::vector<QAccessible::Id> ids;
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{}, nullptr);
  window.ThenDo([&] {
    const AccessibleTree tree(window);
    ids.push_back(QAccessible::uniqueId(&tree.Root()));
    for (int i = 0; i < tree.Root().childCount(); ++i) {
      ids.push_back(QAccessible::uniqueId(tree.Root().child(i)));
    }
    // Too late for both: the window ends before they are due.
    tree.Press("Close");
    tree.Press("Movie Mode");
    tree.Root().actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  });
  window.Then([] { return false; });
  EXPECT_EQ(window.DoModal(), 0);
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(ids.size(), 12U);
  for (const QAccessible::Id id : ids) EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

}  // namespace
}  // namespace ui
