// The registry: a tree of keys with typed values, shared by every process of the machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/wake_event.h"

namespace platform {

enum class RegistryRoot { LocalMachine, ClassesRoot };

// Result codes, with the original platform's numbers.
enum class RegistryStatus : std::uint32_t {
  Success = 0,
  FileNotFound = 2,
  AccessDenied = 5,
  WriteFault = 29,
  InvalidParameter = 87,
  MoreData = 234,
  NoMoreItems = 259,
};

enum class RegistryType : std::uint32_t {
  None = 0,
  String = 1,
  ExpandString = 2,
  Binary = 3,
  Dword = 4,
  MultiString = 7,
  Qword = 11,
};

// Access masks. A handle grants what its mask names and nothing else.
using RegistryAccess = std::uint32_t;
inline constexpr RegistryAccess kRegistryQueryValue = 0x0001;
inline constexpr RegistryAccess kRegistrySetValue = 0x0002;
inline constexpr RegistryAccess kRegistryCreateSubKey = 0x0004;
inline constexpr RegistryAccess kRegistryEnumerateSubKeys = 0x0008;
inline constexpr RegistryAccess kRegistryNotify = 0x0010;
inline constexpr RegistryAccess kRegistryRead = 0x20019;
inline constexpr RegistryAccess kRegistryAllAccess = 0xF003F;
inline constexpr RegistryAccess kRegistryView64 = 0x0100;

enum class RegistryDisposition { CreatedNew, OpenedExisting };

// An open key; closing is destruction and silently drops an armed notification. A key that another
// process deletes answers FileNotFound from then on. Used by one thread at a time.
class RegistryKey {
 public:
  virtual ~RegistryKey() = default;

  // Reads a value whatever its type. `size` holds the buffer's bytes on entry and the value's on
  // return. A value that does not fit gives MoreData and leaves the buffer alone; a null `data`
  // asks for the size only and succeeds. `type` may be null. Text comes as it was stored, with or
  // without its NUL. An empty name is the key's default value.
  virtual RegistryStatus QueryValue(std::u16string_view name, RegistryType* type, void* data,
                                    std::uint32_t* size) = 0;

  // Stores type and bytes; durable against a killed process and never seen half written. A set with
  // equal data still counts as a change for those who wait for one.
  virtual RegistryStatus SetValue(std::u16string_view name, RegistryType type,
                                  std::span<const std::byte> data) = 0;

  virtual RegistryStatus RemoveValue(std::u16string_view name) = 0;

  // Subkeys and values in case-insensitive name order, spelled as their first writer spelled them;
  // NoMoreItems past the end.
  virtual RegistryStatus EnumerateSubKey(std::uint32_t index, std::u16string* name) = 0;
  virtual RegistryStatus EnumerateValue(std::uint32_t index, std::u16string* name) = 0;

  // Arms a one-shot notification: `wake` is set once a value of this very key (no subkey) is added,
  // set or deleted by any process, or the key itself is deleted. A change that came after the last
  // notification fired and before this call fires at once; arming an armed key changes nothing.
  // Closing the key cancels it and does not set `wake`.
  virtual RegistryStatus NotifyChange(WakeEvent& wake) = 0;

  // Replaces the key's access list with the one of `sddl`.
  virtual RegistryStatus SetAccessList(std::u16string_view sddl) = 0;
};

// Scopes belong to the thread that made them and may nest; the outermost counts. On a backend
// without transactions they do nothing.

// Holds the registry still while it lives: reads see one state and cost less.
class RegistryScope {
 public:
  virtual ~RegistryScope() = default;
};

// Keeps writes together: they reach other processes with its commit, and then as a whole or not at
// all, also when the writer is killed. A scope that ends without its commit undoes its writes, and
// those of the scopes around it.
class RegistryWriteScope {
 public:
  virtual ~RegistryWriteScope() = default;

  // Once; ends the scope. Success: every write that succeeded by itself is there to stay (in an
  // inner scope: as far as it is known). Otherwise none of them is. Without transactions each write
  // has counted when it was made, and this has nothing to add to its result.
  [[nodiscard]] virtual RegistryStatus Commit() = 0;
};

// All operations may be called from any thread; each opened key stays with one thread at a time.
class Registry {
 public:
  virtual ~Registry() = default;

  // `path` has parts of 1 to 255 units divided by "\"; a path with an empty part, and an empty
  // path, neither opens nor is created. Null when the key does not open.
  virtual std::unique_ptr<RegistryKey> OpenKey(RegistryRoot root, std::u16string_view path,
                                               RegistryAccess access) = 0;

  // The root itself, to enumerate its subkeys. Null when there is no registry yet.
  virtual std::unique_ptr<RegistryKey> OpenRoot(RegistryRoot root) = 0;

  // Creates missing parts of the path on the way. `disposition` may be null. `sddl`, when not
  // empty, becomes the access list of a key that this call creates.
  virtual std::unique_ptr<RegistryKey> CreateKey(RegistryRoot root, std::u16string_view path,
                                                 RegistryAccess access,
                                                 RegistryDisposition* disposition = nullptr,
                                                 std::u16string_view sddl = {}) = 0;

  // Deletes a key with everything below it.
  virtual RegistryStatus RemoveTree(RegistryRoot root, std::u16string_view path) = 0;

  // Puts a store that is damaged out of the way under a new name, for the installer: the next write
  // makes a new one. Nothing to do where the platform looks after its registry itself.
  virtual void SetDamagedAside() {}

  virtual std::unique_ptr<RegistryScope> BeginRead() = 0;
  virtual std::unique_ptr<RegistryWriteScope> BeginWrite() = 0;
};

// True when `sddl` is an access list in the security descriptor language that the platform can
// turn into one.
bool IsAccessList(std::u16string_view sddl);

}  // namespace platform
