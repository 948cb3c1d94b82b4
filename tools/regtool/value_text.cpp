#include "tools/regtool/value_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>

#include "platform/text.h"

namespace regtool {
namespace {

using platform::RegistryType;
using Bytes = std::vector<std::byte>;

struct NamedType {
  RegistryType type;
  std::u16string_view name;
};
constexpr std::array<NamedType, 7> kTypes = {{{RegistryType::None, u"REG_NONE"},
                                              {RegistryType::String, u"REG_SZ"},
                                              {RegistryType::ExpandString, u"REG_EXPAND_SZ"},
                                              {RegistryType::Binary, u"REG_BINARY"},
                                              {RegistryType::Dword, u"REG_DWORD"},
                                              {RegistryType::MultiString, u"REG_MULTI_SZ"},
                                              {RegistryType::Qword, u"REG_QWORD"}}};

std::string Hexadecimal(std::uint64_t number) {
  std::array<char, 16> digits{};
  const auto end = std::to_chars(digits.begin(), digits.end(), number, 16).ptr;
  return "0x" + std::string(digits.begin(), end);
}

std::u16string TextIn(std::span<const std::byte> data) {
  std::u16string text(data.size() / sizeof(char16_t), u'\0');
  if (!text.empty()) std::memcpy(text.data(), data.data(), text.size() * sizeof(char16_t));
  return text;
}

// The text up to its NUL.
std::string PrintText(std::span<const std::byte> data) {
  const std::u16string text = TextIn(data);
  return platform::ToUtf8(text.substr(0, text.find(u'\0')));
}

std::string PrintTexts(std::span<const std::byte> data) {
  const std::u16string text = TextIn(data);
  std::u16string_view rest(text);
  while (!rest.empty() && rest.back() == u'\0') rest.remove_suffix(1);
  std::string printed;
  while (true) {
    const std::size_t end = rest.find(u'\0');
    printed += platform::ToUtf8(rest.substr(0, end));
    if (end == std::u16string_view::npos) return printed;
    printed += "\\0";
    rest.remove_prefix(end + 1);
  }
}

std::string PrintDigits(std::span<const std::byte> data) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string printed;
  for (const std::byte byte : data) {
    printed += kDigits[std::to_integer<std::size_t>(byte >> 4U)];
    printed += kDigits[std::to_integer<std::size_t>(byte & std::byte{0x0F})];
  }
  return printed;
}

template <typename Number>
Bytes BytesOf(const Number* numbers, std::size_t count) {
  Bytes bytes(count * sizeof(Number));
  if (count > 0) std::memcpy(bytes.data(), numbers, bytes.size());
  return bytes;
}

Bytes TerminatedText(std::u16string text) {
  text += u'\0';
  return BytesOf(text.data(), text.size());
}

Bytes Texts(std::u16string_view text) {
  std::u16string texts;
  while (!text.empty()) {
    const std::size_t end = text.find(u"\\0");
    texts += text.substr(0, end);
    texts += u'\0';
    text = end == std::u16string_view::npos ? std::u16string_view() : text.substr(end + 2);
  }
  return TerminatedText(std::move(texts));
}

// A whole number in decimal or, after "0x", hexadecimal digits; no text is 0.
std::optional<std::uint64_t> Number(std::u16string_view text, std::uint64_t largest) {
  std::string digits = platform::ToUtf8(text);
  int base = 10;
  if (digits.starts_with("0x") || digits.starts_with("0X")) {
    digits.erase(0, 2);
    base = 16;
  } else if (digits.empty()) {
    return 0;
  }
  std::uint64_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, number, base);
  if (result.ec != std::errc() || result.ptr != end || number > largest) return std::nullopt;
  return number;
}

std::optional<Bytes> Digits(std::u16string_view text) {
  const std::string digits = platform::ToUtf8(text);
  if (digits.size() % 2 != 0) return std::nullopt;
  Bytes bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    std::uint8_t byte = 0;
    const char* end = &digits[i] + 2;
    const auto result = std::from_chars(&digits[i], end, byte, 16);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    bytes.push_back(std::byte{byte});
  }
  return bytes;
}

template <typename Integer>
std::optional<Bytes> Integral(std::u16string_view text) {
  const auto number = Number(text, std::numeric_limits<Integer>::max());
  if (!number) return std::nullopt;
  const auto narrow = static_cast<Integer>(*number);
  return BytesOf(&narrow, 1);
}

}  // namespace

std::optional<RegistryType> TypeNamed(std::u16string_view name) {
  const auto found = std::find_if(kTypes.begin(), kTypes.end(), [&](const NamedType& type) {
    return platform::CompareIgnoreCase(type.name, name) == 0;
  });
  if (found == kTypes.end()) return std::nullopt;
  return found->type;
}

std::string TypeName(RegistryType type) {
  for (const NamedType& named : kTypes) {
    if (named.type == type) return platform::ToUtf8(named.name);
  }
  return Hexadecimal(static_cast<std::uint32_t>(type));
}

std::string PrintData(RegistryType type, std::span<const std::byte> data) {
  std::uint64_t number = 0;
  const bool isNumber = (type == RegistryType::Dword && data.size() == sizeof(std::uint32_t)) ||
                        (type == RegistryType::Qword && data.size() == sizeof(std::uint64_t));
  if (isNumber) {
    std::memcpy(&number, data.data(), data.size());
    return Hexadecimal(number);
  }
  switch (type) {
    case RegistryType::String:
    case RegistryType::ExpandString:
      return PrintText(data);
    case RegistryType::MultiString:
      return PrintTexts(data);
    default:
      return PrintDigits(data);
  }
}

std::optional<Bytes> ParseData(RegistryType type, std::u16string_view text) {
  switch (type) {
    case RegistryType::String:
    case RegistryType::ExpandString:
      return TerminatedText(std::u16string(text));
    case RegistryType::MultiString:
      return Texts(text);
    case RegistryType::Dword:
      return Integral<std::uint32_t>(text);
    case RegistryType::Qword:
      return Integral<std::uint64_t>(text);
    default:
      return Digits(text);
  }
}

}  // namespace regtool
