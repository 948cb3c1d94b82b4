// The system's device service under its contract's suite, and the object that it calls.
#include "platform/windows/audio/multimedia_devices.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <future>

#include "platform/com_apartment.h"
#include "platform/windows/audio/bounded_calls.h"
#include "platform/windows/audio/notification_client.h"
#include "platform/windows/com_pointer.h"
#include "platform/windows/wide_text.h"
#include "tests/audio/audio_machines.h"
#include "tests/audio/recording_sink.h"

namespace support {
namespace {

using namespace std::chrono_literals;
using platform::EndpointReport;
using Kind = platform::EndpointReportKind;

constexpr const wchar_t* kDrivers = L"Software\\Wine\\Drivers";
constexpr const wchar_t* kSoundServer = L"Software\\Wine\\Drivers\\winepulse.drv";
constexpr std::wstring_view kSpeakerNode = L"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";

void Write(HKEY root, const std::wstring& key, const wchar_t* name, std::wstring_view text) {
  RegSetKeyValueW(root, key.c_str(), name, REG_SZ, text.data(),
                  static_cast<DWORD>(text.size() * sizeof(wchar_t)));
}

// Wine beside a sound server with one sink. It makes two endpoints of it, but no jacks, and the
// default is what its settings say.
class WineMachine : public AudioMachine {
 public:
  WineMachine() {
    const auto endpoints = devices_.CreateEnumerator()->EnumerateEndpoints(
        platform::DataFlow::Render, platform::kDeviceStateActive);
    for (std::uint32_t i = 0; i < endpoints->Count(); ++i) {
      ids_.push_back(endpoints->Item(i)->Id().value_or(u""));
      const std::u16string guid = ids_.back().substr(ids_.back().find(u'.', 10) + 1);
      Write(HKEY_LOCAL_MACHINE,
            L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\MMDevices\\Audio\\Render\\" +
                platform::ToWide(guid) + L"\\Properties",
            L"{1DA5D803-D492-4EDD-8C23-E0C0FFEE7F0E},8", kSpeakerNode);
    }
    devices_.CreateEnumerator()->RegisterCallback(witness_);
    MakeDefault(0);
  }
  ~WineMachine() override {
    devices_.CreateEnumerator()->UnregisterCallback(witness_);
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kSoundServer, L"DefaultOutput");
  }
  WineMachine(const WineMachine&) = delete;
  WineMachine& operator=(const WineMachine&) = delete;

  platform::AudioDevices& Devices() override { return devices_; }
  // Wine misses a change while it is about to wait for one.
  void MakeDefault(int index) override {
    const std::u16string& id = ids_.at(static_cast<std::size_t>(index));
    witness_.Forget();
    do {
      WriteDefault(u"");
      std::this_thread::sleep_for(20ms);
      WriteDefault(id);
    } while (!witness_.WaitFor({Kind::DefaultChanged, id}, 100ms));
  }
  void Remove(int /*index*/) override {}
  bool HasMeters() const override { return false; }

 private:
  static void WriteDefault(const std::u16string& id) {
    Write(HKEY_CURRENT_USER, kSoundServer, L"DefaultOutput", platform::ToWide(id));
  }

  platform::MultimediaDevices devices_;
  RecordingSink witness_;
  std::vector<std::u16string> ids_;
};

TEST(BoundedCallsTest, OneThatHangsCostsOneLimitAndHoldsUpTheOthersUntilItReturns) {
  const platform::BoundedCalls calls(50ms);
  const auto hanging = std::make_shared<std::promise<void>>();
  EXPECT_TRUE(calls.Run([] {}));
  EXPECT_FALSE(calls.Run([hanging] { hanging->get_future().wait(); }));
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 1000; ++i) EXPECT_FALSE(calls.Run([] { ADD_FAILURE(); }));
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
  hanging->set_value();
  while (!calls.Run([] {})) std::this_thread::sleep_for(1ms);
}

TEST(MultimediaDevicesTest, AServiceThatIsNotToBeHadIsAskedAgainEachTime) {
  platform::MultimediaDevices devices;
  Write(HKEY_CURRENT_USER, kDrivers, L"Audio", L"none");
  EXPECT_EQ(devices.CreateEnumerator(), nullptr);
  RegDeleteKeyValueW(HKEY_CURRENT_USER, kDrivers, L"Audio");
  EXPECT_NE(devices.CreateEnumerator(), nullptr);
}

TEST(NotificationClientTest, IsTheInterfaceThatTheServiceAsksForAndGoesWithItsLastReference) {
  platform::EndpointNotifier notifier;
  auto* const client = new platform::NotificationClient(notifier);
  for (const IID& id : {__uuidof(IUnknown), __uuidof(IMMNotificationClient)}) {
    void* object = nullptr;
    EXPECT_EQ(client->QueryInterface(id, &object), S_OK);
    EXPECT_EQ(object, static_cast<IMMNotificationClient*>(client));
  }
  void* object = client;
  EXPECT_EQ(client->QueryInterface(__uuidof(IMMDevice), &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(client->AddRef(), 4U) << "two look-ups and the first reference";
  for (ULONG left : {3, 2, 1, 0}) EXPECT_EQ(client->Release(), left);
}

TEST(NotificationClientTest, HandsOnWhatConcernsTheConsolesRenderingUntilItIsDetached) {
  platform::EndpointNotifier notifier;
  RecordingSink sink;
  notifier.Register(sink);
  const platform::ComPointer client(new platform::NotificationClient(notifier));
  IMMNotificationClient& called = *client.Get();
  const PROPERTYKEY key{__uuidof(IMMDevice), 7};
  EXPECT_EQ(called.OnDeviceStateChanged(L"a", 8), S_OK);
  EXPECT_EQ(called.OnDeviceAdded(L"b"), S_OK);
  EXPECT_EQ(called.OnDeviceRemoved(L"c"), S_OK);
  EXPECT_EQ(called.OnDefaultDeviceChanged(eRender, eConsole, L"d"), S_OK);
  EXPECT_EQ(called.OnDefaultDeviceChanged(eRender, eMultimedia, L"e"), S_OK);
  EXPECT_EQ(called.OnDefaultDeviceChanged(eCapture, eConsole, L"f"), S_OK);
  EXPECT_EQ(called.OnPropertyValueChanged(L"g", key), S_OK);
  EXPECT_EQ(called.OnDefaultDeviceChanged(eRender, eConsole, nullptr), S_OK);
  notifier.WaitUntilDelivered();
  client->Detach();
  EXPECT_EQ(called.OnDeviceAdded(L"h"), S_OK);
  notifier.WaitUntilDelivered();
  EXPECT_THAT(
      sink.Reports(),
      testing::ElementsAre(
          EndpointReport{Kind::StateChanged, u"a", 8}, EndpointReport{Kind::Added, u"b"},
          EndpointReport{Kind::Removed, u"c"}, EndpointReport{Kind::DefaultChanged, u"d"},
          EndpointReport{Kind::PropertyChanged,
                         u"g",
                         0,
                         {*platform::GuidFromString(u"{D666063F-1587-4E43-81F1-B948E807363F}"), 7}},
          EndpointReport{Kind::DefaultChanged, u""}));
  notifier.Unregister(sink);
}

TEST(ComApartmentTest, IsLeftByTheThreadThatJoinedItAndByNoOther) {
  const auto isIn = [] {
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    return SUCCEEDED(CoGetApartmentType(&type, &qualifier)) &&
           qualifier != APTTYPEQUALIFIER_IMPLICIT_MTA;
  };
  EXPECT_FALSE(isIn());
  {
    const platform::ComApartment apartment;
    EXPECT_TRUE(isIn());
  }
  EXPECT_FALSE(isIn());
  // Where the thread is in an apartment of another kind, it stays in it.
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  { const platform::ComApartment apartment; }
  EXPECT_TRUE(isIn());
  CoUninitialize();
}

}  // namespace

std::vector<AudioMachineMaker> AudioMachines() {
  return {&MakeAudioMachine<WineMachine>};
}

}  // namespace support
