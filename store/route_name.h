// The routes of the store by the names that people give them.
#pragma once

#include <string>
#include <string_view>

namespace store {

// The path key itself for a route without a name.
std::string RouteName(std::u16string_view pathKey);

}  // namespace store
