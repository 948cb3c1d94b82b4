// What devices say of themselves: a line for each device, which begins with the property that holds
// the text (I hardware ID, D description, C class, G class GUID, F all fail), then the text.
#include <algorithm>
#include <optional>
#include <string>

#include "app/codec_probe.h"
#include "platform/text.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/fake_machine.h"

namespace {

platform::DeviceRecord MakeDevice(std::string_view line) {
  platform::DeviceRecord device;
  const char kind = line.empty() ? 'F' : line.front();
  const std::u16string text = platform::FromUtf8(line.substr(line.empty() ? 0 : 1));
  if (kind == 'D') {
    device.description = text;
  } else if (kind == 'C') {
    device.deviceClass = text;
  } else if (kind == 'G') {
    device.classGuid = text;
  } else {
    device.hardwareIds = {text};
  }
  if (kind == 'F') device.status = platform::DeviceRecord::Status::QueryFails;
  return device;
}

// The first family of which a device names one, as its last device does. Nothing where the eight
// digits are not all digits: then the original's own way of reading numbers counts.
std::optional<std::uint32_t> PlainSsid(const std::vector<std::string_view>& lines) {
  const std::vector<std::string_view> families[] = {
      {"HDAUDIO\\FUNC_01&VEN_10EC"},
      {"HDAUDIO\\FUNC_01&VEN_14F1"},
      {"ACPI\\VEN_10EC&DEV_5640", "ACPI\\VEN_10EC&DEV_5648", "ACPI\\VEN_10EC&DEV_3270",
       "ACPI\\VEN_14F1&DEV_0720"},
      {"INTELAUDIO\\FUNC_01&VEN_10EC"}};
  for (const auto& family : families) {
    std::uint32_t ssid = 0;
    for (std::string_view line : lines) {
      if (line.empty() || line.front() == 'F') continue;
      line = line.substr(1, line.find('\0') - 1);
      const std::size_t mark = line.find("SUBSYS_");
      if (mark == line.npos ||
          std::ranges::none_of(family, [&](auto prefix) { return line.starts_with(prefix); })) {
        continue;
      }
      const std::string digits(line.substr(mark + 7, 8));
      if (digits.size() != 8 || digits.find_first_not_of("0123456789ABCDEFabcdef") != line.npos) {
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
  lines.resize(std::min<std::size_t>(lines.size(), 16));
  std::vector<platform::DeviceRecord> devices;
  for (const std::string_view line : lines) devices.push_back(MakeDevice(line));
  support::FakeMachine machine(devices);
  const std::uint32_t ssid = app::ProbeCodecSsid(machine.platform);
  if (const auto expected = PlainSsid(lines)) {
    fuzz::Require(ssid == *expected, "the first family with an ID counts, its last device's");
  }
  // A device's line of 511 bytes at most, and what follows it about the engine's classes.
  const std::string log = machine.files.Contents(u"/state/Velsona.txt").value_or("");
  fuzz::Require(log.size() <= devices.size() * 1024, "no device floods the log");
  return 0;
}
