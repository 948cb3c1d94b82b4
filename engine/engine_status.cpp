#include "engine/engine_status.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <sstream>

namespace engine {
namespace {

using Json = nlohmann::ordered_json;

template <typename Value>
Json OrNull(const Value& value, bool isKnown) {
  return isKnown ? Json(value) : Json(nullptr);
}

Json OrNull(const std::string& text) {
  return OrNull(text, !text.empty());
}

Json OrNull(std::uint32_t number) {
  return OrNull(number, number != 0);
}

double Milliseconds(std::uint32_t frames, std::uint32_t rate) {
  return 1000.0 * frames / rate;
}

// "1024 frames, 21.3 ms"
std::string FramesText(const Json& frames, const Json& rate) {
  if (!frames.is_number() || !rate.is_number()) return "not known yet";
  const auto number = frames.get<std::uint32_t>();
  char text[64];
  std::snprintf(text, sizeof(text), "%u frames, %.1f ms", number,
                Milliseconds(number, rate.get<std::uint32_t>()));
  return text;
}

std::string NameText(const Json& name, const char* none) {
  return name.is_string() ? name.get<std::string>() : none;
}

std::string RateText(const Json& rate) {
  return rate.is_number() ? rate.dump() + " Hz" : "not known yet";
}

std::string PercentText(double share) {
  char text[32];
  std::snprintf(text, sizeof(text), "%.2f %%", 100.0 * share);
  return text;
}

std::string Lines(const Json& status) {
  std::ostringstream text;
  text << "state:    " << status.at("state").get<std::string>() << '\n'
       << "sink:     " << NameText(status.at("sink"), "none") << '\n'
       << "rate:     " << RateText(status.at("rate")) << '\n'
       << "quantum:  " << FramesText(status.at("quantum"), status.at("rate")) << '\n'
       << "latency:  " << FramesText(status.at("latency"), status.at("rate")) << '\n'
       << "route:    " << NameText(status.at("route"), "none, sound passes through") << '\n'
       << "setting:  " << NameText(status.at("setting"), "none") << '\n'
       << "load:     " << PercentText(status.at("load").get<double>()) << '\n'
       << "xruns:    " << status.at("xruns").dump() << '\n';
  return text.str();
}

}  // namespace

std::string StatusJson(const AudioStatus& audio, const SetStatus& set) {
  const bool hasRate = audio.rate != 0;
  const Json status = {{"state", audio.isPlaying ? "playing" : "idle"},
                       {"sink", OrNull(audio.sink)},
                       {"rate", OrNull(audio.rate)},
                       {"quantum", OrNull(audio.quantum)},
                       {"latency", OrNull(audio.latency, hasRate)},
                       {"route", OrNull(set.route)},
                       {"pathKey", OrNull(set.pathKey)},
                       {"setting", OrNull(set.setting)},
                       {"load", audio.load},
                       {"xruns", audio.xruns}};
  return status.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string StatusText(std::string_view json) {
  const Json status = Json::parse(json, nullptr, false);
  if (!status.is_object()) return {};
  try {
    return Lines(status);
  } catch (const Json::exception&) {  // an engine of another version
    return {};
  }
}

}  // namespace engine
