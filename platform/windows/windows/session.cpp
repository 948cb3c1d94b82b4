#include "platform/shell.h"

namespace platform {

// A second copy finds the windows by their titles and brings them forward itself.
struct UserInterfaceSession::Impl {};

UserInterfaceSession::UserInterfaceSession(SingleInstance& /*singleInstance*/) {}
UserInterfaceSession::~UserInterfaceSession() = default;

}  // namespace platform
