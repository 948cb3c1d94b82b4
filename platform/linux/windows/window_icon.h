#pragma once

#include <QIcon>
#include <cstdint>
#include <map>

namespace platform {

// Each icon is decoded once: the toolkit keeps copies of what it has shown of an icon for some
// time, so that a new one for every window would pile up.
class WindowIcons {
 public:
  // The icon resource in all sizes that a window needs; empty when there is none.
  const QIcon& Find(std::uint16_t iconResource);

 private:
  std::map<std::uint16_t, QIcon> icons_;
};

// The session's icon; empty without a session.
QIcon LoadWindowIcon(std::uint16_t iconResource);

}  // namespace platform
