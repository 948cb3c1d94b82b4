#include "tools/regtool/arguments.h"

#include <array>
#include <cstddef>
#include <utility>

#include "platform/registry_rules.h"
#include "platform/text.h"
#include "tools/regtool/value_text.h"

namespace regtool {
namespace {

using platform::CompareIgnoreCase;
using platform::RegistryRoot;

struct Root {
  RegistryRoot root;
  std::u16string_view shortName;
  std::u16string_view longName;
};
constexpr std::array<Root, 2> kRoots = {{
    {RegistryRoot::LocalMachine, u"HKLM", u"HKEY_LOCAL_MACHINE"},
    {RegistryRoot::ClassesRoot, u"HKCR", u"HKEY_CLASSES_ROOT"},
}};

bool IsHelp(const std::string& word) {
  return word == "--help" || word == "/?";
}

bool IsSame(std::u16string_view left, std::u16string_view right) {
  return CompareIgnoreCase(left, right) == 0;
}

std::optional<Command> CommandNamed(std::u16string_view word) {
  constexpr std::array<std::pair<std::u16string_view, Command>, 3> kCommands = {
      {{u"query", Command::Query}, {u"add", Command::Add}, {u"delete", Command::Delete}}};
  for (const auto& [name, command] : kCommands) {
    if (IsSame(word, name)) return command;
  }
  return std::nullopt;
}

// Reads the words one by one into the arguments; the first problem ends it.
class Parser {
 public:
  Parser(const std::vector<std::string>& words, std::string* problem)
      : words_(words), problem_(problem) {}

  std::optional<Arguments> Parse() {
    if (words_.empty()) return Fail("no command");
    if (IsHelp(words_[0]) || (words_.size() > 1 && IsHelp(words_[1]))) return arguments_;
    const std::optional<Command> command = CommandNamed(platform::FromUtf8(words_[0]));
    if (!command) return Fail("unknown command \"" + words_[0] + "\"");
    arguments_.command = *command;
    if (words_.size() < 2) return Fail("no key");
    if (!ParseKey(words_[1])) return std::nullopt;
    next_ = 2;
    while (next_ < words_.size()) {
      const std::string& word = words_[next_];
      ++next_;
      if (!ParseOption(word)) return std::nullopt;
    }
    return arguments_;
  }

 private:
  std::nullopt_t Fail(std::string problem) {
    *problem_ = std::move(problem);
    return std::nullopt;
  }

  bool ParseKey(const std::string& word) {
    const std::u16string text = platform::FromUtf8(word);
    const std::size_t cut = text.find(u'\\');
    const std::u16string_view rootName = std::u16string_view(text).substr(0, cut);
    for (const Root& root : kRoots) {
      if (!IsSame(rootName, root.shortName) && !IsSame(rootName, root.longName)) continue;
      arguments_.root = root.root;
      if (cut == std::u16string::npos) return true;
      arguments_.path = text.substr(cut + 1);
      if (platform::SplitRegistryPath(arguments_.path)) return true;
      Fail("\"" + word + "\" has an empty part or one of more than 255 characters");
      return false;
    }
    Fail("\"" + word + "\" does not begin with HKLM, HKCR or their long names");
    return false;
  }

  bool ParseOption(const std::string& word) {
    const std::u16string option = platform::FromUtf8(word);
    const bool isAdd = arguments_.command == Command::Add;
    if (IsSame(option, u"/v")) return TakeText(word, &arguments_.name);
    if (IsSame(option, u"/s") && arguments_.command == Command::Query) {
      arguments_.depth = Depth::Recursive;
      return true;
    }
    if (IsSame(option, u"/f") && arguments_.command != Command::Query) {
      arguments_.consent = Consent::Given;
      return true;
    }
    if (IsSame(option, u"/d") && isAdd) return TakeText(word, &arguments_.data);
    if (IsSame(option, u"/t") && isAdd) return TakeType(word);
    Fail("unknown option \"" + word + "\"");
    return false;
  }

  bool TakeText(const std::string& option, std::optional<std::u16string>* text) {
    if (next_ == words_.size()) {
      Fail("nothing after " + option);
      return false;
    }
    if (text->has_value()) {
      Fail(option + " twice");
      return false;
    }
    *text = platform::FromUtf8(words_[next_++]);
    return true;
  }

  bool TakeType(const std::string& option) {
    std::optional<std::u16string> name;
    if (arguments_.type) {
      Fail(option + " twice");
      return false;
    }
    if (!TakeText(option, &name)) return false;
    arguments_.type = TypeNamed(*name);
    if (!arguments_.type) Fail("unknown type \"" + platform::ToUtf8(*name) + "\"");
    return arguments_.type.has_value();
  }

  const std::vector<std::string>& words_;
  std::string* problem_;
  std::size_t next_ = 0;
  Arguments arguments_;
};

}  // namespace

std::optional<Arguments> ParseArguments(const std::vector<std::string>& words,
                                        std::string* problem) {
  return Parser(words, problem).Parse();
}

std::string_view RootName(platform::RegistryRoot root) {
  return root == RegistryRoot::LocalMachine ? "HKEY_LOCAL_MACHINE" : "HKEY_CLASSES_ROOT";
}

}  // namespace regtool
