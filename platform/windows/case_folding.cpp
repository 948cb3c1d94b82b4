#include "platform/case_folding.h"

#include <windows.h>

namespace platform {
namespace {

// One code point by the system's own tables, whatever the user's language; `map` is which way.
char32_t MapCase(char32_t point, DWORD map) {
  wchar_t units[2] = {static_cast<wchar_t>(point), 0};
  int count = 1;
  if (point >= 0x10000) {
    units[0] = static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10U));
    units[1] = static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FFU));
    count = 2;
  }
  wchar_t mapped[2] = {};
  if (LCMapStringEx(LOCALE_NAME_INVARIANT, map | LCMAP_LINGUISTIC_CASING, units, count, mapped,
                    count, nullptr, nullptr, 0) != count) {
    return point;
  }
  if (count == 1) return mapped[0];
  return 0x10000 + ((char32_t{mapped[0]} - 0xD800) << 10U) + (char32_t{mapped[1]} - 0xDC00);
}

}  // namespace

// Going up, down and up again unites the forms that have no capital of their own (long s, final
// sigma, title case).
char32_t FoldCodePoint(char32_t point) {
  if (point < 0x80) return point >= U'a' && point <= U'z' ? point - 0x20 : point;
  // The dotted capital and the dotless small i are letters of their own, a surrogate is none.
  if (point == 0x130 || point == 0x131 || (point >= 0xD800 && point <= 0xDFFF)) return point;
  return MapCase(MapCase(MapCase(point, LCMAP_UPPERCASE), LCMAP_LOWERCASE), LCMAP_UPPERCASE);
}

}  // namespace platform
