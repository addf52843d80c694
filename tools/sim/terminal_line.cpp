#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/posix/descriptor.h"
#include "tools/sim/line.h"

namespace sim {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Raise(const std::string& what) { throw std::system_error(errno, std::generic_category(), what); }

/// Stands `path` for `target`, in the place of an older link.
void MakeLink(const std::string& target, const fs::path& path) {
  const fs::file_status present = fs::symlink_status(path);
  if (fs::exists(present) && !fs::is_symlink(present)) {
    throw std::system_error(EEXIST, std::generic_category(), path.string() + " is no link, and is left as it is");
  }
  const fs::path fresh = path.string() + ".new";
  std::error_code error;
  fs::remove(fresh, error);
  fs::create_symlink(target, fresh, error);
  if (!error) fs::rename(fresh, path, error);
  if (error) throw std::system_error(error, "The link " + path.string() + " cannot be made");
}

class TerminalLine : public Line {
 public:
  explicit TerminalLine(std::string path) : path_(std::move(path)) {}
  TerminalLine(const TerminalLine&) = delete;
  TerminalLine& operator=(const TerminalLine&) = delete;
  ~TerminalLine() override { Pull(); }

  void Plug() override {
    if (Plugged()) return;
    // Raw from the start: a port that echoes would send the device its own frames as commands.
    termios raw{};
    cfmakeraw(&raw);
    cfsetspeed(&raw, B9600);
    raw.c_cflag |= CREAD | CLOCAL;
    int deviceEnd = -1;
    int portEnd = -1;
    if (openpty(&deviceEnd, &portEnd, nullptr, &raw, nullptr) != 0) Raise("No pseudo-terminal for " + path_);
    Descriptor device(deviceEnd);
    const Descriptor port(portEnd);  // opened and closed once, so that the device end sees that nobody listens
    fcntl(deviceEnd, F_SETFL, O_RDWR | O_NONBLOCK);
    fcntl(deviceEnd, F_SETFD, FD_CLOEXEC);
    std::array<char, 128> name{};
    if (ptsname_r(deviceEnd, name.data(), name.size()) != 0) Raise("No name for the pseudo-terminal of " + path_);
    MakeLink(name.data(), path_);
    portName_ = name.data();
    device_ = std::move(device);
  }

  void Pull() override {
    if (!Plugged()) return;
    std::error_code ignored;
    if (fs::read_symlink(path_, ignored) == portName_) fs::remove(path_, ignored);
    device_.Close();
    listened_ = readable_ = false;
  }

  bool Plugged() const override { return static_cast<bool>(device_); }
  std::string Address() const override { return path_; }
  int Watched() const override { return device_.Get(); }

  void Notice(short events) override {
    const bool listened = (events & POLLHUP) == 0;
    if (listened_ && !listened) ForgetUnread();
    listened_ = listened;
    readable_ = (events & POLLIN) != 0;
  }

  bool Listened() const override { return listened_; }

  std::string Receive() override {
    std::string received;
    if (!readable_ || !Plugged()) return received;
    std::array<char, 512> buffer;
    for (ssize_t size; (size = read(device_.Get(), buffer.data(), buffer.size())) > 0;) {
      received.append(buffer.data(), static_cast<std::size_t>(size));
    }
    return received;
  }

  std::size_t Send(std::string_view bytes) override {
    const ssize_t taken = write(device_.Get(), bytes.data(), bytes.size());
    return taken > 0 ? static_cast<std::size_t>(taken) : 0;
  }

 private:
  /// A serial port that is opened hears what is sent from then on. A pseudo-terminal would keep what its last
  /// program left unread.
  void ForgetUnread() const {
    const Descriptor port(open(portName_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (port) tcflush(port.Get(), TCIFLUSH);
  }

  std::string path_;
  std::string portName_;
  Descriptor device_;
  bool listened_ = false;
  bool readable_ = false;
};

}  // namespace

std::unique_ptr<Line> MakeTerminalLine(const std::string& path) { return std::make_unique<TerminalLine>(path); }

}  // namespace sim
