#include "tools/regtool/commands.h"

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/registry_rules.h"
#include "platform/text.h"
#include "tools/regtool/value_text.h"

namespace regtool {
namespace {

using platform::RegistryKey;
using platform::RegistryStatus;
using platform::RegistryType;
using platform::ToUtf8;

constexpr platform::RegistryAccess kReading = platform::kRegistryRead | platform::kRegistryView64;
constexpr platform::RegistryAccess kWriting =
    platform::kRegistryAllAccess | platform::kRegistryView64;

struct Value {
  RegistryType type = RegistryType::None;
  std::vector<std::byte> data;
};

std::optional<Value> ReadValue(RegistryKey& key, const std::u16string& name) {
  Value value;
  std::uint32_t size = 0;
  RegistryStatus status = key.QueryValue(name, &value.type, nullptr, &size);
  do {
    value.data.resize(size + std::size_t{1});  // never null
    size = static_cast<std::uint32_t>(value.data.size());
    if (status == RegistryStatus::Success || status == RegistryStatus::MoreData) {
      status = key.QueryValue(name, &value.type, value.data.data(), &size);
    }
  } while (status == RegistryStatus::MoreData);
  if (status != RegistryStatus::Success) return std::nullopt;
  value.data.resize(size);
  return value;
}

class CommandRun {
 public:
  CommandRun(platform::Registry& registry, const Arguments& arguments, const Streams& streams)
      : registry_(registry), arguments_(arguments), streams_(streams) {}

  Outcome Query() {
    const auto scope = registry_.BeginRead();
    const std::optional<std::u16string> path = StoredPath();
    if (!path) return Fail(KeyText(arguments_.path) + " does not exist");
    if (arguments_.name) {
      const bool isFound = PrintNamedValue(*path);
      return isFound ? Outcome::Done : Fail("there is no value " + NameText(*arguments_.name));
    }
    PrintKey(*path);
    return Outcome::Done;
  }

  Outcome Add() {
    if (arguments_.path.empty()) return Fail("name a key below " + KeyText(u""));
    const bool hasValue = arguments_.name || arguments_.type || arguments_.data;
    const RegistryType type = arguments_.type.value_or(RegistryType::String);
    const std::u16string name = arguments_.name.value_or(u"");
    const std::u16string text = arguments_.data.value_or(u"");
    const auto data = ParseData(type, text);
    if (!data) return Fail("\"" + ToUtf8(text) + "\" is no data for " + TypeName(type));
    if (hasValue && !MayOverwrite(name)) return Outcome::Failed;

    const auto scope = registry_.BeginWrite();
    const auto key = registry_.CreateKey(arguments_.root, arguments_.path, kWriting);
    if (key == nullptr) return Fail(KeyText(arguments_.path) + " cannot be made");
    if (hasValue && key->SetValue(name, type, *data) != RegistryStatus::Success) {
      return Fail(NameText(name) + " cannot be written");
    }
    if (scope->Commit() == RegistryStatus::Success) return Outcome::Done;
    return Fail("nothing was written to " + KeyText(arguments_.path));
  }

  Outcome Delete() {
    if (arguments_.path.empty()) return Fail("name a key below " + KeyText(u""));
    const auto key = registry_.OpenKey(arguments_.root, arguments_.path, kWriting);
    if (key == nullptr) return Fail(KeyText(arguments_.path) + " does not exist");
    if (arguments_.name) return DeleteValue(*key, *arguments_.name);
    if (!IsAgreed("Delete the key " + KeyText(arguments_.path) + " with all below it")) {
      return Outcome::Failed;
    }
    const RegistryStatus status = registry_.RemoveTree(arguments_.root, arguments_.path);
    if (status == RegistryStatus::Success) return Outcome::Done;
    return Fail(KeyText(arguments_.path) + " cannot be deleted");
  }

 private:
  Outcome Fail(const std::string& problem) const {
    streams_.errors << "regtool: " << problem << '\n';
    return Outcome::Failed;
  }

  std::string KeyText(const std::u16string& path) const {
    std::string text(RootName(arguments_.root));
    return path.empty() ? text : text + '\\' + ToUtf8(path);
  }

  static std::string NameText(const std::u16string& name) {
    return name.empty() ? "(Default)" : ToUtf8(name);
  }

  std::unique_ptr<RegistryKey> OpenToRead(const std::u16string& path) const {
    if (path.empty()) return registry_.OpenRoot(arguments_.root);
    return registry_.OpenKey(arguments_.root, path, kReading);
  }

  // The path of the key in question as its writers spelled it; nothing when it does not exist. A
  // root always does.
  std::optional<std::u16string> StoredPath() const {
    std::u16string stored;
    if (arguments_.path.empty()) return stored;
    const auto parts = platform::SplitRegistryPath(arguments_.path);
    for (const std::u16string_view part : *parts) {
      const auto parent = OpenToRead(stored);
      if (parent == nullptr) return std::nullopt;
      std::u16string name;
      std::uint32_t index = 0;
      do {
        if (parent->EnumerateSubKey(index++, &name) != RegistryStatus::Success) {
          return std::nullopt;
        }
      } while (platform::CompareIgnoreCase(name, part) != 0);
      if (!stored.empty()) stored += u'\\';
      stored += name;
    }
    return stored;
  }

  void PrintValue(const std::u16string& name, const Value& value) const {
    streams_.output << "    " << NameText(name) << "    " << TypeName(value.type) << "    "
                    << PrintData(value.type, value.data) << '\n';
  }

  // The key with its values and subkeys.
  void PrintKey(const std::u16string& path) const {
    streams_.output << KeyText(path) << '\n';
    const auto key = OpenToRead(path);
    if (key == nullptr) return;
    std::u16string name;
    for (std::uint32_t i = 0; key->EnumerateValue(i, &name) == RegistryStatus::Success; ++i) {
      if (const auto value = ReadValue(*key, name)) PrintValue(name, *value);
    }
    for (const std::u16string& subKey : SubKeys(*key, path)) {
      if (arguments_.depth == Depth::Recursive) {
        PrintKey(subKey);
      } else {
        streams_.output << KeyText(subKey) << '\n';
      }
    }
  }

  // The key with one value only, if it has it; then, where asked, those below that have it.
  bool PrintNamedValue(const std::u16string& path) const {
    const auto key = OpenToRead(path);
    if (key == nullptr) return false;
    const std::optional<std::u16string> name = StoredName(*key, *arguments_.name);
    const std::optional<Value> value = name ? ReadValue(*key, *name) : std::nullopt;
    bool isFound = value.has_value();
    if (isFound) {
      streams_.output << KeyText(path) << '\n';
      PrintValue(*name, *value);
    }
    if (arguments_.depth == Depth::OneKey) return isFound;
    for (const std::u16string& subKey : SubKeys(*key, path)) {
      isFound = PrintNamedValue(subKey) || isFound;
    }
    return isFound;
  }

  static std::optional<std::u16string> StoredName(RegistryKey& key, const std::u16string& name) {
    std::u16string stored;
    for (std::uint32_t i = 0; key.EnumerateValue(i, &stored) == RegistryStatus::Success; ++i) {
      if (platform::CompareIgnoreCase(stored, name) == 0) return stored;
    }
    return std::nullopt;
  }

  static std::vector<std::u16string> SubKeys(RegistryKey& key, const std::u16string& path) {
    std::vector<std::u16string> subKeys;
    std::u16string name;
    for (std::uint32_t i = 0; key.EnumerateSubKey(i, &name) == RegistryStatus::Success; ++i) {
      subKeys.push_back(path);
      if (!path.empty()) subKeys.back() += u'\\';
      subKeys.back() += name;
    }
    return subKeys;
  }

  Outcome DeleteValue(RegistryKey& key, const std::u16string& name) const {
    if (!ReadValue(key, name)) return Fail("there is no value " + NameText(name));
    if (!IsAgreed("Delete the value " + NameText(name))) return Outcome::Failed;
    if (key.RemoveValue(name) == RegistryStatus::Success) return Outcome::Done;
    return Fail(NameText(name) + " cannot be deleted");
  }

  bool MayOverwrite(const std::u16string& name) const {
    const auto key = OpenToRead(arguments_.path);
    if (key == nullptr || !ReadValue(*key, name)) return true;
    return IsAgreed("Overwrite the value " + NameText(name));
  }

  // Asks until there is an answer; the end of input is a no.
  bool IsAgreed(const std::string& question) const {
    if (arguments_.consent == Consent::Given) return true;
    std::string answer;
    while (true) {
      streams_.errors << question << " (yes/no)? " << std::flush;
      if (!std::getline(streams_.input, answer)) break;
      const std::u16string word = platform::FoldCase(platform::FromUtf8(answer));
      if (word == u"Y" || word == u"YES") return true;
      if (word == u"N" || word == u"NO") break;
    }
    streams_.errors << "\nregtool: nothing was changed\n";
    return false;
  }

  platform::Registry& registry_;
  const Arguments& arguments_;
  const Streams& streams_;
};

}  // namespace

Outcome RunCommand(platform::Registry& registry, const Arguments& arguments,
                   const Streams& streams) {
  CommandRun run(registry, arguments, streams);
  if (arguments.command == Command::Query) return run.Query();
  return arguments.command == Command::Add ? run.Add() : run.Delete();
}

}  // namespace regtool
