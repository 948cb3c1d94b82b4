#include "platform/virtual/laptop_file.h"

#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "platform/text.h"
#include "platform/virtual/laptop_file_reader.h"
#include "platform/virtual/tracked_text.h"

namespace platform {
namespace {

using Json = nlohmann::ordered_json;

void SetText(Json& object, const char* member, const std::u16string& text) {
  if (!text.empty()) object[member] = ToUtf8(text);
}

Json DeviceToJson(const DeviceRecord& device) {
  Json object = Json::object();
  if (!device.hardwareIds.empty()) {
    Json& ids = object["hardwareIds"] = Json::array();
    for (const std::u16string& id : device.hardwareIds) ids.push_back(ToUtf8(id));
  }
  SetText(object, "description", device.description);
  SetText(object, "class", device.deviceClass);
  SetText(object, "classGuid", device.classGuid);
  object["status"] = device.status == DeviceRecord::Status::Ok ? "ok" : "failed";
  return object;
}

Json EndpointToJson(const ListedEndpoint& endpoint) {
  Json object = Json::object();
  SetText(object, "id", endpoint.id);
  SetText(object, "guid", endpoint.guid);
  SetText(object, "jackSubType", endpoint.jackSubType);
  SetText(object, "adapter", endpoint.adapter);
  object["state"] = endpoint.state == kDeviceStateActive ? "active" : "unplugged";
  object["peak"] = endpoint.level;
  return object;
}

}  // namespace

std::optional<LaptopFile> ParseLaptopFile(std::string_view text, LaptopFileError* error) {
  TrackedText tracked(text);
  LaptopFileReader reader(tracked);
  const bool parsed = nlohmann::json::sax_parse(tracked.Begin(), tracked.End(), &reader);
  if (parsed) return std::move(reader).Result();
  if (error != nullptr) *error = reader.Error();
  return std::nullopt;
}

std::string SerialiseLaptopFile(const LaptopFile& laptop) {
  Json root = Json::object();
  if (laptop.devices) {
    Json& devices = root["devices"] = Json::array();
    for (const DeviceRecord& device : *laptop.devices) devices.push_back(DeviceToJson(device));
  }
  if (laptop.endpoints) {
    Json& endpoints = root["endpoints"] = Json::array();
    for (const ListedEndpoint& endpoint : *laptop.endpoints) {
      endpoints.push_back(EndpointToJson(endpoint));
    }
  }
  SetText(root, "defaultEndpoint", laptop.defaultEndpoint);
  return root.dump(2) + "\n";
}

}  // namespace platform
