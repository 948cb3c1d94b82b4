// Names of the registry as its database compares them.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

// The folded form of a name in UTF-8. Short ASCII names, all that the product itself uses, stay
// inside the object: a set of parameters is read name by name.
class FoldedName {
 public:
  explicit FoldedName(std::u16string_view name);
  FoldedName(const FoldedName&) = delete;
  FoldedName& operator=(const FoldedName&) = delete;

  std::string_view Utf8() const { return utf8_; }

 private:
  static constexpr std::size_t kShort = 64;

  std::array<char, kShort> short_;
  std::string long_;
  std::string_view utf8_;
};

}  // namespace platform
