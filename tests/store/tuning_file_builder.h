// Builds tuning files field by field and notes after how many bytes a strictly sequential reader
// makes each key and value.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/registry_tree.h"

namespace store {

inline constexpr std::uint32_t kTestSsid = 0x1A9E100F;

inline const std::string kSpeakerBytes = {
    "\xE1\x1C\xF2\xDF\x0F\xF7\xD0\x11\xB9\x17\x00\xA0\xC9\x22"
    "\x31\x96",
    16};
inline const std::string kHeadphonesBytes = {
    "\xE2\x1C\xF2\xDF\x0F\xF7\xD0\x11\xB9\x17\x00\xA0\xC9\x22\x31\x96", 16};
inline const std::string kLineConnectorBytes = {
    "\xE3\x1F\xF2\xDF\x0F\xF7\xD0\x11\xB9\x17\x00\xA0\xC9\x22\x31\x96", 16};
inline const std::u16string kSpeakerRoute = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
inline const std::u16string kHeadphonesRoute = u"{DFF21CE2-F70F-11D0-B917-00A0C9223196}";
inline const std::u16string kLineConnectorRoute = u"{DFF21FE3-F70F-11D0-B917-00A0C9223196}";

inline const std::u16string kProduct = u"SOFTWARE\\Norvane\\Velsona";

inline std::u16string SettingsPath(const std::u16string& tree, const std::u16string& route) {
  return kProduct + u"\\" + tree + u"\\" + route + u"\\Settings";
}

inline std::string Number(std::uint32_t value, std::size_t size = 4) {
  return support::Bytes(&value, size);
}

struct Mark {
  std::size_t offset;  // bytes that must have been read
  std::u16string path;
  std::u16string valueName;  // empty: the key itself
  support::StoredValue value;
};

class TuningFileBuilder {
 public:
  TuningFileBuilder& Header(std::uint32_t version, std::uint32_t ssid, std::uint32_t routeCount) {
    bytes_ += "Kel" + Number(version, 2) + Number(ssid) + Number(routeCount);
    return *this;
  }

  TuningFileBuilder& Properties(const std::string& name, const std::string& tool,
                                std::uint32_t date, const std::string& status) {
    bytes_ += Padded(name, 20) + Number(3) + Number(0xFFFFFFF9) + Padded(tool, 10) +
              Number(0xFFFE, 2) + Number(date) + Padded(status, 4);
    return *this;
  }

  // `activeSetting` is what the import makes the route's default.
  TuningFileBuilder& Route(const std::string& guidBytes, const std::u16string& route,
                           std::uint32_t settingCount, const std::u16string& activeSetting) {
    bytes_ += guidBytes + Number(settingCount);
    route_ = route;
    setting_ = 0;
    if (settingCount > 0) {
      marks_.push_back({bytes_.size(),
                        SettingsPath(u"Parameters", route),
                        u"ActiveSetting",
                        {platform::RegistryType::String, support::TextBytes(activeSetting)}});
    }
    return *this;
  }

  TuningFileBuilder& Setting(std::uint32_t parameterCount) {
    ++setting_;
    parameter_ = 0;
    for (const std::u16string& path : Paths()) marks_.push_back({bytes_.size(), path, u"", {}});
    bytes_ += Number(parameterCount);
    return *this;
  }

  TuningFileBuilder& Parameter(float value) {
    ++parameter_;
    bytes_ += Number(std::bit_cast<std::uint32_t>(value));
    const std::u16string name = u"Param" + Decimal(parameter_);
    for (const std::u16string& path : Paths()) {
      marks_.push_back({bytes_.size(),
                        path,
                        name,
                        {platform::RegistryType::Binary, support::Bytes(&value, sizeof(value))}});
    }
    return *this;
  }

  TuningFileBuilder& FullSetting(std::initializer_list<float> values) {
    Setting(static_cast<std::uint32_t>(values.size()));
    for (const float value : values) Parameter(value);
    return *this;
  }

  const std::string& Bytes() const { return bytes_; }

  // What the store holds below the product's key when `readable` bytes could be read.
  support::Tree TreeAfter(std::size_t readable) const {
    support::Tree tree;
    for (const Mark& mark : marks_) {
      if (mark.offset > readable) continue;
      AddKey(tree, mark.path);
      if (!mark.valueName.empty()) tree[mark.path + u" : " + mark.valueName] = mark.value;
    }
    return tree;
  }

 private:
  static std::string Padded(const std::string& text, std::size_t width) {
    return text + std::string(width - text.size(), '\0');
  }

  static std::u16string Decimal(std::uint32_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
  }

  std::array<std::u16string, 2> Paths() const {
    const std::u16string end = u"\\" + Decimal(setting_);
    return {SettingsPath(u"Parameters", route_) + end, SettingsPath(u"Defaults", route_) + end};
  }

  static void AddKey(support::Tree& tree, std::u16string path) {
    while (path.size() > kProduct.size()) {
      tree.try_emplace(path);
      path.resize(path.rfind(u'\\'));
    }
    tree.try_emplace(kProduct);
  }

  std::string bytes_;
  std::vector<Mark> marks_;
  std::u16string route_;
  std::uint32_t setting_ = 0;
  std::uint32_t parameter_ = 0;
};

}  // namespace store
