#include "platform/host_tools.h"

#include <signal.h>

#include "platform/linux/events/fifo_event_listener.h"
#include "platform/linux/files/state_folder.h"
#include "platform/linux/registry/sqlite_registry.h"

namespace platform {

std::vector<std::string> CommandLineArguments(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::filesystem::path ArgumentPath(std::string_view argument) {
  return argument;
}

std::unique_ptr<Registry> OpenHostRegistry() {
  return std::make_unique<SqliteRegistry>(StateFolder());
}

std::unique_ptr<EventListener> MakeHostEventListener() {
  return std::make_unique<FifoEventListener>(StateFolder() / "events");
}

void KeepBrokenOutputAFailure() {
  signal(SIGPIPE, SIG_IGN);
}

}  // namespace platform
