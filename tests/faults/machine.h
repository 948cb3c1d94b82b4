// What the fault suites share: a laptop with the program on it, its own state folder and its own
// copy of the program beside the factory's tuning; rounds of random faults; small disks.
#pragma once

#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/files.h"
#include "tests/support/registry_tree.h"
#include "tests/support/temporary_folder.h"

namespace faults {

inline constexpr std::u16string_view kVendor = u"SOFTWARE\\Norvane";
inline constexpr std::u16string_view kSpeakerRoute = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";

// Whole is the sample's, four routes with six settings each; Small has one route with two.
enum class Tuning { Small, Whole };

class Machine {
 public:
  // The state folder is made by the program unless somebody makes it before.
  explicit Machine(Tuning tuning = Tuning::Small);

  const std::filesystem::path& Folder() const { return folder_.Path(); }
  const std::filesystem::path& State() const { return state_; }
  std::filesystem::path Database() const { return state_ / "registry.db"; }
  const std::map<std::string, std::string>& Environment() const { return environment_; }

  // Puts the tuning beside the program, as an installer does before it calls /init.
  void PutTuning() const;
  bool HasTuning() const;

  std::vector<std::string> InitCommand() const;
  support::ProcessResult Init() const;
  // Both, to the end.
  support::ProcessResult Install() const;
  support::ProcessResult RunTool(const std::string& tool, std::vector<std::string> arguments) const;

  // What is below the vendor's key.
  support::Tree Stored() const;
  // Where that first differs from what an installation leaves that nothing disturbed.
  std::string Difference() const;

 private:
  Tuning tuning_;
  support::TemporaryFolder folder_;
  std::filesystem::path state_;
  std::map<std::string, std::string> environment_;
};

// What a machine's store holds after an installation.
const support::Tree& InstalledTree(Tuning tuning);

// Lines of the program's own complaints.
int Complaints(const std::string& errors);

using support::ReadFile;
void WriteFile(const std::filesystem::path& file, std::string_view bytes);

// How often a test's loop goes round: TONALYX_FAULT_ROUNDS times what suits its nature, at least
// once. Kept with the test's result.
int Rounds(double factor = 1.0);
// TONALYX_FAULT_SEED; the same seed makes the same faults, as far as that is in a test's hands.
std::mt19937 Random();
// Both ends included.
int Between(std::mt19937& random, int low, int high);

// False where this user may not mount; else what is mounted from now on is seen by this process and
// its children only, and gone with them.
bool LeaveCommonMounts();

// A file system in memory on the folder, until destruction. Throws where it cannot be mounted.
class SmallDisk {
 public:
  SmallDisk(std::filesystem::path folder, int kilobytes);
  ~SmallDisk();
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  void Resize(int kilobytes);
  void MakeReadOnly(int kilobytes);
  // Writes to a file of it until nothing more fits.
  void Fill() const;
  void Empty() const;

 private:
  void Mount(unsigned long flags, int kilobytes) const;

  std::filesystem::path folder_;
};

}  // namespace faults
