#include "platform/linux/registry/damaged_registry.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <system_error>
#include <thread>

#include "platform/linux/registry/registry_database.h"
#include "platform/linux/registry/registry_files.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds kStep{5};
constexpr int kSteps = 400;

// The database comes last: as long as it has its name, there is something left to do.
constexpr std::array<const char*, 4> kCompanions = {"-journal", "-shm", "-wal", ""};

// Keeps others who would do the same out of the folder.
class FolderLock {
 public:
  explicit FolderLock(const fs::path& folder)
      : folder_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    for (int step = 0; folder_ >= 0 && !isHeld_ && step < kSteps; ++step) {
      if (step > 0) std::this_thread::sleep_for(kStep);
      isHeld_ = flock(folder_, LOCK_EX | LOCK_NB) == 0;
    }
  }
  ~FolderLock() {
    if (folder_ >= 0) close(folder_);
  }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  bool IsHeld() const { return isHeld_; }

 private:
  int folder_;
  bool isHeld_ = false;
};

bool IsDamaged(const fs::path& file) {
  LockPatience patience;
  RegistryProblem problem;
  const auto database =
      RegistryDatabase::Open(file, RegistryDatabase::Opening::Existing, patience, &problem);
  if (database == nullptr) return problem.kind == RegistryProblem::Kind::Damaged;
  return !database->IsWhole();
}

bool IsThere(const fs::path& file) {
  std::error_code error;
  return fs::symlink_status(file, error).type() != fs::file_type::not_found;
}

fs::path With(const fs::path& database, const char* companion) {
  return database.native() + companion;
}

// The first name that is free for the database and for whatever companions it has.
fs::path FreeName(const fs::path& database) {
  for (int number = 1;; ++number) {
    fs::path name = database.parent_path() / ("registry-damaged-" + std::to_string(number) + ".db");
    const bool isTaken =
        IsThere(name) || std::ranges::any_of(kCompanions, [&](const char* companion) {
          return IsThere(With(database, companion)) && IsThere(With(name, companion));
        });
    if (!isTaken) return name;
  }
}

}  // namespace

std::optional<fs::path> SetDamagedRegistryAside(const fs::path& folder) {
  const fs::path database = folder / RegistryFiles::kDatabaseName;
  const FolderLock lock(folder);
  if (!lock.IsHeld() || !IsDamaged(database)) return std::nullopt;
  fs::path name = FreeName(database);
  std::error_code error;
  for (const char* companion : kCompanions) {
    error.clear();
    fs::rename(With(database, companion), With(name, companion), error);
  }
  if (error) return std::nullopt;
  return name;
}

}  // namespace platform
