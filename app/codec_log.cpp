#include "app/codec_log.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

#include "platform/text.h"
#include "store/diagnostic_log.h"

namespace app {
namespace {

struct ProcessingObjectClass {
  const char* name;
  const char* clsid;
};

constexpr std::array<ProcessingObjectClass, 5> kClasses = {{
    {"VELSONAAPO_GFX_CLASS", "{2B4139E7-89E4-4458-A087-827B58916AC7}"},
    {"VELSONAAPO_EFX_CLASS", "{DFCCA0CA-849C-4D9C-87DC-E0BE0AD7BAF9}"},
    {"VELSONAAPO_MFX_CLASS", "{EC5B94CA-4341-4C74-B34B-CB62CA177621}"},
    {"VELSONAAPO_SFX_CLASS", "{7D22DA36-19D1-4D0D-9E9F-ACED5148F9DD}"},
    {"VELSONAAPO_LFX_CLASS", "{1C02106E-1BE3-4686-998F-9B33CBCFCF8B}"},
}};

constexpr std::size_t kRecordBytes = 512;  // a record's buffer, NUL included
constexpr std::size_t kTextUnits = 256;    // a registration's text buffer of 512 bytes

void WriteText(platform::File& log, std::string_view text) {
  text = text.substr(0, kRecordBytes - 1);
  log.Write(std::as_bytes(std::span(text)));
}

template <class... Arguments>
void WriteFormatted(platform::File& log, const char* format, Arguments... arguments) {
  std::array<char, kRecordBytes> record{};
  std::snprintf(record.data(), record.size(), format, arguments...);
  WriteText(log, record.data());
}

std::u16string ReadText(platform::RegistryKey& key, std::u16string_view name) {
  std::array<char16_t, kTextUnits> text{};
  auto size = static_cast<std::uint32_t>(sizeof(text));
  if (key.QueryValue(name, nullptr, text.data(), &size) != platform::RegistryStatus::Success) {
    return {};
  }
  const std::size_t stored = std::min<std::size_t>(size / sizeof(char16_t), text.size());
  const auto end =
      std::find(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(stored), u'\0');
  return {text.begin(), end};
}

std::int32_t ReadNumber(platform::RegistryKey& key, std::u16string_view name) {
  std::int32_t number = 0;
  std::uint32_t size = sizeof(number);
  if (key.QueryValue(name, nullptr, &number, &size) != platform::RegistryStatus::Success) return 0;
  return number;
}

void ReportClass(const ProcessingObjectClass& object, platform::File& log,
                 platform::Registry& registry) {
  const std::u16string path =
      u"AudioEngine\\AudioProcessingObjects\\" + platform::FromUtf8(object.clsid);
  const std::unique_ptr<platform::RegistryKey> key =
      registry.OpenKey(platform::RegistryRoot::ClassesRoot, path,
                       platform::kRegistryRead | platform::kRegistryView64);
  if (!key) {
    WriteFormatted(log, "%s %s not installed\r\n\r\n", object.name, object.clsid);
    return;
  }
  WriteText(log, platform::ToAnsi(ReadText(*key, u"FriendlyName") + u"\r\n"));
  WriteText(log, platform::ToAnsi(ReadText(*key, u"Copyright") + u"\r\n"));
  WriteFormatted(log, "%s version: %d.0.0.%d installed\r\n\r\n", object.name,
                 ReadNumber(*key, u"MajorVersion"), ReadNumber(*key, u"MinorVersion"));
}

}  // namespace

void LogCodecDevice(std::u16string_view identification, std::u16string_view familyLabel,
                    platform::FileSystem& files, platform::Registry& registry) {
  const std::unique_ptr<platform::File> log = store::OpenDiagnosticLog(files);
  if (!log) return;
  const std::string label = platform::ToAnsi(familyLabel);
  const std::string device = platform::ToAnsi(identification);
  WriteText(*log, device.substr(0, kRecordBytes - 1 - label.size()) + label);
  const std::unique_ptr<platform::RegistryScope> scope = registry.BeginRead();
  for (const ProcessingObjectClass& object : kClasses) ReportClass(object, *log, registry);
}

}  // namespace app
