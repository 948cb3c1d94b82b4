#include "platform/host_tools.h"

#include <windows.h>

#include <shellapi.h>

#include "platform/text.h"
#include "platform/windows/events/kernel_event_listener.h"
#include "platform/windows/handle.h"
#include "platform/windows/registry/windows_registry.h"
#include "platform/windows/wide_text.h"

namespace platform {

// What the C library hands to main is in the ANSI code page, so the system is asked.
std::vector<std::string> CommandLineArguments(int /*argc*/, char** /*argv*/) {
  std::vector<std::string> arguments;
  int count = 0;
  const OwnedHandle<wchar_t**, &LocalFree> texts(CommandLineToArgvW(GetCommandLineW(), &count));
  if (!texts.IsOpen()) return arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(ToUtf8(FromWide(texts.Get()[i])));
  return arguments;
}

std::filesystem::path ArgumentPath(std::string_view argument) {
  return ToWide(FromUtf8(argument));
}

std::unique_ptr<Registry> OpenHostRegistry() {
  return std::make_unique<WindowsRegistry>();
}

std::unique_ptr<EventListener> MakeHostEventListener() {
  return std::make_unique<KernelEventListener>();
}

// Such a write just fails here.
void KeepBrokenOutputAFailure() {}

}  // namespace platform
