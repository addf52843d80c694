#pragma once

#include <array>
#include <optional>
#include <string>

#include "core/tables.h"

/// All that the tables hold of one protocol, kept to be put back as it was.
class ProtocolRecord {
 public:
  ProtocolRecord(const Tables& tables, int proto);
  void PutInto(Tables& tables) const;

 private:
  int proto_;
  std::array<std::int32_t, 15> numbers_{};
  std::array<Boolean, 5> truths_{};
  std::array<Boolean, kCommandRows> commands_{};
  std::array<std::string, 3 * kCommandRows> texts_{};
  StatusTable status_;
  std::optional<RunTimeError> fault_;
};
