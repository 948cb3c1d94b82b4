// What changed among the engine's parameters and active settings since the last look.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/registry.h"

namespace tools {

struct ActiveSetting {
  std::u16string pathKey;
  std::u16string setting;
};

struct ChangedParameter {
  enum class State { Active, Idle };

  std::u16string pathKey;
  std::u16string setting;
  std::uint32_t number;
  float value;
  State state;  // whether the setting is its route's active one
};

// Both by route, the parameters then by setting and number.
struct StoreChanges {
  std::vector<ActiveSetting> activeSettings;
  std::vector<ChangedParameter> parameters;
};

// Sees every setting of every route. A parameter that is new has changed too; one that is gone has
// not.
class ParameterWatch {
 public:
  // Takes the state of the registry as the one that changes are told against.
  explicit ParameterWatch(platform::Registry& registry);

  StoreChanges Look();

  // Of every route, as of the last look.
  std::vector<ActiveSetting> ActiveSettings() const;

 private:
  using Place = std::pair<std::u16string, std::u16string>;    // path key, setting
  using Parameters = std::map<std::uint32_t, std::uint32_t>;  // number to the float's bits

  struct State {
    std::map<std::u16string, std::u16string> active;  // path key to setting
    std::map<Place, Parameters> parameters;
  };

  State Read() const;

  platform::Registry& registry_;
  State last_;
};

}  // namespace tools
