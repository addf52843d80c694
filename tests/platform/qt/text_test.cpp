#include "platform/qt/text.h"

#include <gtest/gtest.h>

namespace {

struct TextCase {
  std::string_view bytes;
  QString text;
};

TEST(TextTest, BytesThatAreNoValidUtf8AreReadAsLatin1AndNothingIsLost) {
  const TextCase cases[] = {
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
  for (const TextCase& c : cases) EXPECT_EQ(ToText(c.bytes), c.text) << "'" << c.bytes << "'";
}

TEST(TextTest, EveryByteOfAStreamIsOneVisibleCharacter) {
  std::string stream;
  for (int code = 0; code < 256; ++code) stream += static_cast<char>(code);
  const QString text = ToVisibleText(stream);
  ASSERT_EQ(text.size(), 256);
  for (const QChar character : text) EXPECT_NE(character.category(), QChar::Other_Control) << int{character.unicode()};
  EXPECT_EQ(ToVisibleText("\x02"
                          "12.5\r\n"),
            u"\u240212.5\u240D\u240A"_qs);
}

TEST(TextTest, ADescriptionCannotTurnTheDirectionOfWhatStandsBesideIt) {
  const QString text = ToVisibleText(
      "A\xE2\x80\xAE"
      "B\xE2\x80\xA8"
      "C");
  EXPECT_EQ(text, u"A\uFFFDB\uFFFDC"_qs);
}

}  // namespace
