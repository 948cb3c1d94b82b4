// The factory's tuning file: what an import leaves in the store is what the file's layout says,
// read a second time here in the plainest way, and nothing at all when the file is refused.
#include <bit>
#include <cmath>
#include <map>
#include <set>
#include <string>

#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "platform/guid.h"
#include "store/tuning_import.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/registry_tree.h"

namespace {

// By key path and value name.
using RegistryValues = std::map<std::u16string, std::string>;

RegistryValues AllValues(platform::Registry& registry) {
  RegistryValues values;
  for (const auto& [path, value] : support::ReadTree(registry, u"SOFTWARE")) {
    if (path.find(u" : ") != std::u16string::npos) values[path] = value.bytes;
  }
  return values;
}

std::u16string Wide(std::uint32_t number) {
  const std::string text = std::to_string(number);
  return {text.begin(), text.end()};
}

// What should be in the store after the import of these bytes.
class Expectation {
 public:
  explicit Expectation(std::string_view bytes) : rest_(bytes) {
    const std::string_view magic = Take(3);
    const std::string_view version = Take(2);
    ssid = Number();
    const std::uint32_t routes = Number();
    if (isCut_ || magic != "Kel" || version[0] != '\0') return;
    if (version[1] == '\2') Take(48);
    isComplete = !isCut_ && (version[1] == '\1' || version[1] == '\2');
    for (std::uint32_t i = 0; isComplete && i < routes; ++i) isComplete = ReadRoute();
  }

  std::uint32_t ssid = 0;
  bool isComplete = false;
  RegistryValues values;

 private:
  std::string_view Take(std::size_t count) {
    isCut_ = isCut_ || rest_.size() < count;
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::uint32_t Number() {
    std::uint32_t number = 0;
    const std::string_view bytes = Take(4);
    for (std::size_t i = bytes.size(); i > 0; --i) {
      number = number << 8U | static_cast<std::uint8_t>(bytes[i - 1]);
    }
    return number;
  }

  bool ReadRoute() {
    const std::string_view guid = Take(16);
    const std::uint32_t settings = Number();
    if (isCut_) return false;
    std::array<std::uint8_t, 16> bytes{};
    std::ranges::copy(guid, bytes.begin());
    const std::u16string route = platform::GuidToString(platform::GuidFromBytes(bytes));
    bool isRead = true;
    for (std::uint32_t i = 1; isRead && i <= settings; ++i) {
      isRead = ReadSetting(route, Wide(i));
      settingsKeys_.insert(route);
    }
    if (settingsKeys_.contains(route)) {
      const bool isOff = route == u"{DFF21CE2-F70F-11D0-B917-00A0C9223196}" ||
                         route == u"{DFF21FE3-F70F-11D0-B917-00A0C9223196}";
      values[Key(u"Parameters", route) + u" : ActiveSetting"] =
          std::string(isOff ? "1\0\0\0" : "2\0\0\0", 4);
    }
    return isRead;
  }

  static std::u16string Key(const std::u16string& tree, const std::u16string& route) {
    return u"SOFTWARE\\Norvane\\Velsona\\" + tree + u"\\" + route + u"\\Settings";
  }

  // A NaN is written, but never reads back equal.
  bool ReadSetting(const std::u16string& route, const std::u16string& setting) {
    const std::uint32_t count = Number();
    for (std::uint32_t i = 1; !isCut_ && i <= count; ++i) {
      const std::string_view before = rest_;
      const std::uint32_t bits = Number();
      if (isCut_) return false;
      for (const char16_t* tree : {u"Parameters", u"Defaults"}) {
        values[Key(tree, route) + u"\\" + setting + u" : Param" + Wide(i)] = before.substr(0, 4);
      }
      if (std::isnan(std::bit_cast<float>(bits))) return false;
    }
    return !isCut_;
  }

  std::string_view rest_;
  bool isCut_ = false;
  std::set<std::u16string> settingsKeys_;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::u16string_view kPath = u"/program/any.vtd";
  const std::string_view bytes = fuzz::AsText(data, size);
  const Expectation expected(bytes);
  platform::FakeRegistry registry;
  platform::FakeFileSystem files;
  files.PutFile(kPath, bytes);
  store::TuningImport import(registry, files, {});
  fuzz::Require(!import.ImportTuningFile(kPath, expected.ssid + 1) && AllValues(registry).empty(),
                "a file for another machine leaves the store as it was");
  const bool isImported = import.ImportTuningFile(kPath, expected.ssid).has_value();
  fuzz::Require(isImported == expected.isComplete, "complete files are imported, others are not");
  fuzz::Require(AllValues(registry) == expected.values, "the store holds the file's values");
  fuzz::Require(files.Contents(u"/state/Velsona.txt").has_value() == isImported,
                "imports are described in the log");
  return 0;
}
