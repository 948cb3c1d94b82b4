// replay FOLDER: the main program of a fuzz target in a build without a fuzzer. Feeds the target
// every file of its corpus, then, for two seconds at most, each of them cut short at every place
// and with every byte changed. A child does it, so that the input of a crash can be named.
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_target.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kMutationTime(2);

struct CorpusFile {
  std::string name;
  std::string bytes;
};

enum class Change : int { None, Cut, Flip };

// What the child is at, in memory that it shares with its parent.
struct Progress {
  std::size_t file;
  Change change;
  std::size_t place;
  std::size_t inputs;
};

std::vector<CorpusFile> ReadCorpus(const std::filesystem::path& folder) {
  std::vector<CorpusFile> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream stream(entry.path(), std::ios::binary);
    files.push_back({entry.path().filename().string(),
                     {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()}});
  }
  std::ranges::sort(files, {}, &CorpusFile::name);
  return files;
}

// The same change of a byte in every run.
char Flipped(char byte, std::size_t place) {
  std::minstd_rand generator(static_cast<std::minstd_rand::result_type>(place + 1));
  generator.discard(3);
  return static_cast<char>(byte ^ static_cast<char>(1 + generator() % 255));
}

void Feed(const std::vector<CorpusFile>& files, const Progress& at, Progress* progress) {
  std::string bytes = files[at.file].bytes;
  if (at.change == Change::Cut) bytes.resize(at.place);
  if (at.change == Change::Flip) bytes[at.place] = Flipped(bytes[at.place], at.place);
  const std::size_t inputs = progress->inputs;
  *progress = at;
  progress->inputs = inputs + 1;
  // Of exactly that size, so that a read past its end is noticed where reads are watched.
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

void FeedAll(const std::vector<CorpusFile>& files, Progress* progress) {
  std::size_t longest = 0;
  for (std::size_t i = 0; i < files.size(); ++i) {
    Feed(files, {i, Change::None, 0, 0}, progress);
    longest = std::max(longest, files[i].bytes.size());
  }
  const Clock::time_point end = Clock::now() + kMutationTime;
  for (std::size_t place = 0; place < longest; ++place) {
    for (std::size_t i = 0; i < files.size(); ++i) {
      if (place >= files[i].bytes.size()) continue;
      if (Clock::now() > end) return;
      Feed(files, {i, Change::Cut, place, 0}, progress);
      Feed(files, {i, Change::Flip, place, 0}, progress);
    }
  }
}

void PrintInput(const CorpusFile& file, const Progress& at) {
  std::printf("FAIL %s", file.name.c_str());
  if (at.change == Change::Cut) std::printf(", cut to %zu bytes", at.place);
  if (at.change == Change::Flip) {
    const unsigned flipped = static_cast<unsigned char>(Flipped(file.bytes[at.place], at.place));
    std::printf(", byte %zu made 0x%02X", at.place, flipped);
  }
  std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return EXIT_FAILURE;
  const std::vector<CorpusFile> files = ReadCorpus(argv[1]);
  void* const shared =
      mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (files.empty() || shared == MAP_FAILED) return EXIT_FAILURE;
  auto* const progress = new (shared) Progress{};
  const pid_t child = fork();
  if (child == 0) {
    FeedAll(files, progress);
    return EXIT_SUCCESS;
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) return EXIT_FAILURE;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != EXIT_SUCCESS) {
    PrintInput(files[progress->file], *progress);
    return EXIT_FAILURE;
  }
  std::printf("PASS %zu inputs from %zu files\n", progress->inputs, files.size());
  return EXIT_SUCCESS;
}
