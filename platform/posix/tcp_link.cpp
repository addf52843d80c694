#include "platform/posix/tcp_link.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <charconv>

namespace {

constexpr std::string_view kScheme = "tcp://";

struct SocketOption {
  int level;
  int name;
  int value;
};

/// A server that has lost its power sends no farewell: it counts as gone after 20 silent seconds.
constexpr SocketOption kOptions[] = {
    {SOL_SOCKET, SO_KEEPALIVE, 1},   {IPPROTO_TCP, TCP_KEEPIDLE, 10},          // seconds
    {IPPROTO_TCP, TCP_KEEPINTVL, 5},                                           // seconds
    {IPPROTO_TCP, TCP_KEEPCNT, 2},   {IPPROTO_TCP, TCP_USER_TIMEOUT, 20'000},  // milliseconds
    {IPPROTO_TCP, TCP_NODELAY, 1},   {IPPROTO_TCP, TCP_SYNCNT, 1},  // an unanswered attempt ends after 3 seconds
};

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

bool StartsWithScheme(std::string_view text) { return LowerCase(text.substr(0, kScheme.size())) == kScheme; }

/// Takes the brackets off an IPv6 address; nothing if they are missing or do not match.
std::optional<std::string_view> BareHost(std::string_view host) {
  if (host.starts_with('[') && host.ends_with(']')) return host.substr(1, host.size() - 2);
  if (host.find_first_of("[]:/ ") != std::string_view::npos) return std::nullopt;
  return host;
}

}  // namespace

std::optional<TcpAddress> ParseTcpAddress(std::string_view text) {
  if (!StartsWithScheme(text)) return std::nullopt;
  text.remove_prefix(kScheme.size());
  const std::size_t colon = text.rfind(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const auto host = BareHost(text.substr(0, colon));
  const std::string_view digits = text.substr(colon + 1);
  unsigned port = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
  if (!host || host->empty() || error != std::errc{} || end != digits.data() + digits.size()) return std::nullopt;
  if (port < 1 || port > 65535) return std::nullopt;
  return TcpAddress{LowerCase(*host), std::to_string(port)};
}

TcpLink::TcpLink(TcpAddress address)
    : Link(std::string(kScheme) + address.host + ":" + address.port), server_(std::move(address)) {}

void TcpLink::Connect() {
  Disconnect();
  lookup_.emplace(server_.host, server_.port);
  SetState(State::Connecting);
  Progress(0);
}

void TcpLink::Disconnect() noexcept {
  SetState(State::Away);
  socket_.Close();
  lookup_.reset();
  next_ = nullptr;
  addresses_.reset();
}

void TcpLink::Progress(short revents) {
  if (lookup_) {
    if (!lookup_->Finished()) return;
    addresses_ = lookup_->Take();
    lookup_.reset();
    next_ = addresses_.get();
    TryNextAddress();
  } else if (revents != 0) {
    int error = 0;
    socklen_t size = sizeof error;
    if (getsockopt(socket_.Get(), SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0) {
      SetState(State::Connected);
    } else {
      TryNextAddress();
    }
  }
}

void TcpLink::TryNextAddress() {
  while (next_ != nullptr) {
    const addrinfo& address = *std::exchange(next_, next_->ai_next);
    socket_ = Descriptor(socket(address.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!socket_) continue;
    for (const SocketOption& option : kOptions) {
      setsockopt(socket_.Get(), option.level, option.name, &option.value, sizeof option.value);
    }
    if (connect(socket_.Get(), address.ai_addr, address.ai_addrlen) == 0) return SetState(State::Connected);
    if (errno == EINPROGRESS) return;
  }
  Disconnect();
}

std::optional<std::size_t> TcpLink::Read(char* to, std::size_t size) {
  const ssize_t count = recv(socket_.Get(), to, size, 0);
  if (count > 0) return static_cast<std::size_t>(count);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return 0;
  return std::nullopt;
}

std::optional<std::size_t> TcpLink::Write(std::string_view data) {
  const ssize_t count = send(socket_.Get(), data.data(), data.size(), MSG_NOSIGNAL);
  if (count >= 0) return static_cast<std::size_t>(count);
  if (errno == EAGAIN || errno == EINTR) return 0;
  return std::nullopt;
}
