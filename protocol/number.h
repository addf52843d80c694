#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A number as people write it: at most 15 significant decimal digits and a power of ten.
struct Decimal {
  bool negative = false;
  std::uint64_t digits = 0;  ///< below 10^15, without trailing zeros; 0 is zero
  int exponent = 0;          ///< value is digits * 10^exponent

  /// Leading-number rule: blanks in front are skipped, and blanks between a sign and the first digit too; reading
  /// stops at the first character that cannot continue a number. An exponent counts only with digits. A text
  /// without a number, or with one too large for a double, gives 0.
  static Decimal FromText(std::string_view text);
  /// 15 significant digits, ties away from zero on the shortest decimal text of `value`.
  /// Raises 6 for an infinite value or one that is not a number.
  static Decimal FromDouble(double value);
  double ToDouble() const;
};

/// Text of a formatted number, kept without allocation.
class NumberText {
 public:
  std::string_view View() const { return {text_.data(), size_}; }
  void Append(char character) {
    if (size_ < text_.size()) text_[size_++] = character;
  }
  void Append(std::size_t count, char character) {
    while (count-- > 0) Append(character);
  }
  void Append(std::string_view text) {
    for (char character : text) Append(character);
  }

 private:
  std::array<char, 384> text_;  // a double has at most 309 digits before its point, a mask few behind it
  std::size_t size_ = 0;
};

/// Number by a picture of "#" (optional digit), "0" (required digit) and "." (decimal point), rounded to the
/// picture's places with ties away from zero. Zero never takes a sign. An empty picture gives the general form.
NumberText FormatNumber(const Decimal& value, std::string_view mask);

/// General text form: at most 15 significant digits, no trailing zeros, "0.5" with its zero, an exponent only
/// below 0.0001 and from 1e15.
NumberText GeneralText(const Decimal& value);

/// Numeric value of a text by the leading-number rule.
double NumericValue(std::string_view text);

/// The same as a whole number, rounded, for cells that hold positions and lengths; kept within +-1,000,000.
int WholeNumber(std::string_view text);

/// Puts into `value` the last `width` characters of `width` blanks followed by `text`. `text` may not lie in `value`.
void RightAlign(std::string& value, std::string_view text, std::size_t width);

/// The text without blanks at both ends.
std::string_view Trim(std::string_view text);

/// ASCII upper case; other bytes stay.
std::string UpperCase(std::string_view text);
