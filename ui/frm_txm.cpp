#include "ui/frm_txm.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QWindow>
#include <utility>

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/error_trap.h"
#include "core/shutdown.h"
#include "core/startup.h"
#include "platform/qt/on_display.h"
#include "platform/qt/text.h"
#include "ui/dialogs.h"
#include "ui/flat_button.h"
#include "ui/in_front.h"
#include "ui/logo.h"
#include "ui/magnification.h"
#include "ui/running_frame.h"
#include "ui/status_line.h"
#include "ui/weigh_screen.h"

namespace {

constexpr int kTrayWatchMs = 2000;
constexpr int kWaitForPlaceMs = 20;
constexpr int kLongestWaitForPlaceMs = 300;

/// Buttons that are there once, in their own order.
constexpr PanelButton kSingle[] = {PanelButton::Refresh, PanelButton::Help, PanelButton::PutInTray, PanelButton::End};

/// Both edges of a place in the layout, in pixels of the window.
QRect MagnifiedPlace(const CellPlace& place) {
  return {QPoint(Magnified(place.x), Magnified(place.y)),
          QPoint(Magnified(place.x + place.width) - 1, Magnified(place.y + place.height) - 1)};
}

}  // namespace

frmTXM::frmTXM()
    : screen_(new WeighScreen(this)),
      statusLine_(new StatusLine(this)),
      tray_({[this] { RestoreByMenu(*engine_, *this); }, [this] { RestoreByDoubleClick(*engine_, *this); }}) {
  setObjectName("frmTXM");
  setWindowTitle("Tarvex");
  setWindowIcon(TrayIconPicture(TrayPicture::iIdle));
  setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
  setAttribute(Qt::WA_QuitOnClose, false);
  setFocusPolicy(Qt::StrongFocus);
  MakeButtons();
  screen_->OnMouseMoved([this](QPoint place) { statusLine_->ShowMouse(place); });
  StayInMiddle(*this);
  OnMagnification(*this, [this] {
    if (layout_ == nullptr) return;
    Fit();
    RedrawForScale();
  });
  connect(&trayWatch_, &QTimer::timeout, this, [this] { KeepReachable(); });
}

frmTXM::~frmTXM() = default;

void frmTXM::Use(Engine& engine, Dialogs& dialogs) {
  engine_ = &engine;
  dialogs_ = &dialogs;
  gdi_.emplace(engine.tables, screen_->Surface(), engine.log, engine.notice, engine.system);
  screen_->OnPainted([this] {
    engine_->tables.ScreenPainted = True;
    ForceRepaint(engine_->tables);
  });
  dialogs.OnOpen([this](bool open) { TakeDialog(open); });
}

const QtCanvas& frmTXM::Surface() const { return screen_->Surface(); }

void frmTXM::MakeButtons() {
  const auto make = [this](PanelButton button, int row, const QString& index) {
    const PanelControl& control = ControlOf(button);
    const FlatButton::Look look = IsCornerButton(button) ? FlatButton::Look::Corner : FlatButton::Look::Row;
    auto* const made = new FlatButton(this, look, ToText(control.name) + index, ToText(control.caption));
    made->setToolTip(ToText(control.toolTip));
    connect(made, &FlatButton::clicked, this, [this, button, row] { Press(button, row); });
    return made;
  };
  for (PanelButton button : kSingle) single_[static_cast<std::size_t>(button)] = make(button, 0, {});
  for (std::size_t row = 0; row < kChannels; ++row) {
    const QString index = QString("(%1)").arg(row);
    cmdDetail_[row] = make(PanelButton::Detail, static_cast<int>(row), index);
    cmdSetup_[row] = make(PanelButton::Setup, static_cast<int>(row), index);
  }
}

FlatButton* frmTXM::ButtonOf(PanelButton button, int row) const {
  if (button == PanelButton::Detail) return cmdDetail_[static_cast<std::size_t>(row)];
  if (button == PanelButton::Setup) return cmdSetup_[static_cast<std::size_t>(row)];
  return single_[static_cast<std::size_t>(button)];
}

template <typename Action>
void frmTXM::ForEachButton(const Action& action) const {
  for (PanelButton button : kSingle) action(button, 0);
  for (int row = 0; row < kChannels; ++row) {
    action(PanelButton::Detail, row);
    action(PanelButton::Setup, row);
  }
}

void frmTXM::Press(PanelButton button, int row) {
  switch (button) {
    case PanelButton::PutInTray:
      return PutInTray();
    case PanelButton::End:
      return CloseTXMWindow(*engine_);
    case PanelButton::Refresh:
      return dialogs_->cmdRefresh(this);
    case PanelButton::Detail:
      return dialogs_->cmdDetail(row, this);
    case PanelButton::Setup:
      if (onSetup_) onSetup_(row);
      return;
    case PanelButton::Help:
      return;
  }
}

void frmTXM::Show() {
  if (!loaded_) {
    loaded_ = true;
    LoadMainForm(*engine_);
    if (engine_->tables.Stopped == True) return;
  }
  setFocus();  // the key that brought the window up may be pressed once more: it finds no button
  comingFromTray_ = false;
  ShowWindow();
  ActivateMainForm(*engine_);
  BusyPointer(false);
}

void frmTXM::Hide() {
  engine_->tables.ScreenPainted = False;  // until it is shown and painted again
  hide();
}

void frmTXM::Unload() {
  if (!loaded_) return;
  loaded_ = false;
  Unload_Tarvex_MainForm(*engine_);
  trayWatch_.stop();
  tray_.Remove();
  comingFromTray_ = false;
  hide();
}

void frmTXM::ApplyLayout(int screenWidth) {
  layout_ = &LayoutFor(screenWidth);
  FollowDisplay(*layout_);
  Fit();
  screen_->SetLayout(*layout_);
  show();
  engine_->events.DoEvents();
  connect(windowHandle(), &QWindow::screenChanged, this, [this] { RedrawForScale(); });
  EnableButtons();
  RedrawForScale();
  gdi_->SetUp();
}

/// Everything but what is drawn on the rows.
void frmTXM::Fit() {
  setFixedSize(Magnified(layout_->width), Magnified(layout_->height));
  MoveToMiddle(*this);
  ForEachButton([this](PanelButton button, int row) {
    ButtonOf(button, row)->setGeometry(MagnifiedPlace(ButtonPlace(*layout_, button, row)));
  });
  PlaceStatusLine();
}

void frmTXM::PlaceStatusLine() {
  const bool large = layout_->width > 800;
  const int left = layout_->columns[Item::Rx].x - 8;
  const int lastRow = PlaceOf(*layout_, kChannels - 1, Item::Rx).y;
  statusLine_->SetTextHeight(large ? 13 : 11);
  const int top = (layout_->height + lastRow) / 2 - 2;
  statusLine_->setGeometry(MagnifiedPlace({left, top, layout_->width - 2 * left, large ? 20 : 16}));
}

void frmTXM::RedrawForScale() {
  if (screen_->Surface().Scale() == devicePixelRatioF() * Magnification()) return;
  gdi_->Release();
  screen_->SetLayout(*layout_);
  gdi_->SetUp();
  screen_->update();
}

void frmTXM::EnableButtons() {
  ForEachButton([this](PanelButton button, int row) {
    ButtonOf(button, row)->setEnabled(ButtonEnabled(engine_->tables, dialogOpen_, button, row));
  });
}

void frmTXM::TakeDialog(bool open) {
  if (open) focusBeforeDialog_ = focusWidget();
  dialogOpen_ = open;
  EnableButtons();
  if (!open && focusBeforeDialog_ != nullptr) focusBeforeDialog_->setFocus();
}

void frmTXM::SetRevision(std::string_view text) { statusLine_->SetRevision(ToText(text)); }

void frmTXM::ShowDebugLabel(bool visible) {
  if (!visible) return statusLine_->ShowDebug(nullptr);
  statusLine_->ShowDebug([this] { return ToText(DebugLabelText(engine_->tables)); });
}

void frmTXM::BusyPointer(bool busy) { busy ? setCursor(Qt::WaitCursor) : unsetCursor(); }

/// The rows beside the setup screen go on, so they are painted anew and drawn from then on.
void frmTXM::Enable(bool enabled) {
  if (enabled) setEnabled(true);  // before the focus goes back to where it was
  TakeDialog(!enabled);
  if (!enabled) setEnabled(false);
  screen_->update();
  if (enabled && isVisible()) BringToFront(*this);
}

void frmTXM::PutInTray() { ::PutInTray(*engine_, *this); }

void frmTXM::AddIcon() {
  tray_.SetPicture(TrayPicture::iIdle);
  tray_.Show();
  if (TrayIcon::AreaIsThere() || toldOfMissingTray_) return;
  toldOfMissingTray_ = true;
  const QString notice = "This desktop has no notification area: the window was made small instead.";
  statusLine_->TellUntilNext(notice);  // the window goes out of sight now
  WriteActivity(*engine_, ToBytes(notice));
}

void frmTXM::RemoveIcon() {
  trayWatch_.stop();
  tray_.Remove();
}

void frmTXM::Animate(bool toTray) {
  if (!TrayIcon::AreaIsThere()) return;
  if (toTray) {
    QTimer::singleShot(0, this, [this] { RunToTray(kLongestWaitForPlaceMs); });
    return;
  }
  comingFromTray_ = true;
  RunFrame(tray_.Place(), geometry(), [this] {
    if (std::exchange(comingFromTray_, false)) ShowWindow();
  });
}

/// Where the icon is to be is known a moment after it was put there.
void frmTXM::RunToTray(int longestWaitMs) {
  if (!loaded_ || engine_->tables.Minimized == False) return;  // restored meanwhile
  if (tray_.KnowsPlace() || longestWaitMs <= 0) return RunFrame(geometry(), tray_.Place(), [] {});
  QTimer::singleShot(kWaitForPlaceMs, this, [this, longestWaitMs] { RunToTray(longestWaitMs - kWaitForPlaceMs); });
}

void frmTXM::HideWindow() {
  if (!TrayIcon::AreaIsThere()) return showMinimized();
  hide();
  trayWatch_.start(kTrayWatchMs);
}

void frmTXM::ShowWindow() {
  if (comingFromTray_) return;  // until the frame has arrived
  showNormal();
  BringToFront(*this);
  screen_->update();  // a desktop that kept the window's picture asks for no repaint
}

/// A notification area that went away took the only way back to the window with it.
void frmTXM::KeepReachable() {
  if (isVisible() || TrayIcon::AreaIsThere()) return;
  trayWatch_.stop();
  showMinimized();
}

void frmTXM::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  const bool stateChanged = event->type() == QEvent::WindowStateChange;
  if (!stateChanged || engine_ == nullptr) return;
  // A window manager that makes a dialog small takes this window with it.
  if (isMinimized() && dialogOpen_) QTimer::singleShot(0, this, [this] { showNormal(); });
  if (isMinimized()) return;
  // A window that was made small for want of a notification area comes back through the window manager.
  if (engine_->tables.Minimized == True && isVisible()) RestoreByMenu(*engine_, *this);
}

void frmTXM::keyPressEvent(QKeyEvent* event) {
  const Qt::KeyboardModifiers held = event->modifiers();
  const auto button = ButtonForKey(event->key(), {held.testFlag(Qt::ShiftModifier), held.testFlag(Qt::ControlModifier),
                                                  held.testFlag(Qt::AltModifier)});
  if (!button) return QWidget::keyPressEvent(event);
  ButtonOf(*button, 0)->click();
}

void frmTXM::closeEvent(QCloseEvent* event) {
  event->ignore();
  ButtonOf(PanelButton::End, 0)->click();
}
