#include "tools/json_source.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace tools {
namespace {

// Follows the parser through the text, one token for each of its events.
class TokenCursor {
 public:
  explicit TokenCursor(std::string_view text) : text_(text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text_.starts_with(kByteOrderMark)) text_.remove_prefix(kByteOrderMark.size());
  }

  // Where the next token starts.
  SourcePosition Next() {
    SkipWhile(" \t\r\n,:");
    const SourcePosition start = position_;
    if (next_ == text_.size()) return start;
    if (text_[next_] == '"') {
      SkipString();
    } else if (std::string_view("{}[]").find(text_[next_]) != std::string_view::npos) {
      Advance();
    } else {
      SkipLiteral();
    }
    return start;
  }

 private:
  void Advance() {
    if (text_[next_++] == '\n') {
      ++position_.line;
      position_.column = 1;
    } else {
      ++position_.column;
    }
  }

  void SkipWhile(std::string_view set) {
    while (next_ < text_.size() && set.find(text_[next_]) != std::string_view::npos) Advance();
  }

  void SkipString() {
    Advance();
    while (next_ < text_.size() && text_[next_] != '"') {
      if (text_[next_] == '\\') Advance();
      Advance();
    }
    if (next_ < text_.size()) Advance();
  }

  void SkipLiteral() {
    constexpr std::string_view kEnds = " \t\r\n,:{}[]\"";
    while (next_ < text_.size() && kEnds.find(text_[next_]) == std::string_view::npos) Advance();
  }

  std::string_view text_;
  std::size_t next_ = 0;
  SourcePosition position_;
};

// Builds the tree from the parser's events, in the parser's own interface.
class TreeBuilder final : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit TreeBuilder(std::string_view text) : text_(text), cursor_(text) {}

  JsonNode TakeRoot() { return std::move(root_); }

  bool null() override {
    Add(JsonNode::Kind::Null);
    return true;
  }
  bool boolean(bool /*value*/) override {
    Add(JsonNode::Kind::Boolean);
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
    Add(JsonNode::Kind::String).text = std::move(value);
    return true;
  }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override {
    Open(JsonNode::Kind::Object);
    return true;
  }
  bool key(string_t& name) override {
    cursor_.Next();
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
    throw SourceError(PositionOf(byte), {}, Explanation(error.what()));
  }

 private:
  // Deeper than any tuning description, and far from what the call stack could not bear.
  static constexpr std::size_t kMaxDepth = 32;

  JsonNode& Add(JsonNode::Kind kind) {
    JsonNode node;
    node.kind = kind;
    node.position = cursor_.Next();
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
    Add(JsonNode::Kind::Number).number = value;
    return true;
  }

  void Open(JsonNode::Kind kind) {
    JsonNode& node = Add(kind);
    if (open_.size() == kMaxDepth) throw SourceError(node.position, {}, "nested too deeply");
    open_.push_back(&node);
  }

  bool Close() {
    cursor_.Next();
    open_.pop_back();
    return true;
  }

  // The parser counts the bytes that it has read, the offending one included.
  SourcePosition PositionOf(std::size_t byte) const {
    const std::string_view before = text_.substr(0, byte == 0 ? 0 : byte - 1);
    const std::size_t lineStart = before.rfind('\n') + 1;  // 0 on the first line
    return {static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1,
            before.size() - lineStart + 1};
  }

  // The parser's message without its own name for the error and its own account of the place.
  static std::string Explanation(std::string_view message) {
    const std::size_t column = message.find(", column ");
    const std::string_view end = column == std::string_view::npos ? "] " : ": ";
    const std::size_t found = message.find(end, column == std::string_view::npos ? 0 : column);
    return std::string(found == std::string_view::npos ? message
                                                       : message.substr(found + end.size()));
  }

  std::string_view text_;
  TokenCursor cursor_;
  JsonNode root_;
  // A node's children are added to the innermost one only, so the others never move.
  std::vector<JsonNode*> open_;
  std::string pendingName_;
};

}  // namespace

JsonNode ParseJson(std::string_view text) {
  TreeBuilder builder(text);
  nlohmann::json::sax_parse(text, &builder);
  return builder.TakeRoot();
}

}  // namespace tools
