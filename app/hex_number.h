#pragma once

#include <cstdint>
#include <string_view>

namespace app {

// Base-16 text to a 32-bit number as the C library's conversion does it: leading blanks, a sign and
// "0x" are accepted, the first other character ends the number, too large values saturate, no
// digits give 0.
std::int32_t ParseHexLong(std::u16string_view text);

}  // namespace app
