#include "app/codec_probe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/app/app_fixture.h"

namespace app {
namespace {

using platform::DeviceRecord;
using testing::HasSubstr;
using testing::Not;

class CodecProbeTest : public AppFixture {
 protected:
  std::uint32_t Probe(std::vector<DeviceRecord> devices) {
    machine_.deviceSetup.SetDevices(std::move(devices));
    return ProbeCodecSsid(machine_.platform);
  }
};

DeviceRecord Device(std::u16string hardwareId) {
  DeviceRecord record;
  record.hardwareIds = {std::move(hardwareId)};
  return record;
}

TEST_F(CodecProbeTest, TakesTheSsidOfTheFirstFamilyThatHasOne) {
  struct Case {
    const char* name;
    std::vector<std::u16string> ids;
    std::uint32_t ssid;
  };
  const std::u16string realtek = u"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_1234ABCD&REV_1000";
  const std::u16string conexant = u"HDAUDIO\\FUNC_01&VEN_14F1&DEV_5045&SUBSYS_55556666&REV_1000";
  const std::u16string acpi = u"ACPI\\VEN_14F1&DEV_0720&SUBSYS_0A0B0C0D";
  const std::u16string intel = u"INTELAUDIO\\FUNC_01&VEN_10EC&DEV_0298&SUBSYS_9876FEDC";
  const Case cases[] = {
      {"Realtek", {realtek}, 0x1234ABCD},
      {"Realtek before Conexant", {conexant, realtek}, 0x1234ABCD},
      {"Conexant alone", {conexant, intel}, 0x55556666},
      {"I2S before SST", {intel, acpi}, 0x0A0B0C0D},
      {"SST alone", {u"PCI\\VEN_8086", intel}, 0x9876FEDC},
      {"last of several", {realtek, u"HDAUDIO\\FUNC_01&VEN_10EC&SUBSYS_00010002"}, 0x00010002},
      {"no subsystem leaves an earlier one", {realtek, u"HDAUDIO\\FUNC_01&VEN_10EC"}, 0x1234ABCD},
      {"no subsystem lets the next family try",
       {u"HDAUDIO\\FUNC_01&VEN_10EC", conexant},
       0x55556666},
      {"prefix not at the start", {u"X HDAUDIO\\FUNC_01&VEN_10EC&SUBSYS_12345678"}, 0},
      {"prefix in lower case", {u"hdaudio\\func_01&ven_10ec&SUBSYS_12345678"}, 0},
      {"other I2S device", {u"ACPI\\VEN_10EC&DEV_5650&SUBSYS_12345678"}, 0},
      {"text cut short", {u"HDAUDIO\\FUNC_01&VEN_10EC&SUBSYS_12"}, 0x00120000},
      {"lower half negative", {u"HDAUDIO\\FUNC_01&VEN_10EC&SUBSYS_0001-001"}, 0x0001FFFF},
      {"nothing", {}, 0},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    std::vector<DeviceRecord> devices;
    for (const std::u16string& id : test.ids) devices.push_back(Device(id));
    EXPECT_EQ(Probe(devices), test.ssid);
  }
}

TEST_F(CodecProbeTest, FallsBackThroughTheIdentificationProperties) {
  const std::u16string id = u"HDAUDIO\\FUNC_01&VEN_10EC&SUBSYS_0000000";
  DeviceRecord description;
  description.description = id + u"1";
  DeviceRecord className;
  className.deviceClass = id + u"2";
  DeviceRecord classGuid;
  classGuid.classGuid = id + u"3";
  DeviceRecord emptyHardwareId;
  emptyHardwareId.hardwareIds = {u""};
  emptyHardwareId.description = id + u"4";
  EXPECT_EQ(Probe({description}), 1U);
  EXPECT_EQ(Probe({className}), 2U);
  EXPECT_EQ(Probe({classGuid}), 3U);
  EXPECT_EQ(Probe({emptyHardwareId}), 4U);

  DeviceRecord otherHardwareId = Device(u"USB\\VID_1234");
  otherHardwareId.description = id + u"5";
  EXPECT_EQ(Probe({otherHardwareId}), 0U) << "a hardware ID that reads is the identification";
  DeviceRecord secondString;
  secondString.hardwareIds = {u"USB\\VID_1234", id + u"6"};
  EXPECT_EQ(Probe({secondString}), 0U) << "only the first string of the list counts";
}

TEST_F(CodecProbeTest, SkipsDevicesWhoseStatusFailsAndSurvivesAFailedSet) {
  DeviceRecord failing = Device(u"HDAUDIO\\FUNC_01&VEN_10EC&SUBSYS_11112222");
  failing.status = DeviceRecord::Status::QueryFails;
  EXPECT_EQ(Probe({failing}), 0U);
  EXPECT_EQ(Log(), "");

  machine_.deviceSetup.FailRequests(1);
  EXPECT_EQ(Probe({Device(u"HDAUDIO\\FUNC_01&VEN_14F1&SUBSYS_33334444")}), 0x33334444U)
      << "the first family's set failed, the second's did not";
}

TEST_F(CodecProbeTest, ReadsAnIdentificationLongerThanTheFirstBuffer) {
  const std::u16string longId =
      u"HDAUDIO\\FUNC_01&VEN_10EC&" + std::u16string(400, u'X') + u"&SUBSYS_12345678";
  EXPECT_EQ(Probe({Device(longId)}), 0x12345678U);
}

TEST_F(CodecProbeTest, LogsEveryMatchingDeviceWithItsFamily) {
  Probe({Device(u"HDAUDIO\\FUNC_01&VEN_10EC"), Device(u"HDAUDIO\\FUNC_01&VEN_14F1&SUBSYS_1"),
         Device(u"INTELAUDIO\\FUNC_01&VEN_10EC&SUBSYS_2")});
  EXPECT_THAT(Log(), HasSubstr("HDAUDIO\\FUNC_01&VEN_10EC (Realtek HDA Codec)\r\n\r\n"));
  EXPECT_THAT(Log(), HasSubstr("HDAUDIO\\FUNC_01&VEN_14F1&SUBSYS_1 (Conexant HDA Codec)\r\n\r\n"));
  EXPECT_THAT(Log(), Not(HasSubstr("INTELAUDIO"))) << "later families are not probed";
}

}  // namespace
}  // namespace app
