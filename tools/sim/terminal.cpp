#include "tools/sim/terminal.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace sim {

namespace {

constexpr std::size_t kLongestPiece = 399;  // a field of 400 characters, with its NUL
constexpr std::size_t kElementWidth = 75;
constexpr std::size_t kFieldElements = 5;

constexpr const char* kFields[] = {"lit01", "lit02", "lit03", "ptp01", "ptp02", "ptp03", "ptp04", "ptp05",
                                   "bas10", "_vfd1", "wt101", "ws102", "wt102", "wt116", "wt103"};

bool IsWeight(std::string_view field) { return field.starts_with("wt") || field.starts_with("ws"); }

std::string WithoutBlanksAtTheEnd(std::string_view text) {
  const std::size_t last = text.find_last_not_of(' ');
  return std::string(text.substr(0, last == std::string_view::npos ? 0 : last + 1));
}

std::string PacketField(std::size_t number) { return "ptp0" + std::to_string(number); }

}  // namespace

std::vector<std::string> CutStatement(std::string_view statement) {
  std::vector<std::string> pieces;
  while (!statement.empty()) {
    std::size_t size = std::min(statement.size(), kLongestPiece);
    while (size > 1 && size < statement.size() && (statement[size] == ' ' || statement[size - 1] == ' ')) --size;
    pieces.emplace_back(statement.substr(0, size));
    statement.remove_prefix(size);
  }
  return pieces;
}

Terminal::Terminal(const TerminalSettings& settings) : settings_(settings), load_(settings.load) {
  for (const char* field : kFields) fields_[field];
}

void Terminal::Run(double now) {
  now_ = now;
  if (settings_.program.empty()) return;
  if (state_ == State::Resting) {
    if (now - since_ >= settings_.every) Begin(settings_.program[next_++ % settings_.program.size()]);
  } else if (now - since_ > settings_.patience) {
    ++unanswered_;
    outcome_ = "no answer";
    Mailbox().clear();
    state_ = State::Resting;
    since_ = now;
  }
}

void Terminal::Begin(const Transaction& transaction) {
  state_ = State::Asking;
  since_ = now_;
  acknowledged_ = false;
  switch (transaction.kind) {
    case Transaction::Kind::Date:
      Mailbox() = "DADD:" + transaction.text;
      return;
    case Transaction::Kind::Lot:
      Mailbox() = "DLOT:";
      return;
    case Transaction::Kind::Test:
      Mailbox() = "TST1:";
      return;
    case Transaction::Kind::Sql:
      break;
  }
  const std::vector<std::string> pieces = CutStatement(transaction.text);
  for (std::size_t piece = 0; piece < pieces.size(); ++piece) fields_[PacketField(piece + 1)] = pieces[piece];
  fields_["lit02"] = settings_.database;
  Mailbox() = "SQL3:" + std::to_string(pieces.size());
}

std::optional<std::string> Terminal::Read(const std::string& field) {
  const auto found = fields_.find(field);
  if (found == fields_.end()) return std::nullopt;
  if (field == "wt101") {
    char text[32];
    std::snprintf(text, sizeof text, "%9.*f", settings_.decimals, load_.At(now_));
    return text;
  }
  if (field == "lit01" && found->second == "ACK1:") acknowledged_ = false;
  return found->second;
}

bool Terminal::Write(const std::string& field, std::string_view record) {
  const auto found = fields_.find(field);
  if (found == fields_.end() || IsWeight(field)) return false;
  found->second = WithoutBlanksAtTheEnd(record);
  if (field == "lit01") TakeMailbox(std::string(found->second));
  return true;
}

/// What the manager has written.
void Terminal::TakeMailbox(const std::string& text) {
  if (state_ == State::Ending && text.empty()) {
    ++done_;
    state_ = State::Resting;
    since_ = now_;
  }
  if (state_ != State::Asking) return;
  if (text.starts_with("****:")) return TakePacket(text);
  if (text == "!") return SayDone("done");
  if (text == "@") {
    elements_.clear();
    return SayDone("not found");
  }
  if (text == "^ERROR") {
    ++refused_;
    return SayDone("refused");
  }
  const bool reply = text.starts_with("PADD:") || text.starts_with("PLOT:") || text.starts_with("!123");
  if (reply) SayDone(text.substr(0, 20));
}

/// The manager writes the notice of a first packet twice.
void Terminal::TakePacket(const std::string& notice) {
  if (!acknowledged_) {
    if (!notice.starts_with("****:00000")) elements_.clear();
    const auto count = static_cast<std::size_t>(std::max(0, std::atoi(notice.substr(notice.rfind(':') + 1).c_str())));
    for (std::size_t field = 1; field <= 3; ++field) {
      std::string record = fields_[PacketField(field)];
      record.resize(kFieldElements * kElementWidth, ' ');
      for (std::size_t element = 0; element < kFieldElements && elements_.size() < count; ++element) {
        elements_.push_back(WithoutBlanksAtTheEnd(record.substr(element * kElementWidth, kElementWidth)));
      }
    }
    ++packets_;
  }
  acknowledged_ = true;
  since_ = now_;
  Mailbox() = "ACK1:";
}

void Terminal::SayDone(std::string outcome) {
  outcome_ = std::move(outcome);
  state_ = State::Ending;
  since_ = now_;
  Mailbox() = "DONE:";
}

std::string Terminal::Report() const {
  std::string report = "v" + std::to_string(settings_.node) + " " + settings_.name + ": " + std::to_string(done_) +
                       " transactions, " + std::to_string(packets_) + " packets, " + std::to_string(refused_) +
                       " refused, " + std::to_string(unanswered_) + " without an answer";
  if (!outcome_.empty()) report += "; last " + outcome_;
  for (const std::string& element : elements_) report += " | " + element;
  if (!keys_.empty()) report += "; keys " + keys_;
  return report;
}

}  // namespace sim
