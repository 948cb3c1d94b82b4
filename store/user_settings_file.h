// The user's own copy of the knobs and the equalizer, in a small file ("*.tus").
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "platform/files.h"
#include "store/parameter_store.h"

namespace store {

inline constexpr std::size_t kUserSettingsFileSize = 426;

enum class UserSettingsResult {
  Success,
  OpenFailed,
  ReadFailed,
  InvalidFile,
  CreateFailed,
  WriteFailed,
};

// Reads a file into `store.values`; `committed` stays, so the next commit writes what changed.
// Whatever fails, the first fault in the file's order is the result and the store is unchanged.
UserSettingsResult ReadUserSettingsFile(platform::FileSystem& files, std::u16string_view path,
                                        ParameterStore& store);

// Replaces the file. After WriteFailed it holds what could be written.
UserSettingsResult WriteUserSettingsFile(platform::FileSystem& files, std::u16string_view path,
                                         const ParameterStore& store);

}  // namespace store
