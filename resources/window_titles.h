// The titles by which a second copy finds the windows of the running one.
#pragma once

#include <string_view>

namespace resources {

inline constexpr std::u16string_view kMainTitle = u"Tonalyx";
inline constexpr std::u16string_view kAdvancedTitle = u"Velsona";

}  // namespace resources
