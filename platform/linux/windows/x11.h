// The few questions and wishes to an X server that the toolkit does not carry. All of them do
// nothing on other display systems.
#pragma once

#include <QWindow>
#include <optional>

#include "platform/screen.h"

namespace platform::x11 {

// Xft.dpi of the resource manager, else the server's own resolution.
std::optional<ScreenDpi> ReadDpi();

// True also where the display system always blends windows.
bool CompositorRuns();

// Asks the window manager, as a task bar does, to bring the window to the front and to give it the
// focus. False when this is no X server.
bool Activate(WId window);

}  // namespace platform::x11
