#include "ui/status_line.h"

#include <QHBoxLayout>
#include <QLabel>

#include "ui/fonts.h"
#include "ui/magnification.h"
#include "ui/palette.h"

namespace {

constexpr int kNoticeMs = 15'000;
constexpr int kDebugMs = 1000;
constexpr int kGap = 18;
constexpr int kNumberWidth = 36;

}  // namespace

StatusLine::StatusLine(QWidget* parent)
    : QWidget(parent),
      lRevision_(MakeLabel("lRevision", Palette::Quiet)),
      lDebugMode_(MakeLabel("lDebugMode", Palette::Warning)),
      lNotice_(MakeLabel("lNotice", Palette::Heading)),
      lfx_(MakeLabel("lfx", Palette::Quiet)),
      lfy_(MakeLabel("lfy", Palette::Quiet)) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAutoFillBackground(true);
  QPalette colours = palette();
  colours.setColor(QPalette::Window, Palette::Frame);
  setPalette(colours);

  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(lRevision_);
  row->addWidget(lDebugMode_);
  row->addWidget(lNotice_, 1);
  for (QLabel* number : {lfx_, lfy_}) {
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->addWidget(number);
  }
  lDebugMode_->hide();
  noticeTime_.setSingleShot(true);
  connect(&noticeTime_, &QTimer::timeout, lNotice_, &QLabel::clear);
  connect(&debugTime_, &QTimer::timeout, lDebugMode_, [this] { lDebugMode_->setText(debugText_()); });
}

QLabel* StatusLine::MakeLabel(const char* name, const QColor& ink) {
  auto* const label = new QLabel(this);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  QPalette colours = label->palette();
  colours.setColor(QPalette::WindowText, ink);
  label->setPalette(colours);
  return label;
}

void StatusLine::SetTextHeight(int pixels) {
  for (QLabel* label : {lRevision_, lDebugMode_, lNotice_, lfx_, lfy_}) label->setFont(TextFont(Magnified(pixels)));
  for (QLabel* number : {lfx_, lfy_}) number->setFixedWidth(Magnified(kNumberWidth));
  layout()->setSpacing(Magnified(kGap));
}

void StatusLine::SetRevision(const QString& text) { lRevision_->setText(text); }

void StatusLine::ShowDebug(std::function<QString()> text) {
  debugText_ = std::move(text);
  lDebugMode_->setVisible(debugText_ != nullptr);
  if (!debugText_) return debugTime_.stop();
  lDebugMode_->setText(debugText_());
  debugTime_.start(kDebugMs);
}

void StatusLine::Tell(const QString& notice) {
  lNotice_->setText(notice);
  noticeTime_.start(kNoticeMs);
}

void StatusLine::TellUntilNext(const QString& notice) {
  lNotice_->setText(notice);
  noticeTime_.stop();
}

void StatusLine::ShowMouse(const QPoint& place) {
  lfx_->setText(QString::number(place.x()));
  lfy_->setText(QString::number(place.y()));
}
