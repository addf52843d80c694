#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

/// Speaks sentences through the machine's speech service. Connecting to the service, which may have to be started
/// first, and every exchange with it are done by a thread of its own, so that nothing here ever waits.
///
/// Sentences follow one another at the pace at which they are spoken. A sentence that already waits or is being
/// spoken is not taken again, and of many waiting ones the newest are dropped: a fault that comes with every tick
/// is heard once, and not for the rest of the day.
///
/// The program has to ignore SIGPIPE: a service that breaks off would end it.
class Speech {
 public:
  /// Told why sentences cannot be spoken: once, and again only after some could be. Called on the speech thread.
  using FaultHandler = std::function<void(const std::string& why)>;

  explicit Speech(FaultHandler onFault);
  Speech(const Speech&) = delete;
  Speech& operator=(const Speech&) = delete;
  /// What still waits is not spoken. Takes a second at most, even if the service hangs.
  ~Speech();

  /// Connects, so that a missing service is known from the start.
  void Start();
  /// Hands a sentence over and returns at once; starts if that has not been done.
  void Speak(std::string_view sentence);

 private:
  struct Desk;

  std::shared_ptr<Desk> desk_;  ///< shared with the thread, which outlives this object if the service hangs
  FaultHandler onFault_;
  std::thread thread_;
};
