#pragma once

#include "core/forms.h"

/// Forms of a program without a window: every step is taken, nothing is seen.
class HeadlessStartupForm : public StartupForm {
 public:
  void SetRevision(std::string_view) override {}
  void ShowLogo(int) override {}
  void Show() override {}
  void Hide() override {}
  void ShowMenu(int) override {}
  void EnableContinue(bool) override {}
  void FocusContinue() override {}
  void BusyPointer(bool) override {}
  void Unload() override {}
};

class HeadlessMainForm : public MainForm {
 public:
  void Show() override {}
  void Hide() override {}
  void ApplyLayout(int) override {}
  void SetRevision(std::string_view) override {}
  void ShowDebugLabel(bool) override {}
  void BusyPointer(bool) override {}
  void Enable(bool) override {}
  void PutInTray() override {}
  void SetTrayPicture(TrayPicture) override {}
  void DrawItem(int, int) override {}
  void ReleaseDrawing() override {}
};

class HeadlessDialogs : public ScanDialogs {
 public:
  void ShowDetail(int, std::string_view) override {}
  void ShowRate(int, int) override {}
};
