#include "platform/linux/devices/sysfs_devices.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/device_list.h"
#include "platform/text.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr std::u16string_view kMediaClass = u"MEDIA";
constexpr std::u16string_view kMediaClassGuid = u"{4D36E96C-E325-11CE-BFC1-08002BE10318}";

constexpr std::uint32_t kRealtek = 0x10EC;
constexpr std::uint32_t kConexant = 0x14F1;
constexpr std::uint32_t kAmd = 0x1022;

// PCI class codes without the programming interface.
constexpr std::uint32_t kClassAudioDevice = 0x0401;
constexpr std::uint32_t kClassHdAudio = 0x0403;
constexpr std::uint32_t kClassOtherMultimedia = 0x0480;

// One attribute without its line end; empty when it cannot be read.
std::string ReadAttribute(const fs::path& device, const char* name) {
  std::ifstream file(device / name);
  std::string line;
  std::getline(file, line);
  return line;
}

std::optional<std::uint32_t> ParseNumber(std::string_view text, int base) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  return number;
}

std::optional<std::uint32_t> ReadHex(const fs::path& device, const char* name) {
  const std::string text = ReadAttribute(device, name);
  if (!text.starts_with("0x")) return std::nullopt;
  return ParseNumber(std::string_view(text).substr(2), 16);
}

std::vector<fs::path> DevicesOf(const fs::path& bus) {
  std::vector<fs::path> devices;
  std::error_code error;
  fs::directory_iterator entry(bus / "devices", error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    devices.push_back(entry->path());
  }
  std::ranges::sort(devices);
  return devices;
}

template <class... Arguments>
std::u16string Format(const char* format, Arguments... arguments) {
  std::array<char, 128> text{};
  std::snprintf(text.data(), text.size(), format, arguments...);
  return FromUtf8(text.data());
}

// The driver that is bound to the controller of an HD Audio codec; the controller is the parent of
// the codec in the device tree.
std::string ControllerDriver(const fs::path& codec) {
  std::error_code error;
  const fs::path controller = fs::canonical(codec, error).parent_path();
  return fs::read_symlink(controller / "driver", error).filename();
}

// Whether the controller's driver runs the signal processor of Intel's Smart Sound Technology.
bool IsSmartSoundDriver(std::string_view driver) {
  constexpr std::array<std::string_view, 3> kPrefixes = {"sof-audio-pci", "snd_soc_skl",
                                                         "snd_soc_avs"};
  return std::ranges::any_of(kPrefixes,
                             [&](std::string_view prefix) { return driver.starts_with(prefix); });
}

// Only Realtek's codecs change their bus behind the signal processor: the driver packages know no
// other maker's there, so another's codec keeps the name it is known by.
const char* CodecBus(std::uint32_t maker, const fs::path& codec) {
  return maker == kRealtek && IsSmartSoundDriver(ControllerDriver(codec)) ? "INTELAUDIO"
                                                                          : "HDAUDIO";
}

// Maker and model; empty where the kernel names neither.
std::u16string CodecName(const fs::path& codec) {
  const std::string maker = ReadAttribute(codec, "vendor_name");
  const std::string model = ReadAttribute(codec, "chip_name");
  return FromUtf8(maker.empty() || model.empty() ? maker + model : maker + ' ' + model);
}

std::optional<DeviceRecord> ReadHdAudioCodec(const fs::path& codec) {
  const std::optional<std::uint32_t> vendor = ReadHex(codec, "vendor_id");
  const std::optional<std::uint32_t> subsystem = ReadHex(codec, "subsystem_id");
  if (!vendor || !subsystem) return std::nullopt;
  const std::uint32_t maker = *vendor >> 16U;
  // A modem has its own function group; what has neither is still an audio codec.
  const bool isModem =
      ReadHex(codec, "afg").value_or(0) == 0 && ReadHex(codec, "mfg").value_or(0) != 0;
  const std::u16string id =
      Format("%s\\FUNC_%02X&VEN_%04X&DEV_%04X&SUBSYS_%08X", CodecBus(maker, codec),
             isModem ? 2U : 1U, maker, *vendor & 0xFFFFU, *subsystem);
  // The lowest byte is the stepping, which the original's form leaves out.
  const std::uint32_t revision = (ReadHex(codec, "revision_id").value_or(0) >> 8U) & 0xFFFFU;

  DeviceRecord device;
  device.hardwareIds = {id + Format("&REV_%04X", revision), id};
  device.description = CodecName(codec);
  device.deviceClass = kMediaClass;
  device.classGuid = kMediaClassGuid;
  return device;
}

// How likely a PCI function is the controller that an I2S codec hangs on, from 0 on; nothing for a
// function that has no sound.
std::optional<int> ControllerRank(const fs::path& function) {
  const std::uint32_t classCode = ReadHex(function, "class").value_or(0) >> 8U;
  const std::uint32_t maker = ReadHex(function, "vendor").value_or(0);
  if (classCode == kClassAudioDevice) return 0;
  // AMD's audio co-processor. Other makers have cameras under this class.
  if (classCode == kClassOtherMultimedia && maker == kAmd) return 1;
  if (classCode == kClassHdAudio) return 2;
  return std::nullopt;
}

// The subsystem ID of the machine's audio controller, the maker in the upper half. Of equals the
// first on the bus counts: a graphics card's sound lies behind a bridge.
std::optional<std::uint32_t> ControllerSubsystem(const fs::path& sysfsRoot) {
  std::optional<std::pair<int, fs::path>> best;
  for (const fs::path& function : DevicesOf(sysfsRoot / "bus/pci")) {
    const std::optional<int> rank = ControllerRank(function);
    if (rank && (!best || *rank < best->first)) best = {*rank, function};
  }
  if (!best) return std::nullopt;
  const std::optional<std::uint32_t> maker = ReadHex(best->second, "subsystem_vendor");
  const std::optional<std::uint32_t> model = ReadHex(best->second, "subsystem_device");
  if (!maker || !model) return std::nullopt;
  return (*maker << 16U) | *model;
}

// The hardware ID of a device on ACPI: the first field of the module alias where the kernel has no
// attribute of its own for it.
std::string AcpiHardwareId(const fs::path& device) {
  std::string id = ReadAttribute(device, "hid");
  if (!id.empty()) return id;
  constexpr std::string_view kAliasPrefix = "acpi:";
  std::string_view alias;
  const std::string text = ReadAttribute(device, "modalias");
  if (text.starts_with(kAliasPrefix)) alias = std::string_view(text).substr(kAliasPrefix.size());
  return std::string(alias.substr(0, alias.find(':')));
}

// The firmware describes devices of other models too; their status lacks the bit for "present". A
// device without a status is there.
bool IsPresent(const fs::path& acpiDevice) {
  constexpr std::uint32_t kPresent = 1;
  const std::string status = ReadAttribute(acpiDevice, "status");
  return status.empty() || (ParseNumber(status, 10).value_or(0) & kPresent) != 0;
}

std::optional<DeviceRecord> ReadAcpiCodec(const fs::path& device,
                                          std::optional<std::uint32_t> subsystem) {
  const std::string hardwareId = AcpiHardwareId(device);
  const std::optional<std::uint32_t> number = ParseNumber(hardwareId, 16);
  constexpr std::size_t kDigits = 8;
  if (hardwareId.size() != kDigits || !number || !IsPresent(device)) return std::nullopt;
  const std::uint32_t maker = *number >> 16U;
  if (maker != kRealtek && maker != kConexant) return std::nullopt;
  const std::u16string id = Format("ACPI\\VEN_%04X&DEV_%04X", maker, *number & 0xFFFFU);

  DeviceRecord record;
  if (subsystem) record.hardwareIds.push_back(id + Format("&SUBSYS_%08X", *subsystem));
  record.hardwareIds.push_back(id);
  record.deviceClass = kMediaClass;
  record.classGuid = kMediaClassGuid;
  return record;
}

}  // namespace

SysfsDeviceSetup::SysfsDeviceSetup(fs::path sysfsRoot) : sysfsRoot_(std::move(sysfsRoot)) {}

std::unique_ptr<DeviceInfoSet> SysfsDeviceSetup::PresentDevices() {
  std::error_code error;
  if (!fs::is_directory(sysfsRoot_, error)) return nullptr;
  std::vector<DeviceRecord> devices;
  for (const fs::path& codec : DevicesOf(sysfsRoot_ / "bus/hdaudio")) {
    if (auto device = ReadHdAudioCodec(codec)) devices.push_back(std::move(*device));
  }
  const std::optional<std::uint32_t> subsystem = ControllerSubsystem(sysfsRoot_);
  for (const fs::path& acpiDevice : DevicesOf(sysfsRoot_ / "bus/acpi")) {
    if (auto device = ReadAcpiCodec(acpiDevice, subsystem)) devices.push_back(std::move(*device));
  }
  return std::make_unique<DeviceList>(std::move(devices));
}

}  // namespace platform
