#pragma once

#include <netdb.h>

#include <memory>
#include <string>

/// Finds the network addresses of a host without holding the caller up: a numeric address is known at once, a
/// name is asked for by a thread of its own, since the resolver may take half a minute to answer.
class HostLookup {
 public:
  struct Free {
    void operator()(addrinfo* list) const { freeaddrinfo(list); }
  };
  using AddressList = std::unique_ptr<addrinfo, Free>;

  /// `port` is a number in decimal digits.
  HostLookup(const std::string& host, const std::string& port);

  bool Finished() const;
  /// The addresses, best first; empty if the host is unknown. Only once, and only when finished.
  AddressList Take();

 private:
  struct Answer;
  std::shared_ptr<Answer> answer_;  // shared with the thread, which may outlive this object
};
