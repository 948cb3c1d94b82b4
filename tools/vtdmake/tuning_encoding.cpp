#include "tools/vtdmake/tuning_encoding.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/little_endian.h"

namespace tools {
namespace {

// Puts fields one behind the other, numbers little-endian.
class FieldWriter {
 public:
  template <class Number>
  void AddNumber(Number number) {
    std::array<std::byte, sizeof(Number)> bytes{};
    platform::ToLittleEndian(static_cast<std::make_unsigned_t<Number>>(number), std::span(bytes));
    for (const std::byte byte : bytes) bytes_.push_back(static_cast<char>(byte));
  }

  void AddText(std::string_view text) { bytes_.append(text); }

  void AddFixedText(std::string_view text, std::size_t width) {
    bytes_.append(text).append(width - text.size(), '\0');
  }

  std::string Take() { return std::move(bytes_); }

 private:
  std::string bytes_;
};

void AddProperties(FieldWriter& file, const TuningFacts& facts) {
  file.AddFixedText(facts.apoName, kApoNameWidth);
  file.AddNumber(facts.apoMajor);
  file.AddNumber(facts.apoBuild);
  file.AddFixedText(facts.toolVersion, kToolVersionWidth);
  file.AddNumber(facts.dataVersion);
  file.AddNumber(facts.date);
  file.AddNumber(facts.statusSpeaker);
  file.AddNumber(facts.statusSubwoofer);
  file.AddNumber(facts.statusHeadphone);
  file.AddNumber(facts.statusLineOut);
}

void AddGuid(FieldWriter& file, const platform::Guid& guid) {
  file.AddNumber(guid.data1);
  file.AddNumber(guid.data2);
  file.AddNumber(guid.data3);
  for (const std::uint8_t byte : guid.data4) file.AddNumber(byte);
}

void AddRoute(FieldWriter& file, const TuningRoute& route) {
  AddGuid(file, route.guid);
  file.AddNumber(static_cast<std::uint32_t>(route.settings.size()));
  for (const std::vector<float>& setting : route.settings) {
    file.AddNumber(static_cast<std::uint32_t>(setting.size()));
    for (const float value : setting) file.AddNumber(std::bit_cast<std::uint32_t>(value));
  }
}

}  // namespace

std::string EncodeTuning(const TuningDescription& tuning) {
  FieldWriter file;
  file.AddText("Kel");
  file.AddNumber(tuning.version);
  file.AddNumber(tuning.ssid);
  file.AddNumber(static_cast<std::uint32_t>(tuning.routes.size()));
  if (tuning.version == kVersionWithProperties) AddProperties(file, tuning.properties);
  for (const TuningRoute& route : tuning.routes) AddRoute(file, route);
  return file.Take();
}

}  // namespace tools
