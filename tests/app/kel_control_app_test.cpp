#include "app/kel_control_app.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/sample_models.h"
#include "tests/app/app_fixture.h"

namespace app {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RecordingWindows : public ProductWindows {
 public:
  void ShowUnsupportedModel() override { calls.emplace_back("unsupported"); }
  void RunMainWindow(const ModelInfo& model) override {
    calls.emplace_back(std::string("main") + (model.threeGuiLayers ? " layers" : "") +
                       (model.davrinModel ? " davrin" : ""));
  }

  std::vector<std::string> calls;
};

class KelControlAppTest : public AppFixture {
 protected:
  void UseLaptop(std::uint32_t ssid) {
    char digits[9];
    std::snprintf(digits, sizeof(digits), "%08X", ssid);
    platform::DeviceRecord codec;
    codec.hardwareIds = {u"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_" +
                         std::u16string(digits, digits + 8) + u"&REV_1000"};
    machine_.deviceSetup.SetDevices({codec});
  }

  // The machine as somebody finds it for whom this is the lock.
  platform::Platform PlatformWith(platform::FakeSingleInstance& lock) {
    return {machine_.registry,    machine_.events,       machine_.files,
            machine_.deviceSetup, machine_.audioDevices, lock,
            machine_.clock};
  }

  std::int32_t Run(const std::vector<std::u16string>& arguments) {
    CKelControlApp application(machine_.platform, windows_, arguments);
    loopWanted_ = application.InitInstance();
    return application.ExitInstance();
  }

  bool StoreExists() {
    return machine_.registry.OpenKey(platform::RegistryRoot::LocalMachine, u"SOFTWARE\\Norvane",
                                     platform::kRegistryRead) != nullptr;
  }

  RecordingWindows windows_;
  bool loopWanted_ = false;
};

TEST_F(KelControlAppTest, ShowsTheMainWindowWithTheModelsFlags) {
  struct Case {
    std::uint32_t ssid;
    const char* call;
  };
  for (const Case& test :
       {Case{resources::kStandardSample, "main"}, Case{resources::kLayersSample, "main layers"},
        Case{resources::kDavrinSample, "main layers davrin"}}) {
    platform::FakeSingleInstance lock;
    platform::Platform platform = PlatformWith(lock);
    UseLaptop(test.ssid);
    RecordingWindows windows;
    CKelControlApp application(platform, windows, {});
    EXPECT_FALSE(application.InitInstance());
    EXPECT_EQ(application.ExitInstance(), 0);
    EXPECT_THAT(windows.calls, ElementsAre(test.call));
  }
}

TEST_F(KelControlAppTest, InstallsExactlyForTheOneArgument) {
  struct Case {
    std::vector<std::u16string> arguments;
    bool install;
  };
  const Case cases[] = {
      {{u"/init"}, true},   {{u"/INIT"}, true},        {{u"/Init"}, true},
      {{u"/init "}, false}, {{u"/init", u"x"}, false}, {{u"", u"/init"}, false},
      {{u"-init"}, false},  {{u"/init\u0130"}, false}, {{}, false},
      {{u""}, false},
  };
  for (const Case& test : cases) {
    platform::FakeSingleInstance lock;
    platform::Platform platform = PlatformWith(lock);
    UseLaptop(resources::kStandardSample);
    RecordingWindows windows;
    CKelControlApp application(platform, windows, test.arguments);
    EXPECT_FALSE(application.InitInstance());
    EXPECT_EQ(application.ExitInstance(), 0);
    EXPECT_EQ(windows.calls.empty(), test.install) << testing::PrintToString(test.arguments);
  }
}

TEST_F(KelControlAppTest, RefusesAnUnsupportedModel) {
  UseLaptop(resources::kUnsupportedSample);
  EXPECT_EQ(Run({}), 1);
  EXPECT_TRUE(loopWanted_);
  EXPECT_THAT(windows_.calls, ElementsAre("unsupported"));
  EXPECT_THAT(Log(), HasSubstr(" was not supported by Tonalyx\r\n\r\n"));
}

TEST_F(KelControlAppTest, LeavesNothingBehindWhenAnUnsupportedModelIsInstalled) {
  EXPECT_EQ(Run({u"/init"}), 1603);
  EXPECT_TRUE(loopWanted_);
  EXPECT_THAT(windows_.calls, IsEmpty());
  EXPECT_FALSE(StoreExists());
  EXPECT_EQ(Log(), "SSID 0x00000000 was not supported by Tonalyx\r\n\r\n");
}

TEST_F(KelControlAppTest, InstallsWithoutATuningFileAndStillLeavesTheRouteHint) {
  UseLaptop(resources::kStandardSample);
  EXPECT_EQ(Run({u"/init"}), 0);
  const auto key = machine_.registry.OpenKey(
      platform::RegistryRoot::LocalMachine, u"SOFTWARE\\Norvane\\Velsona", platform::kRegistryRead);
  ASSERT_TRUE(key);
  std::uint32_t hint = 0;
  std::uint32_t size = sizeof(hint);
  EXPECT_EQ(key->QueryValue(u"HardwareOutputPath", nullptr, &hint, &size),
            platform::RegistryStatus::Success);
  EXPECT_EQ(hint, 1U);
}

TEST_F(KelControlAppTest, SecondCopyRaisesTheFirstAndDoesNothingElse) {
  UseLaptop(resources::kStandardSample);
  struct Case {
    std::vector<std::u16string> titles;
    std::vector<std::u16string> raised;
  };
  const Case cases[] = {
      {{u"Tonalyx", u"Velsona"}, {u"Velsona"}}, {{u"Tonalyx"}, {u"Tonalyx"}}, {{}, {}}};
  for (const Case& test : cases) {
    platform::FakeSingleInstance lock;
    lock.SetRunningCopy(test.titles);
    platform::Platform platform = PlatformWith(lock);
    for (const std::vector<std::u16string>& arguments :
         {std::vector<std::u16string>{}, std::vector<std::u16string>{u"/init"}}) {
      CKelControlApp application(platform, windows_, arguments);
      EXPECT_FALSE(application.InitInstance());
      EXPECT_EQ(application.ExitInstance(), 0);
    }
    std::vector<std::u16string> raisedByBoth = test.raised;
    raisedByBoth.insert(raisedByBoth.end(), test.raised.begin(), test.raised.end());
    EXPECT_EQ(lock.Raised(), raisedByBoth);
    EXPECT_THAT(lock.Acquired(), ElementsAre(u"Velsona", u"Velsona"));
  }
  EXPECT_EQ(machine_.deviceSetup.Requests(), 0);
  EXPECT_EQ(Log(), "");
  EXPECT_THAT(windows_.calls, IsEmpty());
  EXPECT_FALSE(StoreExists());
}

}  // namespace
}  // namespace app
