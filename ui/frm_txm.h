#pragma once

#include <QLabel>
#include <QPushButton>
#include <QRegion>
#include <QWidget>
#include <array>
#include <memory>
#include <vector>

#include "core/forms.h"
#include "core/tray.h"
#include "diagnostics/cgdi.h"
#include "diagnostics/panel.h"
#include "ui/qt_canvas.h"
#include "ui/tray_icon.h"

class Dialogs;
struct Engine;

/// The main window: a frameless panel with one row a channel, drawn cell by cell over a picture, and its buttons.
/// It decides nothing: buttons and keys call the rooms, and the rooms draw through it.
class frmTXM : public QWidget, public MainForm, private TrayArea {
  Q_OBJECT

 public:
  explicit frmTXM(Dialogs& dialogs);
  ~frmTXM() override;

  /// The running system and what draws its cells; must come before the window is shown, and outlive it.
  void Use(Engine& engine);
  QtCanvas& Surface() { return canvas_; }

  void Show() override;
  void Hide() override;
  void ApplyLayout(int screenWidth) override;
  void SetRevision(std::string_view text) override;
  void ShowDebugLabel(bool visible) override;
  void EnablePutInTray(bool enabled) override;
  void BusyPointer(bool busy) override;
  void PutInTray() override;
  void SetTrayPicture(TrayPicture picture) override;
  void DrawItem(int ch, int item) override;
  void ReleaseDrawing() override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void MakeButtons();
  void PlaceControls();
  void DrawPicture();
  void EnableButtons();
  void Press(PanelButton button, int row);
  void TellOfMissingSetup(int row);
  QPushButton& Button(PanelButton button, int row);

  void AddIcon() override;
  void RemoveIcon() override;
  void Animate(bool toTray) override;
  void HideWindow() override;
  void ShowWindow() override;

  Dialogs& dialogs_;
  Engine* engine_ = nullptr;
  QtCanvas canvas_;
  std::unique_ptr<CGDI> cells_;
  TrayIcon tray_;
  const ScreenLayout* layout_;
  QRegion ownUpdates_;  ///< parts that copies of cells have changed and that are not painted yet
  std::array<std::vector<QPushButton*>, kPanelButtons> buttons_;
  QLabel* lRevision_;
  QLabel* lDebugMode_;
  QLabel* lfx_;
  QLabel* lfy_;
  bool loaded_ = false;
  bool toldOfMissingTray_ = false;
};
