#pragma once

#include <systemd/sd-bus.h>

#include <utility>

#include "platform/dbus/setup_calls.h"

/// `/org/tarvex/Setup` on the bus: the methods and properties behind `SetupCalls`. It announces nothing; its
/// properties are read when they are needed.
class SetupFace {
 public:
  explicit SetupFace(SetupCalls calls) : calls_(std::move(calls)) {}

  /// Puts the object on a new connection. Negative errno on failure.
  int Register(sd_bus* bus);

  const SetupCalls& Calls() const { return calls_; }

 private:
  SetupCalls calls_;
};
