#include "platform/replace_file.h"

#include <windows.h>

#include <array>
#include <string>

#include "platform/windows/handle.h"

namespace platform {
namespace {

bool WriteNew(const std::wstring& path, std::string_view bytes) {
  const KernelHandle file = OwnFile(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                                FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD count = 0;
  return file.IsOpen() &&
         WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) !=
             FALSE &&
         count == bytes.size();
}

// Fails while another program has what lies there open, which those who read it do for a moment.
bool PutInPlace(const std::wstring& fresh, const std::wstring& path) {
  constexpr int kTries = 50;
  for (int tries = 1; MoveFileExW(fresh.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) == FALSE;
       ++tries) {
    const DWORD error = GetLastError();
    const bool isOpen = error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
    if (!isOpen || tries == kTries) return false;
    Sleep(2);
  }
  return true;
}

}  // namespace

bool ReplaceWholeFile(const std::filesystem::path& path, std::string_view bytes) {
  const std::wstring fresh = path.native() + L"." + std::to_wstring(GetCurrentProcessId());
  DeleteFileW(fresh.c_str());
  if (WriteNew(fresh, bytes) && PutInPlace(fresh, path.native())) return true;
  DeleteFileW(fresh.c_str());
  return false;
}

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path) {
  const KernelHandle file = OwnFile(CreateFileW(
      path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.IsOpen()) return std::nullopt;
  std::string text;
  std::array<char, 4096> piece;
  DWORD count = 0;
  do {
    if (ReadFile(file.Get(), piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) ==
        FALSE) {
      return std::nullopt;
    }
    text.append(piece.data(), count);
  } while (count > 0);
  return text;
}

}  // namespace platform
