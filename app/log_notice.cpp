#include "app/log_notice.h"

#include <utility>

#include "app/text_screen/one_line.h"

namespace {

constexpr std::size_t kLinesKept = 200;

}  // namespace

void LogNotice::MessageBox(std::string_view caption, std::string_view text) {
  Write(OnOneLine(caption) + ": " + OnOneLine(text));
}

void LogNotice::MessageBoxWithDetail(std::string_view caption, std::string_view text, std::string_view detail) {
  MessageBox(caption, std::string(text) + "\r\n" + std::string(detail));
}

void LogNotice::Speak(std::string_view sentence) {
  if (voice_) return voice_(sentence);
  Write("Spoken: " + OnOneLine(sentence));
}

void LogNotice::Write(std::string_view text) {
  std::string line = system_.DateTimeText() + "  " + std::string(text) + "\n";
  if (!screen_) return output_.Write(line);
  screen_(text);
  kept_.push_back(std::move(line));
  if (kept_.size() <= kLinesKept) return;
  kept_.pop_front();
  ++dropped_;
}

void LogNotice::ScreenGone() {
  screen_ = nullptr;
  if (dropped_ > 0) output_.Write("(" + std::to_string(std::exchange(dropped_, 0)) + " older messages)\n");
  for (const std::string& line : std::exchange(kept_, {})) output_.Write(line);
}
