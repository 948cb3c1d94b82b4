// Devices as the system's setup interface tells them, planted where it keeps them.
#include "platform/windows/devices/setup_devices.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <string>

#include "platform/windows/wide_text.h"
#include "tests/support/wine.h"

namespace platform {
namespace {

constexpr const wchar_t* kBus = L"SYSTEM\\CurrentControlSet\\Enum\\TONALYXTEST";
constexpr std::array kProperties = {DeviceProperty::HardwareId, DeviceProperty::DeviceDescription,
                                    DeviceProperty::Class, DeviceProperty::ClassGuid};
constexpr std::u16string_view kMediaClass = u"{4D36E96C-E325-11CE-BFC1-08002BE10318}";
using namespace std::string_literals;
using namespace std::string_view_literals;

class SetupDevicesTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!support::RunsUnderWine()) GTEST_SKIP() << "only the system itself may make devices";
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kBus);
  }
  void TearDown() override { RegDeleteTreeW(HKEY_LOCAL_MACHINE, kBus); }

  // Exactly these characters: the registry adds an end that it finds behind them.
  static void Plant(std::u16string_view name, std::u16string_view data, DWORD type = REG_SZ) {
    const std::u16string stored = std::u16string(data) + u'!';
    HKEY key = nullptr;
    const std::wstring path = std::wstring(kBus) + L"\\CODEC\\4&1&0&0001";
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, &key, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExW(key, ToWide(name).c_str(), 0, type,
                             reinterpret_cast<const BYTE*>(stored.data()),
                             static_cast<DWORD>(data.size() * sizeof(char16_t))),
              ERROR_SUCCESS);
    RegCloseKey(key);
  }
  // The property's first text with "(more)" before it when the buffer had to grow, "(none)" when
  // there is none to be read.
  static std::u16string Read(const DeviceInfoSet& devices, std::uint32_t index,
                             DeviceProperty property, std::size_t units = 260) {
    std::u16string buffer(units, u'#');
    std::uint32_t required = 0;
    switch (devices.ReadProperty(index, property, buffer, &required)) {
      case DevicePropertyStatus::Success:
        return buffer.c_str();
      case DevicePropertyStatus::InsufficientBuffer:
        if (required <= buffer.size() * sizeof(char16_t)) return u"(asks for no more)";
        return u"(more)" + Read(devices, index, property, required / sizeof(char16_t));
      default:
        return u"(none)";
    }
  }
  // The four properties of the planted device, one a line; empty when it is not found.
  static std::u16string Planted() {
    const auto devices = SetupDevices().PresentDevices();
    for (std::uint32_t index = 0; devices && devices->HasDevice(index); ++index) {
      if (Read(*devices, index, DeviceProperty::Class) != u"MEDIA") continue;
      EXPECT_TRUE(devices->QueryStatus(index));
      std::u16string texts;
      for (const DeviceProperty property : kProperties) {
        texts += Read(*devices, index, property) + u"\n";
      }
      return texts;
    }
    return {};
  }
};

TEST_F(SetupDevicesTest, TellsAPresentDeviceWhateverItsHardwareIdLooksLike) {
  EXPECT_EQ(Planted(), u"");
  Plant(u"ClassGUID", kMediaClass);
  Plant(u"Class", u"MEDIA\0"sv);
  const std::u16string rest = u"\nCodec\nMEDIA\n" + std::u16string(kMediaClass) + u"\n";
  EXPECT_EQ(Planted(), u"(none)\n(none)" + rest.substr(6));
  Plant(u"DeviceDesc", u"Codec\0"sv);
  const std::u16string longId = u"HDAUDIO\\FUNC_01&" + std::u16string(1000, u'X');
  const struct {
    std::u16string stored;
    std::u16string read;
  } ids[] = {{u"HDAUDIO\\FUNC_01&SUBSYS_1\0HDAUDIO\\FUNC_01\0\0"s, u"HDAUDIO\\FUNC_01&SUBSYS_1"},
             {u"HDAUDIO\\FUNC_01", u"HDAUDIO\\FUNC_01"},
             {longId, u"(more)" + longId},
             {std::u16string(260, u'X'), u"(more)" + std::u16string(260, u'X')},
             {u"", u""}};
  for (const auto& [stored, read] : ids) {
    Plant(u"HardwareID", stored, REG_MULTI_SZ);
    EXPECT_EQ(Planted(), read + rest);
  }
}

}  // namespace
}  // namespace platform
