// The menu commands on user settings files with the boxes that they show. User-interface thread.
#pragma once

#include <string_view>

#include "platform/files.h"
#include "platform/window_messages.h"
#include "store/parameter_store.h"

namespace store {

// True on success; on failure one message was shown over the active window, and the store is
// unchanged.
bool LoadUserSettings(platform::FileSystem& files, ParameterStore& store, std::u16string_view path);

// True on success; on failure one message was shown over the active window.
bool SaveUserSettings(platform::FileSystem& files, const ParameterStore& store,
                      std::u16string_view path);

// True when the user agrees to lose the changes.
bool AskRestoreDefaults(platform::WindowHandle owner);

}  // namespace store
