#include "platform/posix/host_lookup.h"

#include <pthread.h>

#include <atomic>
#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

struct HostLookup::Answer {
  AddressList addresses;
  std::atomic<bool> finished = false;
};

namespace {

HostLookup::AddressList Resolve(const std::string& host, const std::string& port, int flags) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = flags | AI_NUMERICSERV;
  addrinfo* list = nullptr;
  if (getaddrinfo(host.c_str(), port.c_str(), &hints, &list) != 0) list = nullptr;
  return HostLookup::AddressList(list);
}

/// Signals belong to the program's own thread: one started meanwhile takes none.
class SignalsHeldBack {
 public:
  SignalsHeldBack() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;
  ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

}  // namespace

HostLookup::HostLookup(const std::string& host, const std::string& port) : answer_(std::make_shared<Answer>()) {
  answer_->addresses = Resolve(host, port, AI_NUMERICHOST);
  if (answer_->addresses) {
    answer_->finished = true;
    return;
  }
  try {
    const SignalsHeldBack held;
    std::thread([answer = answer_, host, port] {
      answer->addresses = Resolve(host, port, 0);
      answer->finished = true;
    }).detach();
  } catch (const std::system_error&) {
    answer_->finished = true;  // no thread to be had: unknown for now, asked again with the next try
  }
}

bool HostLookup::Finished() const { return answer_->finished; }

HostLookup::AddressList HostLookup::Take() { return std::move(answer_->addresses); }
