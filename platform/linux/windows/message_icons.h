// The symbols of message boxes, drawn in the manner of the program's own artwork.
#pragma once

#include <QIcon>
#include <QStyle>
#include <optional>

namespace platform {

// Nothing for symbols that are not those of message boxes. `size` in pixels.
std::optional<QIcon> MessageIcon(QStyle::StandardPixmap symbol, int size);

}  // namespace platform
