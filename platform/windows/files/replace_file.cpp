#include "platform/replace_file.h"

#include <windows.h>

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

}  // namespace

bool ReplaceWholeFile(const std::filesystem::path& path, std::string_view bytes) {
  const std::wstring fresh = path.native() + L"." + std::to_wstring(GetCurrentProcessId());
  DeleteFileW(fresh.c_str());
  if (WriteNew(fresh, bytes) &&
      MoveFileExW(fresh.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE) {
    return true;
  }
  DeleteFileW(fresh.c_str());
  return false;
}

}  // namespace platform
