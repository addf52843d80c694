#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "app/log_notice.h"
#include "platform/posix/descriptor.h"
#include "tests/support/test_plant.h"

namespace {

/// A pipe whose reader is the test.
class ReaderPipe {
 public:
  ReaderPipe() {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    readEnd_ = Descriptor(ends[0]);
    writeEnd_ = Descriptor(ends[1]);
    fcntl(readEnd_.Get(), F_SETFL, O_NONBLOCK);
  }
  int WriteEnd() const { return writeEnd_.Get(); }
  std::string Read() {
    std::string text;
    char buffer[4096];
    for (ssize_t size = 0; (size = read(readEnd_.Get(), buffer, sizeof buffer)) > 0;) {
      text.append(buffer, static_cast<std::size_t>(size));
    }
    return text;
  }

 private:
  Descriptor readEnd_, writeEnd_;
};

TEST(LineOutputTest, AReaderThatStopsReadingHoldsNobodyUpAndIsToldWhatItMissed) {
  ReaderPipe pipe;
  LineOutput output(pipe.WriteEnd());
  const std::string line(999, 'x');
  for (int i = 0; i < 1000; ++i) output.Write(line + "\n");  // far beyond what a pipe holds
  const std::string first = pipe.Read();
  EXPECT_EQ(first.size() % 1000, 0U) << "no line may be cut";
  output.Write("now\n");
  const std::size_t missed = 1000 - first.size() / 1000;
  EXPECT_GT(missed, 0U);
  EXPECT_EQ(pipe.Read(), "(" + std::to_string(missed) + " outputs were left out, nobody read them)\nnow\n");
}

TEST(LogNoticeTest, WhileAScreenStandsMessagesGoThereAndAreWrittenWhenItIsGone) {
  ReaderPipe pipe;
  HandTurnedSystem system{"2026-01-02 03:04:05"};
  LogNotice notice(system, pipe.WriteEnd());
  std::vector<std::string> shown;
  notice.ScreenStands([&](std::string_view text) { shown.emplace_back(text); });
  for (int i = 1; i <= 250; ++i) notice.Write("message " + std::to_string(i));
  EXPECT_EQ(shown.size(), 250U);
  EXPECT_EQ(pipe.Read(), "");
  notice.ScreenGone();
  const std::string written = pipe.Read();
  EXPECT_TRUE(written.starts_with("(50 older messages)\n2026-01-02 03:04:05  message 51\n")) << written.substr(0, 80);
  EXPECT_TRUE(written.ends_with("message 250\n"));
}

}  // namespace
