// The codec that identifies the machine, and what the diagnostic log says of it.
#include "app/codec_probe.h"

#include <gtest/gtest.h>

#include "platform/fake/failing_registry.h"
#include "tests/support/fake_machine.h"

namespace app {
namespace {

using platform::DeviceProperty;
using platform::DevicePropertyStatus;
using platform::DeviceRecord;
using Devices = std::vector<DeviceRecord>;

const std::u16string kRealtek = u"HDAUDIO\\FUNC_01&VEN_10EC";
const std::u16string kConexant = u"HDAUDIO\\FUNC_01&VEN_14F1";
const std::u16string kI2s = u"ACPI\\VEN_14F1&DEV_0720";
const std::u16string kSst = u"INTELAUDIO\\FUNC_01&VEN_10EC";
const std::u16string kClasses = u"AudioEngine\\AudioProcessingObjects\\";
const std::u16string kGfx = u"{2B4139E7-89E4-4458-A087-827B58916AC7}";
const std::u16string kEfx = u"{DFCCA0CA-849C-4D9C-87DC-E0BE0AD7BAF9}";

constexpr const char* kOtherClasses =
    "VELSONAAPO_MFX_CLASS {EC5B94CA-4341-4C74-B34B-CB62CA177621} not installed\r\n\r\n"
    "VELSONAAPO_SFX_CLASS {7D22DA36-19D1-4D0D-9E9F-ACED5148F9DD} not installed\r\n\r\n"
    "VELSONAAPO_LFX_CLASS {1C02106E-1BE3-4686-998F-9B33CBCFCF8B} not installed\r\n\r\n";
const std::string kNoneInstalled =
    std::string(
        "VELSONAAPO_GFX_CLASS {2B4139E7-89E4-4458-A087-827B58916AC7} not installed\r\n\r\n"
        "VELSONAAPO_EFX_CLASS {DFCCA0CA-849C-4D9C-87DC-E0BE0AD7BAF9} not installed\r\n\r\n") +
    kOtherClasses;

// A driver that asks for no more than it was given, again and again.
class StubbornDevices : public platform::DeviceList, public platform::DeviceSetup {
 public:
  using DeviceList::DeviceList;

  DevicePropertyStatus ReadProperty(std::uint32_t index, DeviceProperty property,
                                    std::span<char16_t> buffer,
                                    std::uint32_t* requiredBytes) const override {
    if (property != DeviceProperty::HardwareId) {
      return DeviceList::ReadProperty(index, property, buffer, requiredBytes);
    }
    *requiredBytes = static_cast<std::uint32_t>(buffer.size_bytes());
    EXPECT_LE(++reads_, 1) << "asked again";
    return reads_ < 5 ? DevicePropertyStatus::InsufficientBuffer : DevicePropertyStatus::Failure;
  }
  std::unique_ptr<platform::DeviceInfoSet> PresentDevices() override {
    return std::make_unique<StubbornDevices>(*this);
  }

 private:
  mutable int reads_ = 0;
};

class CodecProbeTest : public testing::Test {
 protected:
  std::uint32_t Probe(Devices devices) {
    machine_.deviceSetup.SetDevices(std::move(devices));
    static_cast<void>(machine_.files.Remove(u"/state/Velsona.txt"));
    return ProbeCodecSsid(machine_.platform);
  }
  std::uint32_t Probe(const std::vector<std::u16string>& ids) {
    Devices devices;
    for (const std::u16string& id : ids) devices.push_back({.hardwareIds = {id}});
    return Probe(devices);
  }

  std::string Log() const { return machine_.files.Contents(u"/state/Velsona.txt").value_or(""); }

  support::FakeMachine machine_;
};

TEST_F(CodecProbeTest, TakesTheSsidOfTheFirstFamilyThatHasOne) {
  const auto with = [](const std::u16string& prefix, const std::u16string& digits) {
    return prefix + u"&DEV_0257&SUBSYS_" + digits;
  };
  const std::u16string realtek = with(kRealtek, u"1234ABCD&REV_1000");
  const std::u16string conexant = with(kConexant, u"55556666");
  const std::u16string i2s = with(kI2s, u"0A0B0C0D");
  const std::u16string sst = with(kSst, u"9876fedc");
  const std::pair<std::vector<std::u16string>, std::uint32_t> cases[] = {
      {{sst, i2s, conexant, realtek}, 0x1234ABCD},
      {{sst, i2s, conexant}, 0x55556666},
      {{sst, i2s}, 0x0A0B0C0D},
      {{u"PCI\\VEN_8086", sst}, 0x9876FEDC},
      {{with(u"ACPI\\VEN_10EC&DEV_5640", u"00000001")}, 1},
      {{with(u"ACPI\\VEN_10EC&DEV_5648", u"00000002")}, 2},
      {{with(u"ACPI\\VEN_10EC&DEV_3270", u"00000003")}, 3},
      {{with(u"ACPI\\VEN_10EC&DEV_5650", u"00000004")}, 0},
      {{realtek, with(kRealtek, u"00010002")}, 0x00010002},
      {{realtek, kRealtek}, 0x1234ABCD},
      {{kRealtek, conexant}, 0x55556666},
      {{u"X" + realtek}, 0},
      {{u"hdaudio\\func_01&ven_10ec&SUBSYS_12345678"}, 0},
      // Each half is read as the C library reads a number.
      {{with(kRealtek, u"12")}, 0x00120000},
      {{with(kRealtek, u"0001-001")}, 0x0001FFFF},
      {{with(kRealtek, u"-001+07F")}, 0xFFFF007F},
      {{with(kRealtek, u" \t120x1G")}, 0x00120001},
      {{with(kRealtek, u"0X1F0x&R")}, 0x001F0000},
      {{with(kRealtek, u"12G4- 12")}, 0x00120000},
      {{with(kRealtek, u"&REV_100")}, 0},
      {{with(kRealtek, u"\n\v\f1\r002")}, 0x00010002},
      {{}, 0},
  };
  int number = 0;
  for (const auto& [ids, ssid] : cases) EXPECT_EQ(Probe(ids), ssid) << "case " << number++;
}

TEST_F(CodecProbeTest, LogsEveryMatchingDeviceOfTheFamiliesLookedAt) {
  EXPECT_EQ(Probe({kSst, kI2s + u"&SUBSYS_00000001", kConexant, kRealtek, u"USB\\VID_1"}), 1U);
  EXPECT_EQ(Log(), "HDAUDIO\\FUNC_01&VEN_10EC (Realtek HDA Codec)\r\n\r\n" + kNoneInstalled +
                       "HDAUDIO\\FUNC_01&VEN_14F1 (Conexant HDA Codec)\r\n\r\n" + kNoneInstalled +
                       "ACPI\\VEN_14F1&DEV_0720&SUBSYS_00000001 (I2S Audio Codec)\r\n\r\n" +
                       kNoneInstalled);
  Probe({kSst});
  EXPECT_EQ(Log(),
            "INTELAUDIO\\FUNC_01&VEN_10EC (iSST Realtek HDA Codec)\r\n\r\n" + kNoneInstalled);
}

TEST_F(CodecProbeTest, FallsBackThroughTheIdentificationProperties) {
  const std::u16string id = kRealtek + u"&SUBSYS_0000000";
  const std::u16string other = u"USB\\VID_1234";
  const std::pair<DeviceRecord, std::uint32_t> cases[] = {
      {{.description = id + u"1", .deviceClass = other, .classGuid = other}, 1},
      {{.hardwareIds = {u""}, .deviceClass = id + u"2", .classGuid = other}, 2},
      {{.classGuid = id + u"3"}, 3},
      {{.hardwareIds = {other}, .description = id + u"4"}, 0},
      {{.hardwareIds = {other, id + u"5"}}, 0},
      {{.hardwareIds = {kRealtek + std::u16string(400, u'X') + u"&SUBSYS_00000006"}}, 6},
  };
  for (const auto& [device, ssid] : cases) EXPECT_EQ(Probe(Devices{device}), ssid);
}

TEST_F(CodecProbeTest, SkipsWhatCannotBeAsked) {
  const DeviceRecord failing{.hardwareIds = {kRealtek + u"&SUBSYS_11112222"},
                             .status = DeviceRecord::Status::QueryFails};
  EXPECT_EQ(Probe(Devices{failing}), 0U);
  EXPECT_EQ(Log(), "");
  machine_.deviceSetup.FailRequests(1);
  EXPECT_EQ(Probe({kConexant + u"&SUBSYS_33334444"}), 0x33334444U)
      << "the first family's set failed, the second's did not";

  StubbornDevices setup({{.description = kSst + u"&SUBSYS_00000007"}});
  platform::Platform platform{machine_.registry,     machine_.events,         machine_.files, setup,
                              machine_.audioDevices, machine_.singleInstance, machine_.clock};
  EXPECT_EQ(ProbeCodecSsid(platform), 7U);
}

TEST_F(CodecProbeTest, ReportsInstalledClassesByteForByte) {
  platform::FailingRegistry registry(machine_.registry);
  const auto create = [&](const std::u16string& clsid) {
    return registry.CreateKey(platform::RegistryRoot::ClassesRoot, kClasses + clsid, 0xF003F,
                              nullptr, {});
  };
  const auto gfx = create(kGfx);
  const auto set = [&](std::u16string_view name, const std::u16string& text) {
    gfx->SetValue(name, platform::RegistryType::String,
                  std::as_bytes(std::span(text.c_str(), text.size() + 1)));
  };
  set(u"FriendlyName", u"Velsona \u20AC \u00E9 \u4E2D GFX");
  set(u"Copyright", u"\u00A9 Norvane");
  const std::int32_t versions[] = {3, -7};
  gfx->SetValue(u"MajorVersion", platform::RegistryType::Dword,
                std::as_bytes(std::span(&versions[0], 1)));
  gfx->SetValue(u"MinorVersion", platform::RegistryType::Dword,
                std::as_bytes(std::span(&versions[1], 1)));
  create(kEfx);
  platform::Platform platform{registry,
                              machine_.events,
                              machine_.files,
                              machine_.deviceSetup,
                              machine_.audioDevices,
                              machine_.singleInstance,
                              machine_.clock};
  machine_.deviceSetup.SetDevices({{.hardwareIds = {kSst}}});
  ProbeCodecSsid(platform);
  const std::string device = "INTELAUDIO\\FUNC_01&VEN_10EC (iSST Realtek HDA Codec)\r\n\r\n";
  EXPECT_EQ(Log(), device +
                       "Velsona \x80 \xE9 ? GFX\r\n\xA9 Norvane\r\n"
                       "VELSONAAPO_GFX_CLASS version: 3.0.0.-7 installed\r\n\r\n"
                       "\r\n\r\nVELSONAAPO_EFX_CLASS version: 0.0.0.0 installed\r\n\r\n" +
                       kOtherClasses);
  EXPECT_EQ(registry.Accesses().at(kClasses + kGfx), (std::set{0x20119U, 0xF003FU}));

  for (const std::size_t length : {255U, 256U}) {
    set(u"FriendlyName", std::u16string(length, u'n'));
    Probe({kSst});
    const std::string line = length == 255 ? std::string(255, 'n') : std::string();
    EXPECT_TRUE(Log().starts_with(device + line + "\r\n\xA9 Norvane\r\n")) << length;
  }
}

TEST_F(CodecProbeTest, CutsALongDeviceBeforeItsLabelAndSharesTheLog) {
  Probe({kSst + std::u16string(600, u'd')});
  const std::string label = " (iSST Realtek HDA Codec)\r\n\r\n";
  EXPECT_EQ(Log().find(label + kNoneInstalled), 511U - label.size());
  machine_.files.PutFile(u"/state/Velsona.txt", "kept");
  {
    const auto holder =
        machine_.files.OpenExisting(u"/state/Velsona.txt", platform::FileAccess::Append);
    ProbeCodecSsid(machine_.platform);
  }
  EXPECT_EQ(Log(), "kept") << "held by another, the lines are lost";

  struct Meanwhile : platform::FakeFileSystem {
    std::unique_ptr<platform::File> OpenExisting(std::u16string_view path,
                                                 platform::FileAccess access) override {
      auto file = FakeFileSystem::OpenExisting(path, access);
      if (!file) PutFile(path, "theirs\r\n\r\n");
      return file;
    }
  } files;
  platform::Platform platform{machine_.registry,    machine_.events,       files,
                              machine_.deviceSetup, machine_.audioDevices, machine_.singleInstance,
                              machine_.clock};
  ProbeCodecSsid(platform);
  EXPECT_TRUE(files.Contents(u"/state/Velsona.txt")->starts_with("theirs\r\n\r\nINTELAUDIO"));
}

}  // namespace
}  // namespace app
