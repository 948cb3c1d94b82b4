// Command lines, the words divided by NULs: the panel's, which installs for one word only, and
// regtool's with the texts of values.
#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "app/kel_control_app.h"
#include "platform/text.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/input.h"
#include "tests/support/fake_machine.h"
#include "tools/regtool/arguments.h"
#include "tools/regtool/commands.h"

namespace {

class CountingWindows : public app::ProductWindows {
 public:
  void ShowUnsupportedModel() override { ++unsupported; }
  void RunMainWindow(const app::ModelInfo&) override { ++shown; }

  int unsupported = 0;
  int shown = 0;
};

bool IsInstallWord(std::string_view word) {
  constexpr std::string_view kWord = "/INIT";
  return word.size() == kWord.size() &&
         std::equal(word.begin(), word.end(), kWord.begin(), [](char given, char wanted) {
           return given == wanted || (given >= 'a' && given <= 'z' && given - 32 == wanted);
         });
}

// On a machine that is not supported the two modes end with different codes.
void RunPanel(const std::vector<std::string>& words) {
  support::FakeMachine machine;
  std::vector<std::u16string> arguments;
  for (const std::string& word : words) arguments.push_back(platform::FromUtf8(word));
  CountingWindows windows;
  app::CKelControlApp application(machine.platform, windows, arguments);
  application.InitInstance();
  const bool isInstall = words.size() == 1 && IsInstallWord(words.front());
  fuzz::Require(application.ExitInstance() ==
                        (isInstall ? app::kExitInstallFailure : app::kExitUnsupported) &&
                    windows.unsupported == (isInstall ? 0 : 1) && windows.shown == 0,
                "only \"/init\" alone installs");
}

void RunRegtool(const std::vector<std::string>& words) {
  std::string problem;
  const auto arguments = regtool::ParseArguments(words, &problem);
  fuzz::Require(arguments.has_value() == problem.empty(), "a wrong call has a reason");
  if (!arguments || arguments->command == regtool::Command::Help) return;
  platform::FakeRegistry registry;
  std::istringstream input;
  std::ostringstream output;
  std::ostringstream errors;
  const regtool::Outcome outcome =
      regtool::RunCommand(registry, *arguments, {input, output, errors});
  fuzz::Require((outcome == regtool::Outcome::Failed) == !errors.str().empty(),
                "a failure is told");
  if (arguments->command != regtool::Command::Add || outcome != regtool::Outcome::Done) return;
  regtool::Arguments query = *arguments;
  query.command = regtool::Command::Query;
  if (query.type || query.data) query.name = query.name.value_or(u"");
  fuzz::Require(
      regtool::RunCommand(registry, query, {input, output, errors}) == regtool::Outcome::Done,
      "what was added is found");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::AsText(data, size);
  fuzz::Require(platform::ToUtf8(platform::FromUtf8(text)) == text,
                "bytes come back from UTF-16 as they were");
  const std::vector<std::string_view> pieces = fuzz::Split(text, '\0');
  const std::vector<std::string> words(pieces.begin(), pieces.end());
  RunPanel(words);
  RunRegtool(words);
  return 0;
}
