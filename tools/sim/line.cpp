#include "tools/sim/line.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <pty.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace {

class Descriptor {
 public:
  Descriptor() = default;
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }
  void Take(int descriptor) {
    Close();
    descriptor_ = descriptor;
  }
  void Close() {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = -1;
  }
  int Get() const { return descriptor_; }
  bool Open() const { return descriptor_ >= 0; }

 private:
  int descriptor_ = -1;
};

[[noreturn]] void RaiseSystemError(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

void MakeNonBlocking(int descriptor) {
  fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
  fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

/// Reads all that waits; `ended` is set if the far end has gone.
std::string ReadAll(int descriptor, bool& ended) {
  std::string received;
  std::array<char, 512> buffer;
  for (;;) {
    const ssize_t size = read(descriptor, buffer.data(), buffer.size());
    if (size == 0) ended = true;
    if (size <= 0) return received;
    received.append(buffer.data(), static_cast<std::size_t>(size));
  }
}

std::size_t Taken(ssize_t written) { return written > 0 ? static_cast<std::size_t>(written) : 0; }

class TerminalLine : public Line {
 public:
  explicit TerminalLine(std::string path) : path_(std::move(path)) {}
  TerminalLine(const TerminalLine&) = delete;
  TerminalLine& operator=(const TerminalLine&) = delete;
  ~TerminalLine() override { Pull(); }

  void Plug() override {
    if (Plugged()) return;
    termios raw{};
    cfmakeraw(&raw);
    cfsetspeed(&raw, B9600);
    raw.c_cflag |= CS8 | CREAD | CLOCAL;
    std::array<char, 128> name{};
    int master = -1;
    int slave = -1;
    if (openpty(&master, &slave, name.data(), &raw, nullptr) != 0) RaiseSystemError("No pseudo-terminal for " + path_);
    close(slave);
    master_.Take(master);
    MakeNonBlocking(master);
    unlink(path_.c_str());
    if (symlink(name.data(), path_.c_str()) != 0) {
      master_.Close();
      RaiseSystemError("Cannot make the link " + path_);
    }
  }
  void Pull() override {
    if (!Plugged()) return;
    unlink(path_.c_str());
    master_.Close();
  }
  bool Plugged() const override { return master_.Open(); }
  std::string Address() const override { return path_; }
  std::string Receive() override {
    bool ended = false;  // a program that closes the port may open it again
    return Plugged() ? ReadAll(master_.Get(), ended) : std::string{};
  }
  std::size_t Send(std::string_view bytes) override {
    return Plugged() ? Taken(write(master_.Get(), bytes.data(), bytes.size())) : bytes.size();
  }

 private:
  std::string path_;
  Descriptor master_;
};

class TcpLine : public Line {
 public:
  explicit TcpLine(int port) : port_(port) {}

  void Plug() override {
    if (Plugged()) return;
    listener_.Take(socket(AF_INET, SOCK_STREAM, 0));
    if (!listener_.Open()) RaiseSystemError("No socket for " + Address());
    const int on = 1;
    setsockopt(listener_.Get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port_));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool listening = bind(listener_.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
                           listen(listener_.Get(), 1) == 0;
    if (!listening) {
      const int cause = errno;
      listener_.Close();
      errno = cause;
      RaiseSystemError("Cannot listen on " + Address());
    }
    MakeNonBlocking(listener_.Get());
    socklen_t size = sizeof address;
    getsockname(listener_.Get(), reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
  }
  void Pull() override {
    client_.Close();
    listener_.Close();
  }
  bool Plugged() const override { return listener_.Open(); }
  std::string Address() const override { return "tcp://127.0.0.1:" + std::to_string(port_); }
  std::string Receive() override {
    if (Plugged() && !client_.Open()) Accept();
    if (!client_.Open()) return {};
    bool ended = false;
    std::string received = ReadAll(client_.Get(), ended);
    if (ended) client_.Close();
    return received;
  }
  std::size_t Send(std::string_view bytes) override {
    return client_.Open() ? Taken(send(client_.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL)) : bytes.size();
  }

 private:
  void Accept() {
    const int client = accept(listener_.Get(), nullptr, nullptr);
    if (client < 0) return;
    client_.Take(client);
    MakeNonBlocking(client);
    const int on = 1;
    setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  }

  int port_;
  Descriptor listener_;
  Descriptor client_;
};

}  // namespace

std::unique_ptr<Line> MakeTerminalLine(const std::string& path) { return std::make_unique<TerminalLine>(path); }

std::unique_ptr<Line> MakeTcpLine(int port) { return std::make_unique<TcpLine>(port); }
