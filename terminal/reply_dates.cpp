#include "terminal/reply_dates.h"

#include <chrono>
#include <cstdio>

namespace {

int Number(const std::string& text, std::size_t position, std::size_t size) {
  int number = 0;
  for (char digit : text.substr(std::min(position, text.size()), size)) number = 10 * number + (digit - '0');
  return number;
}

std::chrono::year_month_day DateOf(const std::string& now) {
  return std::chrono::year(Number(now, 0, 4)) / Number(now, 5, 2) / Number(now, 8, 2);
}

std::string DateText(const std::chrono::year_month_day& date) {
  char text[32];
  std::snprintf(text, sizeof text, "%02u/%02u/%02d", static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(date.year()) % 100);
  return text;
}

}  // namespace

std::string LotNumber(const std::string& now) {
  const std::chrono::year_month_day date = DateOf(now);
  const auto day = std::chrono::sys_days(date) - std::chrono::sys_days(date.year() / 1 / 1) + std::chrono::days(1);
  char text[32];
  std::snprintf(text, sizeof text, "%d%03d%02d", static_cast<int>(date.year()) % 10, static_cast<int>(day.count()),
                Number(now, 11, 2));
  return text;
}

std::string DateOfLotNumber(const std::string& lotNumber) {
  using std::chrono::December;
  const std::chrono::sys_days first(std::chrono::year(1899) / December / 30);
  return DateText(first + std::chrono::days(Number(lotNumber, 0, lotNumber.size())));
}

std::string ShortDate(const std::string& now) { return DateText(DateOf(now)); }

std::string ShortTime(const std::string& now) { return now.substr(std::min<std::size_t>(11, now.size())); }
