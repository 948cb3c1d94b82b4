#include <windows.h>

#include <shellapi.h>

#include "platform/shell.h"
#include "platform/windows/wide_text.h"

namespace platform {

void OpenInBrowser(std::u16string_view location) {
  const std::wstring target = ToWide(location);
  SHELLEXECUTEINFOW open{};
  open.cbSize = sizeof(open);
  open.fMask = SEE_MASK_FLAG_NO_UI;
  open.lpVerb = L"open";
  open.lpFile = target.c_str();
  open.nShow = SW_SHOWNORMAL;
  ShellExecuteExW(&open);
}

}  // namespace platform
