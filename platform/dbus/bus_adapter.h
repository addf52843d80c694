#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/dbus/setup_calls.h"

class Publication;

/// The automation objects and the item links on the session bus, as `org.tarvex.Manager`. Lives in the program's
/// event loop; nothing in it waits, whatever the bus and its clients do.
class BusAdapter {
 public:
  /// `log` gets one line when the state of the bus changes: found, not there, name owned by another program.
  BusAdapter(Publication& publication, std::function<void(const std::string&)> log);
  ~BusAdapter();
  BusAdapter(const BusAdapter&) = delete;
  BusAdapter& operator=(const BusAdapter&) = delete;

  /// Lets programs that change settings files make `calls`; without them there is no such object. Before `Start`.
  void OfferSetup(SetupCalls calls);

  /// Connects to the session bus, now or as soon as there is one, and again after it went away.
  void Start();
  /// Leaves the bus.
  void Stop();

 private:
  class Faces;
  std::unique_ptr<Faces> faces_;
};
