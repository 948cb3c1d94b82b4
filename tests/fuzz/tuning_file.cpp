// The factory's tuning file: whatever an import leaves in the store stood in the file, in both
// trees alike, and nothing at all is left of a file that is for others.
#include <cstring>
#include <string>

#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "store/tuning_import.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/registry_tree.h"

namespace {

support::Tree Stored(platform::Registry& registry, const std::u16string& tree) {
  return support::ReadTree(registry, u"SOFTWARE\\Norvane\\Velsona\\" + tree);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::u16string_view kPath = u"/program/any.vtd";
  const std::string_view bytes = fuzz::AsText(data, size);
  std::uint32_t ssid = 0;
  if (size >= 9) std::memcpy(&ssid, data + 5, sizeof(ssid));
  platform::FakeRegistry registry;
  platform::FakeFileSystem files;
  files.PutFile(kPath, bytes);
  store::TuningImport import(registry, files, {});
  fuzz::Require(
      !import.ImportTuningFile(kPath, ssid + 1) && support::ReadTree(registry, u"SOFTWARE").empty(),
      "a file for another machine leaves the store as it was");
  const bool isImported = import.ImportTuningFile(kPath, ssid).has_value();
  fuzz::Require(files.Contents(u"/state/Velsona.txt").has_value() == isImported,
                "imports are described in the log");
  const bool isOurs = size >= 13 && bytes.starts_with(std::string_view("Kel\0", 4)) &&
                      (bytes[4] == '\1' || bytes[4] == '\2');
  const support::Tree parameters = Stored(registry, u"Parameters");
  fuzz::Require(isOurs || (!isImported && parameters.empty()), "another kind of file is refused");
  support::Tree defaults = Stored(registry, u"Defaults");
  for (const auto& [path, value] : parameters) {
    if (path.find(u" : Param") == std::u16string::npos) continue;
    std::u16string twin = path;
    twin.replace(twin.find(u"Parameters"), std::strlen("Parameters"), u"Defaults");
    fuzz::Require(defaults.contains(twin) && defaults[twin] == value, "both trees are alike");
    fuzz::Require(value.bytes.size() == 4 && bytes.find(value.bytes) != bytes.npos,
                  "a parameter is one of the file's numbers");
  }
  return 0;
}
