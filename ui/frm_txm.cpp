#include "ui/frm_txm.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QToolTip>

#include "core/channel_state.h"
#include "core/engine.h"
#include "core/fixed_tables.h"
#include "core/shutdown.h"
#include "core/startup.h"
#include "platform/qt/text.h"
#include "ui/background.h"
#include "ui/dialogs.h"
#include "ui/focused_button.h"
#include "ui/logo.h"
#include "ui/palette.h"

namespace {

constexpr PanelButton kTabOrder[] = {PanelButton::PutInTray, PanelButton::End,    PanelButton::Refresh,
                                     PanelButton::Help,      PanelButton::Detail, PanelButton::Setup};

bool HasRows(PanelButton button) { return button == PanelButton::Detail || button == PanelButton::Setup; }

QRect RectOf(const CellPlace& place) { return {place.x, place.y, place.width, place.height}; }

/// One look for all buttons of the panel; `pixels` is the height of their letters.
QString ButtonStyle(int pixels) {
  return QString(
             "QPushButton { background: %1; color: %2; border: 1px solid %3; border-radius: 2px; padding: 0;"
             "  font-family: 'Liberation Sans'; font-size: %4px; }"
             "QPushButton:hover { background: %5; }"
             "QPushButton:pressed { background: %6; }"
             "QPushButton:focus { border: 1px solid %7; }"
             "QPushButton:disabled { background: %8; color: %9; }")
      .arg(Palette::Button.name(), Palette::ButtonText.name(), Palette::ButtonEdge.name())
      .arg(pixels)
      .arg(Palette::ButtonHover.name(), Palette::ButtonDown.name(), Palette::Accent.name(),
           Palette::ButtonGreyed.name(), Palette::ButtonGreyedText.name());
}

QLabel* MakeLabel(QWidget* parent, const char* name, const QColor& colour) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setStyleSheet(QString("color: %1; font-family: 'Liberation Sans'; font-size: 12px;").arg(colour.name()));
  label->setAttribute(Qt::WA_TransparentForMouseEvents);
  return label;
}

}  // namespace

frmTXM::frmTXM(Dialogs& dialogs)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      dialogs_(dialogs),
      canvas_([this](const QRect& changed) {
        ownUpdates_ += changed;
        update(changed);
      }),
      layout_(&LayoutFor(0)) {
  setObjectName("frmTXM");
  setWindowTitle("Tarvex Manager");
  setWindowIcon(TrayIconPicture(TrayPicture::iIdle));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  lRevision_ = MakeLabel(this, "lRevision", Palette::Quiet);
  lDebugMode_ = MakeLabel(this, "lDebugMode", Palette::Warning);
  lDebugMode_->setText("Debug Mode");
  lDebugMode_->hide();
  lfx_ = MakeLabel(this, "lfx", Palette::Quiet);
  lfy_ = MakeLabel(this, "lfy", Palette::Quiet);
  MakeButtons();
  dialogs_.OnOpen([this](bool) { EnableButtons(); });
  tray_.OnRestoreByMenu([this] { RestoreByMenu(*engine_, *this); });
  tray_.OnDoubleClick([this] { RestoreByDoubleClick(*engine_, *this); });
}

frmTXM::~frmTXM() = default;

void frmTXM::Use(Engine& engine) {
  engine_ = &engine;
  cells_ = std::make_unique<CGDI>(engine.tables, canvas_, engine.log, engine.notice, engine.system);
}

void frmTXM::MakeButtons() {
  for (const PanelButton button : kTabOrder) {
    const PanelControl& control = ControlOf(button);
    const int count = HasRows(button) ? kChannels : 1;
    for (int row = 0; row < count; ++row) {
      auto* made = new QPushButton(QString::fromLatin1(control.caption.data()), this);
      made->setObjectName(QString::fromLatin1(control.name.data()) +
                          (count > 1 ? QString("(%1)").arg(row) : QString()));
      made->setToolTip(QString::fromLatin1(control.toolTip.data(), static_cast<qsizetype>(control.toolTip.size())));
      connect(made, &QPushButton::clicked, this, [this, button, row] { Press(button, row); });
      buttons_[static_cast<std::size_t>(button)].push_back(made);
    }
  }
  // Row by row: a row's detail, then its setup.
  for (int row = 0; row < kChannels; ++row) {
    setTabOrder(row == 0 ? &Button(PanelButton::Help, 0) : &Button(PanelButton::Setup, row - 1),
                &Button(PanelButton::Detail, row));
    setTabOrder(&Button(PanelButton::Detail, row), &Button(PanelButton::Setup, row));
  }
}

QPushButton& frmTXM::Button(PanelButton button, int row) {
  return *buttons_[static_cast<std::size_t>(button)][static_cast<std::size_t>(row)];
}

void frmTXM::Show() {
  if (!loaded_) {
    loaded_ = true;
    LoadMainForm(*engine_);
  }
  ShowWindow();
  ActivateMainForm(*engine_);
  EnableButtons();
}

void frmTXM::Hide() {
  engine_->tables.ScreenPainted = False;
  tray_.Remove();
  hide();
}

/// Draws the picture and makes the cells on it. The window is shown only behind this, so that no cell can be drawn
/// on an empty surface.
void frmTXM::ApplyLayout(int screenWidth) {
  layout_ = &LayoutFor(screenWidth);
  setFixedSize(layout_->width, layout_->height);
  const QRect display = QGuiApplication::primaryScreen()->geometry();
  move(display.x() + (display.width() - width()) / 2, display.y() + (display.height() - height()) / 2);
  PlaceControls();
  DrawPicture();
}

void frmTXM::DrawPicture() {
  if (cells_) cells_->Release();
  canvas_.SetPicture(DrawBackground(*layout_, devicePixelRatioF()), devicePixelRatioF());
  if (cells_) cells_->SetUp();
}

void frmTXM::PlaceControls() {
  const int letters = layout_->width == 800 ? 9 : 12;
  for (const PanelButton button : kTabOrder) {
    const auto& made = buttons_[static_cast<std::size_t>(button)];
    for (std::size_t row = 0; row < made.size(); ++row) {
      made[row]->setGeometry(RectOf(ButtonPlace(*layout_, button, static_cast<int>(row))));
      made[row]->setStyleSheet(ButtonStyle(HasRows(button) ? letters : letters + 2));
    }
  }
  const int foot = layout_->height - 18;
  lRevision_->setGeometry(layout_->width - 110, foot, 100, 16);
  lRevision_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  lDebugMode_->setGeometry(layout_->width / 2 - 50, foot, 100, 16);
  lDebugMode_->setAlignment(Qt::AlignCenter);
  lfx_->setGeometry(10, foot, 36, 16);
  lfy_->setGeometry(48, foot, 36, 16);
}

void frmTXM::SetRevision(std::string_view text) { lRevision_->setText(ToText(text)); }

void frmTXM::ShowDebugLabel(bool visible) { lDebugMode_->setVisible(visible); }

void frmTXM::EnablePutInTray(bool enabled) { Button(PanelButton::PutInTray, 0).setEnabled(enabled); }

void frmTXM::BusyPointer(bool busy) { busy ? setCursor(Qt::WaitCursor) : unsetCursor(); }

void frmTXM::PutInTray() { ::PutInTray(*engine_, *this); }

void frmTXM::SetTrayPicture(TrayPicture picture) { tray_.SetPicture(picture); }

void frmTXM::DrawItem(int ch, int item) {
  if (cells_) cells_->DrawItem(ch, item);
}

void frmTXM::ReleaseDrawing() {
  if (cells_) cells_->Release();
}

/// A paint that the copies of cells have asked for shows them. Any other one means that the window was uncovered:
/// every row is drawn anew.
void frmTXM::paintEvent(QPaintEvent* event) {
  const bool uncovered = !(event->region() - ownUpdates_).isEmpty();
  ownUpdates_ -= event->region();
  QPainter painter(this);
  painter.drawImage(QPoint(0, 0), canvas_.WindowImage());
  if (!uncovered || engine_ == nullptr) return;
  engine_->tables.ScreenPainted = True;
  ForceRepaint(engine_->tables);
}

void frmTXM::EnableButtons() {
  for (const PanelButton button : kTabOrder) {
    const auto& made = buttons_[static_cast<std::size_t>(button)];
    for (std::size_t row = 0; row < made.size(); ++row) {
      made[row]->setEnabled(ButtonEnabled(engine_->tables, dialogs_.IsOpen(), button, static_cast<int>(row)));
    }
  }
}

void frmTXM::Press(PanelButton button, int row) {
  if (!Button(button, row).isEnabled()) return;
  switch (button) {
    case PanelButton::PutInTray:
      return PutInTray();
    case PanelButton::End:
      return CloseTXMWindow(*engine_);
    case PanelButton::Refresh:
      return dialogs_.cmdRefresh(this);
    case PanelButton::Help:
      return;
    case PanelButton::Detail:
      return dialogs_.cmdDetail(row, this);
    case PanelButton::Setup:
      return TellOfMissingSetup(row);
  }
}

/// There is no setup screen yet; the channel's file is what a person changes until then.
void frmTXM::TellOfMissingSetup(int row) {
  const QPushButton& button = Button(PanelButton::Setup, row);
  QToolTip::showText(
      button.mapToGlobal(QPoint(0, button.height())),
      QString("There is no setup screen yet. Edit Tarvex-SCALE%1.Cfg in\n%2\nand start the system again.")
          .arg(row + 1)
          .arg(ToText(engine_->tables.ProgramFolder)));
}

void frmTXM::keyPressEvent(QKeyEvent* event) {
  const Qt::KeyboardModifiers held = event->modifiers();
  const auto button = ButtonForKey(event->key(), {held.testFlag(Qt::ShiftModifier), held.testFlag(Qt::ControlModifier),
                                                  held.testFlag(Qt::AltModifier)});
  if (button) return Press(*button, 0);
  if (!PressFocusedButton(*this, *event)) QWidget::keyPressEvent(event);
}

void frmTXM::mouseMoveEvent(QMouseEvent* event) {
  lfx_->setText(QString::number(event->position().toPoint().x()));
  lfy_->setText(QString::number(event->position().toPoint().y()));
}

/// A desktop without a notification area makes the window small; making it large again is the way back.
void frmTXM::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange || engine_ == nullptr) return;
  if (!isMinimized() && !tray_.Shown() && engine_->tables.Minimized == True) RestoreByMenu(*engine_, *this);
}

/// Closing the window by the desktop's means is `cmdEnd`, unless a dialog holds the buttons.
void frmTXM::closeEvent(QCloseEvent* event) {
  event->ignore();
  Press(PanelButton::End, 0);
}

void frmTXM::AddIcon() {
  if (TrayIcon::Available()) return tray_.Show();
  if (toldOfMissingTray_) return;
  toldOfMissingTray_ = true;
  engine_->log.WriteLog(LogType::Activity, "This Desktop Has No Notification Area, The Window Is Minimized Instead");
}

void frmTXM::RemoveIcon() { tray_.Remove(); }

/// Desktops animate windows themselves.
void frmTXM::Animate(bool) {}

void frmTXM::HideWindow() { tray_.Shown() ? hide() : showMinimized(); }

void frmTXM::ShowWindow() {
  showNormal();
  raise();
  activateWindow();
}
