#include "platform/posix/tty_link.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

#include "platform/run_time_error.h"

namespace {

using ErrorNumber::SerialPortInUse;
using ErrorNumber::SerialPortInvalid;

struct OpenFault {
  int error;
  int number;
  const char* reason;
};

constexpr OpenFault kOpenFaults[] = {
    {ENOENT, SerialPortInvalid, "there is no such device; check that it is plugged in and that the address is right"},
    {ENOTDIR, SerialPortInvalid, "there is no such device; check the address"},
    {EACCES, SerialPortInvalid,
     "permission denied; this user may not use the device (on most systems the group \"dialout\" may)"},
    {EPERM, SerialPortInvalid, "permission denied; this user may not use the device"},
    {EBUSY, SerialPortInUse, "another program is using the device"},
    {ENXIO, SerialPortInvalid, "the device does not answer; check that it is plugged in"},
    {ENODEV, SerialPortInvalid, "the device does not answer; check that it is plugged in"},
    {EIO, SerialPortInvalid, "there is no serial hardware behind this device"},
};

std::string SystemText(int error) { return std::generic_category().message(error); }

/// Major numbers of the side of a pseudo-terminal that plays the serial line.
bool IsPseudoTerminal(dev_t device) { return major(device) >= 136 && major(device) <= 143; }

bool SameLine(const termios& wanted, const termios& found) {
  constexpr tcflag_t kFrame = CSIZE | PARENB | PARODD | CSTOPB;
  constexpr tcflag_t kFlow = IXON | IXOFF;
  return (wanted.c_cflag & kFrame) == (found.c_cflag & kFrame) && (wanted.c_iflag & kFlow) == (found.c_iflag & kFlow) &&
         cfgetispeed(&wanted) == cfgetispeed(&found) && cfgetospeed(&wanted) == cfgetospeed(&found);
}

/// What a read or write that returned -1 means.
std::optional<std::size_t> NothingOrGone() {
  if (errno == EAGAIN || errno == EINTR) return 0;
  return std::nullopt;
}

}  // namespace

TtyLink::TtyLink(std::string who, std::string path, const LineSettings& settings, bool xonXoff)
    : Link(std::move(path)), who_(std::move(who)), line_(RawLine(settings, xonXoff)) {}

void TtyLink::Raise(int number, const std::string& reason) const {
  throw RunTimeError(number, who_ + " cannot be opened: " + reason + ".");
}

Descriptor TtyLink::OpenDevice() {
  const auto raiseSystemFault = [this](int error) {
    const auto* fault = std::find_if(std::begin(kOpenFaults), std::end(kOpenFaults),
                                     [&](const OpenFault& row) { return row.error == error; });
    if (fault == std::end(kOpenFaults)) Raise(SerialPortInvalid, SystemText(error));
    Raise(fault->number, fault->reason);
  };
  struct stat found {};
  if (stat(Address().c_str(), &found) != 0) raiseSystemFault(errno);
  if (S_ISDIR(found.st_mode)) Raise(SerialPortInvalid, "the address is a folder, not a device");
  if (!S_ISCHR(found.st_mode)) Raise(SerialPortInvalid, "the address is a file, not a device");

  Descriptor device(open(Address().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (!device) raiseSystemFault(errno);
  if (fstat(device.Get(), &found) != 0) raiseSystemFault(errno);
  pseudoTerminal_ = IsPseudoTerminal(found.st_rdev);
  termios line{};
  if (tcgetattr(device.Get(), &line) != 0) {
    if (errno == ENOTTY) Raise(SerialPortInvalid, "the device is not a serial port");
    raiseSystemFault(errno);
  }
  if (tcgetsid(device.Get()) == getsid(0)) {
    Raise(SerialPortInvalid, "this is the terminal the program was started from");
  }
  return device;
}

void TtyLink::TakeExclusively(int device) const {
  // Programs of the superuser get past TIOCEXCL, hence the lock; programs without locks are stopped by TIOCEXCL.
  if (flock(device, LOCK_EX | LOCK_NB) != 0) Raise(SerialPortInUse, "another program or channel is using the device");
  // A pseudo-terminal keeps the mark when its holder is killed, and would then stay shut for everybody.
  if (pseudoTerminal_) return;
  int exclusive = 0;
  if (ioctl(device, TIOCGEXCL, &exclusive) == 0 && exclusive != 0) {
    Raise(SerialPortInUse, "another program is using the device");
  }
  ioctl(device, TIOCEXCL);
}

void TtyLink::SetUpLine(int device) const {
  termios wanted = line_;
  if (pseudoTerminal_) {  // no line, so no frame on it: eight bits without parity is all it takes
    wanted.c_cflag = (wanted.c_cflag & ~tcflag_t{CSIZE | PARENB}) | CS8;
  }
  if (tcsetattr(device, TCSANOW, &wanted) != 0) {
    Raise(SerialPortInvalid, "the device refuses its settings (" + SystemText(errno) + ")");
  }
  termios found{};
  if (tcgetattr(device, &found) != 0 || (!pseudoTerminal_ && !SameLine(wanted, found))) {
    Raise(SerialPortInvalid, "the device cannot work with these settings");
  }
  tcflush(device, TCIFLUSH);  // what came before, perhaps at another speed, is no weight of now
}

void TtyLink::Connect() {
  Disconnect();
  Descriptor device = OpenDevice();
  TakeExclusively(device.Get());
  SetUpLine(device.Get());
  device_ = std::move(device);
  SetState(State::Connected);
}

void TtyLink::Disconnect() noexcept {
  SetState(State::Away);
  if (!device_) return;
  // Closing waits half a minute for output that the device holds back by XOFF; nobody may wait that long.
  int unsent = 0;
  if (ioctl(device_.Get(), TIOCOUTQ, &unsent) == 0 && unsent > 0) tcflush(device_.Get(), TCOFLUSH);
  if (!pseudoTerminal_) ioctl(device_.Get(), TIOCNXCL);
  device_.Close();
}

std::optional<std::size_t> TtyLink::Read(char* to, std::size_t size) {
  const ssize_t count = read(device_.Get(), to, size);
  if (count < 0) return NothingOrGone();
  if (count == 0) return std::nullopt;  // hung up: the device was pulled or the far end has ended
  return static_cast<std::size_t>(count);
}

std::optional<std::size_t> TtyLink::Write(std::string_view data) {
  const ssize_t count = write(device_.Get(), data.data(), data.size());
  if (count < 0) return NothingOrGone();
  return static_cast<std::size_t>(count);
}
