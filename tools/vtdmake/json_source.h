// JSON as a tree that remembers where everything stood, so that errors can name the place.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/virtual/tracked_text.h"

namespace tools {

using SourcePosition = platform::TextPosition;

// `field` is empty when the text is no JSON.
class SourceError : public std::runtime_error {
 public:
  SourceError(SourcePosition where, std::string field, const std::string& message)
      : std::runtime_error(message), position(where), fieldName(std::move(field)) {}

  SourcePosition position;
  std::string fieldName;
};

struct JsonMember;

struct JsonNode {
  enum class Kind { Null, Boolean, Number, String, Array, Object };

  Kind kind = Kind::Null;
  SourcePosition position;
  double number = 0.0;
  std::string text;
  std::vector<JsonNode> items;
  // In the order of the text; names are as they stand, and may repeat.
  std::vector<JsonMember> members;
};

struct JsonMember {
  std::string name;
  JsonNode node;
};

// Throws a SourceError.
JsonNode ParseJson(std::string_view text);

}  // namespace tools
