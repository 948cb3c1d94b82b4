#include "platform/virtual/laptop_file_reader.h"

#include <map>
#include <string_view>
#include <utility>

#include "platform/text.h"

namespace platform {
namespace {

// Far from what the call stack of whoever handles the same text as a tree could not bear.
constexpr std::size_t kMaxDepth = 64;

using DeviceText = std::u16string DeviceRecord::*;
using EndpointText = std::u16string ListedEndpoint::*;

constexpr std::pair<std::string_view, DeviceText> kDeviceTexts[] = {
    {"description", &DeviceRecord::description},
    {"class", &DeviceRecord::deviceClass},
    {"classGuid", &DeviceRecord::classGuid}};

constexpr std::pair<std::string_view, EndpointText> kEndpointTexts[] = {
    {"id", &ListedEndpoint::id},
    {"guid", &ListedEndpoint::guid},
    {"jackSubType", &ListedEndpoint::jackSubType},
    {"adapter", &ListedEndpoint::adapter}};

template <typename Table>
auto FindText(const Table& table, std::string_view member) -> decltype(std::begin(table)->second) {
  for (const auto& [name, text] : table) {
    if (name == member) return text;
  }
  return nullptr;
}

// The parser's words without its own account of what and where.
std::string Explanation(std::string_view words) {
  for (const std::string_view end : {": ", "] "}) {
    const std::size_t found = words.find(end);
    if (found != std::string_view::npos) return std::string(words.substr(found + end.size()));
  }
  return std::string(words);
}

}  // namespace

bool LaptopFileReader::null() {
  // A null member counts as missing.
  if (Where() == Place::Document || Where() == Place::Devices || Where() == Place::HardwareIds ||
      Where() == Place::Endpoints) {
    return Mismatch(&TrackedText::StartOfWord);
  }
  return true;
}

bool LaptopFileReader::boolean(bool /*value*/) {
  return Mismatch(&TrackedText::StartOfWord);
}

bool LaptopFileReader::number_integer(std::int64_t value) {
  return Number(static_cast<double>(value));
}

bool LaptopFileReader::number_unsigned(std::uint64_t value) {
  return Number(static_cast<double>(value));
}

bool LaptopFileReader::number_float(double value, const std::string& /*digits*/) {
  return Number(value);
}

bool LaptopFileReader::Number(double value) {
  if (Where() != Place::Endpoint || member_ != "peak" || !(value >= 0.0 && value <= 1.0)) {
    return Mismatch(&TrackedText::StartOfWord);
  }
  laptop_.endpoints->back().level = static_cast<float>(value);
  return true;
}

bool LaptopFileReader::string(std::string& value) {
  switch (Where()) {
    case Place::Root:
      if (member_ != "defaultEndpoint") break;
      laptop_.defaultEndpoint = FromUtf8(value);
      return true;
    case Place::Device:
      if (!SetDeviceText(value)) break;
      return true;
    case Place::HardwareIds:
      laptop_.devices->back().hardwareIds.push_back(FromUtf8(value));
      return true;
    case Place::Endpoint:
      if (!SetEndpointText(value)) break;
      return true;
    case Place::Document:
    case Place::Devices:
    case Place::Endpoints:
    case Place::Skipped:
      break;
  }
  return Mismatch(&TrackedText::StartOfString);
}

bool LaptopFileReader::SetDeviceText(const std::string& value) {
  DeviceRecord& device = laptop_.devices->back();
  if (member_ == "status") {
    device.status = value == "ok" ? DeviceRecord::Status::Ok : DeviceRecord::Status::QueryFails;
    return true;
  }
  const DeviceText text = FindText(kDeviceTexts, member_);
  if (text == nullptr) return false;
  device.*text = FromUtf8(value);
  return true;
}

bool LaptopFileReader::SetEndpointText(const std::string& value) {
  if (member_ == "state") return SetState(value);
  const EndpointText text = FindText(kEndpointTexts, member_);
  if (text == nullptr) return false;
  laptop_.endpoints->back().*text = FromUtf8(value);
  return true;
}

bool LaptopFileReader::SetState(const std::string& value) {
  std::uint32_t& state = laptop_.endpoints->back().state;
  if (value == "active") {
    state = kDeviceStateActive;
  } else if (value == "unplugged") {
    state = kDeviceStateUnplugged;
  } else {
    return false;
  }
  return true;
}

bool LaptopFileReader::binary(std::vector<std::uint8_t>& /*value*/) {
  return false;
}

bool LaptopFileReader::start_object(std::size_t /*size*/) {
  switch (Where()) {
    case Place::Document:
      return Enter(Place::Root);
    case Place::Devices:
      laptop_.devices->emplace_back();
      return Enter(Place::Device);
    case Place::Endpoints:
      laptop_.endpoints->emplace_back();
      return Enter(Place::Endpoint);
    default:
      return Mismatch(&TrackedText::StartOfBracket) && Enter(Place::Skipped);
  }
}

bool LaptopFileReader::start_array(std::size_t /*size*/) {
  if (Where() == Place::Root && member_ == "devices") {
    laptop_.devices.emplace();
    return Enter(Place::Devices);
  }
  if (Where() == Place::Root && member_ == "endpoints") {
    laptop_.endpoints.emplace();
    return Enter(Place::Endpoints);
  }
  if (Where() == Place::Device && member_ == "hardwareIds") {
    laptop_.devices->back().hardwareIds.clear();
    return Enter(Place::HardwareIds);
  }
  return Mismatch(&TrackedText::StartOfBracket) && Enter(Place::Skipped);
}

bool LaptopFileReader::key(std::string& name) {
  member_ = name;
  return true;
}

bool LaptopFileReader::end_object() {
  places_.pop_back();
  return true;
}

bool LaptopFileReader::end_array() {
  places_.pop_back();
  return true;
}

bool LaptopFileReader::Enter(Place place) {
  if (places_.size() > kMaxDepth) return Fail(text_.StartOfBracket(), "nested too deeply");
  places_.push_back(place);
  return true;
}

std::string LaptopFileReader::Expectation() const {
  const std::string quoted = "\"" + member_ + "\" must be ";
  switch (Where()) {
    case Place::Document:
      return "the file must hold one object";
    case Place::Root:
      if (member_ == "devices" || member_ == "endpoints") return quoted + "a list";
      if (member_ == "defaultEndpoint") return quoted + "a text";
      return {};
    case Place::Devices:
      return "a device must be an object";
    case Place::HardwareIds:
      return "a hardware ID must be a text";
    case Place::Endpoints:
      return "an endpoint must be an object";
    case Place::Device:
      if (member_ == "hardwareIds") return quoted + "a list";
      if (member_ == "status" || FindText(kDeviceTexts, member_) != nullptr) {
        return quoted + "a text";
      }
      return {};
    case Place::Endpoint:
      if (member_ == "state") return quoted + "\"active\" or \"unplugged\"";
      if (member_ == "peak") return quoted + "a number from 0 to 1";
      if (FindText(kEndpointTexts, member_) != nullptr) return quoted + "a text";
      return {};
    case Place::Skipped:
      break;
  }
  return {};
}

bool LaptopFileReader::Mismatch(TextPosition (TrackedText::*start)() const) {
  std::string expectation = Expectation();
  return expectation.empty() || Fail((text_.*start)(), std::move(expectation));
}

bool LaptopFileReader::Fail(TextPosition position, std::string message) {
  error_ = {position.line, position.column, std::move(message)};
  return false;
}

bool LaptopFileReader::parse_error(std::size_t position, const std::string& /*token*/,
                                   const nlohmann::json::exception& exception) {
  // The position counts the characters read, with the one that does not fit.
  return Fail(text_.PositionOf(position == 0 ? 0 : position - 1), Explanation(exception.what()));
}

}  // namespace platform
