#include "endpoints/registry_watcher.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "platform/fake/failing_registry.h"
#include "platform/fake/fake_audio_devices.h"
#include "platform/fake/fake_registry.h"
#include "tests/endpoints/apartment.h"
#include "tests/support/eventually.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"

namespace endpoints {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using store::OutputPath;
using support::kHeadphones;
using support::kSpeaker;
using support::kSubwoofer;
using enum store::OutputPath;

const std::u16string kUsbJack = u"{DFF21CE3-F70F-11D0-B917-00A0C9223196}";
const std::u16string kGuid = u"{11111111-1111-1111-1111-111111111111}";
const std::u16string kUsbGuid = u"{22222222-2222-2222-2222-222222222222}";

// Audio devices that tell how often they were asked and that can make whoever asks wait.
class WatchedDevices : public platform::AudioDevices {
 public:
  explicit WatchedDevices(platform::AudioDevices& inner) : inner_(inner) {}

  std::unique_ptr<platform::AudioDeviceEnumerator> CreateEnumerator() override {
    EXPECT_EQ(joinedApartments, 1);
    ++asked;
    isHeld.wait(true);
    return inner_.CreateEnumerator();
  }

  // False when that does not happen within some seconds.
  bool WaitUntilAsked(int times) const {
    return support::Eventually([&] { return asked >= times; });
  }
  void LetGo() {
    isHeld = false;
    isHeld.notify_all();
  }

  std::atomic<int> asked = 0;
  std::atomic<bool> isHeld = false;

 private:
  platform::AudioDevices& inner_;
};

// Stands for the window's message queue.
class Posts {
 public:
  void Add(OutputPath path) {
    const std::lock_guard lock(mutex_);
    posts_.push_back(path);
  }
  std::vector<OutputPath> All() {
    const std::lock_guard lock(mutex_);
    return posts_;
  }

 private:
  std::mutex mutex_;
  std::vector<OutputPath> posts_;
};

// A laptop whose driver reports the internal speaker, and its watcher.
class RegistryWatcherTest : public testing::Test {
 protected:
  RegistryWatcherTest() {
    fakeDevices_.Add({.id = u"speaker", .guid = kGuid, .jackSubType = kSpeaker});
    fakeDevices_.Add({.id = u"usb", .guid = kUsbGuid, .jackSubType = kUsbJack});
    fakeDevices_.SetDefault(u"speaker");
    SetHint(1);
    SetJack(u"6", 1);
    SetActive(kSpeaker, u"2");
    SetActive(kHeadphones, u"1");
  }

  void SetHint(std::uint32_t value) {
    support::PutDword(registry_, support::kProduct, u"HardwareOutputPath", value);
  }

  void SetJack(const std::u16string& number, std::uint32_t value,
               const std::u16string& guid = kGuid) {
    support::PutDword(registry_, support::JackKey(guid), support::kJackPrefix + number, value);
  }

  void SetActive(const std::u16string& route, const std::u16string& setting) {
    support::PutText(registry_, support::Settings(route), u"ActiveSetting", setting);
  }

  SettingChangedPoster Poster() {
    return [this](OutputPath path) { posts_.Add(path); };
  }

  // Returns when the thread is in its first look, from where on it misses no change.
  void Start(const std::u16string& guid = kGuid) {
    watcher_.Start({guid, InternalSpeaker, 1}, Poster());
    LookAgain();
  }

  void LookAgain() {
    ASSERT_TRUE(devices_.WaitUntilAsked(1));
    const int asked = devices_.asked;
    watcher_.Wake();
    ASSERT_TRUE(devices_.WaitUntilAsked(asked + 1));
  }

  // How often the thread has looked, once it has not for a while.
  int WaitUntilQuiet() {
    int asked = 0;
    do {
      asked = devices_.asked;
      std::this_thread::sleep_for(milliseconds(100));
    } while (devices_.asked != asked);
    return asked;
  }

  void ExpectPosts(const std::vector<OutputPath>& expected) {
    support::Eventually([&] { return posts_.All().size() >= expected.size(); });
    EXPECT_EQ(posts_.All(), expected);
  }

  platform::FakeRegistry registry_;
  platform::FakeAudioDevices fakeDevices_;
  WatchedDevices devices_{fakeDevices_};
  Posts posts_;
  RegistryWatcher watcher_{registry_, devices_, nullptr};
};

TEST_F(RegistryWatcherTest, PostsForASettingOfTheCurrentRouteOnly) {
  Start();
  SetActive(kSpeaker, u"5");
  ExpectPosts({InternalSpeaker});
  const int asked = WaitUntilQuiet();
  SetActive(kHeadphones, u"4");
  support::PutFloat(registry_, support::Settings(kSpeaker) + u"\\5", u"Param1", 1.0F);
  EXPECT_EQ(WaitUntilQuiet(), asked) << "other keys do not wake the thread";

  SetJack(u"4", 1);
  ExpectPosts({InternalSpeaker, Headphone});
  SetActive(kHeadphones, u"1");
  ExpectPosts({InternalSpeaker, Headphone, Headphone});
}

TEST_F(RegistryWatcherTest, ReportsAtItsFirstWakeWhatTheWindowMissed) {
  RegistryWatcher other(registry_, devices_, nullptr);
  watcher_.Start({kGuid, InternalSpeaker, 4}, Poster());
  watcher_.Wake();
  ExpectPosts({InternalSpeaker});
  other.Start({kGuid, Headphone, 1}, Poster());
  other.Wake();
  ExpectPosts({InternalSpeaker, InternalSpeaker});
  EXPECT_EQ(UM_SETTING_CHANGED, 0x403U);
}

TEST_F(RegistryWatcherTest, KeepsFortyNineUnitsOfAnEndpointsName) {
  const std::u16string guid(60, u'g');
  fakeDevices_.Add({.id = u"long", .guid = guid, .jackSubType = kSpeaker});
  fakeDevices_.SetDefault(u"long");
  SetJack(u"6", 1, guid.substr(0, 49));
  Start(guid);
  SetJack(u"4", 1, guid.substr(0, 49));
  ExpectPosts({Headphone});
}

TEST_F(RegistryWatcherTest, KeepsTheIndexWhileARouteHasNoSettings) {
  Start();
  SetJack(u"20", 1);  // no "Settings" key for the subwoofer yet
  ExpectPosts({SpeakerWithSubwoofer});
  SetActive(kSubwoofer, u"1");
  watcher_.Wake();
  ExpectPosts({SpeakerWithSubwoofer, SpeakerWithSubwoofer});
  SetActive(kSubwoofer, u"3");
  ExpectPosts({SpeakerWithSubwoofer, SpeakerWithSubwoofer, SpeakerWithSubwoofer});
}

TEST_F(RegistryWatcherTest, SstDriverAndHintWakeTooWhereThereIsNoJackState) {
  static_cast<void>(
      registry_.RemoveTree(platform::RegistryRoot::LocalMachine, support::JackKey(kGuid)));
  const std::u16string device = support::kMediaClass + u"\\0000";
  support::PutText(registry_, device, u"Driver", u"isstrtc.sys");
  support::PutDword(registry_, device + u"\\HeadsetStatus", u"HeadsetStatus", 2);
  Start();
  SetHint(0);
  ExpectPosts({LineOut});
  support::PutDword(registry_, device + u"\\HeadsetStatus", u"HeadsetStatus", 1);
  ExpectPosts({LineOut, Headphone});
}

// A window that reads on each post would hide the gap most of the time.
TEST_F(RegistryWatcherTest, MissesNoSettingThatIsWrittenJustBeforeItWatches) {
  platform::FailingRegistry registry(registry_);
  int looks = 0;
  registry.SetFault(
      [&](platform::RegistryStep step, std::u16string_view path, std::u16string_view) {
        const bool settings =
            step == platform::RegistryStep::Watch && path == support::Settings(kSpeaker);
        if (settings && ++looks == 2) SetActive(kSpeaker, u"5");
        if (step == platform::RegistryStep::Open && path == support::Settings(kSpeaker)) {
          EXPECT_EQ(registry.OpenKeys(), 2) << "the one before is closed first";
        }
        return false;
      });
  RegistryWatcher watcher(registry, devices_, nullptr);
  watcher.Start({kGuid, InternalSpeaker, 1}, Poster());
  watcher.Wake();
  ExpectPosts({InternalSpeaker});
  EXPECT_TRUE(watcher.Stop());
}

TEST_F(RegistryWatcherTest, GoesOverToANewDefaultEndpoint) {
  SetActive(kUsbJack, u"6");
  Start();
  fakeDevices_.SetDefault(u"usb");
  watcher_.Wake();
  ExpectPosts({InternalSpeaker});
  // From the second look on the route is the new endpoint's, for which the hint alone speaks.
  SetHint(2);
  ExpectPosts({InternalSpeaker, Headphone});
}

TEST_F(RegistryWatcherTest, StopsAtOnceAndStartsOnce) {
  EXPECT_TRUE(watcher_.Stop()) << "never started";
  Start();
  watcher_.Start({kGuid, LineOut, 5}, [](OutputPath) { FAIL(); });
  const auto begin = steady_clock::now();
  EXPECT_TRUE(watcher_.Stop());
  EXPECT_LT(steady_clock::now() - begin, RegistryWatcher::kStopTimeout);
  SetJack(u"4", 1);
  EXPECT_TRUE(watcher_.Stop());
  ExpectPosts({});
}

TEST_F(RegistryWatcherTest, AHangingThreadIsLeftToItselfWithAllItUses) {
  auto token = std::make_shared<int>(0);
  auto owner = std::make_shared<int>(0);
  const std::weak_ptr<int> held = token;
  const std::weak_ptr<int> owned = owner;
  {
    RegistryWatcher watcher(registry_, devices_, std::move(owner));
    watcher.Start({kGuid, InternalSpeaker, 1},
                  [token = std::move(token), this](OutputPath path) { posts_.Add(path); });
    ASSERT_TRUE(devices_.WaitUntilAsked(1));
    devices_.isHeld = true;
    SetJack(u"4", 1);
    watcher.Wake();
    ASSERT_TRUE(devices_.WaitUntilAsked(2));
    const auto begin = steady_clock::now();
    EXPECT_FALSE(watcher.Stop());
    const auto waited = steady_clock::now() - begin;
    EXPECT_GE(waited, milliseconds(490));
    EXPECT_LT(waited, milliseconds(1500));
  }
  EXPECT_FALSE(held.expired() || owned.expired());
  devices_.LetGo();
  ExpectPosts({Headphone});
  EXPECT_TRUE(support::Eventually([&] { return held.expired() && owned.expired(); }))
      << "the thread has ended and let go of everything";
}

}  // namespace
}  // namespace endpoints
