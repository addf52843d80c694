#include "platform/dbus/bus_link.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "platform/dbus/bus_text.h"

namespace {

constexpr std::chrono::seconds kRetry{2};
/// A round of messages ends with the one that reaches one of these, and the timers have their turn. sd-bus tells the
/// size of no message, so bytes are bounded by the time they take: at worst that of one message more, as large as
/// the bus lets a client make it, which is read to its end before it can be refused.
constexpr std::chrono::milliseconds kRound{5};
constexpr int kMessagesARound = 32;
/// Messages that may wait for the bus to take them, give or take the few of one call. sd-bus counts messages, not
/// bytes; but none of ours is above 30 kB, the seven items of a topic with 1024 characters of 4 bytes each, because
/// texts (`kLongestText`) and names (`kLongestName`) are limited. So no more than 8 MB wait.
constexpr std::uint64_t kMostWaiting = 256;
static_assert(7 * 4 * kLongestText < 30'000, "the bound of what waits is counted with smaller messages");
/// Most bytes of a name that D-Bus knows, and far more than a path of ours has.
constexpr std::size_t kLongestName = 255;
/// At the end of the program the marks of old weights are worth waiting for; a bus that hangs is not.
constexpr std::chrono::milliseconds kFarewell{100};
constexpr std::uint64_t kNever = UINT64_MAX;

/// Time from now to a time of the monotonic clock in microseconds, rounded up.
std::chrono::milliseconds Until(std::uint64_t microseconds) {
  using namespace std::chrono;
  const auto now = duration_cast<std::chrono::microseconds>(steady_clock::now().time_since_epoch());
  const auto left = std::chrono::microseconds(static_cast<std::int64_t>(microseconds)) - now;
  return std::max(ceil<milliseconds>(left), milliseconds::zero());
}

/// Waits for at most `wait`. True as well for a bus that is gone: writing tells.
bool TakesBytes(int descriptor, std::chrono::nanoseconds wait = {}) {
  pollfd socket{descriptor, POLLOUT, 0};
  return poll(&socket, 1, static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(wait).count())) > 0;
}

}  // namespace

BusLink::BusLink(std::string name, Hooks hooks) : name_(std::move(name)), hooks_(std::move(hooks)) {
  retry_.setSingleShot(true);
  due_.setSingleShot(true);
  QObject::connect(&readable_, &QSocketNotifier::activated, [this] { Process(); });
  QObject::connect(&writable_, &QSocketNotifier::activated, [this] { Process(); });
  QObject::connect(&due_, &QTimer::timeout, [this] { Process(); });
  QObject::connect(&retry_, &QTimer::timeout, [this] { Connect(); });
}

void BusLink::Start() {
  if (!bus_) Connect();
}

void BusLink::Stop() {
  SendWhatWaits();
  Close();
  state_ = State::Unknown;
}

void BusLink::SendWhatWaits() {
  if (!bus_ || sd_bus_is_ready(bus_.get()) <= 0) return;
  const auto end = std::chrono::steady_clock::now() + kFarewell;
  while (true) {
    if (flushRequested_ && !Congested()) {
      flushRequested_ = false;
      hooks_.flush();
    }
    const auto left = end - std::chrono::steady_clock::now();
    if (Waiting() == 0 || left <= left.zero()) return;
    // sd-bus writes first, and takes a call only if it could write no message to its end.
    if (TakesBytes(sd_bus_get_fd(bus_.get()), left) && sd_bus_process(bus_.get(), nullptr) < 0) return;
  }
}

std::uint64_t BusLink::Waiting() const {
  std::uint64_t waiting = 0;
  if (bus_) sd_bus_get_n_queued_write(bus_.get(), &waiting);
  return waiting;
}

void BusLink::Close() {
  for (QTimer* timer : {&retry_, &due_}) timer->stop();
  for (QSocketNotifier* notifier : {&readable_, &writable_}) notifier->setEnabled(false);
  bus_.reset();
}

bool BusLink::Congested() {
  congested_ = Waiting() > (congested_ ? 0 : kMostWaiting);
  if (congested_) flushRequested_ = true;
  return congested_;
}

bool BusLink::HoldsCallsBack() { return sd_bus_is_ready(bus_.get()) > 0 && Congested(); }

void BusLink::Sent() {
  if (Waiting() > 0) writable_.setEnabled(true);
}

void BusLink::Connect() {
  const int result = Open();
  if (result < 0) return Lose(result);
  Rearm();
}

int BusLink::Open() {
  sd_bus* bus = nullptr;
  int result = sd_bus_open_user(&bus);
  if (result < 0) return result;
  bus_.reset(bus);
  congested_ = flushRequested_ = false;
  result = sd_bus_add_filter(bus, nullptr, RefuseLongNames, nullptr);
  if (result < 0) return result;
  result = hooks_.connected(bus);
  if (result < 0) return result;
  result = sd_bus_match_signal_async(bus, nullptr, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                     "org.freedesktop.DBus", "NameAcquired", OnNameAcquired, nullptr, this);
  if (result < 0) return result;
  return sd_bus_request_name_async(bus, nullptr, name_.c_str(), SD_BUS_NAME_QUEUE, OnNameAnswer, this);
}

void BusLink::Lose(int error) {
  Close();
  retry_.start(kRetry);
  const char* reason = error == -ENOMEDIUM ? "the environment names none" : std::strerror(-error);
  Enter(State::NoBus,
        std::string("No session bus (") + reason + "): other programs cannot reach the system until there is one");
}

void BusLink::Process() {
  const auto end = std::chrono::steady_clock::now() + kRound;
  for (int message = 0; message < kMessagesARound; ++message) {
    // sd-bus writes first, and takes a call only if it could write no message to its end.
    if (HoldsCallsBack() && !TakesBytes(sd_bus_get_fd(bus_.get()))) break;
    const int result = sd_bus_process(bus_.get(), nullptr);
    if (result < 0) return Lose(result);
    if (result == 0 || std::chrono::steady_clock::now() >= end) break;
  }
  if (flushRequested_ && !Congested()) {
    flushRequested_ = false;
    hooks_.flush();
  }
  Rearm();
}

void BusLink::Rearm() {
  const int descriptor = sd_bus_get_fd(bus_.get());
  const int events = sd_bus_get_events(bus_.get());
  if (descriptor < 0 || events < 0) return Lose(std::min(descriptor, events));
  // While calls are held back only the bus taking bytes is of interest. Calls that sd-bus has read already would
  // make its time-out zero, and the loop busy; that time-out serves them once they are no longer held back.
  const bool held = HoldsCallsBack();
  for (auto [notifier, event] : {std::pair{&readable_, POLLIN}, std::pair{&writable_, POLLOUT}}) {
    if (notifier->socket() != descriptor) notifier->setSocket(descriptor);
    notifier->setEnabled((events & event) != 0 && !(held && event == POLLIN));
  }
  std::uint64_t due = kNever;
  if (!held && sd_bus_get_timeout(bus_.get(), &due) >= 0 && due != kNever) {
    due_.start(Until(due));
  } else {
    due_.stop();
  }
}

void BusLink::Enter(State state, const std::string& text) {
  if (state_ == state) return;
  state_ = state;
  hooks_.log(text);
}

int BusLink::RefuseLongNames(sd_bus_message* call, void*, sd_bus_error* error) {
  if (sd_bus_message_is_method_call(call, nullptr, nullptr) <= 0) return 0;
  bool tooLong = std::strlen(sd_bus_message_get_path(call)) > kLongestName;
  // The names of an interface and a property come first in a call that has any.
  for (int argument = 0; argument < 2; ++argument) {
    char type = 0;
    const char* name = nullptr;
    if (sd_bus_message_peek_type(call, &type, nullptr) <= 0 || type != 's') break;
    if (sd_bus_message_read_basic(call, 's', &name) <= 0) break;
    tooLong = tooLong || std::strlen(name) > kLongestName;
  }
  sd_bus_message_rewind(call, 1);
  if (!tooLong) return 0;
  return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "A path or name in the call is longer than %zu bytes",
                           kLongestName);
}

int BusLink::OnNameAnswer(sd_bus_message* answer, void* link, sd_bus_error*) {
  constexpr std::uint32_t kInQueue = 2;
  auto& self = *static_cast<BusLink*>(link);
  const sd_bus_error* error = sd_bus_message_get_error(answer);
  std::uint32_t result = 0;
  if (error == nullptr && sd_bus_message_read(answer, "u", &result) >= 0 && result == kInQueue) {
    self.Enter(State::NameTaken, "Session bus: another program owns " + self.name_ + "; waiting for it to end");
  }
  if (error != nullptr && sd_bus_error_has_name(error, SD_BUS_ERROR_NO_REPLY) == 0) {  // not the bus going away
    self.Enter(State::NameTaken, "Session bus: " + self.name_ + " is refused: " + error->message);
  }
  return 0;
}

int BusLink::OnNameAcquired(sd_bus_message* signal, void* link, sd_bus_error*) {
  const char* name = nullptr;
  auto& self = *static_cast<BusLink*>(link);
  if (sd_bus_message_read(signal, "s", &name) >= 0 && self.name_ == name) {
    self.Enter(State::Owner, "Session bus: other programs reach the system as " + self.name_);
  }
  return 0;
}
