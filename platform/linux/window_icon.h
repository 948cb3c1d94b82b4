#pragma once

#include <QIcon>
#include <cstdint>

namespace platform {

// The icon resource in all sizes that a window needs; empty when there is none.
QIcon LoadWindowIcon(std::uint16_t iconResource);

}  // namespace platform
