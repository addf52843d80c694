#include "protocol/weight_format.h"

#include "core/tables.h"
#include "protocol/number.h"

namespace {

/// Mask and decimal count by the place of the point in the last ten characters of the zero-filled value.
struct PointPlace {
  std::int16_t decimals;
  std::string_view mask;
};

/// Where the point stands, 1 to 10, in the rightmost 10 characters of fifteen zeros followed by `value`; 0 if
/// there is none.
int PointInTenCharacters(std::string_view value) {
  constexpr std::size_t kWidth = 10;
  if (value.size() > kWidth) value = value.substr(value.size() - kWidth);
  const std::size_t point = value.find('.');
  return point == std::string_view::npos ? 0 : static_cast<int>(kWidth - value.size() + point + 1);
}

const PointPlace* FindPoint(std::string_view value) {
  static constexpr PointPlace kNoPoint = {0, "#####0"};
  static constexpr PointPlace kFromFive[] = {
      {-5, "0.00000"}, {-4, "#0.0000"}, {-3, "##0.000"}, {-2, "###0.00"}, {-1, "####0.0"}};
  const int place = PointInTenCharacters(Trim(value));
  if (place == 0) return &kNoPoint;
  if (place < 5 || place > 9) return nullptr;
  return &kFromFive[place - 5];
}

void SettleMask(Tables& tables, int ch, std::string_view value) {
  const std::int32_t places = tables.ChanDecimalPlaces[ch];
  if (places > 0 && places < tables.DecimalMaskTable.Size()) {
    tables.ChanDecimals[ch] = 0;  // stays 0 even when the mask has decimals
    tables.ChanFormatMask[ch] = tables.DecimalMaskTable[places];
  } else if (const PointPlace* point = FindPoint(value)) {
    tables.ChanDecimals[ch] = point->decimals;
    tables.ChanFormatMask[ch] = point->mask;
  }
  tables.ChanDecimalsKnown[ch] = True;
}

/// Mask by decimal code, from -5 to 2.
constexpr std::string_view kCodeMasks[] = {"0.00000", "#0.0000", "##0.000", "###0.00",
                                           "####0.0", "#####0",  "#####0",  "####00"};

/// Shifts the digits `code` places to the left inside the field.
void AppendZeros(std::string& value, std::size_t code) {
  const std::size_t width = value.size();
  value.append(code, '0');
  value.erase(0, value.size() - width);
}

/// Writes the point in front of the last `places` characters; the leftmost character is lost to make room.
void InsertPoint(std::string& value, std::size_t places) {
  const std::size_t width = value.size();
  if (places > width) {
    throw RunTimeError(ErrorNumber::InvalidCall, "Invalid procedure call: a field of " + std::to_string(width) +
                                                     " characters cannot hold " + std::to_string(places) +
                                                     " decimal places");
  }
  value.insert(width - places, 1, '.');
  value.erase(0, 1);
}

}  // namespace

void FormatDecimalPlaces(Tables& tables, std::string& value, int decimalCode, std::string_view polarity, int proto) {
  const std::size_t width = value.size();
  if (decimalCode > 0) AppendZeros(value, static_cast<std::size_t>(decimalCode));
  if (decimalCode < 0) InsertPoint(value, static_cast<std::size_t>(-decimalCode));

  std::string& mask = tables.ProtoFormatMask[proto];
  if (decimalCode >= -5 && decimalCode <= 2) mask = kCodeMasks[decimalCode + 5];

  const NumberText number = FormatNumber(Decimal::FromText(value), mask);
  if (polarity != "-") {
    RightAlign(value, number.View(), width);
    return;
  }
  NumberText negative;
  negative.Append('-');
  negative.Append(number.View());
  RightAlign(value, negative.View(), width + 1);
}

void FormatValue(Tables& tables, int ch, std::string& value, int decimalCode, std::string_view polarity, int proto) {
  if (tables.ChanDecimalsKnown[ch] == False) SettleMask(tables, ch, value);
  if (tables.ChanStatusDecimals[ch] == True) {
    FormatDecimalPlaces(tables, value, decimalCode, polarity, proto);
    return;
  }
  const std::size_t width = value.size();
  RightAlign(value, FormatNumber(Decimal::FromText(value), tables.ChanFormatMask[ch]).View(), width);
}

NumberText GrossOfNetMode(const Tables& tables, int proto, std::string_view tare, std::string_view net) {
  return FormatNumber(Decimal::FromDouble(NumericValue(tare) + NumericValue(net)), tables.ProtoFormatMask[proto]);
}
