// The security descriptor language, as far as it takes to tell an access list from other text.
// This system's permissions are the file system's; the text is kept for those who ask for it.
#include <algorithm>
#include <array>
#include <string_view>

#include "platform/registry.h"

namespace platform {
namespace {

using Text = std::u16string_view;

bool IsHexDigit(char16_t unit) {
  return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') ||
         (unit >= u'a' && unit <= u'f');
}

bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

bool IsHexNumber(Text text) {
  return text.size() > 2 && text.size() <= 10 && text.starts_with(u"0x") &&
         std::all_of(text.begin() + 2, text.end(), IsHexDigit);
}

// A run of two-letter codes out of `codes`, maybe an empty one.
template <std::size_t kCount>
bool IsCodeRun(Text text, const std::array<Text, kCount>& codes) {
  for (; text.size() >= 2; text.remove_prefix(2)) {
    if (std::find(codes.begin(), codes.end(), text.substr(0, 2)) == codes.end()) return false;
  }
  return text.empty();
}

constexpr std::array<Text, 2> kAllowAndDeny = {u"A", u"D"};
constexpr std::array<Text, 7> kInheritance = {u"CI", u"OI", u"NP", u"IO", u"ID", u"SA", u"FA"};
constexpr std::array<Text, 25> kRights = {
    u"GA", u"GR", u"GW", u"GX", u"RC", u"SD", u"WD", u"WO", u"RP", u"WP", u"CC", u"DC", u"LC",
    u"SW", u"LO", u"DT", u"CR", u"FA", u"FR", u"FW", u"FX", u"KA", u"KR", u"KW", u"KX"};
constexpr std::array<Text, 33> kAccounts = {
    u"AN", u"AO", u"AU", u"BA", u"BG", u"BO", u"BU", u"CA", u"CD", u"CG", u"CO",
    u"DA", u"DC", u"DD", u"DG", u"DU", u"EA", u"ED", u"IU", u"LA", u"LG", u"LS",
    u"NO", u"NS", u"NU", u"PA", u"PO", u"PU", u"RC", u"RD", u"RE", u"SY", u"WD"};

// "S-1-" and at least two numbers divided by hyphens.
bool IsSid(Text text) {
  if (!text.starts_with(u"S-1-")) return false;
  text.remove_prefix(4);
  std::size_t numbers = 0;
  while (true) {
    const std::size_t end = text.find(u'-');
    const Text number = text.substr(0, end);
    if (number.empty() || !std::all_of(number.begin(), number.end(), IsDigit)) return false;
    ++numbers;
    if (end == Text::npos) return numbers >= 2;
    text.remove_prefix(end + 1);
  }
}

bool IsAccount(Text text) {
  return IsSid(text) || std::find(kAccounts.begin(), kAccounts.end(), text) != kAccounts.end();
}

// One entry without its parentheses: type;flags;rights;object;inherited object;account.
bool IsEntry(Text text) {
  std::array<Text, 6> fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::size_t end = text.find(u';');
    if ((end == Text::npos) != (i + 1 == fields.size())) return false;
    fields[i] = text.substr(0, end);
    if (end != Text::npos) text.remove_prefix(end + 1);
  }
  const auto& [type, flags, rights, object, inherited, account] = fields;
  return std::find(kAllowAndDeny.begin(), kAllowAndDeny.end(), type) != kAllowAndDeny.end() &&
         IsCodeRun(flags, kInheritance) && (IsHexNumber(rights) || IsCodeRun(rights, kRights)) &&
         object.empty() && inherited.empty() && IsAccount(account);
}

void SkipControlFlags(Text* text) {
  constexpr std::array<Text, 3> kFlags = {u"P", u"AR", u"AI"};
  for (bool skipped = true; skipped;) {
    skipped = false;
    for (const Text flag : kFlags) {
      if (!text->starts_with(flag)) continue;
      text->remove_prefix(flag.size());
      skipped = true;
    }
  }
}

}  // namespace

bool IsAccessList(std::u16string_view sddl) {
  if (!sddl.starts_with(u"D:")) return false;
  sddl.remove_prefix(2);
  SkipControlFlags(&sddl);
  while (!sddl.empty()) {
    const std::size_t end = sddl.find(u')');
    if (sddl.front() != u'(' || end == Text::npos || !IsEntry(sddl.substr(1, end - 1))) {
      return false;
    }
    sddl.remove_prefix(end + 1);
  }
  return true;
}

}  // namespace platform
