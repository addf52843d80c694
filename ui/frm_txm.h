#pragma once

#include <QTimer>
#include <QWidget>
#include <array>
#include <functional>
#include <optional>

#include "core/forms.h"
#include "core/tables.h"
#include "core/tray.h"
#include "diagnostics/cgdi.h"
#include "diagnostics/panel.h"
#include "ui/tray_icon.h"

class Dialogs;
class FlatButton;
class QtCanvas;
class StatusLine;
class WeighScreen;
struct Engine;

/// The main window: the weigh screen with its buttons, on the desktop or behind its icon in the notification area.
class frmTXM : public QWidget, public MainForm, private TrayArea {
 public:
  frmTXM();
  ~frmTXM() override;

  /// The running system and the small windows; must come before the form is shown, and outlive it.
  void Use(Engine& engine, Dialogs& dialogs);
  /// Called by the setup button of a row.
  void OnSetup(std::function<void(int ch)> handler) { onSetup_ = std::move(handler); }
  /// What the rows are drawn on.
  const QtCanvas& Surface() const;
  /// Unload event, if the form was ever loaded.
  void Unload();

  void Show() override;
  void Hide() override;
  void ApplyLayout(int screenWidth) override;
  void SetRevision(std::string_view text) override;
  void ShowDebugLabel(bool visible) override;
  void BusyPointer(bool busy) override;
  void Enable(bool enabled) override;
  void PutInTray() override;
  void SetTrayPicture(TrayPicture picture) override { tray_.SetPicture(picture); }
  void DrawItem(int ch, int item) override { gdi_->DrawItem(ch, item); }
  void ReleaseDrawing() override { gdi_->Release(); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  static constexpr int kSingleButtons = 4;

  void AddIcon() override;
  void RemoveIcon() override;
  void Animate(bool toTray) override;
  void HideWindow() override;
  void ShowWindow() override;

  void MakeButtons();
  FlatButton* ButtonOf(PanelButton button, int row) const;
  template <typename Action>
  void ForEachButton(const Action& action) const;
  void Press(PanelButton button, int row);
  void TakeDialog(bool open);
  void EnableButtons();
  void Fit();
  void PlaceStatusLine();
  void RedrawForScale();
  void KeepReachable();
  void RunToTray(int longestWaitMs);

  Engine* engine_ = nullptr;
  Dialogs* dialogs_ = nullptr;
  std::optional<CGDI> gdi_;
  const ScreenLayout* layout_ = nullptr;
  bool loaded_ = false;
  bool dialogOpen_ = false;
  bool toldOfMissingTray_ = false;
  bool comingFromTray_ = false;  ///< the frame runs, and the window is shown when it has arrived

  WeighScreen* screen_;
  StatusLine* statusLine_;
  std::array<FlatButton*, kSingleButtons> single_{};
  std::array<FlatButton*, kChannels> cmdDetail_{}, cmdSetup_{};
  QWidget* focusBeforeDialog_ = nullptr;
  std::function<void(int)> onSetup_;
  TrayIcon tray_;
  QTimer trayWatch_;  ///< runs while the window is hidden behind the icon
};
