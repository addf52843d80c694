#pragma once

#include <QApplication>

#include "platform/operator_notice.h"
#include "platform/qt/message_boxes.h"
#include "platform/speech/speech.h"

/// The operator at a desktop: message boxes on the screen, sentences through the speech service.
class DesktopNotice : public OperatorNotice {
 public:
  DesktopNotice(MessageBoxes& boxes, Speech& speech) : boxes_(boxes), speech_(speech) {}

  void MessageBox(std::string_view caption, std::string_view text) override { boxes_.Show(caption, text); }
  void MessageBoxWithDetail(std::string_view caption, std::string_view text, std::string_view detail) override {
    boxes_.Show(caption, text, detail);
  }
  void MessageBoxUntilRead(std::string_view caption, std::string_view text) override {
    boxes_.ShowUntilRead(caption, text);
  }
  void PlainMessageBox(std::string_view caption, std::string_view text) override {
    boxes_.Show(caption, text, {}, MessageBoxes::Icon::None);
  }
  int AbortRetryIgnore(std::string_view caption, std::string_view text) override { return boxes_.Ask(caption, text); }
  void Beep() override { QApplication::beep(); }
  void Speak(std::string_view sentence) override { speech_.Speak(sentence); }

 private:
  MessageBoxes& boxes_;
  Speech& speech_;
};
