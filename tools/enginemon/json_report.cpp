#include "tools/enginemon/json_report.h"

#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <string>

#include "dsp/eq_model.h"
#include "platform/text.h"
#include "store/route_name.h"
#include "tools/enginemon/parameter_meaning.h"

namespace tools {
namespace {

using Json = nlohmann::ordered_json;

void PrintLine(const Json& object, std::ostream& output) {
  output << object.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
}

void AddRoute(std::u16string_view pathKey, Json& object) {
  object["route"] = store::RouteName(pathKey);
  object["pathKey"] = platform::ToUtf8(pathKey);
}

// With the digits of the float, not with those of the double that is nearest to it.
Json NumberOf(float value) {
  if (!std::isfinite(value)) return nullptr;
  const std::string text = ShortestText(value);
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

template <typename Value>
Json OrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

// Adds "unit" and "shown", the value in that unit.
void AddInUnit(Unit unit, float value, Json& object) {
  switch (unit) {
    case Unit::Switch:
      object["unit"] = "switch";
      object["shown"] = dsp::IsOn(value);
      return;
    case Unit::FilterType:
      object["unit"] = "type";
      object["shown"] = OrNull(FilterTypeName(value));
      return;
    case Unit::Hertz:
      object["unit"] = "Hz";
      break;
    case Unit::Decibels:
      object["unit"] = "dB";
      object["shown"] = OrNull(DecibelsOf(value));
      return;
    case Unit::Q:
      object["unit"] = "Q";
      break;
    case Unit::Amount:
      object["unit"] = "amount";
      break;
  }
  object["shown"] = NumberOf(value);
}

}  // namespace

void JsonReport::Ready() {
  PrintLine({{"kind", "ready"}}, output_);
}

void JsonReport::Event(std::u16string_view name, std::uint64_t time) {
  PrintLine({{"kind", "event"}, {"name", platform::ToUtf8(name)}, {"time", time}}, output_);
}

void JsonReport::Route(std::u16string_view pathKey) {
  Json object = {{"kind", "route"}, {"route", nullptr}, {"pathKey", nullptr}};
  if (!pathKey.empty()) AddRoute(pathKey, object);
  PrintLine(object, output_);
}

void JsonReport::Setting(const ActiveSetting& setting) {
  Json object = {{"kind", "setting"}};
  AddRoute(setting.pathKey, object);
  object["active"] = platform::ToUtf8(setting.setting);
  PrintLine(object, output_);
}

void JsonReport::Parameter(const ChangedParameter& change) {
  Json object = {{"kind", "parameter"}};
  AddRoute(change.pathKey, object);
  object["setting"] = platform::ToUtf8(change.setting);
  object["active"] = change.state == ChangedParameter::State::Active;
  object["number"] = change.number;
  object["value"] = NumberOf(change.value);
  if (const auto meaning = MeaningOf(change.number)) {
    object["name"] = meaning->name;
    if (meaning->band != 0) {
      object["band"] = meaning->band;
      object["mirror"] = meaning->copy == ParameterMeaning::Copy::Mirror;
    }
    AddInUnit(meaning->unit, change.value, object);
  }
  PrintLine(object, output_);
}

}  // namespace tools
