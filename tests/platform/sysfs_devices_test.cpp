#include "platform/linux/devices/sysfs_devices.h"

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "platform/text.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

using testing::ElementsAre;

// The strings of a property that holds one or, as the hardware ID does, several.
std::vector<std::string> Strings(const DeviceInfoSet& set, std::uint32_t index,
                                 DeviceProperty property) {
  std::array<char16_t, 260> buffer{};
  if (set.ReadProperty(index, property, buffer, nullptr) != DevicePropertyStatus::Success) {
    return {};
  }
  std::vector<std::string> strings;
  for (const char16_t* at = buffer.data(); *at != 0; at += strings.back().size() + 1) {
    strings.push_back(ToUtf8(at));
  }
  return strings;
}

// Unpacks a recorded tree of the kernel's device file system. A line is "path = content" for an
// attribute or "path -> target" for a link; "#" begins a remark.
void UnpackTree(const std::filesystem::path& recording, const std::filesystem::path& folder) {
  std::ifstream lines(recording);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == '#') continue;
    const std::size_t attribute = line.find(" =");
    const std::size_t link = line.find(" -> ");
    const std::filesystem::path path = folder / line.substr(0, std::min(attribute, link));
    std::filesystem::create_directories(path.parent_path());
    if (link < attribute) {
      std::filesystem::create_symlink(line.substr(link + 4), path);
    } else {
      const std::size_t content = line.find_first_not_of(' ', attribute + 2);
      std::ofstream(path) << (content == std::string::npos ? "" : line.substr(content)) << '\n';
    }
  }
}

class SysfsDevicesTest : public testing::Test {
 protected:
  std::unique_ptr<DeviceInfoSet> Devices(const std::string& recording) {
    const std::filesystem::path root = temporary_.Path() / recording;
    UnpackTree(TONALYX_SOURCE_DIR "/tests/platform/sysfs/" + recording + ".tree", root);
    return SysfsDeviceSetup(root).PresentDevices();
  }

  support::TemporaryFolder temporary_;
};

TEST_F(SysfsDevicesTest, IdentifiesTheCodecsOfRecordedMachines) {
  struct Case {
    const char* recording;
    std::vector<std::string> ids;  // the first of each device
  };
  const std::vector<Case> cases = {
      {"hda_realtek",
       {"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA2257&REV_1001",
        "HDAUDIO\\FUNC_01&VEN_8086&DEV_280B&SUBSYS_80860101&REV_1000"}},
      {"hda_conexant",
       {"HDAUDIO\\FUNC_01&VEN_14F1&DEV_50F4&SUBSYS_17AA390C&REV_1001",
        "HDAUDIO\\FUNC_02&VEN_14F1&DEV_2C06&SUBSYS_17AA20D3&REV_1000"}},
      {"i2s",
       {"ACPI\\VEN_10EC&DEV_5640&SUBSYS_17AA5640", "ACPI\\VEN_14F1&DEV_0720&SUBSYS_17AA5640"}},
      {"i2s_hda", {"ACPI\\VEN_10EC&DEV_5648&SUBSYS_17AA5648"}},
      {"i2s_amd", {"ACPI\\VEN_10EC&DEV_3270&SUBSYS_17AA3270"}},
      {"sof",
       {"INTELAUDIO\\FUNC_01&VEN_10EC&DEV_0287&SUBSYS_17AA22B1&REV_1000",
        "HDAUDIO\\FUNC_01&VEN_8086&DEV_2812&SUBSYS_80860101&REV_1000"}},
      {"sof_conexant", {"HDAUDIO\\FUNC_01&VEN_14F1&DEV_1F86&SUBSYS_17AA86C7&REV_1001"}},
      {"hdmi_only", {"HDAUDIO\\FUNC_01&VEN_10DE&DEV_0083&SUBSYS_14628C96&REV_1001"}},
      {"none", {}},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.recording);
    const std::unique_ptr<DeviceInfoSet> devices = Devices(testCase.recording);
    ASSERT_TRUE(devices);
    std::vector<std::string> ids;
    for (std::uint32_t i = 0; devices->HasDevice(i); ++i) {
      EXPECT_TRUE(devices->QueryStatus(i));
      ids.push_back(Strings(*devices, i, DeviceProperty::HardwareId).at(0));
    }
    EXPECT_EQ(ids, testCase.ids);
  }
}

TEST_F(SysfsDevicesTest, DescribesACodecAsTheOriginalPlatformDoes) {
  const std::unique_ptr<DeviceInfoSet> devices = Devices("hda_realtek");
  const std::string id = "HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA2257";
  EXPECT_THAT(Strings(*devices, 0, DeviceProperty::HardwareId), ElementsAre(id + "&REV_1001", id));
  EXPECT_THAT(Strings(*devices, 0, DeviceProperty::DeviceDescription),
              ElementsAre("Realtek ALC257"));
  EXPECT_THAT(Strings(*devices, 0, DeviceProperty::Class), ElementsAre("MEDIA"));
  EXPECT_THAT(Strings(*devices, 0, DeviceProperty::ClassGuid),
              ElementsAre("{4D36E96C-E325-11CE-BFC1-08002BE10318}"));
  std::array<char16_t, 5> small = {u'a'};
  std::uint32_t required = 0;
  const auto read = [&](std::uint32_t index) {
    return devices->ReadProperty(index, DeviceProperty::Class, small, &required);
  };
  EXPECT_EQ(read(0), DevicePropertyStatus::InsufficientBuffer);
  EXPECT_EQ(required, sizeof(u"MEDIA"));
  EXPECT_EQ(small[0], u'a');
  EXPECT_EQ(read(2), DevicePropertyStatus::Failure);
  EXPECT_FALSE(devices->QueryStatus(2));
  EXPECT_EQ(SysfsDeviceSetup(temporary_.Path() / "missing").PresentDevices(), nullptr);
}

}  // namespace
}  // namespace platform
