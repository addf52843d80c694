#pragma once

#include <QDialog>

class QLabel;
class VirtualTerminal;

/// The virtual terminal's window: the keypad of a terminal on the network, worked with the mouse or by the keyboard.
class VANTOR : public QDialog {
 public:
  explicit VANTOR(VirtualTerminal& terminal);

  /// Takes over the channel that it stands for.
  void Fill();

 protected:
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent*) override {}  // Esc is a key of the terminal

 private:
  QWidget* MakePicture();
  QWidget* MakeNodes();
  QWidget* MakeKeys();
  void FocusPicture();

  VirtualTerminal& terminal_;
  QWidget* Picture1_ = nullptr;
  QLabel* node_ = nullptr;
};
