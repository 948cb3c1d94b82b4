// A laptop with the program on it: its own state folder, its own copy of the program beside the
// factory's tuning, and what the store holds after an installation that nothing disturbed.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/registry_tree.h"
#include "tests/support/temporary_folder.h"

namespace faults {

inline constexpr std::u16string_view kVendor = u"SOFTWARE\\Norvane";

// Whole is the sample's, four routes with six settings each; Small has one route with two.
enum class Tuning { Small, Whole };

class Machine {
 public:
  // The state folder is made by the program unless somebody makes it before.
  explicit Machine(Tuning tuning);

  const std::filesystem::path& Folder() const { return folder_.Path(); }
  const std::filesystem::path& State() const { return state_; }
  std::filesystem::path Database() const { return state_ / "registry.db"; }
  const std::map<std::string, std::string>& Environment() const { return environment_; }

  // Puts the tuning beside the program, as an installer does before it calls /init.
  void PutTuning() const;
  bool HasTuning() const;

  std::vector<std::string> InstallCommand() const;
  // /init, to its end.
  support::ProcessResult Install() const;
  support::ProcessResult RunTool(const std::string& tool, std::vector<std::string> arguments) const;

  // What is below the vendor's key.
  support::Tree Stored() const;
  void RemoveState() const;

 private:
  support::TemporaryFolder folder_;
  std::filesystem::path state_;
  std::map<std::string, std::string> environment_;
};

// What a machine's store holds after an installation.
support::Tree InstalledTree(Tuning tuning);

// Where two trees first differ; empty when they are equal.
std::string FirstDifference(const support::Tree& left, const support::Tree& right);

// Lines of the program's own complaints.
int Complaints(const std::string& errors);

std::string ReadFile(const std::filesystem::path& file);
void WriteFile(const std::filesystem::path& file, std::string_view bytes);

}  // namespace faults
