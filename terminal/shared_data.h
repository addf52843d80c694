#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/tables.h"
#include "platform/vant_api.h"

inline constexpr std::int16_t kWeightRecord = 12;
inline constexpr std::int16_t kShortRecord = 40;
inline constexpr std::int16_t kPacketRecord = 400;
inline constexpr std::int16_t kTestRecord = 600;

/// The shared data of the terminals, read and written by records. The status of each call is kept in `VantStatus`.
class SharedData {
 public:
  SharedData(Tables& tables, VantAPI32& library) : tables_(tables), library_(library) {}

  bool Read(const std::string& path, std::int16_t length, std::string& buffer) {
    tables_.VantStatus = library_.VantRead(path, length, buffer);
    return tables_.VantStatus == VantStatusCode::Success;
  }
  bool Write(const std::string& path, std::string_view record) {
    tables_.VantStatus = library_.VantWrite(path, record);
    return tables_.VantStatus == VantStatusCode::Success;
  }
  /// Writes the mailbox of channel `ch`: `text`, and blanks to its length.
  bool WriteMailbox(int ch, std::string_view text) {
    FillRecord(tables_.ShortFieldBuffer, text, kShortRecord);
    return Write(tables_.ChanPathCommand[ch], tables_.ShortFieldBuffer);
  }

  /// `text` at the left, cut or filled with blanks to `length` characters.
  static void FillRecord(std::string& record, std::string_view text, std::int16_t length) {
    record.assign(text.substr(0, static_cast<std::size_t>(length)));
    record.resize(static_cast<std::size_t>(length), ' ');
  }

 private:
  Tables& tables_;
  VantAPI32& library_;
};
