#pragma once

#include <string>
#include <string_view>

/// Ways of telling the operator about serious conditions.
class OperatorNotice {
 public:
  virtual ~OperatorNotice() = default;
  /// Critical message box. It holds the caller until it is dismissed; a box asked for while another one stands
  /// waits its turn instead, and a program without a window writes a log line: the caller goes on at once.
  virtual void MessageBox(std::string_view caption, std::string_view text) = 0;
  /// The same with what a person needs to find the cause, such as the device; shown where there is room for it.
  virtual void MessageBoxWithDetail(std::string_view caption, std::string_view text, std::string_view) {
    MessageBox(caption, text);
  }
  /// Hands a sentence to the speech engine and returns at once.
  virtual void Speak(std::string_view sentence) = 0;
};
