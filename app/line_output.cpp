#include "app/line_output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

void LineOutput::Write(std::string_view lines) {
  if (!TakesMore()) {
    ++leftOut_;
    return;
  }
  if (leftOut_ > 0) Send("(" + std::to_string(leftOut_) + " outputs were left out, nobody read them)\n");
  leftOut_ = 0;
  Send(lines);
}

bool LineOutput::TakesMore() const {
  pollfd out{handle_, POLLOUT, 0};
  return poll(&out, 1, 0) == 1 && (out.revents & POLLOUT) != 0;
}

void LineOutput::Send(std::string_view text) const {
  while (!text.empty()) {
    const ssize_t sent = write(handle_, text.data(), text.size());
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(sent));
  }
}
