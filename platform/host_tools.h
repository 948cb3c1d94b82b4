// What a command-line program asks of the platform that it was built for.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event_listener.h"
#include "platform/registry.h"

namespace platform {

// The arguments after the program's name, in UTF-8.
std::vector<std::string> CommandLineArguments(int argc, char** argv);

// An argument that names a file, as the system's own calls take it.
std::filesystem::path ArgumentPath(std::string_view argument);

// The machine's store, as Host has it. Opening writes nothing; not null.
std::unique_ptr<Registry> OpenHostRegistry();

// Makes events where the panel of this machine looks for them; not null.
std::unique_ptr<EventListener> MakeHostEventListener();

// Lets a write to an output whose reader is gone fail, instead of ending the program.
void KeepBrokenOutputAFailure();

}  // namespace platform
