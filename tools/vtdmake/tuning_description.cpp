#include "tools/vtdmake/tuning_description.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <set>
#include <type_traits>

#include "dsp/eq_model.h"

namespace tools {
namespace {

constexpr std::string_view kParameterPrefix = "Param";

// A value of the source with the name by which errors call it.
struct Field {
  const JsonNode& node;
  std::string name;

  [[noreturn]] void Fail(const std::string& message) const {
    throw SourceError(node.position, name, message);
  }

  Field Member(const std::string& memberName, const JsonNode& member) const {
    return {member, name.empty() ? memberName : name + "." + memberName};
  }

  Field Item(std::size_t index) const {
    return {node.items[index], name + "[" + std::to_string(index) + "]"};
  }
};

// Decimal, or hexadecimal behind "0x"; negative behind "-".
std::optional<double> NumberFromText(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  if (isNegative) text.remove_prefix(1);
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
    base = 16;
  }
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return isNegative ? -static_cast<double>(value) : value;
}

// Whole numbers may stand as text too, for the sake of hexadecimal ones.
template <class Integer>
Integer ReadInteger(const Field& field) {
  std::optional<double> value;
  if (field.node.kind == JsonNode::Kind::Number) value = field.node.number;
  if (field.node.kind == JsonNode::Kind::String) value = NumberFromText(field.node.text);
  constexpr auto kLowest = static_cast<double>(std::numeric_limits<Integer>::min());
  constexpr auto kHighest = static_cast<double>(std::numeric_limits<Integer>::max());
  if (!value || *value != std::floor(*value) || *value < kLowest || *value > kHighest) {
    field.Fail("must be a whole number from " +
               std::to_string(std::numeric_limits<Integer>::min()) + " to " +
               std::to_string(std::numeric_limits<Integer>::max()) +
               R"(, or such a number as text like "0x1A")");
  }
  return static_cast<Integer>(*value);
}

const std::string& ReadString(const Field& field) {
  if (field.node.kind != JsonNode::Kind::String) field.Fail("must be a text");
  return field.node.text;
}

std::string ReadFixedText(const Field& field, std::size_t width) {
  std::string text = ReadString(field);
  if (text.size() >= width) {
    field.Fail("must have at most " + std::to_string(width - 1) + " characters");
  }
  for (const char character : text) {
    if (character < ' ' || character > '~') field.Fail("must be plain ASCII text");
  }
  return text;
}

float ReadFloat(const Field& field) {
  if (field.node.kind != JsonNode::Kind::Number) field.Fail("must be a number");
  if (std::abs(field.node.number) > std::numeric_limits<float>::max()) {
    field.Fail("is beyond what a parameter can hold");
  }
  return static_cast<float>(field.node.number);
}

const std::vector<JsonNode>& RequireArray(const Field& field) {
  if (field.node.kind != JsonNode::Kind::Array) field.Fail("must be a list");
  return field.node.items;
}

struct MemberReader {
  std::string_view name;
  bool required;
  std::function<void(const Field&)> read;
};

// Hands every member of an object to its reader, in the order of the readers.
void ReadMembers(const Field& object, const std::vector<MemberReader>& readers) {
  if (object.node.kind != JsonNode::Kind::Object) object.Fail("must be an object");
  std::set<std::string_view> seen;
  for (const auto& [name, member] : object.node.members) {
    const Field field = object.Member(name, member);
    if (!seen.insert(name).second) field.Fail("is given twice");
    if (std::ranges::find(readers, name, &MemberReader::name) == readers.end()) {
      field.Fail("is not known here");
    }
  }
  for (const MemberReader& reader : readers) {
    for (const auto& [name, member] : object.node.members) {
      if (name == reader.name) reader.read(object.Member(name, member));
    }
    if (reader.required && !seen.contains(reader.name)) {
      object.Member(std::string(reader.name), object.node).Fail("is missing");
    }
  }
}

TuningFacts ReadProperties(const Field& field) {
  TuningFacts facts;
  const auto integer = [](auto& target) {
    return [&target](const Field& member) {
      target = ReadInteger<std::remove_reference_t<decltype(target)>>(member);
    };
  };
  const auto text = [](std::string& target, std::size_t width) {
    return [&target, width](const Field& member) { target = ReadFixedText(member, width); };
  };
  ReadMembers(field, {{"apoName", false, text(facts.apoName, kApoNameWidth)},
                      {"apoMajor", false, integer(facts.apoMajor)},
                      {"apoBuild", false, integer(facts.apoBuild)},
                      {"toolVersion", false, text(facts.toolVersion, kToolVersionWidth)},
                      {"dataVersion", false, integer(facts.dataVersion)},
                      {"date", false, integer(facts.date)},
                      {"statusSpeaker", false, integer(facts.statusSpeaker)},
                      {"statusSubwoofer", false, integer(facts.statusSubwoofer)},
                      {"statusHeadphone", false, integer(facts.statusHeadphone)},
                      {"statusLineOut", false, integer(facts.statusLineOut)}});
  return facts;
}

std::size_t ParameterIndexOf(const Field& field, std::string_view name) {
  std::size_t number = 0;
  if (name.starts_with(kParameterPrefix)) {
    const std::string_view digits = name.substr(kParameterPrefix.size());
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() || digits[0] == '0') {
      number = 0;
    }
  }
  if (number < 1 || number > dsp::kParameterCount) {
    field.Fail("is no parameter; they are Param1 to Param" + std::to_string(dsp::kParameterCount));
  }
  return number - 1;
}

std::vector<float> ReadNamedParameters(const Field& field) {
  const auto initial = dsp::InitialParameters();
  std::vector<float> values(initial.begin(), initial.end());
  std::set<std::string_view> seen;
  for (const auto& [name, node] : field.node.members) {
    const Field member = field.Member(name, node);
    if (!seen.insert(name).second) member.Fail("is given twice");
    values[ParameterIndexOf(member, name)] = ReadFloat(member);
  }
  return values;
}

std::vector<float> ReadSetting(const Field& field) {
  if (field.node.kind == JsonNode::Kind::Object) return ReadNamedParameters(field);
  if (field.node.kind != JsonNode::Kind::Array) {
    field.Fail("must be a list of numbers or an object that names parameters");
  }
  std::vector<float> values;
  values.reserve(field.node.items.size());
  for (std::size_t i = 0; i < field.node.items.size(); ++i) {
    values.push_back(ReadFloat(field.Item(i)));
  }
  return values;
}

platform::Guid ReadGuid(const Field& field) {
  const std::string& text = ReadString(field);
  const auto guid = platform::GuidFromString(std::u16string(text.begin(), text.end()));
  if (!guid) field.Fail("must be a GUID like {DFF21CE1-F70F-11D0-B917-00A0C9223196}");
  return *guid;
}

TuningRoute ReadRoute(const Field& field) {
  TuningRoute route{};
  ReadMembers(field, {{"guid", true, [&](const Field& guid) { route.guid = ReadGuid(guid); }},
                      {"settings", true, [&](const Field& settings) {
                         for (std::size_t i = 0; i < RequireArray(settings).size(); ++i) {
                           route.settings.push_back(ReadSetting(settings.Item(i)));
                         }
                       }}});
  return route;
}

std::uint16_t ReadVersion(const Field& field) {
  const auto version = ReadInteger<std::uint16_t>(field);
  if (version != kVersionWithoutProperties && version != kVersionWithProperties) {
    field.Fail(R"(must be "0x0100" or "0x0200")");
  }
  return version;
}

}  // namespace

TuningDescription DescribeTuning(const JsonNode& source) {
  TuningDescription tuning;
  ReadMembers(
      {source, {}},
      {{"version", true, [&](const Field& field) { tuning.version = ReadVersion(field); }},
       {"ssid", true, [&](const Field& field) { tuning.ssid = ReadInteger<std::uint32_t>(field); }},
       {"properties", false,
        [&](const Field& field) {
          if (tuning.version != kVersionWithProperties) field.Fail("needs version 0x0200");
          tuning.properties = ReadProperties(field);
        }},
       {"routes", true, [&](const Field& field) {
          for (std::size_t i = 0; i < RequireArray(field).size(); ++i) {
            tuning.routes.push_back(ReadRoute(field.Item(i)));
          }
        }}});
  return tuning;
}

}  // namespace tools
