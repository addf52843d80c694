#include "ui/frm_tarvex_startup.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include "core/engine.h"
#include "core/shutdown.h"
#include "core/startup.h"
#include "platform/qt/text.h"
#include "ui/focused_button.h"
#include "ui/logo.h"
#include "ui/palette.h"

namespace {

constexpr int kWidth = 560;
constexpr int kHeight = 320;
constexpr int kMark = 132;
constexpr int kMenuLeft = 372;
constexpr int kEndTask = 6;

QFont FormFont(int pixels, QFont::Weight weight) {
  QFont font("Liberation Sans");
  font.setPixelSize(pixels);
  font.setWeight(weight);
  return font;
}

}  // namespace

frmTarvexStartup::frmTarvexStartup() : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint) {
  setObjectName("frmTarvexStartup");
  setWindowTitle("Tarvex Manager");
  setWindowIcon(TrayIconPicture(TrayPicture::iIdle));
  setFixedSize(kWidth, kHeight);
  lRevision_ = new QLabel(this);
  lRevision_->setObjectName("lRevision");
  lRevision_->setGeometry(40, kHeight - 44, 200, 20);
  lRevision_->setStyleSheet(
      QString("color: %1; font-family: 'Liberation Sans'; font-size: 13px;").arg(Palette::Quiet.name()));
  cmdContinue_ = MakeButton("CmdContinue", "&Continue", "Start the scan of all channels", 110);
  cmdEnd_ = MakeButton("cmdEnd", "&End", "End the program", 170);
  cmdExit_ = MakeButton("cmdExit", "X", "End the program", 0);
  cmdExit_->setGeometry(kWidth - 44, 8, 36, 30);
  cmdContinue_->hide();
  connect(cmdContinue_, &QPushButton::clicked, this, [this] { LaunchMainScreen(*engine_); });
  connect(cmdEnd_, &QPushButton::clicked, this, &frmTarvexStartup::EndProgram);
  connect(cmdExit_, &QPushButton::clicked, this, &frmTarvexStartup::EndProgram);
}

QPushButton* frmTarvexStartup::MakeButton(const char* name, const char* caption, const char* toolTip, int top) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(name);
  button->setToolTip(toolTip);
  button->setGeometry(kMenuLeft, top, 148, 44);
  button->setStyleSheet(QString("QPushButton { background: %1; color: %2; border: 1px solid %3; border-radius: 4px;"
                                "  font-family: 'Liberation Sans'; font-size: 16px; }"
                                "QPushButton:hover { background: %4; }"
                                "QPushButton:pressed { background: %5; }"
                                "QPushButton:focus { border: 2px solid %6; }"
                                "QPushButton:disabled { background: %7; color: %8; }")
                            .arg(Palette::Button.name(), Palette::ButtonText.name(), Palette::ButtonEdge.name(),
                                 Palette::ButtonHover.name(), Palette::ButtonDown.name(), Palette::Accent.name(),
                                 Palette::ButtonGreyed.name(), Palette::ButtonGreyedText.name()));
  return button;
}

void frmTarvexStartup::SetRevision(std::string_view text) { lRevision_->setText(ToText(text)); }

void frmTarvexStartup::ShowLogo(int screenWidth) {
  logo_ = logo_ || screenWidth == 800 || screenWidth == 1024;
  update();
}

void frmTarvexStartup::Show() {
  const QRect display = QGuiApplication::primaryScreen()->geometry();
  move(display.center() - rect().center());
  show();
  raise();
  activateWindow();
}

void frmTarvexStartup::Hide() { hide(); }

/// The menu shows on every display; only the pictures are made for two of them.
void frmTarvexStartup::ShowMenu(int) { cmdContinue_->show(); }

void frmTarvexStartup::EnableContinue(bool enabled) { cmdContinue_->setEnabled(enabled); }

void frmTarvexStartup::FocusContinue() { cmdContinue_->setFocus(); }

void frmTarvexStartup::BusyPointer(bool busy) { busy ? setCursor(Qt::WaitCursor) : unsetCursor(); }

void frmTarvexStartup::Unload() {
  hide();
  emit Unloaded();
}

void frmTarvexStartup::EndProgram() { TaskCtrl(*engine_, kEndTask); }

void frmTarvexStartup::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), Palette::Frame);
  painter.setPen(Palette::FrameEdge);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  painter.fillRect(QRect(kMenuLeft - 24, 60, 1, kHeight - 120), Palette::FrameLight);
  if (logo_) DrawMark(painter, QRectF(40, 60, kMark, kMark));
  const int textLeft = logo_ ? 40 + kMark + 24 : 40;
  painter.setPen(Palette::HeadingStrong);
  painter.setFont(FormFont(36, QFont::Bold));
  painter.drawText(textLeft, 118, "Tarvex");
  painter.setPen(Palette::Heading);
  painter.setFont(FormFont(16, QFont::Normal));
  painter.drawText(textLeft, 146, "Manager");
}

void frmTarvexStartup::keyPressEvent(QKeyEvent* event) {
  if (!PressFocusedButton(*this, *event)) QWidget::keyPressEvent(event);
}

void frmTarvexStartup::closeEvent(QCloseEvent* event) {
  event->ignore();
  EndProgram();
}
