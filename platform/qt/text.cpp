#include "platform/qt/text.h"

#include <QStringDecoder>

namespace {

constexpr char16_t kControlPictures = 0x2400;  ///< the picture of NUL; the others follow in order
constexpr char16_t kDeletePicture = 0x2421;

struct Range {
  char16_t first;
  char16_t last;
};

/// Characters without a picture that act on the line instead of standing in it.
constexpr Range kUnruly[] = {
    {0x0080, 0x009F},                                                        // the upper control characters
    {0x061C, 0x061C},                                                        // marks of direction
    {0x200E, 0x200F}, {0x202A, 0x202E}, {0x2066, 0x2069}, {0x2028, 0x2029},  // separators of lines and paragraphs
    {0xFEFF, 0xFEFF},
};

QChar Visible(QChar character) {
  const char16_t code = character.unicode();
  if (code < 0x20) return QChar(static_cast<char16_t>(kControlPictures + code));
  if (code == 0x7F) return QChar(kDeletePicture);
  for (const Range& range : kUnruly) {
    if (code >= range.first && code <= range.last) return QChar(QChar::ReplacementCharacter);
  }
  return character;
}

}  // namespace

QString ToText(std::string_view bytes) {
  const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
  QString text = utf8(view);
  return utf8.hasError() ? QString::fromLatin1(view) : text;
}

std::string ToBytes(const QString& text) { return text.toStdString(); }

QString ToVisibleText(std::string_view bytes) {
  QString text = ToText(bytes);
  for (QChar& character : text) character = Visible(character);
  return text;
}
