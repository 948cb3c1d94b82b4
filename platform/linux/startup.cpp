#include "platform/startup.h"

namespace platform {

// The toolkit joins the desktop in the user-interface session and needs nothing before that, and
// desktops offer no restart registration.
void RegisterCommonControls(std::uint32_t) {}
void RegisterForRestart() {}
DrawingSession::DrawingSession() : token_(0) {}
DrawingSession::~DrawingSession() {
  token_ = 0;
}

}  // namespace platform
