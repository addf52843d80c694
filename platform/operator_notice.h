#pragma once

#include <string>
#include <string_view>

/// Ways of telling the operator about serious conditions.
class OperatorNotice {
 public:
  virtual ~OperatorNotice() = default;
  /// Critical message box. The caller goes on at once: a box may not hold the scan, or all channels would stand still
  /// until somebody reads it. A box asked for while another one stands waits its turn; a program without a window
  /// writes a line.
  virtual void MessageBox(std::string_view caption, std::string_view text) = 0;
  /// The same with what a person needs to find the cause, such as the device; shown where there is room for it.
  virtual void MessageBoxWithDetail(std::string_view caption, std::string_view text, std::string_view) {
    MessageBox(caption, text);
  }
  /// The same, but the caller is held until it has been read; for what ends the program at its start.
  virtual void MessageBoxUntilRead(std::string_view caption, std::string_view text) { MessageBox(caption, text); }
  /// A box without an icon, for who looks for faults of the program itself.
  virtual void PlainMessageBox(std::string_view caption, std::string_view text) { MessageBox(caption, text); }
  /// A box that asks what to do about a failure, and holds the caller until it is answered: 3 Abort, 4 Retry, 5 Ignore.
  virtual int AbortRetryIgnore(std::string_view caption, std::string_view text) {
    MessageBox(caption, text);
    return 5;
  }
  /// A short sound, where there is one.
  virtual void Beep() {}
  /// Hands a sentence to the speech engine and returns at once.
  virtual void Speak(std::string_view sentence) = 0;
};
