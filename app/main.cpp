#include <string>
#include <vector>

#include "app/kel_control_app.h"
#include "app/skinned_windows.h"
#include "platform/host.h"
#include "platform/text.h"

int main(int argc, char** argv) {
  std::vector<std::u16string> arguments;
  for (int i = 1; i < argc; ++i) arguments.push_back(platform::FromUtf8(argv[i]));
  platform::Host host;
  app::SkinnedWindows windows(host.Get());
  app::CKelControlApp application(host.Get(), windows, arguments);
  application.InitInstance();
  return application.ExitInstance();
}
