// A tuning as vtdmake's source describes it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/guid.h"
#include "tools/vtdmake/json_source.h"

namespace tools {

// The texts fit their fields in the file with a NUL.
struct TuningFacts {
  std::string apoName;
  std::int32_t apoMajor = 0;
  std::int32_t apoBuild = 0;
  std::string toolVersion;
  std::uint16_t dataVersion = 0;
  std::uint32_t date = 0;
  std::uint8_t statusSpeaker = 0;
  std::uint8_t statusSubwoofer = 0;
  std::uint8_t statusHeadphone = 0;
  std::uint8_t statusLineOut = 0;
};

inline constexpr std::size_t kApoNameWidth = 20;
inline constexpr std::size_t kToolVersionWidth = 10;

struct TuningRoute {
  platform::Guid guid;
  std::vector<std::vector<float>> settings;
};

struct TuningDescription {
  std::uint16_t version = 0;
  std::uint32_t ssid = 0;
  TuningFacts properties;  // part of the file from version 0x0200 on
  std::vector<TuningRoute> routes;
};

inline constexpr std::uint16_t kVersionWithoutProperties = 0x0100;
inline constexpr std::uint16_t kVersionWithProperties = 0x0200;

// Throws a SourceError that names the field.
TuningDescription DescribeTuning(const JsonNode& source);

}  // namespace tools
