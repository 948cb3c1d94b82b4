#include "store/user_settings_dialogs.h"

#include <cstdint>

#include "platform/resources.h"
#include "platform/shell.h"
#include "resources/resource_ids.h"
#include "store/user_settings_file.h"

namespace store {
namespace {

std::uint16_t MessageText(UserSettingsResult failure) {
  switch (failure) {
    case UserSettingsResult::OpenFailed:
      return resources::kTextOpenError;
    case UserSettingsResult::ReadFailed:
      return resources::kTextReadError;
    case UserSettingsResult::InvalidFile:
      return resources::kTextInvalidFile;
    case UserSettingsResult::CreateFailed:
      return resources::kTextCreateError;
    case UserSettingsResult::WriteFailed:
    case UserSettingsResult::Success:
      break;
  }
  return resources::kTextWriteError;
}

// True for success; a failure is told to the user.
bool Report(UserSettingsResult result) {
  if (result == UserSettingsResult::Success) return true;
  platform::ShowMessageBox(
      platform::ActiveWindow(), platform::LoadStringResource(MessageText(result)),
      platform::LoadStringResource(resources::kTextError), platform::MessageBoxKind::Exclamation);
  return false;
}

}  // namespace

bool LoadUserSettings(platform::FileSystem& files, ParameterStore& store,
                      std::u16string_view path) {
  return Report(ReadUserSettingsFile(files, path, store));
}

bool SaveUserSettings(platform::FileSystem& files, const ParameterStore& store,
                      std::u16string_view path) {
  return Report(WriteUserSettingsFile(files, path, store));
}

bool AskRestoreDefaults(platform::WindowHandle owner) {
  return platform::ShowMessageBox(owner,
                                  platform::LoadStringResource(resources::kTextRestoreQuestion),
                                  platform::LoadStringResource(resources::kTextConfirm),
                                  platform::MessageBoxKind::YesNoDefaultNo) == platform::kIdYes;
}

}  // namespace store
