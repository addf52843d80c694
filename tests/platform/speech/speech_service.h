#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// A speech service on a socket of its own, which the client library finds through the environment. It answers the
/// protocol's commands and remembers what it is to speak; made mute, it takes commands and never answers.
class SpeechService {
 public:
  explicit SpeechService(bool mute = false);
  ~SpeechService();

  /// Waits until so many sentences have come, ten seconds at most.
  std::vector<std::string> Sentences(std::size_t count);
  /// Breaks off all connections; the next one is taken again.
  void BreakOff();

 private:
  void Serve();
  void Converse(int connection);
  bool Send(int connection, const std::string& reply) const;

  const bool mute_;
  std::filesystem::path folder_;
  int listener_ = -1;
  std::atomic<bool> ended_ = false;
  std::atomic<int> connection_ = -1;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> sentences_;
  std::thread thread_;
};
