// Text between the toolkit and the rest.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace platform {

inline QString ToQString(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace platform
