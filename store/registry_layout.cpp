#include "store/registry_layout.h"

#include <array>

namespace store {
namespace {

constexpr std::u16string_view kParameterPrefix = u"Param";
constexpr std::size_t kMaxDigits = 10;

struct Digits {
  std::array<char16_t, kMaxDigits> text{};
  std::size_t count = 0;
};

constexpr Digits ToDigits(std::uint32_t number) {
  Digits reversed;
  do {
    reversed.text[reversed.count++] = static_cast<char16_t>(u'0' + number % 10);
    number /= 10;
  } while (number != 0);
  Digits digits;
  while (digits.count < reversed.count) {
    digits.text[digits.count] = reversed.text[reversed.count - 1 - digits.count];
    ++digits.count;
  }
  return digits;
}

struct Name {
  std::array<char16_t, kParameterPrefix.size() + 4> text{};
  std::size_t length = 0;
};

// A load asks for all names and a drag for some on every move, so they are there from the start.
constexpr std::array<Name, kParameterCount> MakeNames() {
  std::array<Name, kParameterCount> names{};
  for (std::size_t i = 0; i < names.size(); ++i) {
    for (const char16_t unit : kParameterPrefix) {
      names[i].text[names[i].length++] = unit;
    }
    const Digits digits = ToDigits(static_cast<std::uint32_t>(i + 1));
    for (std::size_t k = 0; k < digits.count; ++k) {
      names[i].text[names[i].length++] = digits.text[k];
    }
  }
  return names;
}

constexpr std::array<Name, kParameterCount> kNames = MakeNames();

std::u16string Join(std::u16string_view first, std::u16string_view second,
                    std::u16string_view third, std::u16string_view fourth = {}) {
  std::u16string path;
  path.reserve(first.size() + second.size() + third.size() + fourth.size());
  return path.append(first).append(second).append(third).append(fourth);
}

constexpr std::u16string_view kParametersPrefix = u"SOFTWARE\\Norvane\\Velsona\\Parameters\\";
constexpr std::u16string_view kDefaultsPrefix = u"SOFTWARE\\Norvane\\Velsona\\Defaults\\";

}  // namespace

std::u16string SettingsKeyPath(std::u16string_view pathKey) {
  return Join(kParametersPrefix, pathKey, u"\\Settings");
}

std::u16string SettingKeyPath(Tree tree, std::u16string_view pathKey, std::u16string_view setting) {
  return Join(tree == Tree::Parameters ? kParametersPrefix : kDefaultsPrefix, pathKey,
              u"\\Settings\\", setting);
}

std::u16string_view ParameterName(std::size_t number) {
  const Name& name = kNames[number - 1];
  return {name.text.data(), name.length};
}

std::u16string FormatParameterName(std::uint32_t number) {
  return std::u16string(kParameterPrefix) + DecimalText(number);
}

std::u16string DecimalText(std::uint32_t number) {
  const Digits digits = ToDigits(number);
  return {digits.text.data(), digits.count};
}

}  // namespace store
