#pragma once

#include <QString>
#include <deque>
#include <optional>
#include <string_view>

class QMessageBox;
class RunTimeError;

/// Message boxes over the program's windows. A box holds its caller in a message loop of its own, in which timers
/// and windows go on. One box stands at a time: one that is asked for meanwhile, from one of those timers, waits its
/// turn while its caller goes on, so that a fault of every tick does not bury the screen. A box that says the same
/// as the one that stands or waits is not asked for again, and of many waiting ones the newest are dropped.
class MessageBoxes {
 public:
  enum class Icon { Critical, Exclamation };

  /// `detail` stands under the text, such as the device that it is about.
  void Show(std::string_view caption, std::string_view text, std::string_view detail = {}, Icon icon = Icon::Critical);
  /// End of the program: the box that stands is closed, the waiting ones are given up, and no more are shown.
  void DismissAll();

 private:
  struct Box {
    QString caption;
    QString text;
    QString detail;
    Icon icon;
    bool operator==(const Box&) const = default;
  };

  /// False if the program ended while the box stood.
  bool Hold(const Box& box);

  std::optional<Box> shown_;
  std::deque<Box> waiting_;
  QMessageBox* standing_ = nullptr;
  bool ended_ = false;
};

/// Shows the error box with an error's number and description; kept for tests of the box.
void mb(MessageBoxes& boxes, const RunTimeError& lastError);
