// replay FOLDER: the main program of a fuzz target in a build without a fuzzer. Feeds the target
// every file of its corpus, then, for two seconds at most, each of them cut short at every place
// and with every byte changed. The input of a crash is named.
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <string>

#include "tests/fuzz/fuzz_target.h"
#include "tests/support/files.h"

namespace {

constexpr std::chrono::seconds kMutationTime(2);

char inputName[200];

extern "C" void TellInput(int signal) {
  static_cast<void>(!write(STDOUT_FILENO, inputName, std::string_view(inputName).size()));
  ::signal(signal, SIG_DFL);
  raise(signal);
}

void Feed(const std::string& name, const char* change, std::size_t place,
          const std::string& bytes) {
  std::snprintf(inputName, sizeof(inputName), "FAIL %s, %s %zu\n", name.c_str(), change, place);
  // Of exactly that size, so that a read past its end is noticed where reads are watched.
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int, char** argv) {
  for (const int each : {SIGABRT, SIGSEGV, SIGFPE, SIGILL, SIGBUS}) signal(each, TellInput);
  std::map<std::string, std::string> files;
  std::size_t longest = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    const std::string& bytes = files[entry.path().filename()] = support::ReadFile(entry.path());
    longest = std::max(longest, bytes.size());
    Feed(entry.path().filename(), "whole", bytes.size(), bytes);
  }
  const auto end = std::chrono::steady_clock::now() + kMutationTime;
  for (std::size_t place = 0; place < longest; ++place) {
    for (const auto& [name, bytes] : files) {
      if (place >= bytes.size() || std::chrono::steady_clock::now() > end) continue;
      Feed(name, "cut to", place, bytes.substr(0, place));
      std::string flipped = bytes;
      // The same change of a byte in every run.
      flipped[place] = static_cast<char>(flipped[place] ^ static_cast<char>(1 + place * 151 % 255));
      Feed(name, "changed at", place, flipped);
    }
  }
  return files.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
}
