#include "store/tuning_log.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace store {
namespace {

constexpr const char* kProgramVersion = "1, 0, 5, 40";

constexpr const char* kDavrinModes =
    "War Room: \t\t%s\r\nBattlefield: \t%s\r\nMultimedia: \t%s\r\nAction: \t\t%s\r\n"
    "Soundspace: \t%s\r\nOff: \t\t\t%s\r\n";
constexpr const char* kStandardModes =
    "Off: \t\t%s\r\nMusic: \t\t%s\r\nMovie: \t\t%s\r\nRecording: \t%s\r\nGaming: \t%s\r\n"
    "Speech: \t%s\r\n";

// A record is built in a buffer of 256 bytes and cut to what fits with its NUL.
template <class... Arguments>
std::string FormatRecord(const char* format, Arguments... arguments) {
  std::array<char, 256> buffer{};
  const int length = std::snprintf(buffer.data(), buffer.size(), format, arguments...);
  if (length < 0) return {};
  return {buffer.data(), std::min(static_cast<std::size_t>(length), buffer.size() - 1)};
}

std::string FormatFileRecord(const TuningHeader& header, std::uint32_t expectedSsid,
                             ModelFlags model) {
  return FormatRecord(
      "Norvane Tonalyx version: %s\r\nVTD file format: %02d%02d\r\nHWID (SVID/SSID): 0x%X(%d)\r\n"
      "GUI layers: %d\r\nDavrin model: %s\r\n",
      kProgramVersion, header.formatVersion & 0xFF, header.formatVersion >> 8, expectedSsid,
      static_cast<std::int32_t>(expectedSsid), model.threeGuiLayers ? 3 : 1,
      model.davrinModel ? "Yes" : "No");
}

// Only the third and fourth digit tell the two orders apart: a month or the middle of a year.
const char* DateOrder(std::uint32_t date) {
  return date / 10000 % 100 > 12 ? "YYYYMMDD" : "DDMMYYYY";
}

std::string FormatPropertiesRecord(const TuningProperties& properties) {
  return FormatRecord(
      "\r\nVTD tuning file properties:\r\nAPO name: %s\r\nAPO version: %d.0.0.%d\r\n"
      "Tuning Tool version: %s\r\nVTD Version: %u\r\nDate(%s): %08u\r\n",
      properties.engineName.c_str(), properties.engineMajorVersion, properties.engineBuild,
      properties.toolVersion.c_str(), static_cast<unsigned>(properties.dataVersion),
      DateOrder(properties.date), properties.date);
}

std::string FormatStatusRecord(const char* route, std::uint8_t status, ModelFlags model) {
  const auto text = [status](unsigned bit) {
    return (status >> bit & 1U) != 0 ? "Set" : "Not set";
  };
  const std::string format = std::string("\r\nTuning status %s:\r\n") +
                             (model.davrinModel ? kDavrinModes : kStandardModes);
  return FormatRecord(format.c_str(), route, text(0), text(1), text(2), text(3), text(4), text(5));
}

}  // namespace

std::vector<std::string> FormatTuningLog(const TuningHeader& header,
                                         const TuningProperties* properties,
                                         std::uint32_t expectedSsid, ModelFlags model) {
  std::vector<std::string> records = {FormatFileRecord(header, expectedSsid, model)};
  if (properties != nullptr) {
    const TuningStatus& status = properties->status;
    records.push_back(FormatPropertiesRecord(*properties));
    records.push_back(FormatStatusRecord("internal speaker", status.internalSpeaker, model));
    records.push_back(FormatStatusRecord("headphone", status.headphone, model));
    records.push_back(FormatStatusRecord("line out", status.lineOut, model));
    records.push_back(
        FormatStatusRecord("internal speaker with subwoofer", status.speakerWithSubwoofer, model));
  }
  return records;
}

}  // namespace store
