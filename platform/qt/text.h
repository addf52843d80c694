#pragma once

#include <QString>
#include <string>
#include <string_view>

/// The edge between the system's texts, which are bytes, and Qt's.

/// Valid UTF-8 is read as that; any other bytes are Latin-1, so that nothing is ever lost.
QString ToText(std::string_view bytes);

/// The text as UTF-8.
std::string ToBytes(const QString& text);

/// As `ToText`, for texts from devices and files that are drawn in one line: a control character becomes its name,
/// such as ‹STX›, and what would break the line or turn the direction of reading becomes its code, such as
/// ‹202E›.
QString ToVisibleText(std::string_view bytes);
