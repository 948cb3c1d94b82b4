#include "platform/windows/files/folder_file_watcher.h"

#include <cstddef>
#include <string_view>

#include "platform/text.h"
#include "platform/windows/wide_text.h"

namespace platform {
namespace {

std::filesystem::path FolderOf(const std::filesystem::path& file) {
  const std::filesystem::path folder = file.parent_path();
  return folder.empty() ? L"." : folder;
}

}  // namespace

FolderFileWatcher::FolderFileWatcher(const std::filesystem::path& file)
    : folder_(FolderOf(file)),
      name_(file.filename().u16string()),
      interrupt_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      noted_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

FolderFileWatcher::~FolderFileWatcher() {
  if (!asked_) return;
  // The system writes into the buffer until the request is over.
  CancelIo(watched_.Get());
  DWORD size = 0;
  GetOverlappedResult(watched_.Get(), &request_, &size, TRUE);
}

void FolderFileWatcher::Begin() {
  watched_ = OwnFile(CreateFileW(
      folder_.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED, nullptr));
  Ask();
}

// The system notes changes from the first request on, also between two of them.
void FolderFileWatcher::Ask() {
  request_ = {};
  request_.hEvent = noted_.Get();
  asked_ =
      watched_.IsOpen() &&
      ReadDirectoryChangesW(watched_.Get(), notes_.data(), static_cast<DWORD>(notes_.size()), FALSE,
                            FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_LAST_WRITE, nullptr,
                            &request_, nullptr) != FALSE;
}

bool FolderFileWatcher::WaitForChange() {
  const HANDLE handles[] = {interrupt_.Get(), noted_.Get()};
  while (WaitForMultipleObjects(2, handles, FALSE, INFINITE) == WAIT_OBJECT_0 + 1) {
    DWORD size = 0;
    const bool told = GetOverlappedResult(watched_.Get(), &request_, &size, FALSE) != FALSE;
    const bool concerns = told && Concerns(size);
    asked_ = false;
    if (told) Ask();
    if (concerns) return true;
  }
  return false;
}

// Whether one of the notes is about the file; notes that are lost may be.
bool FolderFileWatcher::Concerns(DWORD size) const {
  if (size == 0) return true;
  std::size_t offset = 0;
  while (true) {
    const auto* note = reinterpret_cast<const FILE_NOTIFY_INFORMATION*>(notes_.data() + offset);
    const std::u16string name = FromWide({note->FileName, note->FileNameLength / sizeof(wchar_t)});
    if (CompareIgnoreCase(name, name_) == 0) return true;
    if (note->NextEntryOffset == 0) return false;
    offset += note->NextEntryOffset;
  }
}

void FolderFileWatcher::Interrupt() {
  SetEvent(interrupt_.Get());
}

std::unique_ptr<FileWatcher> MakeFileWatcher(const std::filesystem::path& file) {
  return std::make_unique<FolderFileWatcher>(file);
}

}  // namespace platform
