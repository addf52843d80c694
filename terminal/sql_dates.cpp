#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>

#include "protocol/number.h"
#include "terminal/sql_dialect.h"

namespace {

constexpr std::size_t kNone = std::string_view::npos;

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

/// Numbers with one sign between them, and what stands behind. Nothing if a number has more than four digits.
struct Numbers {
  std::array<int, 3> values{};
  std::array<std::size_t, 3> digits{};
  std::size_t count = 0;
};

std::optional<Numbers> TakeNumbers(std::string_view& text, char between) {
  Numbers numbers;
  while (numbers.count < 3) {
    std::size_t size = 0;
    while (size < text.size() && IsDigit(text[size])) ++size;
    if (size == 0 || size > 4) return std::nullopt;
    std::from_chars(text.data(), text.data() + size, numbers.values[numbers.count]);
    numbers.digits[numbers.count++] = size;
    text.remove_prefix(size);
    if (!text.starts_with(between) || numbers.count == 3) break;
    text.remove_prefix(1);
  }
  return numbers;
}

std::string TwoDigits(int number) {
  return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

std::optional<std::string> TakeDate(std::string_view& text) {
  const std::size_t sign = text.find_first_not_of("0123456789");
  if (sign == kNone || (text[sign] != '/' && text[sign] != '-')) return std::nullopt;
  const std::optional<Numbers> numbers = TakeNumbers(text, text[sign]);
  if (!numbers || numbers->count != 3) return std::nullopt;
  const std::size_t yearAt = numbers->digits[0] == 4 ? 0 : 2;
  const std::size_t monthAt = yearAt == 0 ? 1 : 0;
  int year = numbers->values[yearAt];
  if (numbers->digits[yearAt] == 2) year += year < 30 ? 2000 : 1900;
  const int month = numbers->values[monthAt];
  const int day = numbers->values[monthAt + 1];
  const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok() || month > 12 || day > 31 || year < 100) return std::nullopt;
  return TwoDigits(year / 100) + TwoDigits(year % 100) + "-" + TwoDigits(month) + "-" + TwoDigits(day);
}

std::optional<std::string> TakeTime(std::string_view& text) {
  const std::optional<Numbers> numbers = TakeNumbers(text, ':');
  if (!numbers || numbers->count < 2) return std::nullopt;
  int hour = numbers->values[0];
  const std::string half = UpperCase(Trim(text));
  if (half == "AM" || half == "PM") {
    if (hour < 1 || hour > 12) return std::nullopt;
    hour = hour % 12 + (half == "PM" ? 12 : 0);
    text = {};
  }
  if (hour > 23 || numbers->values[1] > 59 || numbers->values[2] > 59) return std::nullopt;
  return TwoDigits(hour) + ":" + TwoDigits(numbers->values[1]) + ":" + TwoDigits(numbers->values[2]);
}

}  // namespace

std::optional<std::string> SqlDateText(std::string_view text) {
  text = Trim(text);
  const std::size_t sign = text.find_first_not_of("0123456789");
  std::string result;
  if (sign != kNone && text[sign] != ':') {
    const std::optional<std::string> date = TakeDate(text);
    if (!date) return std::nullopt;
    result = *date;
    if (text.empty()) return result;
    if (text[0] != ' ') return std::nullopt;
    text = Trim(text);
    result += ' ';
  }
  const std::optional<std::string> time = TakeTime(text);
  if (!time || !text.empty()) return std::nullopt;
  return result + *time;
}
