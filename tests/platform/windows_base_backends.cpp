// The system's files and events under their contracts' suites.
#include <windows.h>

#include "platform/windows/events/kernel_event_listener.h"
#include "platform/windows/events/kernel_events.h"
#include "platform/windows/files/windows_files.h"
#include "platform/windows/wide_text.h"
#include "tests/platform/base_contracts.h"
#include "tests/support/temporary_folder.h"

namespace support {
namespace {

struct WindowsFiles : FilesBackend {
  platform::FileSystem& Files() override { return files; }
  std::u16string Folder() override { return folder.Path().u16string(); }
  void MakeFolder(std::u16string_view path) override {
    std::filesystem::create_directory(platform::ToWide(path));
  }

  TemporaryFolder folder;
  platform::WindowsFileSystem files;
};

struct WindowsEvents : EventsBackend {
  platform::NamedEvents& Events() override { return events; }
  void Make(std::u16string_view name) override {
    if (engine->Create(name)) made.emplace_back(name);
  }
  void EndEngine() override { engine.reset(); }
  std::vector<std::u16string> Received() override {
    std::vector<std::u16string> names;
    for (auto sets = Wait(); !sets.empty(); sets = Wait()) {
      for (const platform::EventSet& set : sets) names.push_back(made[set.event]);
    }
    return names;
  }
  bool KeepsTimes() const override { return false; }
  // Sets are noticed a moment later.
  std::vector<platform::EventSet> Wait() const {
    if (!engine) return {};
    return engine->Wait(std::chrono::milliseconds(100));
  }

  platform::KernelEvents events;
  std::unique_ptr<platform::EventListener> engine =
      std::make_unique<platform::KernelEventListener>();
  std::vector<std::u16string> made;
};

}  // namespace

std::vector<Maker<FilesBackend>> FilesBackends() {
  return {&Make<FilesBackend, WindowsFiles>};
}
std::vector<Maker<EventsBackend>> EventsBackends() {
  return {&Make<EventsBackend, WindowsEvents>};
}

}  // namespace support
