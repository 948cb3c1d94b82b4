// What devices say of themselves: a line for each device, which begins with the property that holds
// the text (I hardware ID, D description, C class, G class GUID, F all fail), then the text.
#include <algorithm>
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

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::AsText(data, size);
  std::vector<std::string_view> lines = fuzz::Split(text, '\n');
  lines.resize(std::min<std::size_t>(lines.size(), 16));
  std::vector<platform::DeviceRecord> devices;
  for (const std::string_view line : lines) devices.push_back(MakeDevice(line));
  support::FakeMachine machine(devices);
  const std::uint32_t ssid = app::ProbeCodecSsid(machine.platform);
  fuzz::Require(ssid == 0 || text.find("SUBSYS_") != text.npos, "no ID comes from nowhere");
  // A device's line of 511 bytes at most, and what follows it about the engine's classes.
  const std::string log = machine.files.Contents(u"/state/Velsona.txt").value_or("");
  fuzz::Require(log.size() <= devices.size() * 1024, "no device floods the log");
  return 0;
}
