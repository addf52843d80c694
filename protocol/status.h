#pragma once

#include <string_view>

struct Tables;

/// Walks the status table of protocol `proto` once over `stream` and fills the status values of channel `ch`:
/// `ChanStatusBits`, `ChanMotion`, `ChanMode`, `ChanUnits`, `ChanError`, `ChanStatusN`, `ChanMatchName`,
/// `ChanMatchField`, `ChanDecimalsKnown`, `ChanStatusDecimals`, `ChanDecimals`, `ProtoDecimalCode` and
/// `ProtoPolarity`. It publishes nothing and leaves `ChanPrevStatusBits` alone. Raises 9 for a channel or
/// protocol outside the tables.
void ParseStatusData(Tables& tables, std::string_view stream, int ch, int proto);
