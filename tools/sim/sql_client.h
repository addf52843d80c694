#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/sim/line.h"
#include "tools/sim/transaction.h"

namespace sim {

/// A database client on a serial line, as the plant file describes it. Times in seconds.
struct ClientSettings {
  int com = 0;
  std::string name;
  std::string link;
  std::string database;
  std::vector<Transaction> program;
  double every = 2;
  double patience = 5;
};

/// A client that sends one statement after the other and reads the lines of each reply.
class SqlClient {
 public:
  SqlClient(const ClientSettings& settings, std::unique_ptr<Line> line);

  const ClientSettings& Settings() const { return settings_; }
  Line& Wire() const { return *line_; }
  /// Brings the client to `now`, seconds since the start.
  void Run(double now);
  /// The lines of the last reply, without their quotes and the end line.
  const std::vector<std::string>& Reply() const { return reply_; }
  std::string Report() const;

 private:
  void TakeLines();

  ClientSettings settings_;
  std::unique_ptr<Line> line_;
  std::string toSend_, received_;
  std::vector<std::string> coming_, reply_;
  double since_ = 0;
  bool asking_ = false;
  std::size_t next_ = 0;
  long done_ = 0, refused_ = 0, unanswered_ = 0;
};

}  // namespace sim
