#include "platform/speech/speech.h"

#include <libspeechd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <mutex>

#include "platform/qt/text.h"

using namespace std::chrono_literals;

namespace {

constexpr std::size_t kMostWaiting = 16;
constexpr std::chrono::milliseconds kTimePerCharacter = 80ms;  ///< of an ordinary voice
constexpr std::chrono::milliseconds kRestAfterFault = 30s;
constexpr auto kPatienceAtEnd = 1s;

/// The connection to the speech service. Every call may take its time.
class Service {
 public:
  Service() = default;
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;
  ~Service() { Disconnect(); }

  /// Empty, or why there is no connection.
  std::string Connect() {
    if (connection_) return {};
    char* error = nullptr;
    connection_ = spd_open2("tarvex", "main", nullptr, SPD_MODE_SINGLE, nullptr, 1, &error);
    std::string why;
    if (!connection_) why = error ? error : "no reply";
    std::free(error);
    return why;
  }

  /// A service that has gone away since the last sentence is connected, and if need be started, once more.
  std::string Say(const std::string& sentence) {
    for (int attempt = 0; attempt < 2; ++attempt) {
      if (std::string why = Connect(); !why.empty()) return why;
      if (spd_say(connection_, SPD_MESSAGE, sentence.c_str()) >= 0) return {};
      Disconnect();
    }
    return "The speech service does not take the sentence";
  }

 private:
  void Disconnect() {
    if (connection_) spd_close(connection_);
    connection_ = nullptr;
  }

  SPDConnection* connection_ = nullptr;
};

std::string OnOneLine(std::string text) {
  std::ranges::replace(text, '\n', ' ');
  return text;
}

}  // namespace

/// Where the program puts sentences down and the thread takes them up.
struct Speech::Desk {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::string> waiting;
  std::string speaking;
  bool ended = false;     ///< the program wants no more
  bool finished = false;  ///< the thread is through
  bool failing = false;   ///< the program knows that there is no speech

  void Put(std::string sentence) {
    const std::lock_guard lock(mutex);
    if (sentence == speaking || std::ranges::find(waiting, sentence) != waiting.end()) return;
    if (waiting.size() >= kMostWaiting) return;
    waiting.push_back(std::move(sentence));
    changed.notify_all();
  }

  /// Waits for the next sentence; false at the end.
  bool Take(std::string& sentence) {
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return ended || !waiting.empty(); });
    if (ended) return false;
    sentence = speaking = waiting.front();
    waiting.pop_front();
    return true;
  }

  /// The sentence taken last keeps the desk for so long.
  void Rest(std::chrono::milliseconds time) {
    std::unique_lock lock(mutex);
    changed.wait_for(lock, time, [&] { return ended; });
    speaking.clear();
  }

  /// Tells a program that still runs, if it does not know yet.
  void Report(const FaultHandler& onFault, const std::string& why) {
    const std::lock_guard lock(mutex);
    if (!why.empty() && !failing && !ended) onFault("No speech: " + OnOneLine(why));
    failing = !why.empty();
  }

  void Finish() {
    const std::lock_guard lock(mutex);
    finished = true;
    changed.notify_all();
  }

  /// Ends the thread; false if it hangs in a call of the service.
  bool End() {
    std::unique_lock lock(mutex);
    ended = true;
    changed.notify_all();
    return changed.wait_for(lock, kPatienceAtEnd, [&] { return finished; });
  }

  void Serve(const FaultHandler& onFault) {
    Service service;
    Report(onFault, service.Connect());
    for (std::string sentence; Take(sentence);) {
      const std::string why = service.Say(sentence);
      Report(onFault, why);
      Rest(why.empty() ? kTimePerCharacter * static_cast<int>(sentence.size()) : kRestAfterFault);
    }
  }
};

Speech::Speech(FaultHandler onFault) : desk_(std::make_shared<Desk>()), onFault_(std::move(onFault)) {}

Speech::~Speech() {
  if (!thread_.joinable()) return;
  if (desk_->End()) {
    thread_.join();
  } else {
    thread_.detach();
  }
}

void Speech::Start() {
  if (thread_.joinable()) return;
  thread_ = std::thread([desk = desk_, onFault = onFault_] {
    desk->Serve(onFault);
    desk->Finish();
  });
}

void Speech::Speak(std::string_view sentence) {
  Start();
  desk_->Put(ToBytes(ToText(sentence)));
}
