#include "tools/vtdmake/tuning_encoding.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace tools {
namespace {

// Puts fields one behind the other, numbers little-endian.
class FieldWriter {
 public:
  template <class Number>
  void AddNumber(Number number) {
    const auto bits = static_cast<std::uint32_t>(number);
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
      bytes_.push_back(static_cast<char>(bits >> (8U * i) & 0xFFU));
    }
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
