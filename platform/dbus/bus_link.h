#pragma once

#include <systemd/sd-bus.h>

#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

/// The system's connection to the session bus, as the owner of a well-known name. It lives in the program's event
/// loop and never waits: a bus that is missing, hangs or goes away costs a try every two seconds and no more. What
/// waits to be sent is bounded, answers included: beyond the bound no further calls are taken until the bus has
/// taken all of it.
class BusLink {
 public:
  /// What the link asks of its owner.
  struct Hooks {
    /// Registers the objects on a new connection, before the name is asked for. A negative errno gives it up.
    std::function<int(sd_bus*)> connected;
    /// Sends what was held back, see `RequestFlush`.
    std::function<void()> flush;
    /// One line for the log, when the state of the link has changed.
    std::function<void(const std::string&)> log;
  };

  BusLink(std::string name, Hooks hooks);
  BusLink(const BusLink&) = delete;
  BusLink& operator=(const BusLink&) = delete;

  /// Needs the program's event loop object; raises nothing.
  void Start();
  /// Leaves the bus when it has taken what it was sent, in 100 ms at the latest. No further calls are taken.
  void Stop();

  /// The connection to send on, null while there is none.
  sd_bus* Bus() const { return bus_.get(); }
  /// True while the bus does not take what it is sent. The sender then keeps the state instead of messages, so
  /// that a bus that hangs never costs memory or time, and is asked to flush when the bus takes messages again.
  bool Congested();
  /// Has the owner flush at the end of this round of messages, or as soon as the bus takes messages again.
  void RequestFlush() { flushRequested_ = true; }
  /// To be called when something was sent: the link goes on with what the bus did not take at once.
  void Sent();

 private:
  enum class State { Unknown, NoBus, NameTaken, Owner };
  struct CloseBus {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  };

  std::uint64_t Waiting() const;  ///< messages that the bus has not taken
  void SendWhatWaits();
  void Connect();
  int Open();
  void Close();
  void Lose(int error);
  void Process();
  /// True while so much waits to be sent that no further calls are taken. Never before the connection is set up or
  /// after it has failed, when there is something to be read that is no call.
  bool HoldsCallsBack();
  /// Has the event loop call `Process` when the connection next has something to do.
  void Rearm();
  void Enter(State state, const std::string& text);

  /// Answers a call with names so long that no object of ours can be meant. sd-bus would quote them in its answer,
  /// however long they are, and look for every part of a path.
  static int RefuseLongNames(sd_bus_message* call, void* nothing, sd_bus_error* error);
  static int OnNameAnswer(sd_bus_message* answer, void* link, sd_bus_error* error);
  static int OnNameAcquired(sd_bus_message* signal, void* link, sd_bus_error* error);

  std::string name_;
  Hooks hooks_;
  std::unique_ptr<sd_bus, CloseBus> bus_;
  QSocketNotifier readable_{QSocketNotifier::Read};
  QSocketNotifier writable_{QSocketNotifier::Write};
  QTimer retry_;
  QTimer due_;  ///< when the connection asked to be served without an event
  State state_ = State::Unknown;
  bool congested_ = false;
  bool flushRequested_ = false;
};
