#include "app/kel_control_app.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "resources/sample_models.h"
#include "tests/support/fake_machine.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"

namespace {

// What start-up did, in its order; this program's own platform notes its steps.
std::vector<std::string> steps;
std::function<std::string()> state;

void Note(const std::string& step) {
  steps.push_back(step + (state ? state() : ""));
}

}  // namespace

namespace platform {

void RegisterCommonControls(std::uint32_t classes) {
  Note("controls " + std::to_string(classes));
}
void RegisterForRestart() {
  Note("restart");
}
DrawingSession::DrawingSession() : token_(1) {
  Note("drawing");
}
DrawingSession::~DrawingSession() {
  Note(token_ == 1 ? "end" : "");
}

}  // namespace platform

namespace app {
namespace {

using testing::ElementsAre;

class NotedWindows : public ProductWindows {
 public:
  void ShowUnsupportedModel() override { Note("unsupported"); }
  void RunMainWindow(const ModelInfo& model) override {
    Note(std::string("main") + (model.threeGuiLayers ? " layers" : "") +
         (model.davrinModel ? " davrin" : ""));
  }
};

class KelControlAppTest : public testing::Test {
 protected:
  KelControlAppTest() {
    steps.clear();
    UseLaptop(resources::kStandardSample);
  }
  ~KelControlAppTest() override { state = nullptr; }

  void UseLaptop(std::uint32_t ssid) {
    char digits[9];
    std::snprintf(digits, sizeof(digits), "%08X", ssid);
    platform::DeviceRecord codec;
    codec.hardwareIds = {u"HDAUDIO\\FUNC_01&VEN_10EC&SUBSYS_" + std::u16string(digits, digits + 8)};
    machine_.deviceSetup.SetDevices({codec});
  }

  // The exit code of a start, with "+" when the framework's loop was wanted; the steps between
  // those that every start begins and ends with.
  std::string Start(const std::vector<std::u16string>& arguments = {},
                    platform::FakeSingleInstance lock = {}) {
    steps.clear();
    platform::Platform platform{machine_.registry,    machine_.events,       machine_.files,
                                machine_.deviceSetup, machine_.audioDevices, lock,
                                machine_.clock};
    CKelControlApp application(platform, windows_, arguments);
    const bool loop = application.InitInstance();
    const std::int32_t code = application.ExitInstance();
    raised_ = lock.Raised();
    EXPECT_THAT(lock.Acquired(), ElementsAre(u"Velsona"));
    return std::to_string(code) + (loop ? "+" : "");
  }

  std::string Log() const { return machine_.files.Contents(u"/state/Velsona.txt").value_or(""); }

  support::Tree Store() { return support::ReadTree(machine_.registry, u"SOFTWARE"); }

  support::FakeMachine machine_;
  NotedWindows windows_;
  std::vector<std::u16string> raised_;
};

TEST_F(KelControlAppTest, StartsInItsOrder) {
  state = [this] {
    return ": " + std::to_string(machine_.singleInstance.Acquired().size()) +
           std::to_string(machine_.deviceSetup.Requests()) + (Log().empty() ? "" : " logged");
  };
  CKelControlApp application(machine_.platform, windows_, {});
  EXPECT_FALSE(application.InitInstance());
  EXPECT_EQ(application.ExitInstance(), 0);
  EXPECT_THAT(steps, ElementsAre("controls 255: 00", "drawing: 10", "restart: 10",
                                 "main: 11 logged", "end: 11 logged"));
}

TEST_F(KelControlAppTest, ShowsTheMainWindowWithTheModelsFlags) {
  for (const auto& [ssid, call] : {std::pair(resources::kStandardSample, "main"),
                                   std::pair(resources::kLayersSample, "main layers"),
                                   std::pair(resources::kDavrinSample, "main layers davrin")}) {
    UseLaptop(ssid);
    EXPECT_EQ(Start(), "0");
    EXPECT_EQ(steps.at(3), call);
    char line[100];
    std::snprintf(line, sizeof(line), "SSID 0x%08X was supported by Tonalyx\r\n\r\n", ssid);
    EXPECT_TRUE(Log().ends_with(line)) << Log();
  }
}

TEST_F(KelControlAppTest, InstallsExactlyForTheOneArgument) {
  const std::pair<std::vector<std::u16string>, bool> cases[] = {
      {{u"/init"}, true},   {{u"/INIT"}, true},        {{u"/Init"}, true},
      {{u"/init "}, false}, {{u"/init", u"x"}, false}, {{u"", u"/init"}, false},
      {{u"-init"}, false},  {{u"/init\u0130"}, false}, {{u""}, false},
  };
  for (const auto& [arguments, install] : cases) {
    EXPECT_EQ(Start(arguments), "0");
    EXPECT_EQ(steps.size(), install ? 4U : 5U) << testing::PrintToString(arguments);
    static_cast<void>(
        machine_.registry.RemoveTree(platform::RegistryRoot::LocalMachine, u"SOFTWARE"));
  }
}

TEST_F(KelControlAppTest, InstallImportsTheTuningOfItsModel) {
  // Formats and rules of the file have tests of their own; this one has no routes.
  const std::string ssid = support::Bytes(&resources::kDavrinSample, 4);
  UseLaptop(resources::kDavrinSample);
  machine_.files.PutFile(u"/program/a.vtd",
                         "Kel" + std::string("\0\1", 2) + ssid + std::string(4, '\0'));
  EXPECT_EQ(Start({u"/init"}), "0");
  EXPECT_NE(Log().find("GUI layers: 3\r\nDavrin model: Yes\r\n"), std::string::npos);
  EXPECT_EQ(support::GetValue(machine_.registry, support::kProduct, u"HardwareOutputPath")->bytes,
            std::string("\1\0\0\0", 4));
}

TEST_F(KelControlAppTest, RefusesAnUnsupportedModelAndLeavesNothingBehind) {
  UseLaptop(resources::kUnsupportedSample);
  EXPECT_EQ(Start(), "1+");
  EXPECT_EQ(steps.at(3), "unsupported");
  EXPECT_TRUE(Log().ends_with(" was not supported by Tonalyx\r\n\r\n"));
  static_cast<void>(machine_.files.Remove(u"/state/Velsona.txt"));
  machine_.deviceSetup.SetDevices({});
  EXPECT_EQ(Start({u"/init"}), "1603+");
  EXPECT_EQ(steps.size(), 4U) << "no window";
  EXPECT_EQ(Log(), "SSID 0x00000000 was not supported by Tonalyx\r\n\r\n");
  EXPECT_TRUE(Store().empty());
}

TEST_F(KelControlAppTest, SecondCopyRaisesTheFirstAndDoesNothingElse) {
  using Titles = std::vector<std::u16string>;
  for (const auto& [titles, raised] :
       {std::pair(Titles{u"Tonalyx", u"Velsona"}, Titles{u"Velsona"}),
        std::pair(Titles{u"Tonalyx"}, Titles{u"Tonalyx"}), std::pair(Titles{}, Titles{})}) {
    platform::FakeSingleInstance lock;
    lock.SetRunningCopy(titles);
    for (const Titles& arguments : {Titles{}, Titles{u"/init"}}) {
      EXPECT_EQ(Start(arguments, lock), "0");
      EXPECT_EQ(raised_, raised);
      EXPECT_THAT(steps, ElementsAre("controls 255"));
    }
  }
  EXPECT_EQ(machine_.deviceSetup.Requests(), 0);
  EXPECT_EQ(Log(), "");
  EXPECT_TRUE(Store().empty());
}

}  // namespace
}  // namespace app
