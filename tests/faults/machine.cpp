#include "tests/faults/machine.h"

#include <algorithm>
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

}  // namespace

Machine::Machine(Tuning tuning) : state_(Folder() / "state") {
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

std::vector<std::string> Machine::InstallCommand() const {
  return {(Folder() / "program/tonalyx").native(), "/init"};
}

support::ProcessResult Machine::Install() const {
  return support::RunProcess(InstallCommand(), environment_);
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

void Machine::RemoveState() const {
  fs::remove_all(state_);
}

support::Tree InstalledTree(Tuning tuning) {
  const Machine machine(tuning);
  machine.PutTuning();
  Require(machine.Install());
  return machine.Stored();
}

std::string FirstDifference(const support::Tree& left, const support::Tree& right) {
  const auto [inLeft, inRight] =
      std::mismatch(left.begin(), left.end(), right.begin(), right.end());
  if (inLeft != left.end()) return platform::ToUtf8(inLeft->first);
  if (inRight != right.end()) return platform::ToUtf8(inRight->first);
  return {};
}

int Complaints(const std::string& errors) {
  int count = 0;
  std::istringstream lines(errors);
  for (std::string line; std::getline(lines, line);) count += line.starts_with("tonalyx: ") ? 1 : 0;
  return count;
}

std::string ReadFile(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void WriteFile(const fs::path& file, std::string_view bytes) {
  std::ofstream(file, std::ios::binary).write(bytes.data(), std::ssize(bytes));
}

}  // namespace faults
