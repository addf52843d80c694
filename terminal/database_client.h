#pragma once

#include <string_view>

#include "platform/database_engine.h"

/// How a statement came in, and how its client is answered: by the mailbox of a terminal, or by lines on a serial port.
class DatabaseClient {
 public:
  virtual ~DatabaseClient() = default;
  /// Shows on the row of channel `ch` what is being done.
  virtual void Show(int ch, std::string_view caption) = 0;
  /// What the row shows when nothing is being done.
  virtual std::string_view IdleCaption() const = 0;
  /// Answers an action.
  virtual void AnswerExecuted(int ch) = 0;
  /// Takes the result of a query while it is open, and answers it.
  virtual void AnswerResult(int ch, const Recordset& result) = 0;
  /// Answers a statement that the database has refused.
  virtual void AnswerError(int ch) = 0;
};
