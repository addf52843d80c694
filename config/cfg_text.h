#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "core/table.h"

/// The delimited text of all .Cfg files: fields with one comma between them, lines that end in CR LF, texts in
/// double quotes, truth values as #TRUE# and #FALSE#. A text is written exactly as stored, without any escape.
class CfgWriter {
 public:
  void Integer(std::int32_t value);
  void Truth(Boolean value);
  void Text(std::string_view value);
  /// A cell never set is written as nothing at all, an empty one as two quotes.
  void Cell(const std::optional<std::string>& value);
  void EndLine();

  const std::string& Content() const { return content_; }

 private:
  void BeginField();

  std::string content_;
  bool lineBegun_ = false;
};

/// Reads the same text field by field: a line end separates fields as a comma does, blanks before a field and
/// whole blank lines are skipped. What stands between a closing quote and the next separator is dropped, so that
/// the fields behind it stay in step.
///
/// A fault names the file, the line, the field in that line and `name`, the table that the field belongs to:
/// 62 the content ends before the field does, 13 the field is of another type, 6 the number is too large for any
/// table, 9 it is outside `low` to `high`.
class CfgReader {
 public:
  /// Both texts must outlive the reader. `firstLine` is the number of the first line of `content` in the file.
  CfgReader(std::string_view content, std::string_view path, int firstLine = 1);

  /// File and line of the field read last, as faults name them.
  std::string PlaceOfLine() const;
  /// The same with the field and its table.
  std::string PlaceOfField(std::string_view name) const;

  /// Nothing is left but blanks and line ends.
  bool AtEnd();

  std::int32_t Integer(std::string_view name, std::int32_t low = std::numeric_limits<std::int32_t>::min(),
                       std::int32_t high = std::numeric_limits<std::int32_t>::max());
  Boolean Truth(std::string_view name);
  std::string Text(std::string_view name);
  /// Nothing for a field without a single character, not even quotes. With `last` the content may end behind the
  /// comma in front of it.
  std::optional<std::string> Cell(std::string_view name, bool last = false);

  /// Raises `number` for the field read last, or before the first one for the beginning of the file.
  [[noreturn]] void Refuse(int number, std::string_view name, std::string_view reason) const;

 private:
  bool AtLineEnd() const { return content_[at_] == '\r' || content_[at_] == '\n'; }
  void SkipBlanks();
  void SkipBlankLines();
  void TakeLineEnd();
  void TakeSeparator();
  void TakeQuoted(std::string_view name);
  void Next(std::string_view name, bool mayBeMissing = false);
  [[noreturn]] void RefuseFound(int number, std::string_view name, std::string_view addition = {}) const;

  std::string_view content_;
  std::string_view path_;
  std::size_t at_ = 0;
  int line_;
  int field_ = 0;  // fields of this line already taken
  bool behindComma_ = false;

  // The field read last.
  std::string_view text_;
  bool quoted_ = false;
  int textLine_;
  int textField_ = 0;
};
