#include "protocol/number.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/run_time_error.h"

namespace {

constexpr int kSignificantDigits = 15;
constexpr std::uint64_t kPowersOfTen[] = {1ULL,
                                          10ULL,
                                          100ULL,
                                          1000ULL,
                                          10000ULL,
                                          100000ULL,
                                          1000000ULL,
                                          10000000ULL,
                                          100000000ULL,
                                          1000000000ULL,
                                          10000000000ULL,
                                          100000000000ULL,
                                          1000000000000ULL,
                                          10000000000000ULL,
                                          100000000000000ULL,
                                          1000000000000000ULL,
                                          10000000000000000ULL,
                                          100000000000000000ULL};
constexpr int kLargestPower = 17;

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

/// Drops the last `places` digits, ties away from zero.
std::uint64_t RoundOff(std::uint64_t digits, int places) {
  if (places <= 0) return digits;
  if (places > kLargestPower) return 0;
  const std::uint64_t unit = kPowersOfTen[places];
  return digits / unit + (digits % unit * 2 >= unit ? 1 : 0);
}

int CountDigits(std::uint64_t digits) {
  int count = 1;
  while (count <= kLargestPower && digits >= kPowersOfTen[count]) ++count;
  return count;
}

void StripTrailingZeros(Decimal& value) {
  if (value.digits == 0) {
    value = Decimal{};
    return;
  }
  while (value.digits % 10 == 0) {
    value.digits /= 10;
    ++value.exponent;
  }
}

struct DigitText {
  std::array<char, 20> text;
  std::size_t size;
  std::string_view View() const { return {text.data(), size}; }
};

DigitText ToDigits(std::uint64_t digits) {
  DigitText result;
  const auto end = std::to_chars(result.text.data(), result.text.data() + result.text.size(), digits).ptr;
  result.size = static_cast<std::size_t>(end - result.text.data());
  return result;
}

/// Numbers with an exponent or more digits than a decimal holds: read as a double, which rounds once.
Decimal FromLongText(std::string_view number, bool negative) {
  double value = 0;
  const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
  if (read.ec != std::errc{}) return {};
  Decimal result = Decimal::FromDouble(value);
  result.negative = negative;
  return result;
}

}  // namespace

Decimal Decimal::FromText(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto skipBlanks = [&] {
    while (at != end && *at == ' ') ++at;
  };

  skipBlanks();
  Decimal result;
  if (at != end && (*at == '-' || *at == '+')) {
    result.negative = *at == '-';
    ++at;
    skipBlanks();
  }

  const char* const first = at;
  int significant = 0;
  bool anyDigit = false;
  bool point = false;
  for (; at != end; ++at) {
    if (*at == '.' && !point) {
      point = true;
    } else if (IsDigit(*at)) {
      anyDigit = true;
      if (significant > 0 || *at != '0') ++significant;
      if (significant <= kSignificantDigits) result.digits = result.digits * 10 + static_cast<unsigned>(*at - '0');
      if (point) --result.exponent;
    } else {
      break;
    }
  }
  if (!anyDigit) return {};

  bool scientific = false;
  if (at != end && (*at == 'E' || *at == 'e')) {
    const char* digit = at + 1;
    if (digit != end && (*digit == '-' || *digit == '+')) ++digit;
    if (digit != end && IsDigit(*digit)) {
      scientific = true;
      at = digit;
      while (at != end && IsDigit(*at)) ++at;
    }
  }
  if (scientific || significant > kSignificantDigits) {
    return FromLongText({first, static_cast<std::size_t>(at - first)}, result.negative);
  }
  StripTrailingZeros(result);
  return result;
}

Decimal Decimal::FromDouble(double value) {
  if (!std::isfinite(value)) throw RunTimeError(ErrorNumber::Overflow, "Overflow: the value is not a finite number");
  if (value == 0) return {};
  // d.ddddde+xx, the shortest text that reads back as the same double
  std::array<char, 32> buffer;
  const auto written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value), std::chars_format::scientific);
  Decimal result;
  int digitCount = 0;
  const char* at = buffer.data();
  for (; at != written.ptr && *at != 'e'; ++at) {
    if (*at == '.') continue;
    result.digits = result.digits * 10 + static_cast<unsigned>(*at - '0');
    ++digitCount;
  }
  int power = 0;
  const char* exponentText = at + 1;
  if (*exponentText == '+') ++exponentText;
  std::from_chars(exponentText, written.ptr, power);

  result.negative = value < 0;
  result.exponent = power - (digitCount - 1);
  const int excess = std::max(0, digitCount - kSignificantDigits);
  result.digits = RoundOff(result.digits, excess);
  result.exponent += excess;
  StripTrailingZeros(result);
  return result;
}

double Decimal::ToDouble() const {
  // Up to 15 digits and a power of ten of at most 22 are exact, so that one operation rounds correctly.
  constexpr double kExactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                     1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  double magnitude = static_cast<double>(digits);
  if (digits == 0) return 0;
  if (exponent < 0 && exponent >= -22) {
    magnitude /= kExactPowers[-exponent];
  } else if (exponent >= 0 && exponent <= 22) {
    magnitude *= kExactPowers[exponent];
  } else {
    std::array<char, 40> buffer;
    char* at = std::to_chars(buffer.data(), buffer.data() + 20, digits).ptr;
    *at++ = 'e';
    at = std::to_chars(at, buffer.data() + buffer.size(), exponent).ptr;
    std::from_chars(buffer.data(), at, magnitude);
  }
  return negative ? -magnitude : magnitude;
}

NumberText FormatNumber(const Decimal& value, std::string_view mask) {
  if (mask.empty()) return GeneralText(value);

  const std::size_t point = mask.find('.');
  const std::string_view wholeMask = mask.substr(0, point);
  const std::string_view fractionMask = point == std::string_view::npos ? std::string_view{} : mask.substr(point + 1);
  const std::size_t firstRequired = wholeMask.find('0');
  const std::size_t requiredWhole = firstRequired == std::string_view::npos ? 0 : wholeMask.size() - firstRequired;
  const std::size_t lastRequired = fractionMask.rfind('0');
  const std::size_t requiredFraction = lastRequired == std::string_view::npos ? 0 : lastRequired + 1;
  const int places = static_cast<int>(fractionMask.size());

  // Digits of the number in units of the last place of the mask, and the zeros that stand behind them.
  const std::uint64_t rounded = RoundOff(value.digits, -value.exponent - places);
  const std::size_t zerosBehind = rounded == 0 ? 0 : static_cast<std::size_t>(std::max(0, value.exponent + places));
  const DigitText written = ToDigits(rounded);
  const std::string_view digits = rounded == 0 ? std::string_view{} : written.View();
  const std::size_t total = digits.size() + zerosBehind;
  const std::size_t fractionSize = static_cast<std::size_t>(places);
  const std::size_t wholeSize = total > fractionSize ? total - fractionSize : 0;
  const auto digitAt = [&](std::size_t index) { return index < digits.size() ? digits[index] : '0'; };

  NumberText result;
  if (value.negative && rounded != 0) result.Append('-');
  if (requiredWhole > wholeSize) result.Append(requiredWhole - wholeSize, '0');
  for (std::size_t index = 0; index < wholeSize; ++index) result.Append(digitAt(index));
  if (point == std::string_view::npos) return result;

  result.Append('.');
  const std::size_t zerosInFront = total > fractionSize ? 0 : fractionSize - total;
  const auto fractionDigit = [&](std::size_t index) {
    return index < zerosInFront ? '0' : digitAt(wholeSize + index - zerosInFront);
  };
  std::size_t shown = fractionSize;
  while (shown > requiredFraction && fractionDigit(shown - 1) == '0') --shown;
  for (std::size_t index = 0; index < shown; ++index) result.Append(fractionDigit(index));
  return result;
}

NumberText GeneralText(const Decimal& value) {
  NumberText result;
  if (value.digits == 0) {
    result.Append('0');
    return result;
  }
  if (value.negative) result.Append('-');
  const DigitText written = ToDigits(value.digits);
  const std::string_view digits = written.View();
  const int size = CountDigits(value.digits);
  const int power = size - 1 + value.exponent;  // of the first digit
  if (power < -4 || power >= kSignificantDigits) {
    result.Append(digits[0]);
    if (size > 1) {
      result.Append('.');
      result.Append(digits.substr(1));
    }
    result.Append('E');
    result.Append(power < 0 ? '-' : '+');
    const int magnitude = power < 0 ? -power : power;
    if (magnitude < 10) result.Append('0');
    result.Append(ToDigits(static_cast<std::uint64_t>(magnitude)).View());
  } else if (value.exponent >= 0) {
    result.Append(digits);
    result.Append(static_cast<std::size_t>(value.exponent), '0');
  } else if (power >= 0) {
    const std::size_t whole = static_cast<std::size_t>(power) + 1;
    result.Append(digits.substr(0, whole));
    result.Append('.');
    result.Append(digits.substr(whole));
  } else {
    result.Append("0.");
    result.Append(static_cast<std::size_t>(-power - 1), '0');
    result.Append(digits);
  }
  return result;
}

double NumericValue(std::string_view text) { return Decimal::FromText(text).ToDouble(); }

int WholeNumber(std::string_view text) {
  constexpr double kLimit = 1'000'000;
  return static_cast<int>(std::round(std::clamp(NumericValue(text), -kLimit, kLimit)));
}

void RightAlign(std::string& value, std::string_view text, std::size_t width) {
  if (text.size() >= width) {
    value.assign(text.substr(text.size() - width));
  } else {
    value.assign(width - text.size(), ' ');
    value.append(text);
  }
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string UpperCase(std::string_view text) {
  std::string result(text);
  for (char& character : result) {
    if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
  }
  return result;
}
