// What changed among the engine's parameters since the last look.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/registry.h"

namespace tools {

struct ChangedParameter {
  std::u16string pathKey;
  std::u16string setting;
  std::uint32_t number;
  float value;
};

// Sees every setting of every route. A parameter that is new has changed too; one that is gone has
// not.
class ParameterWatch {
 public:
  // Takes the state of the registry as the one that changes are told against.
  explicit ParameterWatch(platform::Registry& registry);

  // By route, setting and parameter number.
  std::vector<ChangedParameter> Look();

 private:
  using Place = std::pair<std::u16string, std::u16string>;    // path key, setting
  using Parameters = std::map<std::uint32_t, std::uint32_t>;  // number to the float's bits

  std::map<Place, Parameters> Read() const;

  platform::Registry& registry_;
  std::map<Place, Parameters> last_;
};

}  // namespace tools
