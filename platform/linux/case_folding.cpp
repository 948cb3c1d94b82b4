#include "platform/case_folding.h"

#include <locale.h>

#include <cwctype>

namespace platform {
namespace {

// The system's case tables, whatever locale the process runs in.
locale_t UnicodeLocale() {
  static const locale_t kLocale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return kLocale;
}

}  // namespace

// Upper case, which is the order the original platform sorts names in. Going up, down and up again
// also unites the forms that have no capital of their own (long s, final sigma, title case).
char32_t FoldCodePoint(char32_t point) {
  if (point < 0x80) return point >= U'a' && point <= U'z' ? point - 0x20 : point;
  // The dotted capital and the dotless small i are letters of their own.
  if (point == 0x130 || point == 0x131) return point;
  const locale_t locale = UnicodeLocale();
  if (locale == nullptr) return point;
  const wint_t lower = towlower_l(towupper_l(static_cast<wint_t>(point), locale), locale);
  return static_cast<char32_t>(towupper_l(lower, locale));
}

}  // namespace platform
