#include <windows.h>

#include <commdlg.h>

#include <algorithm>
#include <array>

#include "platform/shell.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows/native_window.h"

namespace platform {

std::optional<std::u16string> ShowFileDialog(WindowHandle owner, FileDialogKind kind,
                                             std::u16string_view defaultExtension,
                                             std::u16string_view filter) {
  // The system separates the parts by NULs, and counts the extension without its dot.
  std::wstring parts = ToWide(filter);
  std::replace(parts.begin(), parts.end(), L'|', L'\0');
  if (defaultExtension.starts_with(u'.')) defaultExtension.remove_prefix(1);
  const std::wstring extension = ToWide(defaultExtension);
  std::array<wchar_t, 4096> path{};
  OPENFILENAMEW dialog{};
  dialog.lStructSize = sizeof(dialog);
  dialog.hwndOwner = ToNative(owner);
  dialog.lpstrFilter = parts.c_str();
  dialog.lpstrFile = path.data();
  dialog.nMaxFile = static_cast<DWORD>(path.size());
  dialog.lpstrDefExt = extension.c_str();
  dialog.Flags = OFN_EXPLORER | OFN_ENABLESIZING | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  const bool save = kind == FileDialogKind::Save;
  dialog.Flags |= save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST;
  if ((save ? GetSaveFileNameW(&dialog) : GetOpenFileNameW(&dialog)) == FALSE) return std::nullopt;
  return FromWide(path.data());
}

}  // namespace platform
