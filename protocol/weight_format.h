#pragma once

#include <string>
#include <string_view>

#include "protocol/number.h"

struct Tables;

/// Turns a weight field as received into the text that is shown and published, right-aligned to the width of
/// the field. The first field of a channel settles its number mask, unless the decimal places are configured
/// or come from status data. `decimalCode` 2 and 1 shift the digits left, 0 keeps them, -1 to -5 put the point
/// in; `polarity` "-" puts a sign in front. Raises what `FormatDecimalPlaces` raises.
void FormatValue(Tables& tables, int ch, std::string& value, int decimalCode, std::string_view polarity, int proto);

/// The same for a decimal point that comes from status data; sets `ProtoFormatMask`. Raises 9 for protocols
/// from 33 on, and 5 for a field with fewer characters than the code has places.
void FormatDecimalPlaces(Tables& tables, std::string& value, int decimalCode, std::string_view polarity, int proto);

/// Gross of a stream in net mode, where the point comes from status data: the sum of tare and net as formatted.
NumberText GrossOfNetMode(const Tables& tables, int proto, std::string_view tare, std::string_view net);
