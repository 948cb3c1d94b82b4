// The files of the registry in its folder.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/registry/registry_database.h"

namespace platform {

// Any thread.
class RegistryFiles {
 public:
  static constexpr std::string_view kDatabaseName = "registry.db";
  static constexpr std::string_view kLogName = "registry.db-wal";
  static constexpr std::string_view kChangedName = "registry.changed";

  explicit RegistryFiles(std::filesystem::path folder) : folder_(std::move(folder)) {}
  RegistryFiles(const RegistryFiles&) = delete;
  RegistryFiles& operator=(const RegistryFiles&) = delete;

  const std::filesystem::path& Folder() const { return folder_; }

  // A new connection; Create makes the folder and the database when they are missing, open to every
  // user. Null on failure, which is told; a store that does not exist is none.
  std::unique_ptr<RegistryDatabase> OpenDatabase(RegistryDatabase::Opening opening);

  // Tells a problem with the database on standard error, each text once; an empty one is none.
  void Tell(const std::string& problem);

  // False when there is surely none.
  bool HasDatabase() const;

  // Puts a damaged database out of the way, which is told.
  void SetDamagedAside();

  // Wakes those who wait for changes, in every process; after a commit.
  void Touch() const;

  // Folder 0777 and not sticky, files 0666, as far as they are this user's to change.
  void OpenToEveryone() const;

  // Bytes of the write-ahead log, 0 when there is none.
  std::uintmax_t LogSize() const;

 private:
  std::filesystem::path folder_;
  LockPatience patience_;
  std::mutex opening_;
  std::mutex telling_;
  std::set<std::string> told_;
};

}  // namespace platform
