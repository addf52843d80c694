#pragma once

#include <string>

/// Dates and lot numbers of the present moment, which is `now` as "YYYY-MM-DD HH:MM:SS".

/// Six digits: last digit of the year, day of the year as three digits, hour.
std::string LotNumber(const std::string& now);

/// The lot number taken as a count of days from 30 December 1899, as "mm/dd/yy". Terminals' programs know it by this
/// form.
std::string DateOfLotNumber(const std::string& lotNumber);

/// "mm/dd/yy".
std::string ShortDate(const std::string& now);
/// "hh:mm:ss".
std::string ShortTime(const std::string& now);
