#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/vant_api.h"

/// Terminals whose shared data its user fills and looks at. A field is its text without blanks at the end, as a
/// terminal's program sees it; a path that is not there is refused.
class MemoryTerminals : public VantAPI32 {
 public:
  struct Key {
    std::int16_t terminal, mode, key;
    bool operator==(const Key&) const = default;
  };

  std::map<std::string, std::string> field;
  std::vector<std::string> writes;  ///< "path length text" of each
  std::vector<Key> keys;
  std::int16_t refusal = VantStatusCode::Success;  ///< of all calls but a close, if it is a failure
  bool registered = false;
  int registrations = 0;
  std::function<std::int16_t(const std::string& path)> refuseWrite;

  std::int16_t VantRegisterProcess(std::int16_t) override {
    ++registrations;
    if (refusal != VantStatusCode::Success) return refusal;
    if (registered) return -1;
    registered = true;
    return VantStatusCode::Success;
  }
  std::int16_t VantCloseProcess() override {
    const bool was = registered;
    registered = false;
    return was ? VantStatusCode::Success : VantStatusCode::InvalidProcess;
  }
  std::int16_t VantRead(const std::string& path, std::int16_t length, std::string& record) override {
    const auto size = static_cast<std::size_t>(length);
    record.assign(size, ' ');
    if (const std::int16_t status = Status(path); status != VantStatusCode::Success) return status;
    const std::string& text = field[path];
    std::copy_n(text.begin(), std::min(size, text.size()), record.begin());
    if (text.size() < size) record[text.size()] = '\0';
    return VantStatusCode::Success;
  }
  std::int16_t VantWrite(const std::string& path, std::string_view record) override {
    if (refuseWrite) {
      if (const std::int16_t status = refuseWrite(path); status != VantStatusCode::Success) return status;
    }
    if (const std::int16_t status = Status(path); status != VantStatusCode::Success) return status;
    const std::size_t end = record.find_last_not_of(' ');
    field[path] = record.substr(0, end == std::string_view::npos ? 0 : end + 1);
    writes.push_back(path + " " + std::to_string(record.size()) + " " + field[path]);
    return VantStatusCode::Success;
  }
  std::int16_t VantSendKeystroke(std::int16_t terminal, std::int16_t mode, std::int16_t key) override {
    if (refusal != VantStatusCode::Success) return refusal;
    if (!registered) return VantStatusCode::InvalidProcess;
    keys.push_back({terminal, mode, key});
    return VantStatusCode::Success;
  }

 private:
  std::int16_t Status(const std::string& path) const {
    constexpr std::int16_t kInvalidField = 65;
    if (refusal != VantStatusCode::Success) return refusal;
    if (!registered) return VantStatusCode::InvalidProcess;
    return field.contains(path) ? VantStatusCode::Success : kInvalidField;
  }
};
