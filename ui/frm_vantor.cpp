#include "ui/frm_vantor.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/text.h"
#include "terminal/virtual_terminal.h"
#include "ui/dialog_style.h"
#include "ui/key_code.h"
#include "ui/palette.h"

namespace {

constexpr int kGap = 12;
constexpr int kKeyWidth = 72;
constexpr int kKeyHeight = 40;

/// Where a key stands on the panel.
struct KeyPlace {
  std::string_view control;
  int row, column;
};

constexpr int kDigitColumn = 2;  // a gap stands in front of it

constexpr KeyPlace kPlaces[] = {
    {"Key_F", 0, 0},   {"Key_S", 0, 1}, {"Key_7", 0, 3}, {"Key_8", 0, 4},   {"Key_9", 0, 5},
    {"Key_ESC", 0, 7}, {"Key_M", 1, 0}, {"Key_T", 1, 1}, {"Key_4", 1, 3},   {"Key_5", 1, 4},
    {"Key_6", 1, 5},   {"Key_C", 1, 7}, {"Key_Z", 2, 0}, {"Key_1", 2, 3},   {"Key_2", 2, 4},
    {"Key_3", 2, 5},   {"Key_E", 2, 7}, {"Key_0", 3, 3}, {"Label22", 3, 4}, {"Key_SPC", 3, 5},
};
static_assert(std::size(kPlaces) == std::size(kTerminalKeys));

const TerminalKey& KeyOf(std::string_view control) {
  return *std::find_if(std::begin(kTerminalKeys), std::end(kTerminalKeys),
                       [&](const TerminalKey& key) { return key.control == control; });
}

/// The place that has the keyboard: what is typed goes to the terminal, key by key.
class KeyTarget : public QFrame {
 public:
  KeyTarget(VirtualTerminal& terminal, QWidget* parent) : QFrame(parent), terminal_(terminal) {
    setObjectName("Picture1");
    setFocusPolicy(Qt::StrongFocus);
  }

 protected:
  bool event(QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return QFrame::event(event);
    const auto& key = static_cast<QKeyEvent&>(*event);  // Tab too, which would move the focus otherwise
    terminal_.KeyDown(KeyCodeOf(key));
    const QString text = key.text();
    const bool isCharacter = text.size() == 1 && text.front().unicode() < 256 && key.key() != Qt::Key_Delete;
    if (isCharacter) terminal_.KeyPress(static_cast<std::uint8_t>(text.front().unicode()));
    return true;
  }

 private:
  VirtualTerminal& terminal_;
};

}  // namespace

VANTOR::VANTOR(VirtualTerminal& terminal) : terminal_(terminal) {
  setObjectName("VANTOR");
  ApplyDialogStyle(*this);
  setWindowFlag(Qt::WindowCloseButtonHint, false);  // its own button says where the keyboard goes afterwards
  setWindowFlag(Qt::WindowStaysOnTopHint, true);
  auto* const close = new QPushButton("&Close", this);
  close->setObjectName("cmdClose");
  close->setFocusPolicy(Qt::NoFocus);
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);

  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(kGap, kGap, kGap, kGap);
  column->setSpacing(kGap);
  column->setSizeConstraint(QLayout::SetFixedSize);
  for (QWidget* const block : {MakePicture(), MakeNodes(), MakeKeys()}) column->addWidget(block);
  column->addWidget(close, 0, Qt::AlignRight);
}

void VANTOR::Fill() { setWindowTitle(ToText(terminal_.Caption())); }

void VANTOR::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  FocusPicture();
}

void VANTOR::FocusPicture() {
  Picture1_->setFocus();
  const int node = terminal_.Node();
  node_->setText(node == 0 ? "Choose the node whose keys are to be worked."
                           : QString("Keys go to node %1, with the mouse or by the keyboard.").arg(node));
}

QWidget* VANTOR::MakePicture() {
  Picture1_ = new KeyTarget(terminal_, this);
  Picture1_->setStyleSheet(QString("#Picture1 { background: %1; border: 2px solid %1; border-radius: 5px; }"
                                   "#Picture1:focus { border-color: %2; }"
                                   "#Picture1 QLabel { color: %3; }")
                               .arg(Palette::FrameEdge.name(), Palette::Accent.name(), Palette::Heading.name()));
  auto* const column = new QVBoxLayout(Picture1_);
  column->setContentsMargins(kGap, kGap, kGap, kGap);
  node_ = MakeCaption({}, Picture1_);
  node_->setObjectName("lNode");
  column->addWidget(node_);
  column->addWidget(
      MakeCaption("F1 to F4, F11, F12 as on the terminal   F5 Zero   F6 Function   F7 Select   F8 Clear   "
                  "F9 Tare   F10 Memory",
                  Picture1_));
  return Picture1_;
}

QWidget* VANTOR::MakeNodes() {
  auto* const frame = new QGroupBox("Vantor Node", this);
  auto* const row = new QHBoxLayout(frame);
  for (int option = 0; option < kTerminalNodes; ++option) {
    auto* const button = new QRadioButton(QString::number(option + 1), frame);
    button->setObjectName(QString("Option1(%1)").arg(option));
    connect(button, &QRadioButton::clicked, this, [this, option] {
      terminal_.ChooseNode(option);
      FocusPicture();
    });
    row->addWidget(button);
  }
  return frame;
}

QWidget* VANTOR::MakeKeys() {
  auto* const panel = new QWidget(this);
  auto* const grid = new QGridLayout(panel);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(6);
  for (const int gap : {kDigitColumn, 6}) grid->setColumnMinimumWidth(gap, kGap);
  for (const KeyPlace& place : kPlaces) {
    const TerminalKey& key = KeyOf(place.control);
    auto* const button = new QPushButton(ToText(key.face), panel);
    button->setObjectName(ToText(key.control));
    button->setFixedSize(kKeyWidth, kKeyHeight);
    button->setStyleSheet("padding: 0; min-width: 0;");
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, &key] {
      terminal_.Click(key);
      FocusPicture();
    });
    grid->addWidget(button, place.row, place.column);
  }
  return panel;
}
