#pragma once

#include <systemd/sd-bus.h>

#include <exception>
#include <initializer_list>
#include <span>
#include <string>

#include "platform/dbus/bus_link.h"
#include "platform/run_time_error.h"

/// The face of one object on the bus. Changes are marked and announced together, in one `PropertiesChanged`.
/// While the bus does not take it the marks stay, so that it goes out later with the values of then.
class BusFace {
 public:
  /// `properties` are names in the order of the bits in marks.
  BusFace(BusLink& link, std::string path, const char* interface, std::span<const char* const> properties)
      : link_(link), path_(std::move(path)), interface_(interface), properties_(properties) {}
  BusFace(const BusFace&) = delete;
  BusFace& operator=(const BusFace&) = delete;

  const std::string& Path() const { return path_; }
  /// Puts the object on a new connection. `self` is what the functions of `table` get. Negative errno on failure.
  int Register(sd_bus* bus, const sd_bus_vtable* table, void* self);

  /// Marks properties as changed, bit n for property n.
  void Mark(unsigned properties) { marked_ |= properties; }
  /// Marks properties that a client has changed; they are announced at the end of this round of messages.
  void MarkForLater(unsigned properties);
  /// Marks the signal `signal`, which follows the announcement. Signals held back by the bus become one.
  void MarkSignal(const char* signal) { signal_ = signal; }
  /// Sends what is marked.
  void Announce();

 private:
  BusLink& link_;
  std::string path_;
  const char* interface_;
  std::span<const char* const> properties_;
  unsigned marked_ = 0;
  const char* signal_ = nullptr;
};

/// Runs a step of a function that the bus calls; what it raises becomes the error that this one caller gets.
template <typename Step>
int AnswerFaults(sd_bus_error* error, const Step& step) {
  try {
    return step();
  } catch (const RunTimeError& fault) {
    const bool subscript = fault.Number() == ErrorNumber::SubscriptOutOfRange;
    return sd_bus_error_set(error, subscript ? "org.tarvex.Error.Subscript" : "org.tarvex.Error.Fault", fault.what());
  } catch (const std::exception& fault) {
    return sd_bus_error_set(error, SD_BUS_ERROR_FAILED, fault.what());
  }
}
