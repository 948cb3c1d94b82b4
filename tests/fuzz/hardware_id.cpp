// What devices say of themselves: a line for each device, which begins with the property that holds
// the text (I hardware ID, D description, C class, G class GUID, F all fail), then the text.
#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/codec_probe.h"
#include "platform/text.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/input.h"
#include "tests/support/fake_machine.h"

namespace {

constexpr std::size_t kMostDevices = 16;
// A device's line of 511 bytes at most, and what follows it about the engine's classes.
constexpr std::size_t kMostLogBytes = 1024;

platform::DeviceRecord MakeDevice(std::string_view line) {
  platform::DeviceRecord device;
  const std::u16string text = line.empty() ? std::u16string() : platform::FromUtf8(line.substr(1));
  switch (line.empty() ? 'F' : line.front()) {
    case 'D':
      device.description = text;
      break;
    case 'C':
      device.deviceClass = text;
      break;
    case 'G':
      device.classGuid = text;
      break;
    case 'F':
      device.hardwareIds = {text};
      device.status = platform::DeviceRecord::Status::QueryFails;
      break;
    default:
      device.hardwareIds = {text};
  }
  return device;
}

// The first family of which a device names one, as its last device does. Nothing where the eight
// digits are not all digits: then the original's own way of reading numbers counts.
std::optional<std::uint32_t> PlainSsid(const std::vector<std::string_view>& lines) {
  constexpr std::array<std::array<std::string_view, 4>, 4> kFamilies = {
      {{"HDAUDIO\\FUNC_01&VEN_10EC"},
       {"HDAUDIO\\FUNC_01&VEN_14F1"},
       {"ACPI\\VEN_10EC&DEV_5640", "ACPI\\VEN_10EC&DEV_5648", "ACPI\\VEN_10EC&DEV_3270",
        "ACPI\\VEN_14F1&DEV_0720"},
       {"INTELAUDIO\\FUNC_01&VEN_10EC"}}};
  for (const auto& family : kFamilies) {
    std::uint32_t ssid = 0;
    for (std::string_view line : lines) {
      if (line.empty() || line.front() == 'F') continue;
      line.remove_prefix(1);
      line = line.substr(0, line.find('\0'));
      const bool belongs = std::ranges::any_of(family, [&](std::string_view prefix) {
        return !prefix.empty() && line.starts_with(prefix);
      });
      const std::size_t mark = line.find("SUBSYS_");
      if (!belongs || mark == std::string_view::npos) continue;
      const std::string digits(line.substr(mark + 7, 8));
      if (digits.size() != 8 ||
          digits.find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos) {
        return std::nullopt;
      }
      ssid = static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16));
    }
    if (ssid != 0) return ssid;
  }
  return 0;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string_view> lines = fuzz::Split(fuzz::AsText(data, size), '\n');
  if (lines.size() > kMostDevices) lines.resize(kMostDevices);
  std::vector<platform::DeviceRecord> devices;
  for (const std::string_view line : lines) devices.push_back(MakeDevice(line));

  support::FakeMachine machine(devices);
  const std::uint32_t ssid = app::ProbeCodecSsid(machine.platform);
  if (const auto expected = PlainSsid(lines)) {
    fuzz::Require(ssid == *expected, "the first family with an ID counts, its last device's");
  }
  const std::string log = machine.files.Contents(u"/state/Velsona.txt").value_or("");
  fuzz::Require(log.size() <= devices.size() * kMostLogBytes, "no device floods the log");
  return 0;
}
