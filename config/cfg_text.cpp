#include "config/cfg_text.h"

#include <algorithm>
#include <charconv>

#include "platform/run_time_error.h"
#include "protocol/number.h"

namespace {

constexpr std::string_view kTrue = "#TRUE#";
constexpr std::string_view kFalse = "#FALSE#";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";  // some editors put it in front of a text
constexpr std::size_t kLongestQuotation = 20;

bool IsBlank(char character) { return character == ' ' || character == '\t'; }

/// The beginning of a text that may hold anything, fit for a log line.
std::string Visible(std::string_view text) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  std::string result;
  for (char character : text.substr(0, kLongestQuotation)) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= 0x20 && byte < 0x7F) {
      result += character;
    } else {
      result += {'\\', 'x', kHexDigits[byte >> 4], kHexDigits[byte & 15]};
    }
  }
  return result;
}

std::string_view Kind(int number) {
  switch (number) {
    case ErrorNumber::InputPastEnd:
      return "Input past end of file";
    case ErrorNumber::TypeMismatch:
      return "Type mismatch";
    case ErrorNumber::Overflow:
      return "Overflow";
    default:
      return "Subscript out of range";
  }
}

}  // namespace

void CfgWriter::BeginField() {
  if (lineBegun_) content_ += ',';
  lineBegun_ = true;
}

void CfgWriter::Integer(std::int32_t value) {
  BeginField();
  content_ += std::to_string(value);
}

void CfgWriter::Truth(Boolean value) {
  BeginField();
  content_ += value == False ? kFalse : kTrue;
}

void CfgWriter::Text(std::string_view value) {
  BeginField();
  content_ += '"';
  content_ += value;
  content_ += '"';
}

void CfgWriter::Cell(const std::optional<std::string>& value) {
  if (value) {
    Text(*value);
  } else {
    BeginField();
  }
}

void CfgWriter::EndLine() {
  content_ += "\r\n";
  lineBegun_ = false;
}

CfgReader::CfgReader(std::string_view content, std::string_view path, int firstLine)
    : content_(content), path_(path), line_(firstLine), textLine_(firstLine) {
  if (content_.starts_with(kByteOrderMark)) at_ = kByteOrderMark.size();
}

bool CfgReader::AtEnd() {
  if (field_ == 0) SkipBlankLines();
  return at_ == content_.size() && !behindComma_;
}

void CfgReader::SkipBlanks() {
  while (at_ < content_.size() && IsBlank(content_[at_])) ++at_;
}

void CfgReader::SkipBlankLines() {
  SkipBlanks();
  while (at_ < content_.size() && AtLineEnd()) {
    TakeLineEnd();
    SkipBlanks();
  }
}

void CfgReader::TakeLineEnd() {
  const bool carriageReturn = content_[at_++] == '\r';
  if (carriageReturn && at_ < content_.size() && content_[at_] == '\n') ++at_;
  ++line_;
  field_ = 0;
}

void CfgReader::TakeSeparator() {
  behindComma_ = false;
  if (at_ == content_.size()) return;
  if (AtLineEnd()) return TakeLineEnd();
  behindComma_ = true;
  ++at_;
}

void CfgReader::TakeQuoted(std::string_view name) {
  const std::size_t begin = at_ + 1;
  const std::size_t end = content_.find('"', begin);
  if (end == std::string_view::npos) Refuse(ErrorNumber::InputPastEnd, name, "the quote that opens it is not closed");
  text_ = content_.substr(begin, end - begin);
  for (at_ = begin; at_ < end;) {
    if (AtLineEnd()) {
      TakeLineEnd();
    } else {
      ++at_;
    }
  }
  ++at_;
}

void CfgReader::Next(std::string_view name, bool mayBeMissing) {
  if (field_ == 0) SkipBlankLines();
  SkipBlanks();
  textLine_ = line_;
  textField_ = ++field_;
  if (at_ == content_.size()) {
    if (!mayBeMissing || !behindComma_) Refuse(ErrorNumber::InputPastEnd, name, "the file ends before it");
    text_ = {};
    quoted_ = behindComma_ = false;
    return;
  }

  quoted_ = content_[at_] == '"';
  if (quoted_) TakeQuoted(name);
  const std::size_t end = std::min(content_.find_first_of(",\r\n", at_), content_.size());
  if (!quoted_) {
    text_ = content_.substr(at_, end - at_);
    while (!text_.empty() && IsBlank(text_.back())) text_.remove_suffix(1);
  }
  at_ = end;
  TakeSeparator();
}

std::int32_t CfgReader::Integer(std::string_view name, std::int32_t low, std::int32_t high) {
  Next(name);
  std::int64_t value = 0;
  const char* const end = text_.data() + text_.size();
  const auto read = std::from_chars(text_.data(), end, value);
  const bool wholeNumber = read.ec != std::errc::invalid_argument && read.ptr == end;
  if (quoted_ || !wholeNumber) RefuseFound(ErrorNumber::TypeMismatch, name);
  if (read.ec == std::errc::result_out_of_range || value != static_cast<std::int32_t>(value)) {
    RefuseFound(ErrorNumber::Overflow, name);
  }
  if (value < low || value > high) {
    RefuseFound(ErrorNumber::SubscriptOutOfRange, name,
                ", possible are " + std::to_string(low) + " to " + std::to_string(high));
  }
  return static_cast<std::int32_t>(value);
}

Boolean CfgReader::Truth(std::string_view name) {
  Next(name);
  const std::string upper = UpperCase(text_.substr(0, kFalse.size() + 1));
  if (quoted_ || (upper != kTrue && upper != kFalse)) RefuseFound(ErrorNumber::TypeMismatch, name);
  return AsBoolean(upper == kTrue);
}

std::string CfgReader::Text(std::string_view name) {
  Next(name);
  return std::string(text_);
}

std::optional<std::string> CfgReader::Cell(std::string_view name, bool last) {
  Next(name, last);
  if (!quoted_ && text_.empty()) return std::nullopt;
  return std::string(text_);
}

void CfgReader::RefuseFound(int number, std::string_view name, std::string_view addition) const {
  const std::string quote = quoted_ ? "\"" : "";  // a number in quotes is none, and is shown as it stands
  Refuse(number, name, "found \"" + quote + Visible(text_) + quote + "\"" + std::string(addition));
}

std::string CfgReader::PlaceOfLine() const { return std::string(path_) + ", line " + std::to_string(textLine_); }

std::string CfgReader::PlaceOfField(std::string_view name) const {
  return PlaceOfLine() + ", field " + std::to_string(textField_) + " (" + std::string(name) + ")";
}

void CfgReader::Refuse(int number, std::string_view name, std::string_view reason) const {
  std::string description(Kind(number));
  description += ": ";
  description += PlaceOfField(name) + ": ";
  description += reason;
  throw RunTimeError(number, description);
}
