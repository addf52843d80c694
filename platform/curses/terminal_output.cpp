#include "platform/curses/terminal_output.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

constexpr const char* kStandardOutput = "/proc/self/fd/1";

}  // namespace

TerminalOutput::TerminalOutput()
    : buffer_(memfd_create("screen", MFD_CLOEXEC)),
      terminal_(open(kStandardOutput, O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {
  if (!buffer_ || !terminal_) throw std::system_error(errno, std::generic_category(), "The terminal cannot be used");
}

void TerminalOutput::Send() {
  TakeBuffer();
  Write();
}

void TerminalOutput::Finish(int milliseconds) {
  TakeBuffer();
  pollfd terminal{terminal_.Get(), POLLOUT, 0};
  while (Write() && Behind()) {
    if (poll(&terminal, 1, milliseconds) <= 0) return;
  }
}

void TerminalOutput::TakeBuffer() {
  const off_t size = lseek(Buffer(), 0, SEEK_CUR);
  if (size <= 0) return;
  std::string written(static_cast<std::size_t>(size), '\0');
  const ssize_t got = pread(Buffer(), written.data(), written.size(), 0);
  if (got > 0) pending_.append(written, 0, static_cast<std::size_t>(got));
  lseek(Buffer(), 0, SEEK_SET);
}

/// False if the terminal is gone; what was meant for it is dropped.
bool TerminalOutput::Write() {
  while (!pending_.empty()) {
    const ssize_t taken = write(terminal_.Get(), pending_.data(), pending_.size());
    if (taken < 0 && errno == EINTR) continue;
    if (taken < 0 && errno == EAGAIN) return true;
    if (taken <= 0) {
      pending_.clear();
      return false;
    }
    pending_.erase(0, static_cast<std::size_t>(taken));
  }
  return true;
}
