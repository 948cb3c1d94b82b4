#include "app/codec_probe.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/codec_log.h"
#include "app/hex_number.h"

namespace app {
namespace {

using platform::DeviceInfoSet;
using platform::DeviceProperty;
using platform::DevicePropertyStatus;

struct CodecFamily {
  std::array<std::u16string_view, 4> prefixes;  // unused ones are empty
  std::u16string_view label;
};

constexpr std::array<CodecFamily, 4> kFamilies = {{
    {{u"HDAUDIO\\FUNC_01&VEN_10EC"}, u" (Realtek HDA Codec)\r\n\r\n"},
    {{u"HDAUDIO\\FUNC_01&VEN_14F1"}, u" (Conexant HDA Codec)\r\n\r\n"},
    {{u"ACPI\\VEN_10EC&DEV_5640", u"ACPI\\VEN_10EC&DEV_5648", u"ACPI\\VEN_10EC&DEV_3270",
      u"ACPI\\VEN_14F1&DEV_0720"},
     u" (I2S Audio Codec)\r\n\r\n"},
    {{u"INTELAUDIO\\FUNC_01&VEN_10EC"}, u" (iSST Realtek HDA Codec)\r\n\r\n"},
}};

constexpr std::array<DeviceProperty, 4> kIdentificationProperties = {
    DeviceProperty::HardwareId, DeviceProperty::DeviceDescription, DeviceProperty::Class,
    DeviceProperty::ClassGuid};

constexpr std::size_t kFirstBufferBytes = 520;
constexpr std::u16string_view kSubsystemMark = u"SUBSYS_";

// The property's (first) string; empty when it cannot be read. `buffer` grows as needed.
std::u16string ReadPropertyText(const DeviceInfoSet& devices, std::uint32_t index,
                                DeviceProperty property, std::vector<char16_t>& buffer) {
  for (;;) {
    std::uint32_t requiredBytes = 0;
    const DevicePropertyStatus status =
        devices.ReadProperty(index, property, buffer, &requiredBytes);
    if (status == DevicePropertyStatus::Success) break;
    const std::size_t requiredUnits = (requiredBytes + sizeof(char16_t) - 1) / sizeof(char16_t);
    // A request for no more than was offered would go on for ever.
    if (status != DevicePropertyStatus::InsufficientBuffer || requiredUnits <= buffer.size()) {
      return {};
    }
    buffer.assign(requiredUnits, u'\0');
  }
  return {buffer.begin(), std::find(buffer.begin(), buffer.end(), u'\0')};
}

std::u16string ReadIdentification(const DeviceInfoSet& devices, std::uint32_t index,
                                  std::vector<char16_t>& buffer) {
  for (const DeviceProperty property : kIdentificationProperties) {
    std::u16string text = ReadPropertyText(devices, index, property, buffer);
    if (!text.empty()) return text;
  }
  return {};
}

bool BelongsTo(const CodecFamily& family, std::u16string_view identification) {
  return std::any_of(family.prefixes.begin(), family.prefixes.end(),
                     [identification](std::u16string_view prefix) {
                       return !prefix.empty() && identification.starts_with(prefix);
                     });
}

std::optional<std::uint32_t> ParseSubsystem(std::u16string_view identification) {
  const std::size_t mark = identification.find(kSubsystemMark);
  if (mark == std::u16string_view::npos) return std::nullopt;
  const std::u16string_view digits = identification.substr(mark + kSubsystemMark.size());
  const std::u16string_view low = digits.size() > 4 ? digits.substr(4, 4) : std::u16string_view{};
  return static_cast<std::uint32_t>(ParseHexLong(digits.substr(0, 4))) * 0x10000U +
         (static_cast<std::uint32_t>(ParseHexLong(low)) & 0xFFFFU);
}

std::uint32_t ProbeFamily(const CodecFamily& family, platform::Platform& platform) {
  const std::unique_ptr<DeviceInfoSet> devices = platform.deviceSetup.PresentDevices();
  if (!devices) return 0;
  std::uint32_t ssid = 0;
  std::vector<char16_t> buffer(kFirstBufferBytes / sizeof(char16_t), u'\0');
  for (std::uint32_t index = 0; devices->HasDevice(index); ++index) {
    if (!devices->QueryStatus(index)) continue;
    const std::u16string identification = ReadIdentification(*devices, index, buffer);
    if (!BelongsTo(family, identification)) continue;
    // A device without a subsystem ID says nothing about the model: what an earlier one said holds.
    ssid = ParseSubsystem(identification).value_or(ssid);
    LogCodecDevice(identification, family.label, platform.files, platform.registry);
  }
  return ssid;
}

}  // namespace

std::uint32_t ProbeCodecSsid(platform::Platform& platform) {
  for (const CodecFamily& family : kFamilies) {
    if (const std::uint32_t ssid = ProbeFamily(family, platform)) return ssid;
  }
  return 0;
}

}  // namespace app
