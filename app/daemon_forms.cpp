#include "app/daemon_forms.h"

#include "app/text_screen/text_screen.h"
#include "core/channel_state.h"
#include "core/engine.h"
#include "core/startup.h"

void DaemonStartupForm::ShowMenu(int) {
  const Tables& tables = engine_->tables;
  const bool startsByItself = tables.StartMinimized == True && tables.FirstScanPending == True;
  if (!startsByItself) LaunchMainScreen(*engine_);
}

void DaemonMainForm::Show() {
  if (!loaded_) {
    loaded_ = true;
    LoadMainForm(*engine_);
  }
  if (screen_ != nullptr) {
    engine_->tables.ScreenPainted = True;
    ForceRepaint(engine_->tables);
  }
  ActivateMainForm(*engine_);
}

void DaemonMainForm::Hide() { engine_->tables.ScreenPainted = False; }

void DaemonMainForm::SetRevision(std::string_view text) {
  if (screen_ != nullptr) screen_->SetRevision(text);
}

void DaemonMainForm::DrawItem(int ch, int item) {
  if (screen_ != nullptr) screen_->DrawItem(ch, item);
}
