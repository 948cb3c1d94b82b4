// The command line of regtool.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace regtool {

enum class Command { Query, Add, Delete, Help };
enum class Depth { OneKey, Recursive };
enum class Consent { Ask, Given };

struct Arguments {
  Command command = Command::Help;
  platform::RegistryRoot root = platform::RegistryRoot::LocalMachine;
  std::u16string path;                 // below the root, empty for the root itself
  std::optional<std::u16string> name;  // of the value; empty for the default value
  std::optional<platform::RegistryType> type;
  std::optional<std::u16string> data;
  Depth depth = Depth::OneKey;
  Consent consent = Consent::Ask;
};

// The arguments after the program's name. Nothing, and what is wrong in `problem`, for a wrong
// call.
std::optional<Arguments> ParseArguments(const std::vector<std::string>& words,
                                        std::string* problem);

// The long name of a root.
std::string_view RootName(platform::RegistryRoot root);

}  // namespace regtool
