#include "platform/speech/speech.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>

#include "tests/platform/speech/speech_service.h"

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using Clock = std::chrono::steady_clock;

/// Collects what the speech thread complains of.
class Complaints {
 public:
  Speech::FaultHandler Handler() {
    return [this](const std::string& why) {
      const std::lock_guard lock(mutex_);
      texts_.push_back(why);
      changed_.notify_all();
    };
  }

  std::vector<std::string> AtLeast(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, 10s, [&] { return texts_.size() >= count; });
    return texts_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> texts_;
};

TEST(SpeechTest, SentencesAreSpokenInTheirOrderAndInAnyEncoding) {
  SpeechService service;
  Complaints complaints;
  Speech speech(complaints.Handler());
  speech.Speak("Silo");
  speech.Speak(
      "W\xE4"
      "ge");
  speech.Speak(
      "W\xC3\xA4"
      "gt");
  EXPECT_THAT(service.Sentences(3), ElementsAre("Silo", "W\xC3\xA4ge", "W\xC3\xA4gt"));
  EXPECT_TRUE(complaints.AtLeast(0).empty());
}

TEST(SpeechTest, AFaultThatComesWithEveryTickIsHeardOnce) {
  SpeechService service;
  Speech speech([](const std::string&) {});
  for (int tick = 0; tick < 1000; ++tick) speech.Speak("Channel 3 does not answer");
  service.Sentences(1);
  speech.Speak("Channel 3 does not answer");
  speech.Speak("End");
  EXPECT_THAT(service.Sentences(2), ElementsAre("Channel 3 does not answer", "End"));
}

TEST(SpeechTest, OfManyWaitingSentencesTheNewestAreDropped) {
  SpeechService service;
  Speech speech([](const std::string&) {});
  speech.Start();
  for (int n = 10; n < 99; ++n) speech.Speak(std::to_string(n));
  service.Sentences(16);
  speech.Speak("End");
  std::vector<std::string> spoken;
  while (spoken.empty() || spoken.back() != "End") {
    const std::size_t before = spoken.size();
    spoken = service.Sentences(before + 1);
    ASSERT_GT(spoken.size(), before);
  }
  EXPECT_EQ(spoken.front(), "10");
  EXPECT_THAT(spoken.size(), testing::AnyOf(17U, 18U)) << "one may have been taken before the others came";
}

TEST(SpeechTest, AServiceThatHasGoneAwayIsFoundAgain) {
  SpeechService service;
  Complaints complaints;
  Speech speech(complaints.Handler());
  speech.Speak("A");
  service.Sentences(1);
  service.BreakOff();
  speech.Speak("B");
  EXPECT_THAT(service.Sentences(2), ElementsAre("A", "B"));
  EXPECT_TRUE(complaints.AtLeast(0).empty());
}

TEST(SpeechTest, AMachineWithoutASpeechServiceIsToldOfOnceAndNothingIsDelayed) {
  setenv("SPEECHD_ADDRESS", "unix_socket:/nowhere/speech/socket", 1);
  Complaints complaints;
  const auto start = Clock::now();
  {
    Speech speech(complaints.Handler());
    speech.Start();
    for (int n = 0; n < 1000; ++n) speech.Speak(std::to_string(n));
    EXPECT_LT(Clock::now() - start, 200ms);
    EXPECT_EQ(complaints.AtLeast(1).size(), 1U);
  }
  EXPECT_EQ(complaints.AtLeast(1).size(), 1U);
}

TEST(SpeechTest, AServiceThatHangsDelaysNeitherASentenceNorTheEnd) {
  SpeechService service(true);
  const auto start = Clock::now();
  {
    Speech speech([](const std::string&) {});
    speech.Speak("Silo");
    EXPECT_LT(Clock::now() - start, 200ms);
  }
  EXPECT_LT(Clock::now() - start, 3s);
}

}  // namespace
