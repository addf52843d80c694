#pragma once

#include <poll.h>

#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/descriptor.h"
#include "tools/sim/terminal.h"

namespace sim {

/// The terminals' network, as the stand-in for their library reaches it: a Unix socket, one text line a request and one
/// a reply. A program is registered until it closes or its connection goes.
class TerminalNetwork {
 public:
  /// Listens at `path`; an empty path makes a network that nobody reaches. Raises `std::system_error`.
  TerminalNetwork(const std::vector<TerminalSettings>& settings, const std::string& path);
  TerminalNetwork(const TerminalNetwork&) = delete;
  TerminalNetwork& operator=(const TerminalNetwork&) = delete;
  ~TerminalNetwork();

  const std::vector<Terminal>& Terminals() const { return terminals_; }
  /// What is to be watched for input.
  void AddWatches(std::vector<pollfd>& watches) const;
  /// Brings the terminals to `now` and answers what has been asked.
  void Run(double now);
  /// The reply to one request, without its line end; nothing for one that is not answered.
  std::optional<std::string> Answer(const std::string& request);

  /// A person's word about a terminal, such as "pull v3"; nothing if it is about something else.
  std::optional<std::string> Obey(std::string_view line);

 private:
  struct Caller {
    Descriptor socket;
    std::string received;
    bool registered = false;
  };
  struct Fault {
    double pulledUntil = 0, silentUntil = 0;
  };

  Terminal* Find(int node);
  bool Serve(Caller& caller);
  std::string OnField(const std::vector<std::string_view>& words, bool write);

  std::vector<Terminal> terminals_;
  std::vector<Fault> faults_;
  std::string path_;
  Descriptor listener_;
  std::list<Caller> callers_;
  bool registered_ = false;
  double now_ = 0;
};

}  // namespace sim
