#include <string>
#include <vector>

#include "app/kel_control_app.h"
#include "app/skinned_windows.h"
#include "platform/host.h"
#include "platform/host_tools.h"
#include "platform/text.h"

int main(int argc, char** argv) {
  std::vector<std::u16string> arguments;
  for (const std::string& argument : platform::CommandLineArguments(argc, argv)) {
    arguments.push_back(platform::FromUtf8(argument));
  }
  platform::Host host;
  app::SkinnedWindows windows(host.Get());
  app::CKelControlApp application(host.Get(), windows, arguments);
  application.InitInstance();
  return application.ExitInstance();
}
