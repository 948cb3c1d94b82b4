// Files: opened without sharing, read and written in sequence.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

enum class FileAccess { Read, Append };

// An open file; closing is destruction. While it is open a second open and a create of the same
// file both fail, in every process that goes through this layer.
class File {
 public:
  virtual ~File() = default;

  // Reads up to `buffer.size()` bytes from the current position. False when the read failed; at
  // the end of the file it succeeds with `*read` 0.
  virtual bool Read(std::span<std::byte> buffer, std::size_t* read) = 0;

  // Writes all of `bytes`; in append mode at the end wherever that is by then. False when not
  // every byte was written.
  virtual bool Write(std::span<const std::byte> bytes) = 0;
};

// Paths are in the form that the system's own dialogs and calls use, full, as UTF-16.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // Null when the file does not exist, is no regular file, is held by another or may not be opened.
  virtual std::unique_ptr<File> OpenExisting(std::u16string_view path, FileAccess access) = 0;

  // Makes a file and opens it for appending. Null when there is one already, even if it has come
  // just now, or when that is not possible.
  virtual std::unique_ptr<File> CreateNew(std::u16string_view path) = 0;

  // Opens for writing, empties an existing file. Null when that is not possible; a file that
  // another holds is then left as it was.
  virtual std::unique_ptr<File> CreateAlways(std::u16string_view path) = 0;

  // False when the file is still there or never was.
  virtual bool Remove(std::u16string_view path) = 0;

  // The folder in which the executable really lies, links resolved, with a trailing separator.
  virtual std::u16string ProgramFolder() = 0;

  // Names (without the folder) of the entries of `folder`, files and folders alike, that end in
  // `extension` (such as u".vtd"), compared without regard to case, in case-insensitive order.
  virtual std::vector<std::u16string> FindByExtension(std::u16string_view folder,
                                                      std::u16string_view extension) = 0;

  // Where the diagnostic log lies on this system.
  virtual std::u16string DiagnosticLogPath() = 0;
};

}  // namespace platform
