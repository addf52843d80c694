#include "ui/frm_detail.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/text.h"
#include "ui/dialog_style.h"
#include "ui/fonts.h"
#include "ui/magnification.h"
#include "ui/palette.h"
#include "ui/value_label.h"

namespace {

constexpr int kGap = 12;
constexpr int kValueFont = 14;
constexpr int kValueColumns = 26;
constexpr int kWeightFont = 38;
constexpr int kWeightColumns = 9;
constexpr int kRawLines = 3;
constexpr int kCaptionWidth = 84;

std::size_t At(int element) { return static_cast<std::size_t>(element); }

QString Numbered(const char* name, int element) { return QString("%1(%2)").arg(QLatin1String(name)).arg(element); }

/// A platform scale with its dial.
QPixmap ScalePicture(qreal ratio) {
  constexpr int kSize = 40;
  QPixmap picture(QSize(kSize, kSize) * (ratio * Magnification()));
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(Magnification(), Magnification());
  painter.setPen(Qt::NoPen);
  painter.setBrush(Palette::Frame);
  painter.drawRoundedRect(QRectF(2, 3, 36, 6), 2, 2);
  painter.drawRect(QRectF(16, 8, 8, 6));
  painter.drawPolygon(QPolygonF({{8, 13}, {32, 13}, {37, 37}, {3, 37}}));
  painter.setBrush(Palette::Row);
  painter.drawEllipse(QPointF(20, 25), 9, 9);
  painter.setPen(QPen(Palette::Danger, 2, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(20, 25), QPointF(25, 20));
  return picture;
}

}  // namespace

frmDetail::frmDetail() {
  setObjectName("frmDetail");
  ApplyDialogStyle(*this);
  auto* close = new QPushButton("&Close", this);
  close->setObjectName("cmdClose");
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kGap, kGap, kGap, kGap);
  column->setSpacing(kGap);
  column->setSizeConstraint(QLayout::SetFixedSize);
  for (QWidget* block : {MakeHead(), MakeWeights(), MakeReadings(), MakeDeviceFields()}) column->addWidget(block);
  column->addWidget(close, 0, Qt::AlignRight);
}

void frmDetail::Fill(const DetailView& view, int channelNumber, bool raw) {
  setWindowTitle(QString("Channel %1 Detail").arg(channelNumber));
  heading_->setText(QString("Channel %1").arg(channelNumber));
  Ld_[kDetailRaw]->setVisible(raw);
  QSizePolicy policy = l_[kDetailRaw]->sizePolicy();
  policy.setRetainSizeWhenHidden(raw);
  l_[kDetailRaw]->setSizePolicy(policy);
  for (int element = 0; element < kDetailElements; ++element) Take(view, element);
}

void frmDetail::Take(const DetailView& view, int element) {
  ValueLabel* value = Ld_.at(At(element));
  if (value) value->SetText(ToVisibleText(view.Ld(element)));
  l_[kDetailRaw]->setVisible(view.RawVisible());
}

QWidget* frmDetail::MakeHead() {
  auto* head = new QWidget(this);
  auto* row = new QHBoxLayout(head);
  row->setContentsMargins(0, 0, 0, 0);
  auto* picture = new QLabel(head);
  picture->setObjectName("Image1");
  const auto paint = [this, picture] { picture->setPixmap(ScalePicture(devicePixelRatioF())); };
  paint();
  OnMagnification(*picture, paint);
  heading_ = MakeCaption({}, head);
  QFont font = this->font();
  font.setPixelSize(22);
  font.setBold(true);
  heading_->setFont(font);
  row->addWidget(picture);
  row->addSpacing(kGap / 2);
  row->addWidget(heading_, 1);
  return head;
}

void frmDetail::MakeField(const DetailField& field, ValueLabel* value, QWidget* parent) {
  const QString caption = ToText(field.caption);
  l_[At(field.element)] = MakeCaption(caption, parent);
  l_[At(field.element)]->setObjectName(Numbered("l", field.element));
  Ld_[At(field.element)] = value;
  value->setObjectName(Numbered("Ld", field.element));
  value->setAccessibleName(caption);
}

QWidget* frmDetail::MakeWeights() {
  auto* frame = new QFrame(this);
  frame->setObjectName("iFrame");
  frame->setStyleSheet(QString("#iFrame { background: %1; border-radius: 5px; }"
                               "#iFrame QLabel { color: %2; }"
                               "#iFrame ValueLabel { background: transparent; border: none; color: %3; padding: 0; }")
                           .arg(Palette::FrameEdge.name(), Palette::Quiet.name(), Palette::HeadingStrong.name()));
  auto* grid = new QGridLayout(frame);
  grid->setContentsMargins(kGap + 6, kGap, kGap + 6, kGap);
  grid->setHorizontalSpacing(3 * kGap);
  int column = 0;
  for (const DetailField& field : kDetailFields) {
    if (field.group != DetailGroup::Weights) continue;
    auto* value = new ValueLabel(ValueLabel::Fit::Shrink, kWeightColumns, 1, frame);
    QFont digits = NumberFont(kWeightFont);
    digits.setBold(true);
    value->setFont(digits);
    MakeField(field, value, frame);
    QFont bold = font();
    bold.setBold(true);
    l_[At(field.element)]->setFont(bold);
    grid->addWidget(l_[At(field.element)], 0, column, Qt::AlignRight);
    grid->addWidget(value, 1, column);
    ++column;
  }
  return frame;
}

void frmDetail::MakeRows(QGridLayout& grid, int firstRow, int firstColumn, DetailGroup group, QWidget* parent) {
  int row = firstRow;
  grid.setColumnMinimumWidth(firstColumn, kCaptionWidth);
  for (const DetailField& field : kDetailFields) {
    if (field.group != group) continue;
    const bool raw = field.element == kDetailRaw;
    auto* value =
        new ValueLabel(raw ? ValueLabel::Fit::Wrap : ValueLabel::Fit::Cut, kValueColumns, raw ? kRawLines : 1, parent);
    value->setFont(NumberFont(kValueFont));
    MakeField(field, value, parent);
    grid.addWidget(l_[At(field.element)], row, firstColumn, raw ? Qt::AlignTop : Qt::AlignVCenter);
    grid.addWidget(value, row, firstColumn + 1);
    ++row;
  }
}

QWidget* frmDetail::MakeReadings() {
  auto* block = new QWidget(this);
  auto* grid = new QGridLayout(block);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setVerticalSpacing(4);
  grid->setColumnMinimumWidth(2, kGap);
  MakeRows(*grid, 0, 0, DetailGroup::Command, block);
  MakeRows(*grid, 4, 0, DetailGroup::Reading, block);
  MakeRows(*grid, 0, 3, DetailGroup::Status, block);
  return block;
}

QWidget* frmDetail::MakeDeviceFields() {
  auto* block = new QWidget(this);
  auto* grid = new QGridLayout(block);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setVerticalSpacing(4);
  MakeRows(*grid, 0, 0, DetailGroup::Device, block);
  return block;
}
