#include "platform/speech/speech.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <future>
#include <thread>
#include <utility>

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using Clock = std::chrono::steady_clock;

/// A speech service on a socket of its own, which the client library finds through the environment.
class SpeechService {
 public:
  SpeechService() {
    std::string pattern = std::filesystem::temp_directory_path() / "speechXXXXXX";
    folder_ = mkdtemp(pattern.data());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder_ / "socket";
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    listen(listener_, 1);
    setenv("SPEECHD_ADDRESS", ("unix_socket:" + path).c_str(), 1);
  }
  ~SpeechService() {
    close(listener_);
    std::filesystem::remove_all(folder_);
  }

  /// Takes one connection, answers its commands and breaks it off after `count` sentences, which are returned.
  std::vector<std::string> Hear(std::size_t count) const {
    const int connection = accept(listener_, nullptr, nullptr);
    std::vector<std::string> sentences;
    std::string buffer, sentence;
    bool speaking = false;
    for (char byte; sentences.size() < count && read(connection, &byte, 1) == 1;) {
      buffer += byte;
      if (!buffer.ends_with("\r\n")) continue;
      buffer.resize(buffer.size() - 2);
      const std::string line = std::exchange(buffer, {});
      std::string_view reply;
      if (!speaking) {
        speaking = line == "speak";
        reply = speaking ? "230 OK RECEIVING DATA\r\n" : "208 OK\r\n";
      } else if (line == ".") {
        speaking = false;
        sentences.push_back(std::exchange(sentence, {}));
        reply = "225-1\r\n225 OK MESSAGE QUEUED\r\n";
      } else {
        sentence += line;
      }
      send(connection, reply.data(), reply.size(), MSG_NOSIGNAL);
    }
    close(connection);
    return sentences;
  }

 private:
  std::filesystem::path folder_;
  const int listener_ = socket(AF_UNIX, SOCK_STREAM, 0);
};

TEST(SpeechTest, SentencesAreSpokenInTheirOrderARepeatedOneOnceAndAServiceThatHasGoneAwayIsFoundAgain) {
  std::signal(SIGPIPE, SIG_IGN);
  const SpeechService service;
  Speech speech([](const std::string& why) { ADD_FAILURE() << why; });
  auto heard = std::async(std::launch::async, [&] { return service.Hear(2); });
  for (int tick = 0; tick < 1000; ++tick)
    speech.Speak(
        "W\xE4"
        "ge 3");
  speech.Speak("Silo");
  EXPECT_THAT(heard.get(), ElementsAre("W\xC3\xA4ge 3", "Silo"));
  heard = std::async(std::launch::async, [&] { return service.Hear(1); });
  speech.Speak("End");
  EXPECT_THAT(heard.get(), ElementsAre("End"));
}

TEST(SpeechTest, AMachineWithoutASpeechServiceIsToldOfOnceAndNothingIsDelayed) {
  setenv("SPEECHD_ADDRESS", "unix_socket:/nowhere/speech/socket", 1);
  std::atomic<int> complaints = 0;
  const auto start = Clock::now();
  {
    Speech speech([&](const std::string&) { ++complaints; });
    for (int n = 0; n < 1000; ++n) speech.Speak(std::to_string(n));
    EXPECT_LT(Clock::now() - start, 200ms);
    while (complaints == 0 && Clock::now() - start < 10s) std::this_thread::yield();
  }
  EXPECT_EQ(complaints, 1);
}

TEST(SpeechTest, AServiceThatHangsDelaysNeitherASentenceNorTheEnd) {
  const SpeechService service;  // takes no connection
  const auto start = Clock::now();
  {
    Speech speech([](const std::string&) {});
    speech.Speak("Silo");
    EXPECT_LT(Clock::now() - start, 200ms);
  }
  EXPECT_LT(Clock::now() - start, 3s);
}

}  // namespace
