#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/operator_notice.h"

/// An operator who keeps what he is told.
class MemoryNotice : public OperatorNotice {
 public:
  struct Box {
    std::string caption;
    std::string text;
  };
  std::vector<Box> boxes;
  std::vector<std::string> spoken;
  int choice = 5;                         ///< what is answered to Abort, Retry, Ignore
  std::function<void(const Box&)> onBox;  ///< what happens while a box stands

  void MessageBox(std::string_view caption, std::string_view text) override {
    const Box box{std::string(caption), std::string(text)};
    boxes.push_back(box);
    if (onBox) onBox(box);
  }
  int AbortRetryIgnore(std::string_view caption, std::string_view text) override {
    MessageBox(caption, text);
    return choice;
  }
  void Speak(std::string_view sentence) override { spoken.emplace_back(sentence); }
};
