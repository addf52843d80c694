#include "platform/qt/text.h"

#include <QStringDecoder>
#include <algorithm>
#include <iterator>

namespace {

constexpr const char* kControlNames[] = {
    "NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL", "BS",  "TAB", "LF",  "VT",  "FF", "CR", "SO", "SI",
    "DLE", "DC1", "DC2", "DC3", "DC4", "NAK", "SYN", "ETB", "CAN", "EM",  "SUB", "ESC", "FS", "GS", "RS", "US",
};
constexpr char16_t kDelete = 0x7F;

struct Range {
  char16_t first;
  char16_t last;
};

/// Characters without a name that act on the line instead of standing in it.
constexpr Range kUnruly[] = {
    {0x0080, 0x009F},  // upper control characters
    {0x00AD, 0x00AD},  // soft hyphen
    {0x061C, 0x061C},  // marks of direction
    {0x200B, 0x200B},  // space without a width
    {0x200E, 0x200F},  // marks of direction
    {0x2028, 0x202E},  // separators of lines and paragraphs, directions
    {0x2066, 0x2069},  // directions
    {0xFEFF, 0xFEFF},  // mark of byte order
};

bool IsUnruly(char16_t code) {
  return std::ranges::any_of(kUnruly, [&](const Range& range) { return code >= range.first && code <= range.last; });
}

QString Named(const QString& name) { return QChar(0x2039) + name + QChar(0x203A); }

}  // namespace

QString ToText(std::string_view bytes) {
  const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
  QString text = utf8(view);
  return utf8.hasError() ? QString::fromLatin1(view) : text;
}

std::string ToBytes(const QString& text) { return text.toStdString(); }

QString ToVisibleText(std::string_view bytes) {
  const QString text = ToText(bytes);
  QString visible;
  visible.reserve(text.size());
  for (const QChar character : text) {
    const char16_t code = character.unicode();
    if (code < std::size(kControlNames)) {
      visible += Named(kControlNames[code]);
    } else if (code == kDelete) {
      visible += Named("DEL");
    } else if (IsUnruly(code)) {
      visible += Named(QString::number(code, 16).toUpper());
    } else {
      visible += character;
    }
  }
  return visible;
}
