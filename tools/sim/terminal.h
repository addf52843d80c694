#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/sim/load_profile.h"
#include "tools/sim/transaction.h"

namespace sim {

/// A terminal on the network, as the plant file describes it. Times in seconds.
struct TerminalSettings {
  int node = 0;  ///< "/v3" is node 3
  std::string name;
  std::string database;
  std::vector<Transaction> program;  ///< done over and over; without it nothing is asked
  double every = 2;                  ///< rest between two transactions
  double patience = 5;               ///< how long the program waits for an answer
  std::vector<LoadStep> load;        ///< what lies on its scale
  int decimals = 1;
};

/// A terminal: its shared data, its keys, and the program that runs in it. The program looks at its mailbox whenever
/// somebody writes it, so that it answers at once.
class Terminal {
 public:
  explicit Terminal(const TerminalSettings& settings);

  const TerminalSettings& Settings() const { return settings_; }
  /// Brings the terminal to `now`, seconds since the start.
  void Run(double now);

  /// Shared data as the network reads and writes it: the text of a field such as "lit01", without blanks at its end.
  /// Nothing for a field that the terminal does not have.
  std::optional<std::string> Read(const std::string& field);
  /// False for a field that it does not have or that nobody may write.
  bool Write(const std::string& field, std::string_view record);
  void Press(int key) { keys_ += std::to_string(key) + " "; }

  /// The element texts of the last result.
  const std::vector<std::string>& Elements() const { return elements_; }
  /// What has been done so far, in a line.
  std::string Report() const;

 private:
  enum class State { Resting, Asking, Ending };

  void Begin(const Transaction& transaction);
  void TakeMailbox(const std::string& text);
  void TakePacket(const std::string& notice);
  void SayDone(std::string outcome);
  std::string& Mailbox() { return fields_["lit01"]; }

  TerminalSettings settings_;
  LoadProfile load_;
  std::map<std::string, std::string> fields_;
  State state_ = State::Resting;
  double now_ = 0;
  double since_ = 0;  ///< when the state began
  std::size_t next_ = 0;
  bool acknowledged_ = false;  ///< the acknowledgement of the last packet has not been read yet
  std::vector<std::string> elements_;
  std::string outcome_;
  std::string keys_;
  long done_ = 0, packets_ = 0, refused_ = 0, unanswered_ = 0;
};

/// A statement in pieces that the packet fields hold. It is cut where no blank stands, because blanks at the ends of a
/// piece are lost.
std::vector<std::string> CutStatement(std::string_view statement);

}  // namespace sim
