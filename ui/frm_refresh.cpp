#include "ui/frm_refresh.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include "core/engine.h"
#include "platform/qt/text.h"
#include "ui/dialog_style.h"
#include "ui/fonts.h"

namespace {

constexpr int kGap = 12;
constexpr int kColumns = 3;
constexpr int kNumberFont = 16;
constexpr const char* kPositions[kSliderPositions] = {"Fastest", "Normal", "Least Load"};
constexpr Qt::Alignment kPositionSides[kSliderPositions] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};

std::size_t At(int index) { return static_cast<std::size_t>(index); }

}  // namespace

frmRefresh::frmRefresh(Engine& engine) : engine_(engine) {
  setObjectName("frmRefresh");
  setWindowTitle("Refresh Rates");
  ApplyDialogStyle(*this);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kGap, kGap, kGap, kGap);
  column->setSpacing(kGap);
  column->setSizeConstraint(QLayout::SetFixedSize);
  column->addWidget(MakeSlider());
  column->addWidget(MakeNumbers());
  meaning_ = MakeCaption({}, this);
  meaning_->setObjectName("lMeaning");
  meaning_->setWordWrap(true);
  column->addWidget(meaning_);
  column->addWidget(MakeButtons());
}

void frmRefresh::Fill() {
  SetValues(OpenRefresh(engine_));
  for (QLabel* rate : lScan_) rate->clear();
  ShowFace(Face::Simple);
}

void frmRefresh::ShowRate(int label, int ticksPerSecond) { lScan_.at(At(label - 1))->setNum(ticksPerSecond); }

QWidget* frmRefresh::MakeSlider() {
  auto* face = new QWidget(this);
  simpleFace_.push_back(face);
  auto* grid = new QGridLayout(face);
  grid->setContentsMargins(0, 0, 0, 0);
  slider_ = new QSlider(Qt::Horizontal, face);
  slider_->setObjectName("Slider1");
  slider_->setAccessibleName("Refresh rate");
  slider_->setRange(0, kSliderPositions - 1);
  slider_->setPageStep(1);
  slider_->setTickPosition(QSlider::TicksBelow);
  slider_->setMinimumHeight(32);
  connect(slider_, &QSlider::valueChanged, this, &frmRefresh::TakeSliderPosition);
  connect(slider_, &QSlider::sliderReleased, this, &frmRefresh::TakeSliderPosition);
  QLabel* heading = MakeCaption("Scan and Screen Speed", face);
  heading->setStyleSheet("font-weight: bold;");
  grid->addWidget(heading, 0, 0, 1, kSliderPositions);
  grid->addWidget(slider_, 1, 0, 1, kSliderPositions);
  for (int position = 0; position < kSliderPositions; ++position) {
    grid->addWidget(MakeCaption(kPositions[position], face), 2, position, kPositionSides[position]);
    grid->setColumnStretch(position, 1);
  }
  return face;
}

QWidget* frmRefresh::MakeNumbers() {
  auto* numbers = new QWidget(this);
  auto* grid = new QGridLayout(numbers);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(kGap);
  for (int box = 0; box < kRateBoxes; ++box) MakeBox(*grid, box, numbers);
  MakeStepper(*grid, numbers);
  MakeRates(*grid, 3, numbers);
  return numbers;
}

/// The boxes stand in pairs under their column's name, with the name of their row at the left.
void frmRefresh::MakeBox(QGridLayout& grid, int box, QWidget* parent) {
  const RateBox& rate = kRateTable[box];
  const int column = 1 + box / 2;
  const int row = 1 + box % 2;
  if (row == 1) grid.addWidget(MakeCaption(ToText(rate.column), parent), 0, column, Qt::AlignRight);
  if (column == 1) {
    QLabel* caption = MakeCaption(ToText(rate.row), parent);
    grid.addWidget(caption, row, 0);
    advancedFace_.push_back(caption);
  }
  auto* text = new QLineEdit(parent);
  text->setObjectName(QString("tVal(%1)").arg(box));
  text->setAccessibleName(ToText(rate.column) + ToText(rate.row));
  text->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]{0,5}"), text));
  text->setFont(NumberFont(kNumberFont));
  text->setAlignment(Qt::AlignRight);
  text->setFixedWidth(88);
  text->setToolTip(rate.read ? QString("%1 to %2 ms").arg(rate.lowest).arg(rate.highest)
                             : "Kept in the system file and without effect; Update leaves it as it was");
  connect(text, &QLineEdit::textChanged, this, [this] { ShowMeaning(); });
  connect(text, &QLineEdit::textEdited, this, [this, box] { SelectBox(box); });
  grid.addWidget(text, row, column);
  tVal_[At(box)] = text;
  advancedFace_.push_back(text);
}

/// The bar's upper end is the higher number, so that it counts downwards.
void frmRefresh::MakeStepper(QGridLayout& grid, QWidget* parent) {
  VScroll1_ = new QScrollBar(Qt::Vertical, parent);
  VScroll1_->setObjectName("VScroll1");
  VScroll1_->setToolTip("Steps the selected number");
  grid.addWidget(VScroll1_, 1, 1 + kColumns, 2, 1);
  advancedFace_.push_back(VScroll1_);
  connect(VScroll1_, &QScrollBar::valueChanged, this,
          [this](int value) { tVal_[At(selected_)]->setText(QString::number(-value)); });
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    for (int box = 0; box < kRateBoxes; ++box) {
      if (tVal_[At(box)] == now) SelectBox(box);
    }
  });
}

void frmRefresh::MakeRates(QGridLayout& grid, int row, QWidget* parent) {
  grid.addWidget(MakeCaption("Scan:", parent), row, 0);
  for (int column = 0; column < kColumns; ++column) {
    QLabel* rate = MakeCaption({}, parent);
    rate->setObjectName(QString("lScan%1").arg(column + 1));
    rate->setFont(NumberFont(kNumberFont));
    rate->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    rate->setMinimumWidth(88);
    rate->setToolTip("Ticks in the last second");
    grid.addWidget(rate, row, 1 + column);
    lScan_[At(column)] = rate;
  }
}

QWidget* frmRefresh::MakeButtons() {
  struct Button {
    const char* name;
    const char* caption;
    std::vector<QWidget*>* face;  ///< null: on both
    std::function<void()> action;
  };
  const Button buttons[] = {
      {"cmdUpdate", "&Update", nullptr, [this] { Update(); }},
      {"cmdAdvanced", "&Advanced...", &simpleFace_, [this] { ShowFace(Face::Advanced); }},
      {"cmdUnAdvanced", "&Simple...", &advancedFace_, [this] { ShowFace(Face::Simple); }},
      {"cmdSimpleClose", "&Close", &simpleFace_, [this] { accept(); }},
      {"cmdClose", "&Close", &advancedFace_, [this] { accept(); }},
  };
  auto* strip = new QWidget(this);
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(0, 0, 0, 0);
  for (const Button& button : buttons) {
    auto* control = new QPushButton(button.caption, strip);
    control->setObjectName(button.name);
    control->setAutoDefault(false);
    connect(control, &QPushButton::clicked, this, button.action);
    row->addWidget(control);
    if (button.face) button.face->push_back(control);
  }
  strip->findChild<QPushButton*>("cmdUpdate")->setDefault(true);
  return strip;
}

void frmRefresh::ShowFace(Face face) {
  for (QWidget* widget : simpleFace_) widget->setVisible(face == Face::Simple);
  for (QWidget* widget : advancedFace_) widget->setVisible(face == Face::Advanced);
  if (face == Face::Simple) {
    PlaceSlider();
    slider_->setFocus();
  } else {
    tVal_[0]->setFocus();
    SelectBox(0);
  }
}

void frmRefresh::ShowMeaning() {
  const bool complete = tVal_.back() != nullptr && meaning_ != nullptr;
  if (complete) meaning_->setText(ToText(RateMeaning(Values(), engine_.tables.MaxChannel + 1)));
}

void frmRefresh::PlaceSlider() {
  const QSignalBlocker quiet(slider_);
  slider_->setValue(SliderPosition(Values()));
}

void frmRefresh::TakeSliderPosition() { SetValues(SliderValues(slider_->value())); }

void frmRefresh::SelectBox(int box) {
  selected_ = box;
  const RateBox& rate = kRateTable[box];
  const QSignalBlocker quiet(VScroll1_);
  VScroll1_->setRange(-rate.highest, -rate.lowest);
  VScroll1_->setPageStep(10);
  VScroll1_->setValue(-Values()[At(box)]);
}

void frmRefresh::Update() {
  const RateValues values = Values();
  UpdateRates(engine_, values);
  SetValues(values);
}

RateValues frmRefresh::Values() const {
  RateValues values{};
  for (int box = 0; box < kRateBoxes; ++box) {
    values[At(box)] = RateFromText(box, ToBytes(tVal_[At(box)]->text()), kept_[At(box)]);
  }
  return values;
}

void frmRefresh::SetValues(const RateValues& values) {
  kept_ = values;
  for (int box = 0; box < kRateBoxes; ++box) tVal_[At(box)]->setText(QString::number(values[At(box)]));
}
