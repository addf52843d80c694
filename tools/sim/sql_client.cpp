#include "tools/sim/sql_client.h"

#include <utility>

namespace sim {

SqlClient::SqlClient(const ClientSettings& settings, std::unique_ptr<Line> line)
    : settings_(settings), line_(std::move(line)) {
  line_->Plug();
}

void SqlClient::Run(double now) {
  received_ += line_->Receive();
  TakeLines();
  if (!line_->Listened()) {
    toSend_.clear();
    asking_ = false;
    since_ = now;
    return;
  }
  if (asking_ && now - since_ > settings_.patience) {
    ++unanswered_;
    asking_ = false;
    since_ = now;
  }
  if (!asking_ && now - since_ >= settings_.every) {
    asking_ = true;
    since_ = now;
    coming_.clear();
    toSend_ = "/DBNAME=" + settings_.database +
              "!/QUERY=" + settings_.program[next_++ % settings_.program.size()].text + "!\n";
  }
  toSend_.erase(0, line_->Send(toSend_));
}

void SqlClient::TakeLines() {
  for (std::size_t end = 0; (end = received_.find('\n')) != std::string::npos; received_.erase(0, end + 1)) {
    std::string text = received_.substr(0, end);
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
    if (text != "!") {
      coming_.push_back(text);
      continue;
    }
    reply_ = std::exchange(coming_, {});
    ++(reply_.size() == 1 && reply_.front() == "ERROR" ? refused_ : done_);
    asking_ = false;
  }
}

std::string SqlClient::Report() const {
  std::string report = "COM" + std::to_string(settings_.com) + " " + settings_.name + ": " + std::to_string(done_) +
                       " statements, " + std::to_string(refused_) + " refused, " + std::to_string(unanswered_) +
                       " without an answer; last";
  for (const std::string& line : reply_) report += " | " + line;
  return report;
}

}  // namespace sim
