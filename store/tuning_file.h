// The factory's tuning file ("*.vtd"): the parts at its beginning, before the routes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "store/sequential_reader.h"

namespace store {

// Version 1 has no properties block.
inline constexpr std::uint16_t kTuningFormat1 = 0x0100;
inline constexpr std::uint16_t kTuningFormat2 = 0x0200;

struct TuningHeader {
  std::uint16_t formatVersion;
  std::uint32_t ssid;
  std::uint32_t routeCount;
};

// One bit for each setting, bit 0 for setting 1: a tuned set is in the file.
struct TuningStatus {
  std::uint8_t internalSpeaker;
  std::uint8_t speakerWithSubwoofer;
  std::uint8_t headphone;
  std::uint8_t lineOut;
};

struct TuningProperties {
  std::string engineName;  // 8-bit text, at most 20 bytes
  std::int32_t engineMajorVersion;
  std::int32_t engineBuild;
  std::string toolVersion;  // 8-bit text, at most 10 bytes
  std::uint16_t dataVersion;
  std::uint32_t date;  // eight decimal digits, YYYYMMDD or DDMMYYYY
  TuningStatus status;
};

// Nothing when the header cannot be read or is that of no tuning file.
std::optional<TuningHeader> ReadTuningHeader(SequentialReader& reader);

// Nothing when the block cannot be read.
std::optional<TuningProperties> ReadTuningProperties(SequentialReader& reader);

}  // namespace store
