#pragma once

#include "platform/vant_api.h"

/// The terminal library of an installation that has none.
class AbsentTerminalLibrary : public VantAPI32 {
 public:
  std::int16_t VantRegisterProcess(std::int16_t) override { return VantStatusCode::BadConnect; }
  std::int16_t VantCloseProcess() override { return VantStatusCode::BadConnect; }
  std::int16_t VantRead(const std::string&, std::int16_t length, std::string& record) override {
    record.assign(static_cast<std::size_t>(length), ' ');
    return VantStatusCode::BadConnect;
  }
  std::int16_t VantWrite(const std::string&, std::string_view) override { return VantStatusCode::BadConnect; }
  std::int16_t VantSendKeystroke(std::int16_t, std::int16_t, std::int16_t) override {
    return VantStatusCode::BadConnect;
  }
};
