#include "platform/qt/termination.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace {

constexpr std::array kEndingSignals = {SIGTERM, SIGINT, SIGHUP};

/// The two ends of the pipe that carries a signal into the event loop. A handler can reach nothing but statics.
std::array<int, 2> signalPipe{-1, -1};

extern "C" void TellEventLoop(int) {
  const int savedErrno = errno;
  const char one = 1;
  [[maybe_unused]] const auto written = write(signalPipe[1], &one, 1);  // a full pipe already tells enough
  errno = savedErrno;
}

void SetHandlers(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  for (const int signal : kEndingSignals) sigaction(signal, &action, nullptr);
}

void EmptyPipe() {
  std::array<char, 64> bytes;
  while (read(signalPipe[0], bytes.data(), bytes.size()) > 0) {
  }
}

}  // namespace

Termination::Termination(std::function<void()> onSignal) {
  if (pipe2(signalPipe.data(), O_NONBLOCK | O_CLOEXEC) != 0) {
    throw std::system_error(errno, std::generic_category(), "Signals cannot be received");
  }
  notifier_ = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [onSignal = std::move(onSignal)] {
    EmptyPipe();
    onSignal();
  });
  SetHandlers(TellEventLoop);
}

Termination::~Termination() {
  SetHandlers(SIG_DFL);
  notifier_.reset();
  for (int& end : signalPipe) close(std::exchange(end, -1));
}
