#pragma once

#include <QEventLoop>
#include <QMessageBox>
#include <QString>
#include <deque>
#include <memory>
#include <optional>
#include <string_view>

class RunTimeError;

/// Message boxes over the program's windows. Whoever asks for one goes on at once: the scan does not wait for
/// somebody to read it. One box stands at a time and lets nothing else be clicked; one that is asked for meanwhile
/// waits its turn. A box that says the same as the one that stands or waits is not asked for again, and of many
/// waiting ones the newest are dropped.
class MessageBoxes {
 public:
  enum class Icon { Critical, Exclamation, None };

  MessageBoxes() = default;
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;

  /// `detail` stands under the text, such as the device that it is about.
  void Show(std::string_view caption, std::string_view text, std::string_view detail = {}, Icon icon = Icon::Critical);
  /// The same, and holds the caller in a message loop of its own until no box stands or waits any more.
  void ShowUntilRead(std::string_view caption, std::string_view text);
  /// A box with the buttons Abort, Retry and Ignore, whose caller is held until one is pressed: 3, 4 or 5. The end of
  /// the program answers Ignore.
  int Ask(std::string_view caption, std::string_view text);
  /// End of the program: the box that stands is closed and the waiting ones are given up. What is asked for from now on
  /// waits for `ShowLast`.
  void DismissAll();
  /// Shows what was asked for since `DismissAll`, and holds the caller until it has been read.
  void ShowLast();

 private:
  struct Box {
    QString caption;
    QString text;
    QString detail;
    Icon icon;
    bool operator==(const Box&) const = default;
  };

  void ShowNext();
  void HoldUntilRead();
  void PutUp(const Box& box);

  std::optional<Box> shown_;
  std::deque<Box> waiting_;
  std::unique_ptr<QMessageBox> standing_;  ///< the window of `shown_`
  QMessageBox* asking_ = nullptr;          ///< box of a caller that is held for an answer
  QEventLoop* held_ = nullptr;             ///< loop of a caller that is held
  bool ended_ = false;
};

/// Shows the error box with an error's number and description; kept for tests of the box.
void mb(MessageBoxes& boxes, const RunTimeError& lastError);
