// The registry from a shell, after the original platform's own command.
#include <cstdlib>
#include <iostream>
#include <string>

#include "platform/host_tools.h"
#include "tools/regtool/arguments.h"
#include "tools/regtool/commands.h"

namespace {

constexpr const char* kHelp = R"(regtool query KEY [/v NAME] [/s]
regtool add KEY [/v NAME] [/t TYPE] [/d DATA] [/f]
regtool delete KEY [/v NAME] [/f]

KEY   a path that begins with HKLM (HKEY_LOCAL_MACHINE) or HKCR (HKEY_CLASSES_ROOT)
/v    the value's name; "" is the key's default value
/s    everything below the key too
/t    REG_SZ (default), REG_EXPAND_SZ, REG_MULTI_SZ, REG_BINARY, REG_DWORD, REG_QWORD, REG_NONE
/d    text; for REG_DWORD and REG_QWORD a number in decimal or 0x...; for REG_BINARY hexadecimal
      digits; for REG_MULTI_SZ texts divided by \0
/f    do not ask before overwriting or deleting

Exit status: 0 when it was done, else 1. TONALYX_ROOT names the folder of the store.
)";

}  // namespace

int main(int argc, char** argv) {
  std::string problem;
  const auto arguments =
      regtool::ParseArguments(platform::CommandLineArguments(argc, argv), &problem);
  if (!arguments) {
    std::cerr << "regtool: " << problem << "; see regtool --help\n";
    return EXIT_FAILURE;
  }
  if (arguments->command == regtool::Command::Help) {
    std::cout << kHelp;
    return EXIT_SUCCESS;
  }
  const auto registry = platform::OpenHostRegistry();
  const auto outcome = regtool::RunCommand(*registry, *arguments, {std::cin, std::cout, std::cerr});
  return outcome == regtool::Outcome::Done ? EXIT_SUCCESS : EXIT_FAILURE;
}
