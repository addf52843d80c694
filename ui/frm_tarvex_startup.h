#pragma once

#include <QWidget>
#include <functional>

#include "core/forms.h"

class FlatButton;
class QLabel;
struct Engine;

/// The start-up form, which is also the closing menu of a stopped system.
class frmTarvexStartup : public QWidget, public StartupForm {
 public:
  frmTarvexStartup();

  /// The running system, and what unloads the other forms; must come before the form is shown.
  void Use(Engine& engine, std::function<void()> unloadForms);

  void SetRevision(std::string_view text) override;
  void ShowLogo(int screenWidth) override;
  void Show() override;
  void Hide() override { hide(); }
  void ShowMenu(int screenWidth) override;
  void EnableContinue(bool enabled) override;
  void FocusContinue() override;
  void BusyPointer(bool busy) override;
  void Unload() override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  /// The form as stored shows the pictures of the large display.
  void Fit(int screenWidth);
  void End();

  Engine* engine_ = nullptr;
  std::function<void()> unloadForms_;
  bool large_ = true;
  bool menuVisible_ = false;
  QLabel* lRevision_;
  FlatButton *cmdContinue_, *cmdEnd_, *cmdExit_;
};
