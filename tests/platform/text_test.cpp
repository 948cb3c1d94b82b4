#include "platform/text.h"

#include <gtest/gtest.h>

#include <string_view>

namespace platform {
namespace {

TEST(TextTest, Utf8AndBack) {
  struct Case {
    std::u16string_view utf16;
    std::string_view utf8;
  };
  for (const Case& c :
       {Case{u"", ""}, Case{u"aß€\U0001F50A", "a\xC3\x9F\xE2\x82\xAC\xF0\x9F\x94\x8A"},
        Case{{u"a\0b", 3}, {"a\0b", 3}},
        // Bytes that are no UTF-8: alone, overlong, a surrogate, beyond the last.
        Case{u"x\xDC80\xDCFFy", "x\x80\xFFy"}, Case{u"\xDCC0\xDCAF", "\xC0\xAF"},
        Case{u"\xDCED\xDCA0\xDC80", "\xED\xA0\x80"},
        Case{u"\xDCF4\xDC90\xDC80\xDC80", "\xF4\x90\x80\x80"},
        // Cut off at the end.
        Case{u"\xDCE2\xDC82", "\xE2\x82"}}) {
    EXPECT_EQ(ToUtf8(c.utf16), c.utf8);
    EXPECT_EQ(FromUtf8(c.utf8), c.utf16);
  }
  EXPECT_EQ(ToUtf8(u"\xD800x\xDC00"), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

TEST(TextTest, AnsiHasOneByteForEachUnit) {
  EXPECT_EQ(ToAnsi(u"Aÿ€Ÿ™\x81\x80\U0001F50AĀ"), "A\xFF\x80\x9F\x99\x81????");
}

TEST(TextTest, CaseIsIgnoredAllOverUnicode) {
  struct Case {
    std::u16string_view left;
    std::u16string_view right;
    int order;
  };
  for (const Case& c :
       {Case{u"", u"", 0}, Case{u"", u"a", -1}, Case{u"PARAM1", u"param1", 0},
        Case{u"Param10", u"param2", -1}, Case{u"a_", u"aB", 1}, Case{u"äÖ", u"Äö", 0},
        Case{u"ЖУК", u"жук", 0}, Case{u"ΣΑΣ", u"σας", 0}, Case{u"ẞ", u"ß", 0},
        Case{u"\U00010400", u"\U00010428", 0}, Case{u"ı", u"I", 1}, Case{u"ss", u"ß", -1},
        Case{u"\xD800", u"\xD801", -1}}) {
    const int order = CompareIgnoreCase(c.left, c.right);
    EXPECT_EQ((order > 0) - (order < 0), c.order);
    const int reverse = CompareIgnoreCase(c.right, c.left);
    EXPECT_EQ((reverse > 0) - (reverse < 0), -c.order);
    EXPECT_EQ(FoldCase(c.left) == FoldCase(c.right), c.order == 0);
  }
}

}  // namespace
}  // namespace platform
