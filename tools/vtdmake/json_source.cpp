#include "tools/vtdmake/json_source.h"

#include <nlohmann/json.hpp>

namespace tools {
namespace {

// Builds the tree from the parser's events, in the parser's own interface.
class TreeBuilder final : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit TreeBuilder(const platform::TrackedText& text) : text_(text) {}

  JsonNode TakeRoot() { return std::move(root_); }

  bool null() override {
    Add(JsonNode::Kind::Null, text_.StartOfWord());
    return true;
  }
  bool boolean(bool /*value*/) override {
    Add(JsonNode::Kind::Boolean, text_.StartOfWord());
    return true;
  }
  bool number_integer(number_integer_t value) override {
    return AddNumber(static_cast<double>(value));
  }
  bool number_unsigned(number_unsigned_t value) override {
    return AddNumber(static_cast<double>(value));
  }
  bool number_float(number_float_t value, const string_t& /*text*/) override {
    return AddNumber(value);
  }
  bool string(string_t& value) override {
    Add(JsonNode::Kind::String, text_.StartOfString()).text = std::move(value);
    return true;
  }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override {
    Open(JsonNode::Kind::Object);
    return true;
  }
  bool key(string_t& name) override {
    pendingName_ = std::move(name);
    return true;
  }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t /*size*/) override {
    Open(JsonNode::Kind::Array);
    return true;
  }
  bool end_array() override { return Close(); }
  bool parse_error(std::size_t byte, const std::string& /*token*/,
                   const nlohmann::json::exception& error) override {
    // It counts the bytes that it has read, the offending one included.
    throw SourceError(text_.PositionOf(byte == 0 ? 0 : byte - 1), {}, Explanation(error.what()));
  }

 private:
  // Deeper than any tuning description, and far from what the call stack could not bear.
  static constexpr std::size_t kMaxDepth = 32;

  JsonNode& Add(JsonNode::Kind kind, SourcePosition position) {
    JsonNode node;
    node.kind = kind;
    node.position = position;
    if (open_.empty()) {
      root_ = std::move(node);
      return root_;
    }
    JsonNode& parent = *open_.back();
    if (parent.kind == JsonNode::Kind::Array) return parent.items.emplace_back(std::move(node));
    parent.members.push_back({std::move(pendingName_), std::move(node)});
    return parent.members.back().node;
  }

  bool AddNumber(double value) {
    Add(JsonNode::Kind::Number, text_.StartOfWord()).number = value;
    return true;
  }

  void Open(JsonNode::Kind kind) {
    JsonNode& node = Add(kind, text_.StartOfBracket());
    if (open_.size() == kMaxDepth) throw SourceError(node.position, {}, "nested too deeply");
    open_.push_back(&node);
  }

  bool Close() {
    open_.pop_back();
    return true;
  }

  // The parser's message without its own name for the error and its own account of the place.
  static std::string Explanation(std::string_view message) {
    const std::size_t column = message.find(", column ");
    const std::string_view end = column == std::string_view::npos ? "] " : ": ";
    const std::size_t found = message.find(end, column == std::string_view::npos ? 0 : column);
    return std::string(found == std::string_view::npos ? message
                                                       : message.substr(found + end.size()));
  }

  const platform::TrackedText& text_;
  JsonNode root_;
  // A node's children are added to the innermost one only, so the others never move.
  std::vector<JsonNode*> open_;
  std::string pendingName_;
};

}  // namespace

JsonNode ParseJson(std::string_view text) {
  platform::TrackedText tracked(text);
  TreeBuilder builder(tracked);
  nlohmann::json::sax_parse(tracked.Begin(), tracked.End(), &builder);
  return builder.TakeRoot();
}

}  // namespace tools
