// Backends of the file system and the named events, as parameters of their contracts' suites:
// whoever links a suite says on which it runs.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "platform/events.h"
#include "platform/files.h"

namespace support {

// A file system with an empty folder in it.
struct FilesBackend {
  virtual ~FilesBackend() = default;
  virtual platform::FileSystem& Files() = 0;
  virtual std::u16string Folder() = 0;
  virtual void MakeFolder(std::u16string_view path) = 0;
};

// Events with an engine beside them that makes them.
struct EventsBackend {
  virtual ~EventsBackend() = default;
  virtual platform::NamedEvents& Events() = 0;
  virtual void Make(std::u16string_view name) = 0;
  virtual void EndEngine() = 0;
  // The names of the sets that the engine has received since the last call, in order.
  virtual std::vector<std::u16string> Received() = 0;
  virtual bool KeepsTimes() const { return true; }
};

template <class Backend>
using Maker = std::unique_ptr<Backend> (*)();

template <class Backend, class Kind>
std::unique_ptr<Backend> Make() {
  return std::make_unique<Kind>();
}

std::vector<Maker<FilesBackend>> FilesBackends();
std::vector<Maker<EventsBackend>> EventsBackends();

}  // namespace support
