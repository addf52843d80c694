#include "ui/frm_tarvex_startup.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QPainter>

#include "core/shutdown.h"
#include "core/startup.h"
#include "diagnostics/screen_layout.h"
#include "platform/qt/on_display.h"
#include "platform/qt/text.h"
#include "ui/flat_button.h"
#include "ui/fonts.h"
#include "ui/frame.h"
#include "ui/in_front.h"
#include "ui/logo.h"
#include "ui/magnification.h"
#include "ui/palette.h"

namespace {

/// Places in the picture of the large display.
constexpr QSizeF kForm(1024, 768);
constexpr QRectF kMark(212, 176, 150, 150);
constexpr QPointF kName(394, 256);
constexpr QPointF kUnderName(397, 296);
constexpr QRectF kRevision(397, 312, 240, 20);
constexpr QRectF kMenu(212, 404, 600, 176);
constexpr QRectF kContinue(252, 470, 250, 64);
constexpr QRectF kEnd(522, 470, 250, 64);
constexpr QRectF kExit(974, 3, 47, 43);
constexpr QPointF kMenuTitle(252, 446);

QRect Scaled(const QRectF& place, double factor) {
  return QRectF(place.topLeft() * factor, place.size() * factor).toRect();
}

}  // namespace

frmTarvexStartup::frmTarvexStartup()
    : lRevision_(new QLabel(this)),
      cmdContinue_(new FlatButton(this, FlatButton::Look::Menu, "CmdContinue", "&Continue")),
      cmdEnd_(new FlatButton(this, FlatButton::Look::Menu, "cmdEnd", "&End")),
      cmdExit_(new FlatButton(this, FlatButton::Look::Corner, "cmdExit", "X")) {
  setObjectName("frmTarvexStartup");
  setWindowTitle("Tarvex Manager");
  setWindowIcon(TrayIconPicture(TrayPicture::iIdle));
  setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
  setAttribute(Qt::WA_QuitOnClose, false);
  lRevision_->setObjectName("lRevision");
  lRevision_->setTextFormat(Qt::PlainText);
  QPalette colours = lRevision_->palette();
  colours.setColor(QPalette::WindowText, Palette::Quiet);
  lRevision_->setPalette(colours);
  cmdContinue_->setToolTip("Start the scan and show the weigh screen");
  cmdEnd_->setToolTip("End the program");
  cmdExit_->setToolTip("End the program");
  cmdContinue_->hide();
  connect(cmdContinue_, &FlatButton::clicked, this, [this] { LaunchMainScreen(*engine_); });
  for (FlatButton* button : {cmdEnd_, cmdExit_}) connect(button, &FlatButton::clicked, this, [this] { End(); });
  StayInMiddle(*this);
  Fit(1024);
  OnMagnification(*this, [this] {
    Fit(large_ ? 1024 : 800);
    MoveToMiddle(*this);
  });
}

void frmTarvexStartup::Use(Engine& engine, std::function<void()> unloadForms) {
  engine_ = &engine;
  unloadForms_ = std::move(unloadForms);
}

void frmTarvexStartup::Fit(int screenWidth) {
  if (screenWidth == 800 || screenWidth == 1024) large_ = screenWidth == 1024;
  const double factor = Magnification() * (large_ ? 1 : 800 / kForm.width());
  setFixedSize(Scaled(QRectF(QPointF(0, 0), kForm), factor).size());
  lRevision_->setFont(TextFont(14 * factor));
  lRevision_->setGeometry(Scaled(kRevision, factor));
  cmdContinue_->setGeometry(Scaled(kContinue, factor));
  cmdEnd_->setGeometry(Scaled(kEnd, factor));
  cmdExit_->setGeometry(Scaled(kExit, factor));
  update();
}

void frmTarvexStartup::SetRevision(std::string_view text) { lRevision_->setText(ToText(text)); }

void frmTarvexStartup::ShowLogo(int screenWidth) {
  FollowDisplay(LayoutFor(screenWidth));
  Fit(screenWidth);
}

void frmTarvexStartup::Show() {
  MoveToMiddle(*this);
  show();
  BringToFront(*this);
}

void frmTarvexStartup::ShowMenu(int screenWidth) {
  Fit(screenWidth);
  menuVisible_ = true;
  cmdContinue_->show();
  FocusContinue();
  update();
}

void frmTarvexStartup::EnableContinue(bool enabled) { cmdContinue_->setEnabled(enabled); }

void frmTarvexStartup::FocusContinue() { cmdContinue_->setFocus(); }

void frmTarvexStartup::BusyPointer(bool busy) { busy ? setCursor(Qt::WaitCursor) : unsetCursor(); }

void frmTarvexStartup::Unload() {
  hide();
  if (unloadForms_) unloadForms_();
}

void frmTarvexStartup::End() {
  TaskCtrl(*engine_, kEndTask);
  QCoreApplication::quit();
}

void frmTarvexStartup::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  DrawFrame(painter, size(), height());
  painter.scale(width() / kForm.width(), width() / kForm.width());

  DrawMark(painter, kMark);
  painter.setPen(Palette::HeadingStrong);
  painter.setFont(TextFont(88, QFont::Bold));
  painter.drawText(kName, "Tarvex");
  painter.setPen(Palette::Heading);
  painter.setFont(TextFont(22));
  painter.drawText(kUnderName, kSubtitle);
  if (!menuVisible_) return;

  painter.setPen(QPen(Palette::FrameEdge, 1));
  painter.setBrush(Palette::Frame);
  painter.drawRoundedRect(kMenu, 8, 8);
  painter.setPen(Palette::Heading);
  painter.setFont(TextFont(16));
  painter.drawText(kMenuTitle, "The scan is not running.");
}

void frmTarvexStartup::closeEvent(QCloseEvent* event) {
  event->ignore();
  End();
}
