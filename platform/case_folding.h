// The backend's part of comparing names without regard to case.
#pragma once

namespace platform {

// The form that stands for a code point and all that differ from it in case alone: its capital, by
// the system's tables. A lone surrogate comes back as it is. Any thread.
char32_t FoldCodePoint(char32_t point);

}  // namespace platform
