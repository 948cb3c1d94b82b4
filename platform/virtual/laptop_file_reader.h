// Builds a LaptopFile from the events of the JSON parser, so that every error has its place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/virtual/laptop_file.h"
#include "platform/virtual/tracked_text.h"

namespace platform {

// One per text; the functions are those that the parser calls and answer whether to go on.
class LaptopFileReader {
 public:
  explicit LaptopFileReader(const TrackedText& text) : text_(text) {}

  LaptopFile Result() && { return std::move(laptop_); }
  const LaptopFileError& Error() const { return error_; }

  bool null();
  bool boolean(bool value);
  bool number_integer(std::int64_t value);
  bool number_unsigned(std::uint64_t value);
  bool number_float(double value, const std::string& digits);
  bool string(std::string& value);
  bool binary(std::vector<std::uint8_t>& value);
  bool start_object(std::size_t size);
  bool key(std::string& name);
  bool end_object();
  bool start_array(std::size_t size);
  bool end_array();
  bool parse_error(std::size_t position, const std::string& token,
                   const nlohmann::json::exception& exception);

 private:
  // What the parser is inside of; Skipped is the value of an unknown member.
  enum class Place { Document, Root, Devices, Device, HardwareIds, Endpoints, Endpoint, Skipped };

  Place Where() const { return places_.back(); }
  bool Enter(Place place);
  // What the value of the current member, or the current element, has to be; empty when any value
  // is skipped there.
  std::string Expectation() const;
  bool Number(double value);
  bool SetDeviceText(const std::string& value);
  bool SetEndpointText(const std::string& value);
  bool SetState(const std::string& value);
  bool Fail(TextPosition position, std::string message);
  bool Mismatch(TextPosition (TrackedText::*start)() const);

  const TrackedText& text_;
  LaptopFile laptop_;
  LaptopFileError error_;
  std::vector<Place> places_ = {Place::Document};
  std::string member_;
};

}  // namespace platform
