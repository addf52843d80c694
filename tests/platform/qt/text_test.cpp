#include "platform/qt/text.h"

#include <gtest/gtest.h>

namespace {

TEST(TextTest, BytesThatAreNoValidUtf8AreReadAsLatin1AndNothingIsLost) {
  const std::pair<std::string_view, QString> cases[] = {
      {"W\xC3\xA4gung", u"W\u00E4gung"_qs},
      {"W\xE4gung", u"W\u00E4gung"_qs},
      {"\xC3", u"\u00C3"_qs},                      // cut short
      {"\xC0\xAF", u"\u00C0\u00AF"_qs},            // longer than needed
      {"\xED\xA0\x80", u"\u00ED\u00A0\u0080"_qs},  // half a pair
      {"\xEF\xBB\xBF"
       "5",
       u"\uFEFF5"_qs},
      {"", u""_qs},
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(ToText(bytes), text) << "'" << bytes << "'";
}

TEST(TextTest, EveryByteOfAStreamCanBeSeen) {
  for (int code = 0; code < 256; ++code) {
    const QString text = ToVisibleText(std::string(1, static_cast<char>(code)));
    ASSERT_FALSE(text.isEmpty()) << code;
    for (const QChar character : text) EXPECT_TRUE(character.isPrint()) << code;
  }
  EXPECT_EQ(ToVisibleText("\x02"
                          "12.5\r\n\x7F\x9C"),
            u"\u2039STX\u203A12.5\u2039CR\u203A\u2039LF\u203A\u2039DEL\u203A\u20399C\u203A"_qs);
}

}  // namespace
