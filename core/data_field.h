#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/tables.h"

/// A data field of the stream; position 0 counts as 1.
struct DataField {
  bool enabled;
  int position;
  int length;

  DataField(Boolean enable, int pos, int len)
      : enabled(enable == True), position(std::max(1, pos)), length(std::max(0, len)) {}

  /// A stream of position + length - 1 characters counts as too short.
  bool LiesIn(const std::string& stream) const {
    return enabled && static_cast<std::int64_t>(stream.size()) >= std::int64_t{position} + length;
  }
  std::string_view Of(const std::string& stream) const {
    return std::string_view(stream).substr(static_cast<std::size_t>(position - 1), static_cast<std::size_t>(length));
  }
};

inline DataField GrossField(const Tables& t, int proto) {
  return {t.ProtoGrossEnable[proto], t.ProtoGrossPos[proto], t.ProtoGrossLen[proto]};
}
inline DataField TareField(const Tables& t, int proto) {
  return {t.ProtoTareEnable[proto], t.ProtoTarePos[proto], t.ProtoTareLen[proto]};
}
inline DataField NetField(const Tables& t, int proto) {
  return {t.ProtoNetEnable[proto], t.ProtoNetPos[proto], t.ProtoNetLen[proto]};
}
/// The ID tables have always been read with the channel number as index.
inline DataField IdField(const Tables& t, int ch) { return {t.ProtoIdEnable[ch], t.ProtoIdPos[ch], t.ProtoIdLen[ch]}; }
