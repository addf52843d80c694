#pragma once

#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include "core/forms.h"

struct Engine;

/// The start-up form: the logo, then the menu from which the system is started, and to which it returns when the
/// main window is closed.
class frmTarvexStartup : public QWidget, public StartupForm {
  Q_OBJECT

 public:
  frmTarvexStartup();

  /// The running system; must come before the form is shown, and outlive it.
  void Use(Engine& engine) { engine_ = &engine; }

  void SetRevision(std::string_view text) override;
  void ShowLogo(int screenWidth) override;
  void Show() override;
  void Hide() override;
  void ShowMenu(int screenWidth) override;
  void EnableContinue(bool enabled) override;
  void FocusContinue() override;
  void BusyPointer(bool busy) override;
  void Unload() override;

 signals:
  /// All forms are to be unloaded: the program ends.
  void Unloaded();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  QPushButton* MakeButton(const char* name, const char* caption, const char* toolTip, int top);
  void EndProgram();

  Engine* engine_ = nullptr;
  QLabel* lRevision_;
  QPushButton* cmdContinue_;
  QPushButton* cmdEnd_;
  QPushButton* cmdExit_;
  bool logo_ = false;  ///< the display is one that the logo fits
};
