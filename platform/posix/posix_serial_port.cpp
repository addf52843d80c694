#include "platform/posix/posix_serial_port.h"

#include <sys/epoll.h>

#include <algorithm>

#include "platform/posix/line_settings.h"
#include "platform/posix/tcp_link.h"
#include "platform/posix/tty_link.h"
#include "platform/run_time_error.h"

namespace {

constexpr std::size_t kInputLimit = 8192;     // bytes a port takes in a tick, so that a burst cannot hold it up
constexpr std::size_t kReadSize = 2048;       // below what a terminal driver keeps: a shorter read emptied it
constexpr std::size_t kOutputLimit = 65'536;  // bytes
constexpr std::int64_t kRetryAfter = 1000;    // milliseconds

}  // namespace

std::string PosixSerialPort::Who(const std::string& address) const {
  return "COM" + std::to_string(commPort_) + " (" + address + ")";
}

std::unique_ptr<Link> PosixSerialPort::MakeLink() const {
  const std::string address = surroundings_.addressOf(commPort_);
  const std::string who = Who(address);
  const auto settings = ParseLineSettings(settings_);
  if (!settings) {
    throw RunTimeError(ErrorNumber::SerialPortInvalid,
                       who + " cannot be opened: \"" + settings_ + "\" is no setting of a serial line.");
  }
  if (auto server = ParseTcpAddress(address)) return std::make_unique<TcpLink>(*std::move(server));
  if (address.starts_with('/')) return std::make_unique<TtyLink>(who, address, *settings, handshaking_ != 0);
  throw RunTimeError(ErrorNumber::SerialPortInvalid,
                     who +
                         " cannot be opened: the address is neither a device path such as /dev/ttyS0 nor "
                         "tcp://host:port.");
}

void PosixSerialPort::Open() {
  if (PortOpen()) return;
  std::unique_ptr<Link> link = MakeLink();
  if (surroundings_.heldAddresses.contains(link->Address())) {
    throw RunTimeError(ErrorNumber::SerialPortInUse,
                       Who(link->Address()) + " cannot be opened: another channel is using the device.");
  }
  link->Connect();
  input_ = std::make_unique_for_overwrite<char[]>(kInputLimit);
  surroundings_.heldAddresses.insert(link->Address());
  link_ = std::move(link);
  nextTry_ = surroundings_.clock() + kRetryAfter;
  Watch();
}

void PosixSerialPort::Close() {
  if (!PortOpen()) return;
  surroundings_.heldAddresses.erase(link_->Address());
  link_.reset();
  input_.reset();
  inputSize_ = 0;
  lineLost_ = false;
  output_.clear();
  Watch();
}

void PosixSerialPort::RequireOpen() const {
  if (!PortOpen()) {
    throw RunTimeError(ErrorNumber::SerialPortNotOpen, "COM" + std::to_string(commPort_) + " is not open.");
  }
}

std::size_t PosixSerialPort::InBufferCount() {
  RequireOpen();
  return inputSize_;
}

void PosixSerialPort::Input(std::string& chunk) {
  RequireOpen();
  chunk.assign(input_.get(), inputSize_);
  inputSize_ = 0;
}

bool PosixSerialPort::Output(std::string_view data) {
  RequireOpen();
  if (link_->Now() != Link::State::Connected || output_.size() >= kOutputLimit) return false;
  const bool lineWasFree = output_.empty();
  output_ += data;
  if (lineWasFree) Send();
  return link_->Now() == Link::State::Connected;
}

void PosixSerialPort::Prepare() {
  if (!PortOpen() || link_->Now() == Link::State::Connected) return;
  if (link_->Now() == Link::State::Connecting) {
    link_->Progress(0);
  } else if (surroundings_.clock() >= nextTry_) {
    nextTry_ = surroundings_.clock() + kRetryAfter;
    try {
      link_->Connect();
    } catch (const RunTimeError&) {
      // still away
    }
  }
  Watch();
}

void PosixSerialPort::Serve(std::uint32_t events) {
  if (!PortOpen() || link_->Handle() < 0) return;
  if (link_->Now() == Link::State::Connecting) {
    link_->Progress(static_cast<short>(events));
    return Watch();
  }
  if ((events & ~std::uint32_t{EPOLLOUT}) != 0) Receive((events & (EPOLLERR | EPOLLHUP)) != 0);
  if ((events & EPOLLOUT) != 0 && link_->Now() == Link::State::Connected) Send();
}

void PosixSerialPort::Receive(bool deviceGone) {
  while (inputSize_ < kInputLimit) {
    const std::size_t asked = std::min(kReadSize, kInputLimit - inputSize_);
    const auto count = link_->Read(input_.get() + inputSize_, asked);
    if (!count) return GiveUpDevice();
    inputSize_ += *count;
    if (*count > 0) deviceGone = false;  // it had something left to say
    if (*count < asked) break;
  }
  if (deviceGone && inputSize_ < kInputLimit) GiveUpDevice();
}

void PosixSerialPort::Send() {
  if (!output_.empty()) {
    const auto count = link_->Write(output_);
    if (!count) return GiveUpDevice();
    output_.erase(0, *count);
  }
  Watch();
}

void PosixSerialPort::GiveUpDevice() {
  link_->Disconnect();
  output_.clear();
  inputSize_ = 0;  // of before: the scan takes it in the tick it came, or it is too old
  lineLost_ = true;
  nextTry_ = surroundings_.clock() + kRetryAfter;
  Watch();
}

void PosixSerialPort::Watch() {
  const int handle = PortOpen() ? link_->Handle() : -1;
  if (handle < 0) return;  // closing a descriptor ended its watch
  const bool wantsOutput = !output_.empty() || link_->Now() == Link::State::Connecting;
  const bool wantsInput = link_->Now() == Link::State::Connected;
  epoll_event wanted{};
  wanted.events = (wantsInput ? EPOLLIN : 0U) | (wantsOutput ? EPOLLOUT : 0U);
  wanted.data.u32 = index_;
  // A descriptor opened anew may have the number of the one before, so only the poller knows what it watches.
  const int poller = surroundings_.poller.Get();
  if (epoll_ctl(poller, EPOLL_CTL_MOD, handle, &wanted) != 0) epoll_ctl(poller, EPOLL_CTL_ADD, handle, &wanted);
}
