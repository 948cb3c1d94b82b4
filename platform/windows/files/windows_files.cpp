#include "platform/windows/files/windows_files.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/text.h"
#include "platform/windows/handle.h"
#include "platform/windows/wide_text.h"

namespace platform {
namespace {

// The largest piece that one call is asked for; sizes there have 32 bits.
constexpr std::size_t kLargestPiece = std::size_t{1} << 30U;

class WindowsFile : public File {
 public:
  explicit WindowsFile(KernelHandle file) : file_(std::move(file)) {}

  bool Read(std::span<std::byte> buffer, std::size_t* read) override {
    *read = 0;
    while (*read < buffer.size()) {
      const std::span<std::byte> rest = buffer.subspan(*read);
      DWORD count = 0;
      if (ReadFile(file_.Get(), rest.data(), SizeOfPiece(rest.size()), &count, nullptr) == FALSE) {
        return false;
      }
      if (count == 0) break;
      *read += count;
    }
    return true;
  }

  bool Write(std::span<const std::byte> bytes) override {
    while (!bytes.empty()) {
      DWORD count = 0;
      if (WriteFile(file_.Get(), bytes.data(), SizeOfPiece(bytes.size()), &count, nullptr) ==
          FALSE) {
        return false;
      }
      bytes = bytes.subspan(count);
    }
    return true;
  }

 private:
  static DWORD SizeOfPiece(std::size_t size) {
    return static_cast<DWORD>(std::min(size, kLargestPiece));
  }

  KernelHandle file_;
};

// Devices have names, too, but are no files.
std::unique_ptr<File> Open(std::u16string_view path, DWORD access, DWORD disposition) {
  const auto widePath = ToWideName(path);
  if (!widePath) return nullptr;
  KernelHandle file = OwnFile(CreateFileW(widePath->c_str(), access, 0, nullptr, disposition,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.IsOpen() || GetFileType(file.Get()) != FILE_TYPE_DISK) return nullptr;
  return std::make_unique<WindowsFile>(std::move(file));
}

}  // namespace

std::unique_ptr<File> WindowsFileSystem::OpenExisting(std::u16string_view path, FileAccess access) {
  return Open(path, access == FileAccess::Read ? GENERIC_READ : FILE_APPEND_DATA, OPEN_EXISTING);
}

std::unique_ptr<File> WindowsFileSystem::CreateNew(std::u16string_view path) {
  return Open(path, FILE_APPEND_DATA, CREATE_NEW);
}

std::unique_ptr<File> WindowsFileSystem::CreateAlways(std::u16string_view path) {
  return Open(path, GENERIC_WRITE, CREATE_ALWAYS);
}

bool WindowsFileSystem::Remove(std::u16string_view path) {
  const auto widePath = ToWideName(path);
  return widePath && DeleteFileW(widePath->c_str()) != FALSE;
}

std::u16string WindowsFileSystem::ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  DWORD length = 0;
  while ((length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()))) ==
         path.size()) {
    path.resize(2 * path.size());
  }
  path.resize(length);
  return FromWide(path.substr(0, path.find_last_of(L'\\') + 1));
}

std::vector<std::u16string> WindowsFileSystem::FindByExtension(std::u16string_view folder,
                                                               std::u16string_view extension) {
  std::vector<std::u16string> names;
  const auto wideFolder = ToWideName(folder);
  if (!wideFolder) return names;
  // Everything: a pattern with the extension would also match names that are longer than it.
  WIN32_FIND_DATAW entry{};
  const HANDLE search = FindFirstFileW((*wideFolder + L"\\*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    std::u16string name = FromWide(entry.cFileName);
    if (name != u"." && name != u".." && EndsWithIgnoreCase(name, extension)) {
      names.push_back(std::move(name));
    }
  } while (FindNextFileW(search, &entry) != FALSE);
  FindClose(search);
  std::ranges::sort(names, [](const std::u16string& left, const std::u16string& right) {
    return CompareIgnoreCase(left, right) < 0;
  });
  return names;
}

std::u16string WindowsFileSystem::DiagnosticLogPath() {
  return u"C:\\Program Files (x86)\\Norvane\\Tonalyx\\Velsona.txt";
}

}  // namespace platform
