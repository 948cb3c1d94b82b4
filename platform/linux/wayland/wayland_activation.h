// The right to come forward, which a Wayland desktop hands out as a token.
#pragma once

#include <string>

namespace platform::wayland {

// A token as a launcher asks for one before it starts a program; empty without a Wayland desktop,
// or when it gives none. Asks over a connection of its own and waits for the answer.
std::string RequestActivationToken();

}  // namespace platform::wayland
