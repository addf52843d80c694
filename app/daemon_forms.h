#pragma once

#include "app/headless_forms.h"

struct Engine;
class TextScreen;

/// Start-up form of a program that nobody sits in front of: its menu starts the system at once.
class DaemonStartupForm : public HeadlessStartupForm {
 public:
  /// To be called before anything else.
  void Attach(Engine& engine) { engine_ = &engine; }
  void ShowMenu(int screenWidth) override;

 private:
  Engine* engine_ = nullptr;
};

/// Main form of a program without a window. A terminal, if there is one, shows its weigh screen; it has no tray,
/// so that going there does nothing.
class DaemonMainForm : public HeadlessMainForm {
 public:
  /// To be called before anything else.
  void Attach(Engine& engine) { engine_ = &engine; }
  /// Null for none.
  void SetScreen(TextScreen* screen) { screen_ = screen; }

  void Show() override;
  void Hide() override;
  void SetRevision(std::string_view text) override;
  void DrawItem(int ch, int item) override;

 private:
  Engine* engine_ = nullptr;
  TextScreen* screen_ = nullptr;
  bool loaded_ = false;
};
