#include "tests/faults/machine.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"

namespace faults {
namespace {

namespace fs = std::filesystem;

const fs::path kPrograms = TONALYX_BIN_DIR;

constexpr std::string_view kSmallTuning = R"({ "version": "0x0100", "ssid": "0x00000000",
  "routes": [ { "guid": "{DFF21CE1-F70F-11D0-B917-00A0C9223196}",
    "settings": [ { "Param6": 0.25, "Param118": 1 }, { "Param6": 0.75, "Param232": 0.5 } ] } ] })";

void Require(const support::ProcessResult& result) {
  if (result.exitStatus != 0) throw std::runtime_error(result.errors);
}

int NumberFromEnvironment(const char* name, int otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::stoi(text);
}

}  // namespace

Machine::Machine(Tuning tuning) : tuning_(tuning), state_(Folder() / "state") {
  const fs::path laptop = Folder() / "laptop.json";
  environment_ = {{"TONALYX_ROOT", state_.native()}, {"TONALYX_LAPTOP", laptop.native()}};
  fs::create_directory(Folder() / "program");
  fs::copy_file(kPrograms / "tonalyx", Folder() / "program/tonalyx");
  Require(RunTool("laptopctl", {laptop.native(), "new", "layers"}));
  fs::path description = TONALYX_SOURCE_DIR "/resources/samples/sample.json";
  if (tuning == Tuning::Small) {
    description = Folder() / "small.json";
    WriteFile(description, kSmallTuning);
  }
  Require(RunTool("vtdmake", {description.native(), (Folder() / "tuning").native()}));
}

void Machine::PutTuning() const {
  fs::copy_file(Folder() / "tuning", Folder() / "program/0.vtd",
                fs::copy_options::overwrite_existing);
}

bool Machine::HasTuning() const {
  return fs::exists(Folder() / "program/0.vtd");
}

std::vector<std::string> Machine::InitCommand() const {
  return {(Folder() / "program/tonalyx").native(), "/init"};
}

support::ProcessResult Machine::Init() const {
  return support::RunProcess(InitCommand(), environment_);
}

support::ProcessResult Machine::Install() const {
  PutTuning();
  return Init();
}

support::ProcessResult Machine::RunTool(const std::string& tool,
                                        std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), (kPrograms / tool).native());
  return support::RunProcess(arguments, environment_);
}

support::Tree Machine::Stored() const {
  platform::SqliteRegistry registry(state_);
  const auto scope = registry.BeginRead();
  return support::ReadTree(registry, std::u16string(kVendor));
}

std::string Machine::Difference() const {
  const support::Tree stored = Stored();
  const support::Tree& installed = InstalledTree(tuning_);
  const auto [left, right] =
      std::mismatch(stored.begin(), stored.end(), installed.begin(), installed.end());
  if (left != stored.end()) return platform::ToUtf8(left->first);
  return right == installed.end() ? "" : platform::ToUtf8(right->first);
}

const support::Tree& InstalledTree(Tuning tuning) {
  static std::map<Tuning, support::Tree> trees;
  const auto [tree, isNew] = trees.try_emplace(tuning);
  if (isNew) {
    const Machine machine(tuning);
    Require(machine.Install());
    tree->second = machine.Stored();
  }
  return tree->second;
}

int Complaints(const std::string& errors) {
  int count = 0;
  std::istringstream lines(errors);
  for (std::string line; std::getline(lines, line);) count += line.starts_with("tonalyx: ") ? 1 : 0;
  return count;
}

void WriteFile(const fs::path& file, std::string_view bytes) {
  std::ofstream(file, std::ios::binary).write(bytes.data(), std::ssize(bytes));
}

int Rounds(double factor) {
  const int rounds =
      std::max(1, static_cast<int>(factor * NumberFromEnvironment("TONALYX_FAULT_ROUNDS", 10)));
  testing::Test::RecordProperty("rounds", rounds);
  return rounds;
}

std::mt19937 Random() {
  return std::mt19937(static_cast<unsigned>(NumberFromEnvironment("TONALYX_FAULT_SEED", 1)));
}

int Between(std::mt19937& random, int low, int high) {
  return std::uniform_int_distribution<int>(low, high)(random);
}

bool LeaveCommonMounts() {
  return geteuid() == 0 && unshare(CLONE_NEWNS) == 0 &&
         mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

SmallDisk::SmallDisk(fs::path folder, int kilobytes) : folder_(std::move(folder)) {
  fs::create_directories(folder_);
  Mount(0, kilobytes);
}

SmallDisk::~SmallDisk() {
  umount2(folder_.c_str(), MNT_DETACH);
}

void SmallDisk::Resize(int kilobytes) {
  Mount(MS_REMOUNT, kilobytes);
}

void SmallDisk::MakeReadOnly(int kilobytes) {
  Mount(MS_REMOUNT | MS_RDONLY, kilobytes);
}

void SmallDisk::Fill() const {
  std::ofstream file(folder_ / "filling", std::ios::binary);
  while (file << std::string(512, 'x') << std::flush) {
  }
}

void SmallDisk::Empty() const {
  fs::remove(folder_ / "filling");
}

void SmallDisk::Mount(unsigned long flags, int kilobytes) const {
  const std::string options = "mode=777,size=" + std::to_string(kilobytes) + "k";
  if (mount("none", folder_.c_str(), "tmpfs", flags, options.c_str()) != 0) {
    throw std::runtime_error("no small disk");
  }
}

}  // namespace faults
