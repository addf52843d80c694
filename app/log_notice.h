#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "app/line_output.h"
#include "platform/operator_notice.h"
#include "platform/system.h"

/// Message boxes and spoken sentences of a program without a window: lines with date and time on standard error.
/// While a screen stands on the terminal they go there, and to standard error when it is gone.
class LogNotice : public OperatorNotice {
 public:
  LogNotice(System& system, int standardError) : system_(system), output_(standardError) {}

  void MessageBox(std::string_view caption, std::string_view text) override;
  void MessageBoxWithDetail(std::string_view caption, std::string_view text, std::string_view detail) override;
  void Speak(std::string_view sentence) override;
  /// Has sentences spoken instead of written.
  void SpeakWith(std::function<void(std::string_view)> voice) { voice_ = std::move(voice); }
  /// A line that is neither.
  void Write(std::string_view text);

  /// From now on `screen` gets each text, without date and time.
  void ScreenStands(std::function<void(std::string_view)> screen) { screen_ = std::move(screen); }
  /// The screen is gone: writes what it was shown, the newest of it if there was very much.
  void ScreenGone();

 private:
  System& system_;
  LineOutput output_;
  std::function<void(std::string_view)> voice_;
  std::function<void(std::string_view)> screen_;
  std::deque<std::string> kept_;
  std::size_t dropped_ = 0;
};
