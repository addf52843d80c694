#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "platform/posix/descriptor.h"
#include "tools/sim/line.h"

namespace sim {

namespace {

/// Listens while it has no caller, so that a second program is refused as a device server refuses it.
class TcpLine : public Line {
 public:
  explicit TcpLine(int port) : port_(port) {}

  void Plug() override {
    if (!listener_ && !caller_) Listen();
  }
  void Pull() override {
    caller_.Close();
    listener_.Close();
    readable_ = false;
  }
  bool Plugged() const override { return listener_ || caller_; }
  std::string Address() const override { return "tcp://127.0.0.1:" + std::to_string(port_); }
  int Watched() const override { return caller_ ? caller_.Get() : listener_.Get(); }

  void Notice(short events) override {
    readable_ = caller_ && events != 0;
    if (caller_ || (events & POLLIN) == 0) return;
    Descriptor caller(accept4(listener_.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!caller) return;
    const int on = 1;
    setsockopt(caller.Get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    caller_ = std::move(caller);
    listener_.Close();
  }

  bool Listened() const override { return static_cast<bool>(caller_); }

  std::string Receive() override {
    std::string received;
    if (!readable_) return received;
    std::array<char, 512> buffer;
    for (;;) {
      const ssize_t size = recv(caller_.Get(), buffer.data(), buffer.size(), 0);
      if (size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR)) caller_.Close();
      if (size <= 0) return received;
      received.append(buffer.data(), static_cast<std::size_t>(size));
    }
  }

  std::size_t Send(std::string_view bytes) override {
    const ssize_t taken = send(caller_.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    return taken > 0 ? static_cast<std::size_t>(taken) : 0;
  }

 private:
  void Listen() {
    Descriptor listener(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    const int on = 1;
    setsockopt(listener.Get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in here{};
    here.sin_family = AF_INET;
    here.sin_port = htons(static_cast<std::uint16_t>(port_));
    here.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof here;
    if (bind(listener.Get(), reinterpret_cast<const sockaddr*>(&here), size) != 0 || listen(listener.Get(), 1) != 0 ||
        getsockname(listener.Get(), reinterpret_cast<sockaddr*>(&here), &size) != 0) {
      throw std::system_error(errno, std::generic_category(), "Nobody can be served at " + Address());
    }
    port_ = ntohs(here.sin_port);
    listener_ = std::move(listener);
  }

  int port_;
  Descriptor listener_;
  Descriptor caller_;
  bool readable_ = false;
};

}  // namespace

std::unique_ptr<Line> MakeTcpLine(int port) { return std::make_unique<TcpLine>(port); }

}  // namespace sim
