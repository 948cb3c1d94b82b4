// The factory's tuning file: what an import leaves in the store is what the file's layout says,
// read a second time here in the plainest way, and nothing at all when the file is refused.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "platform/guid.h"
#include "store/tuning_import.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/registry_tree.h"

namespace {

constexpr std::u16string_view kPath = u"/program/any.vtd";

// By key path and value name.
using RegistryValues = std::map<std::u16string, std::string>;

std::u16string ValuePath(const std::u16string& key, const std::u16string& name) {
  return key + u" : " + name;
}

RegistryValues AllValues(platform::Registry& registry) {
  RegistryValues values;
  for (const auto& [path, value] : support::ReadTree(registry, u"SOFTWARE")) {
    if (path.find(u" : ") != std::u16string::npos) values[path] = value.bytes;
  }
  return values;
}

std::u16string Wide(const std::string& text) {
  return {text.begin(), text.end()};
}

// What should be in the store after the import of these bytes.
class Expectation {
 public:
  explicit Expectation(std::string_view bytes) : rest_(bytes) {
    isComplete_ = ReadHeader() && ReadRoutes();
  }

  std::uint32_t Ssid() const { return ssid_; }
  bool IsComplete() const { return isComplete_; }
  const RegistryValues& Values() const { return values_; }

 private:
  std::optional<std::string_view> Take(std::size_t count) {
    if (rest_.size() < count) {
      rest_ = {};
      return std::nullopt;
    }
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }

  std::optional<std::uint32_t> Number() {
    const auto bytes = Take(4);
    if (!bytes) return std::nullopt;
    std::uint32_t number = 0;
    for (std::size_t i = 4; i > 0; --i) {
      number = number << 8U | static_cast<std::uint8_t>((*bytes)[i - 1]);
    }
    return number;
  }

  bool ReadHeader() {
    const auto magic = Take(3);
    const auto version = Take(2);
    const auto ssid = Number();
    const auto routes = Number();
    if (!routes || *magic != "Kel" || (*version)[0] != '\0') return false;
    ssid_ = *ssid;
    routes_ = *routes;
    return (*version)[1] == '\1' || ((*version)[1] == '\2' && Take(48));
  }

  bool ReadRoutes() {
    for (std::uint32_t i = 0; i < routes_; ++i) {
      if (!ReadRoute()) return false;
    }
    return true;
  }

  bool ReadRoute() {
    const auto guid = Take(16);
    const auto settings = Number();
    if (!settings) return false;
    std::array<std::uint8_t, 16> bytes{};
    std::copy(guid->begin(), guid->end(), bytes.begin());
    const std::u16string route = platform::GuidToString(platform::GuidFromBytes(bytes));
    bool isRead = true;
    for (std::uint32_t i = 1; isRead && i <= *settings; ++i) {
      isRead = ReadSetting(route, Wide(std::to_string(i)));
      settingsKeys_.insert(route);
    }
    if (settingsKeys_.contains(route)) {
      const bool isOff = route == u"{DFF21CE2-F70F-11D0-B917-00A0C9223196}" ||
                         route == u"{DFF21FE3-F70F-11D0-B917-00A0C9223196}";
      values_[ValuePath(Key(u"Parameters", route), u"ActiveSetting")] =
          std::string(isOff ? "1\0\0\0" : "2\0\0\0", 4);
    }
    return isRead;
  }

  static std::u16string Key(const std::u16string& tree, const std::u16string& route) {
    return u"SOFTWARE\\Norvane\\Velsona\\" + tree + u"\\" + route + u"\\Settings";
  }

  // A NaN is written, but never reads back equal.
  bool ReadSetting(const std::u16string& route, const std::u16string& setting) {
    const auto count = Number();
    if (!count) return false;
    for (std::uint32_t i = 1; i <= *count; ++i) {
      const std::string_view before = rest_;
      const auto bits = Number();
      if (!bits) return false;
      for (const char16_t* tree : {u"Parameters", u"Defaults"}) {
        values_[ValuePath(Key(tree, route) + u"\\" + setting, u"Param" + Wide(std::to_string(i)))] =
            before.substr(0, 4);
      }
      if (std::isnan(std::bit_cast<float>(*bits))) return false;
    }
    return true;
  }

  std::string_view rest_;
  std::uint32_t ssid_ = 0;
  std::uint32_t routes_ = 0;
  std::set<std::u16string> settingsKeys_;
  RegistryValues values_;
  bool isComplete_ = false;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::AsText(data, size);
  const Expectation expected(bytes);
  platform::FakeRegistry registry;
  platform::FakeFileSystem files;
  files.PutFile(kPath, bytes);
  store::TuningImport import(registry, files, {});
  fuzz::Require(!import.ImportTuningFile(kPath, expected.Ssid() + 1) && AllValues(registry).empty(),
                "a file for another machine leaves the store as it was");
  const bool isImported = import.ImportTuningFile(kPath, expected.Ssid()).has_value();
  fuzz::Require(isImported == expected.IsComplete(), "complete files are imported, others are not");
  fuzz::Require(AllValues(registry) == expected.Values(), "the store holds the file's values");
  fuzz::Require(files.Contents(u"/state/Velsona.txt").has_value() == isImported,
                "imports are described in the log");
  return 0;
}
